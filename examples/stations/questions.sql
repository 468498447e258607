-- Questions to the archive of archive.sql; docs/stations.md has answers to them.

-- How many units passed at the first try, and how many in the end?
select station, limits, units, first_pass, final, first_pass_percent, final_percent
from yield where day is null order by station, limits;

-- Which were the worst days of a station?
select day, station, units, first_pass, first_pass_percent
from yield where day is not null order by first_pass_percent, day, station limit 4;

-- How has the level of a station developed?
select day, measurements, median, lowest, highest
from level_by_day where station = 'station-0004' and name = 'Level' order by day desc limit 7;

-- Does a station drift?
select station, days, per_30_days, agreement
from station_drift where name = 'Level' order by abs(per_30_days) desc;

-- Does a station measure otherwise than the others?
select station, round(avg(difference), 2) as mean_difference, min(difference), max(difference)
from station_comparison where name = 'Level' group by station order by abs(avg(difference)) desc;

-- Which limits are in force, and since when?
select station, limits, first_run::date, last_run::date, runs
from limits_in_force order by station, first_run;

-- Which units were tried more than once, and how did it end?
select serial, station, count(*) as runs, string_agg(exit::text, ' ' order by at) as exit_values
from judged_run where serial is not null
group by serial, station having count(*) > 1 order by serial limit 5;

-- Which records must a station publish again?
select station, count(*) as runs, sum(missing) as lines from incomplete_run group by station;

-- What was rejected, and why?
select station, reason, count(*), max(received)::date as last from rejected group by 1, 2;
