"""The archive of a line of stations: gather.py between a real broker and a real database, with
everything that may come; and the small form of tools/fleet, in which each part is killed once."""
import json
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import unittest

from program import ROOT, SIGNAL, Started, environment, settings
from test_host import line_validator
FLEET = ROOT / "tools" / "fleet"
sys.path.insert(0, str(FLEET))
import compare
import events
from parts import PYTHON, EXAMPLES, Broker, Database, Gatherer, wait_until

USERS = {"bench-1": "one", "bench-2": "two", "gatherer": "of the gatherer"}
DAY = 86400
START = 1_795_000_000  # 18 November 2026
RUN_SECONDS = 10
STATIONS = 20
RUNS = 4
WRONG_TYPE = "is missing or of a wrong type"
LIMITS = {"name": "bench", "version": "3", "sha256": "0a1b2c3d" * 8, "source": "file"}


def new_run(seconds=START):
    return events.identifier(seconds)


def line(run, sequence, kind, seconds=START, /, **members):
    return json.dumps({"type": kind, "sequence": sequence, "time": events.time_text(seconds),
                       "runIdentifier": run, **members}, separators=(",", ":")).encode()


def whole_run(serial=None, value=0, level=-50.0, seconds=START, limits=None, **tags):
    """The lines of a run with one test and one measurement."""
    run = new_run(seconds)
    members = {"tags": {"serial": serial, **tags}} if serial else {}
    if limits:
        members["limits"] = [limits]
    test = {"test": "SignalLevelTest", "device": {"name": "Adapter", "properties": {}}}
    return [line(run, 1, "runStarted", seconds, protocol=1,
                 module={"name": "mrlrsignal", "version": "6.5", "build": "1"}, **members),
            line(run, 2, "testStarted", seconds, run=1, **test),
            line(run, 3, "measurement", seconds, run=1,
                 measurement={"name": "Level", "value": level, "unit": "dBm", "lowest": -110,
                              "highest": -10, "limits": [], "brokenLimit": None}),
            line(run, 4, "testEnded", seconds + RUN_SECONDS, run=1,
                 result={**test, "result": ("PASS", "WARN", "FAIL")[min(value, 2)],
                         "seconds": 9.5}),
            line(run, 5, "runEnded", seconds + RUN_SECONDS, exit=value,
                 ended=events.time_text(seconds + RUN_SECONDS))]


def run_of(lines):
    return json.loads(lines[0])["runIdentifier"]


class Archive(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.database = Database(cls.folder, fsync=False)
        cls.addClassCleanup(cls.database.remove)
        cls.addClassCleanup(cls.database.stop)
        cls.broker = Broker(cls.folder, USERS)
        cls.addClassCleanup(cls.broker.stop)
        cls.gatherer = Gatherer(cls.folder, cls.broker, cls.database, USERS["gatherer"])
        cls.addClassCleanup(cls.gatherer.stop)
        for part in (cls.database, cls.broker):
            part.start()
        cls.database.make_archive()
        cls.gatherer.start()

    def setUp(self):
        self.query("truncate run, line, test, measurement, rejected")

    def query(self, statement):
        return self.database.query(statement)

    def client(self, station, *options, **more):
        return subprocess.run(
            ["mosquitto_pub", "-h", "localhost", "-p", str(self.broker.port), "--cafile",
             self.broker.cafile, "-u", station, "-P", USERS[station], "-q", "1", "-t",
             f"antenna/{station}/events", *options], check=True, **more)

    def publish(self, *lines, station="bench-1"):
        """Publishes lines and waits until the archive has them, or has rejected them."""
        last = line(new_run(), 1, "last")
        self.client(station, "-l", input=b"\n".join([*lines, last]))
        run = run_of([last])
        wait_until(lambda: self.query(f"select 1 from line where run_identifier = '{run}'"),
                   "the last line")
        self.query(f"""delete from line where run_identifier = '{run}';
                       delete from run where run_identifier = '{run}'""")

    def rejected(self):
        return self.query("select station, reason from rejected order by id")

    def lines_of(self, run):
        return [text for text, in self.query(
            f"select raw from line where run_identifier = '{run}' order by sequence")]

    def test_has_a_row_for_a_run_its_lines_its_test_and_its_measurement(self):
        lines = whole_run("A1", value=1, level=-61.5, limits=LIMITS)
        self.publish(*lines)
        run = run_of(lines)
        self.assertEqual(self.lines_of(run), [each.decode() for each in lines])
        self.assertEqual(self.query(
            "select run_identifier, station, started, ended, exit, last_sequence, module, version,"
            " tags ->> 'serial', limits_text(limits), clock_ahead from run"),
            [[run, "bench-1", "2026-11-18 11:06:40+00", "2026-11-18 11:06:50+00", "1", "5",
              "mrlrsignal", "6.5", "A1", "bench / 3 / 0a1b2c3d", "f"]])
        self.assertEqual(self.query("select number, name, device, result, seconds from test"),
                         [["1", "SignalLevelTest", "Adapter", "WARN", "9.5"]])
        self.assertEqual(self.query(
            "select sequence, test, name, value, unit, lowest, highest, at from measurement"),
            [["3", "1", "Level", "-61.5", "dBm", "-110", "-10", "2026-11-18 11:06:40+00"]])
        self.assertEqual(self.rejected(), [])

    def test_names_limits_that_have_no_version(self):
        own = {"name": "SignalLevelTest", "sha256": "5e" * 32, "source": "commandLine"}
        self.publish(*whole_run("A1", limits=own))
        self.assertEqual(self.query("select limits from judged_run"),
                         [["SignalLevelTest / 5e5e5e5e"]])

    def test_has_what_a_program_says(self):
        # A real program, as its host runs it: everything it says is a line for the archive.
        with tempfile.NamedTemporaryFile("w", suffix=".json") as scenario:
            json.dump({"interfaces": [{"accessPoints": [
                {"ssid": "Lab", "bss": [{"rssi": -55}]}]}]}, scenario)
            scenario.flush()
            run = Started(["run", "--events", *settings(SSID="Lab", FailingLevel=-70, Samples=5)],
                          self.folder, environment(scenario.name), SIGNAL).finish()
        lines = run.out.encode().splitlines()
        self.publish(*lines)
        self.assertEqual(self.rejected(), [])
        self.assertEqual(self.query("select count(*) from line"), [[str(len(lines))]])
        self.assertEqual(
            self.query("""select passed, name, value, unit, test from judged_run
                          join measured using (run_identifier)"""),
            [["t", "Level", "-55", "dBm", "SignalLevelTest"]])
        self.assertEqual(self.query("select * from incomplete_run"), [])

    def test_is_the_same_whatever_the_order(self):
        lines = whole_run("A1")
        self.publish(*reversed(lines))
        self.assertEqual(self.lines_of(run_of(lines)), [each.decode() for each in lines])
        self.assertEqual(self.query("""select serial, exit, passed, device, value from judged_run
                                       join measured using (run_identifier, serial)"""),
                         [["A1", "0", "t", "Adapter", "-50"]])

    def test_keeps_a_repeated_line_once(self):
        lines = whole_run("A1")
        self.publish(*lines, *lines)
        self.publish(*lines, lines[2])
        self.assertEqual(self.query("""select (select count(*) from run),
            (select count(*) from line), (select count(*) from test),
            (select count(*) from measurement), (select count(*) from rejected)"""),
                         [["1", "5", "1", "1", "0"]])

    def test_rejects_another_line_under_a_number_that_it_has(self):
        run = new_run()
        one, other = line(run, 2, "one"), line(run, 2, "other")
        self.publish(one, other)
        self.publish(other)
        self.assertEqual(self.lines_of(run), [one.decode()])
        self.assertEqual(self.rejected(),
                         [["bench-1", "another line of this run has the same sequence"]] * 2)

    def test_rejects_lines_of_another_stations_run(self):
        lines = whole_run("A1")
        self.publish(*lines[:2])
        self.publish(lines[4], station="bench-2")
        self.publish(*lines[2:4])
        self.assertEqual(self.query("select station, exit from run"), [["bench-1", ""]])
        self.assertEqual(self.rejected(), [["bench-2", "the run is another station's"]])

    def test_takes_a_run_without_its_start(self):
        lines = whole_run("A1")
        self.publish(*lines[1:])
        self.assertEqual(self.query("select exit, started from run"), [["0", ""]])
        self.assertEqual(self.query("select missing, without_start from incomplete_run"),
                         [["1", "t"]])
        self.publish(lines[0])
        self.assertEqual(self.query("select * from incomplete_run"), [])

    def test_shows_a_run_without_its_end(self):
        lines = whole_run("A1")
        self.publish(*lines[:4])
        self.assertEqual(self.query("select station, lines, missing from incomplete_run"),
                         [["bench-1", "4", ""]])
        self.assertEqual(self.query("select * from judged_run"), [])

    def test_marks_lines_from_the_future_and_takes_the_time_of_receipt(self):
        self.publish(*whole_run("A1", seconds=START + 100 * 365 * DAY))
        self.publish(*whole_run("A2", seconds=0))
        self.assertEqual(self.query("""select tags ->> 'serial', clock_ahead, started::date from run
                                       order by 1"""),
                         [["A1", "t", "2126-10-25"], ["A2", "f", "1970-01-01"]])
        self.assertEqual(self.query("select count(*) from line where clock_ahead"), [["5"]])
        for view in ("judged_run", "measured"):
            self.assertEqual(self.query(f"select day = current_date from {view} order by serial"),
                             [["t"], ["f"]], view)

    def test_rejects_what_is_no_line_with_the_reason(self):
        run = new_run()
        good = json.loads(line(run, 1, "x"))
        cases = {
            b"hello": "no JSON: ",
            b'{"type":': "no JSON: ",
            b"[" * 100000: "no JSON: ",
            b"1" * 5000: "no JSON: ",
            b"[]": "no JSON object",
            b"\xff\xfe": "no UTF-8",
            b'{"a":NaN}': "NaN is no number of JSON",
            json.dumps({key: value for key, value in good.items() if key != "runIdentifier"}
                       ).encode(): "runIdentifier is missing: the station's program is too old",
        }
        changes = {
            "runIdentifier": {run.upper(): "is no UUID of version 7", "\0": "is no UUID",
                              "01a2-": "is no UUID", 7: WRONG_TYPE,
                              run[:14] + "4" + run[15:]: "is no UUID of version 7"},
            "sequence": {0: "is not between", 2 ** 31: "is not between", "1": WRONG_TYPE,
                         True: WRONG_TYPE, 1.5: WRONG_TYPE},
            "time": {"2026-11-20": "is no time", "2026-13-20T19:55:01.123Z": "is no time",
                     "0000-01-01T00:00:00.000Z": "is no time", 5: WRONG_TYPE},
            "type": {7: WRONG_TYPE}}
        for name, values in changes.items():
            for value, reason in values.items():
                cases[json.dumps({**good, name: value}).encode()] = f"{name} {reason}"
        for kind, members, reason in (
                ("runStarted", {"protocol": 2}, "protocol is not 1"),
                ("runStarted", {"protocol": 1}, "module is missing"),
                ("runStarted", {"protocol": 1, "module": {"name": "m"}}, "version is missing"),
                ("runStarted", {"protocol": 1, "tags": {"serial": 5},
                                "module": {"name": "m", "version": "1", "build": "1"}},
                 "tags is no object of texts"),
                ("runStarted", {"protocol": 1, "limits": [5],
                                "module": {"name": "m", "version": "1", "build": "1"}},
                 "limits is no list of objects"),
                ("runEnded", {"exit": 256}, "ended is missing"),
                ("runEnded", {"exit": 256, "ended": good["time"]}, "exit is not between"),
                ("testStarted", {"run": 1, "test": "t", "device": "d"}, "device is missing or"),
                ("testEnded", {"run": 1, "result": {}}, "result is missing or"),
                ("measurement", {"run": 1, "measurement": {"name": "Level", "value": None}},
                 "value is missing")):
            cases[json.dumps({**good, "type": kind, **members}).encode()] = reason
        cases[b'{"type":"measurement","run":1,"measurement":{"name":"Level","value":1e999,'
              b'"unit":"dBm"},' + json.dumps(good).encode()[len('{"type": "x", '):]
              ] = "value is too large"
        self.publish(*cases)
        self.assertEqual(self.query("select count(*) from line"), [["0"]])
        found = self.rejected()
        self.assertEqual(len(found), len(cases))
        for (station, reason), (case, expected) in zip(found, cases.items()):
            self.assertEqual(station, "bench-1")
            self.assertIn(expected, reason, case[:200])

    def test_takes_texts_that_the_database_does_not(self):
        hostile = "\0\ud800'; drop table run; --\u202e" + "x" * 5000
        run = new_run()
        device = {"name": hostile, "properties": {}}
        self.publish(
            line(run, 1, "runStarted", protocol=1, tags={hostile: hostile}, pc={"name": hostile},
                 module={"name": hostile, "version": hostile, "build": hostile},
                 limits=[{"name": hostile, "version": 5, "sha256": None, "deep": [[hostile]]}],
                 calibration={hostile: [hostile]}),
            line(run, 2, hostile),
            line(run, 3, "testStarted", run=1, test=hostile, device=device),
            line(run, 4, "measurement", run=1,
                 measurement={"name": hostile, "value": 1, "unit": hostile, "brokenLimit": hostile,
                              "limits": [hostile], "figures": [{hostile: hostile}]}))
        self.assertEqual(self.rejected(), [])
        self.assertEqual(len(self.lines_of(run)), 4)
        self.assertIn(r"\u0000\ud800", self.lines_of(run)[1])
        cleaned = "\ufffd?'; drop table run; --\u202e"
        for column, table in (("device", "test"), ("name", "measurement"), ("module", "run"),
                              ("pc ->> 'name'", "run")):
            [[text]] = self.query(f"select {column} from {table}")
            self.assertEqual((text[:len(cleaned)], len(text)), (cleaned, 200), column)
        self.assertEqual(self.query("select count(*) from limits_in_force"), [["0"]])

    def test_takes_two_statements_on_one_test(self):
        lines = whole_run("A1")
        run = run_of(lines)
        again = json.loads(lines[3])
        again |= {"sequence": 6, "result": {**again["result"], "result": "FAIL"}}
        self.publish(*lines, json.dumps(again).encode(), line(run, 7, "runStarted", protocol=1))
        self.assertEqual(self.query("select result from test"), [["FAIL"]])
        self.assertEqual(self.rejected(), [["bench-1", "sequence of runStarted is not 1"]])

    def test_rejects_one_line_that_the_database_refuses_and_keeps_the_others(self):
        self.query("alter table measurement add constraint trial check (value < 100)")
        self.addCleanup(self.query, "alter table measurement drop constraint trial")
        first, second, third = (whole_run(level=level) for level in (-50, 1000, -60))
        self.publish(*first, *second, *third)
        self.assertEqual(self.query("select value from measurement order by 1"), [["-60"], ["-50"]])
        self.assertEqual(self.query("select count(*) from line"), [["14"]])
        [[_, reason]] = self.query("select station, replace(reason, E'\\n', ' ') from rejected")
        self.assertIn('violates check constraint "trial"', reason)

    def test_drops_lines_of_hostile_size_at_the_broker_and_bounds_what_it_keeps_of_others(self):
        run = new_run()
        large = line(run, 1, "large", text="x" * 900_000)
        self.publish(large)
        self.assertEqual(self.lines_of(run), [large.decode()])
        self.client("bench-1", "-s", input=line(run, 2, "too large", text="x" * 1_100_000))
        self.client("bench-1", "-s", input=b"\0" * 900_000)
        self.publish()
        self.assertEqual(len(self.lines_of(run)), 1)
        [[reason, size, beginning]] = self.query("select reason, size, beginning from rejected")
        self.assertIn("no JSON", reason)
        self.assertEqual((size, beginning), ("900000", "\\x00" * 2000))

    def test_keeps_the_last_rejected_lines_of_each_station(self):
        self.publish(b"other", station="bench-2")
        self.publish(*(f"bad {number}".encode() for number in range(2500)))
        self.assertEqual(self.query("""select station, count(*), min(beginning), max(beginning)
                                       from rejected group by station order by station"""),
                         [["bench-1", "1000", "bad 1500", "bad 2499"],
                          ["bench-2", "1", "other", "other"]])

    def test_goes_on_after_the_database_was_away(self):
        lines = whole_run("A1")
        self.publish(*lines[:2])
        self.database.kill()
        self.client("bench-1", "-l", input=b"\n".join(lines[2:4]))
        self.database.start()
        self.publish(lines[4])
        self.assertEqual(len(self.lines_of(run_of(lines))), 5)

    def test_has_views_for_yield_limits_and_levels(self):
        # Unit A1 fails and passes a day later, A2 passes with a warning, A3 never passes; a unit
        # without a serial number passes; A4's run is broken off; a second A2 is of another part.
        other = {**LIMITS, "version": "4"}
        runs = [("A1", 2, -70, 0), ("A1", 0, -50, 1), ("A2", 1, -58, 0), ("A3", 2, -71, 0),
                ("A3", 2, -72, 0), (None, 0, -52, 0), ("A4", 6, -50, 0)]
        for number, (serial, value, level, day) in enumerate(runs):
            self.publish(*whole_run(serial, value, level, START + day * DAY + number, LIMITS))
        self.publish(*whole_run("A1", 0, -50, START + 2 * DAY, other))
        self.publish(*whole_run("A2", 0, -50, START + 2 * DAY, other))
        self.publish(*whole_run("A2", 2, -50, START + 2 * DAY + 1, other, part="P2"))
        for day in range(3):
            self.publish(*whole_run("A1", 0, -48 - 2 * day, START + day * DAY),
                         station="bench-2")
        bench_3, bench_4 = "bench / 3 / 0a1b2c3d", "bench / 4 / 0a1b2c3d"
        days = "2026-11-18", "2026-11-19", "2026-11-20"
        self.assertEqual(
            self.query("""select station, limits, day, units, runs, first_pass, final,
                                 first_pass_percent, final_percent from yield order by 1, 2, 3"""),
            [["bench-1", bench_3, days[0], "5", "6", "2", "2", "40.0", "40.0"],
             ["bench-1", bench_3, days[1], "1", "1", "1", "1", "100.0", "100.0"],
             ["bench-1", bench_3, "", "5", "7", "2", "3", "40.0", "60.0"],
             ["bench-1", bench_4, days[2], "3", "3", "2", "2", "66.6", "66.6"],
             ["bench-1", bench_4, "", "3", "3", "2", "2", "66.6", "66.6"],
             *(["bench-2", "none", day, "1", "1", "1", "1", "100.0", "100.0"] for day in days),
             ["bench-2", "none", "", "1", "3", "1", "1", "100.0", "100.0"]])
        self.assertEqual(
            self.query("""select station, limits, first_run::date, last_run::date, runs
                          from limits_in_force order by station, first_run"""),
            [["bench-1", bench_3, "2026-11-18", "2026-11-19", "7"],
             ["bench-1", bench_4, "2026-11-20", "2026-11-20", "3"],
             ["bench-2", "none", "2026-11-18", "2026-11-20", "3"]])
        self.assertEqual(
            self.query("""select day, measurements, median, lowest, highest from level_by_day
                          where station = 'bench-1' order by day"""),
            [["2026-11-18", "6", "-64.00", "-72.00", "-50.00"],
             ["2026-11-19", "1", "-50.00", "-50.00", "-50.00"],
             ["2026-11-20", "3", "-50.00", "-50.00", "-50.00"]])
        self.assertEqual(
            self.query("""select days, per_30_days, agreement from station_drift
                          where station = 'bench-2'"""), [["3", "-60.00", "1.00"]])
        self.assertEqual(
            self.query("""select station, median, of_all_stations, difference
                          from station_comparison where day = '2026-11-18' order by station"""),
            [["bench-1", "-64.00", "-56.00", "-8.00"], ["bench-2", "-48.00", "-56.00", "8.00"]])


class Options(unittest.TestCase):
    def test_of_the_gatherer_are_refused_with_one_line_when_they_are_wrong(self):
        for options in ((), ("--database", "x", "--port", "y"),
                        ("--database", "x", "--password-file", "/none")):
            run = subprocess.run([PYTHON, EXAMPLES / "gather.py", *options], capture_output=True,
                                 stdin=subprocess.DEVNULL, check=False)
            self.assertEqual((run.returncode, run.stderr.count(b"\n")), (64, 1), run)


class Comparison(unittest.TestCase):
    """What tools/fleet finds is worth as much as its comparison."""

    def setUp(self):
        self.lines = [each.decode() for number in range(3) for each in whole_run(f"A{number}")]
        self.archived = [(*compare.key_of(each), each) for each in self.lines]
        self.runs = [(run_of(self.lines[first:]), 0, 5, 1) for first in (0, 5, 10)]

    def wrong(self):
        return (compare.differences(self.lines, self.archived)
                + compare.differences_of_runs(self.lines, self.runs))

    def test_finds_nothing_in_an_archive_that_is_the_record_in_any_order(self):
        self.archived.reverse()
        self.assertEqual(self.wrong(), [])

    def test_finds_what_is_missing_changed_twice_and_foreign(self):
        for change, what in (
                (lambda: self.archived.pop(7), "1 lines are missing"),
                (lambda: self.archived.append(self.archived[7]), "twice in the archive"),
                (lambda: self.archived.append((new_run(), 1, "x")), "not in a record"),
                (lambda: self.archived.__setitem__(7, (*self.archived[7][:2], "x")), "different"),
                (lambda: self.runs.pop(), "3 runs were finished, the archive has 2"),
                (lambda: self.runs.append(self.runs[0]), "the archive has 4"),
                (lambda: self.runs.__setitem__(0, (*self.runs[0][:3], 2)), "different: ")):
            self.setUp()
            change()
            found = self.wrong()
            self.assertEqual(len(found), 1, what)
            self.assertIn(what, found[0])

    def test_leaves_out_a_line_that_was_cut_off(self):
        with tempfile.NamedTemporaryFile() as record:
            record.write(b'{"a":1}\n{"b":')
            record.flush()
            self.assertEqual(list(compare.recorded_lines([record.name])), ['{"a":1}'])


class Fleet(unittest.TestCase):
    def test_of_twenty_stations_loses_nothing_when_each_part_is_killed_once(self):
        run = subprocess.run(
            [FLEET / "fleet", "--stations", str(STATIONS), "--runs", str(RUNS), "--per-process",
             "5", "--interval", "1", "--kills", "4", "--away", "0.5", "--autosave", "1",
             "--settle", "3", "--without-fsync"], capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        figures = dict(re.findall(r"^\| (.+?) \| (.+?) \|$", run.stdout, re.MULTILINE))
        self.assertEqual(figures["runs that were finished"], str(STATIONS * RUNS))
        self.assertEqual([figures[f"kills of {part}"]
                          for part in ("stations", "broker", "gatherer", "database")], ["1"] * 4)
        self.assertIn("every line of every station is in the archive once", run.stdout)

    def test_has_lines_as_the_programs_write_them(self):
        validator = line_validator()
        bench = events.Bench("station-0001", random.Random(1))
        for _ in range(50):
            lines = [json.loads(each) for each in bench.run(0.4, 3)]
            for each in lines:
                validator.validate(each)
            self.assertEqual([each["sequence"] for each in lines],
                             list(range(1, events.LINES + 1)))


if __name__ == "__main__":
    unittest.main()
