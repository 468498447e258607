-- The archive of a line of stations: the tables that gather.py fills, and views that answer
-- questions about them (docs/stations.md has the questions).
--
--     psql --set ON_ERROR_STOP=1 --single-transaction --dbname antenna --file archive.sql
--
-- Times are stored twice: `time` is the station's clock, `received` the gatherer's. A line whose
-- station's clock is more than five minutes ahead is marked, and `at`, which the views use, is then
-- the time of receipt. A line from the past is not marked: a station sends late what it measured
-- while the broker was away.
--
-- Texts come from outside. They are cut to 200 characters, and characters that PostgreSQL refuses
-- (NUL, halves of a surrogate pair) are replaced; the raw line has them in JSON's notation.

-- One row a run. It exists from the first line that arrives, whichever that is: what comes from
-- runStarted and runEnded is null until these lines are here.
create table run (
    run_identifier uuid primary key,
    station text not null,                -- the topic's level, for which the broker vouches
    first_received timestamptz not null,
    clock_ahead boolean not null default false,  -- some line of it came from the future
    -- from runStarted
    started timestamptz,
    module text,
    version text,
    build text,
    tags jsonb,                           -- {"serial": "A1", ...}
    pc jsonb,                             -- {"name": "...", "maker": "...", ...}
    limits jsonb,                         -- [{"name", "version", "sha256", "source"}, ...]
    calibration jsonb,
    -- from runEnded
    ended timestamptz,
    last_sequence integer,                -- number of lines that the run has
    exit smallint                         -- docs/command-line.md has the exit values
);
create index run_by_station on run (station, started);
create index run_by_serial on run ((tags ->> 'serial'));

-- One row a line, kept as it came. The primary key is what makes a repeated line harmless.
create table line (
    run_identifier uuid not null references run,
    sequence integer not null,
    type text not null,
    time timestamptz not null,
    received timestamptz not null,
    clock_ahead boolean not null,
    raw text not null,
    primary key (run_identifier, sequence)
);

-- One row a test of a run: from testStarted and testEnded, whichever is there.
create table test (
    run_identifier uuid not null references run,
    number integer not null,              -- 1 to the number of planned ones
    name text not null,
    device text not null,
    result text,                          -- PASS, WARN, FAIL, ...; null until testEnded
    seconds double precision,
    primary key (run_identifier, number)
);

-- One row a measurement.
create table measurement (
    run_identifier uuid not null references run,
    sequence integer not null,
    test integer not null,                -- test.number
    at timestamptz not null,
    name text not null,
    value double precision not null,
    unit text not null,
    lowest double precision,
    highest double precision,
    broken_limit text,
    limits jsonb,
    figures jsonb,
    primary key (run_identifier, sequence)
);
create index measurement_by_time on measurement (name, at);

-- Messages that are no lines of a run, with the reason: the last 1,000 of each station, the first
-- 2,000 bytes of each, and what is not printable ASCII as \xHH.
create table rejected (
    id bigserial primary key,
    received timestamptz not null,
    station text not null,
    reason text not null,
    size integer not null,                -- of the whole message, in bytes
    beginning text not null
);
create index rejected_by_station on rejected (station, id);

-- The limits of a run in words, as a history shows them: "bench / 3 / 0a1b2c3d", the last being the
-- first digits of the SHA-256, so that two contents under one name and version show. Those of a
-- command line have no version.
create function limits_text(limits jsonb) returns text immutable language sql as $$
    select coalesce(string_agg(concat_ws(' / ', each ->> 'name', each ->> 'version',
                                         left(each ->> 'sha256', 8)), ', ' order by number), 'none')
    from jsonb_array_elements(limits) with ordinality as element (each, number)
$$;

-- Runs that have ended, as a history counts them: a unit is a serial number together with its part,
-- and a run without a serial number is a unit of its own. PASS, WARN and COMPLETED (the exit values
-- 0 and 1) are passes, all others are none.
create view judged_run as
select run_identifier, station, at, at::date as day, tags ->> 'serial' as serial,
       case when tags ? 'serial' then jsonb_build_array(tags -> 'part', tags -> 'serial')::text
            else run_identifier::text end as unit_key,
       limits_text(limits) as limits, exit, exit in (0, 1) as passed
from (select *, case when clock_ahead then first_received else started end as at from run) as timed
where exit is not null and at is not null;

-- Yield by station, limits and day, and in the rows without a day that of all days. Each row counts
-- from its own runs alone: `first_pass` are the units whose first run passed, `final` those whose
-- last run passed. The percentages are of the units, and cut, so that 100 means all.
create view yield as
select station, limits, day, count(*) as units, sum(runs) as runs,
       count(*) filter (where first_passed) as first_pass,
       count(*) filter (where last_passed) as final,
       trunc(100.0 * count(*) filter (where first_passed) / count(*), 1) as first_pass_percent,
       trunc(100.0 * count(*) filter (where last_passed) / count(*), 1) as final_percent
from (select station, limits, unit_key, period.day, count(*) as runs,
             (array_agg(passed order by at, run_identifier))[1] as first_passed,
             (array_agg(passed order by at desc, run_identifier desc))[1] as last_passed
      from judged_run cross join lateral (values (judged_run.day), (null)) as period (day)
      group by station, limits, unit_key, period.day) as tried
group by station, limits, day;

-- Measurements with the run that they belong to.
create view measured as
select run.station, measurement.at, measurement.at::date as day, run.tags ->> 'serial' as serial,
       test.name as test, test.device, measurement.name, measurement.value, measurement.unit,
       measurement.broken_limit, run.run_identifier
from measurement
join run on run.run_identifier = measurement.run_identifier
left join test on test.run_identifier = measurement.run_identifier
              and test.number = measurement.test;

-- Levels over time: each station and day.
create view level_by_day as
select station, name, unit, day, count(*) as measurements,
       round(percentile_cont(0.5) within group (order by value)::numeric, 2) as median,
       round(min(value)::numeric, 2) as lowest, round(max(value)::numeric, 2) as highest
from measured group by station, name, unit, day;

-- Drift of a station: the slope of its daily medians over its last 30 days, for 30 days; null with
-- one day only. `agreement` is the share of the medians' variance that the slope explains, 0 to 1.
create view station_drift as
select station, name, unit, count(*) as days,
       round((30 * regr_slope(median, day - date '2000-01-01'))::numeric, 2) as per_30_days,
       round(regr_r2(median, day - date '2000-01-01')::numeric, 2) as agreement
from (select *, max(day) over (partition by station, name, unit) as last_day
      from level_by_day) as recent
where day > last_day - 30
group by station, name, unit;

-- Comparison of stations, day by day: each station's median, and how far it is from the median of
-- all stations' medians of that day.
create view station_comparison as
select station, name, unit, day, measurements, median, round(of_all::numeric, 2) as of_all_stations,
       round((median - of_all)::numeric, 2) as difference
from level_by_day
join (select name, unit, day, percentile_cont(0.5) within group (order by median) as of_all
      from level_by_day group by name, unit, day) as together using (name, unit, day);

-- Limits in force: each station's, from when until when, and in how many runs.
create view limits_in_force as
select station, limits, min(at) as first_run, max(at) as last_run, count(*) as runs
from judged_run group by station, limits;

-- Runs with missing lines: what a station has to publish again from its record, or a run that was
-- broken off. `missing` is null when the end of the run is not here.
create view incomplete_run as
select run_identifier, station, first_received, count(line.sequence) as lines,
       last_sequence - count(line.sequence) as missing, started is null as without_start
from run left join line using (run_identifier)
group by run_identifier
having last_sequence is null or last_sequence <> count(line.sequence);
