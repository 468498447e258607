"""The stream of events as a host reads it, and the example host that reads it."""
import json
import os
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import jsonschema

import side_by_side
from program import (EXECUTABLE, LIMIT_SECONDS, OUTPUT_LOST, ROOT, SCENARIOS, VERIFICATION, WRONG_USAGE,
                     ProgramTest, environment, settings)

load_tests = side_by_side.load_tests

HOST = ROOT / "examples" / "host" / "host.py"
SCHEMA = ROOT / "docs" / "schemas" / "events.schema.json"
TO_PASS = settings(SSID="Lab", FailingSignalStrength=20)
INTO_THE_PAUSE_SECONDS = 1


def line_validator():
    schema = json.loads(SCHEMA.read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    # The lines contain parts of the report, whose schema is in the same folder.
    report = json.loads((SCHEMA.parent / "report.schema.json").read_text(encoding="utf-8"))
    schema["$defs"]["report"] = {"$id": "report.schema.json", **report}
    return jsonschema.Draft202012Validator(schema)


def two_cards(signal_of_lab):
    return {"interfaces": [
        {"guid": f"00000000-0000-0000-0000-00000000000{number}", "description": f"Card {number}",
         "accessPoints": [{"ssid": "Lab", "signal": signal_of_lab}]} for number in (1, 2)]}


class Page(unittest.TestCase):
    def test_describes_every_type_and_member_of_the_schema(self):
        page = (ROOT / "docs" / "hosts.md").read_text(encoding="utf-8")
        schema = json.loads(SCHEMA.read_text(encoding="utf-8"))
        rows = {line.split("`")[1]: line for line in page.splitlines() if line.startswith("| `")}
        for kind in schema["oneOf"]:
            row = rows[kind["properties"]["type"]["const"]]
            for member in kind.get("required", ()):
                with self.subTest(row, member=member):
                    self.assertIn(f"`{member}`", row)


class Stream(ProgramTest):
    def assert_is_a_stream(self, text):
        """Checks every line; returns them parsed."""
        self.assertTrue(text.isascii(), text)
        self.assertTrue(text.endswith("\n"), text)
        lines = [json.loads(line) for line in text.splitlines()]
        validator = line_validator()
        for number, line in enumerate(lines, 1):
            validator.validate(line)
            self.assertEqual(line["sequence"], number)
        return lines

    def types(self, lines):
        return [line["type"] for line in lines]

    def test_is_the_only_output_and_matches_its_schema(self):
        run = self.run_program("run", VERIFICATION, "--events", "--json", "report.json", *TO_PASS,
                               "--device", "Card 1", scenario=two_cards(12))
        self.assertEqual(run.exit, 2, run)
        self.assertEqual(run.err, "", "failures are reported on the stream")
        lines = self.assert_is_a_stream(run.out)
        types = self.types(lines)
        self.assertEqual(types[:3], ["runStarted", "testStarted", "progress"])
        self.assertEqual(types[-2:], ["testEnded", "runEnded"])
        for kind in ("event", "measurement", "survey"):
            self.assertEqual(types.count(kind), 1, types)
        self.assertEqual(lines[-1]["exit"], 2)
        self.assertEqual([lines[-2]["result"]], self.read_json("report.json")["results"])

    def interrupted(self):
        """Starts a run on two cards, and interrupts it in the pause of the first scan."""
        started = self.start_program("run", VERIFICATION, "--events", "--json", "report.json",
                                     *TO_PASS, scenario=two_cards(60))
        started.wait_until_it_says('"type":"progress"')
        self.assertIsNone(started.process.poll(), "the scan's pause has only begun")
        started.process.send_signal(signal.SIGINT)
        started.wait_until_it_says('"type":"stopping"')
        return started

    def test_is_written_while_the_test_runs_and_reports_the_first_interrupt(self):
        run = self.interrupted().finish()
        self.assertEqual(run.exit, 6, run)
        # The time of the pause and of the search, of which little has passed.
        self.assertRegex(run.err, r"\Amrlrantenna: stopping: the current test ends within [34]\d\ss, "
                         r"then the run; Ctrl\+C once more [^\n]*\n\Z")
        lines = self.assert_is_a_stream(run.out)
        self.assertEqual(self.types(lines).count("stopping"), 1)
        ended = [line for line in lines if line["type"] == "testEnded"]
        self.assertEqual([(line["called"], line["result"]["result"]) for line in ended],
                         [(True, "PASS"), (False, "USERABORTED")])
        self.assertEqual([line["result"] for line in ended],
                         self.read_json("report.json")["results"])

    def test_is_without_its_end_after_the_second_interrupt_which_leaves_no_report(self):
        started = self.interrupted()
        started.process.send_signal(signal.SIGINT)
        run = started.finish()
        self.assertEqual(run.exit, 6, run)
        self.assertEqual(self.types(self.assert_is_a_stream(run.out))[-1], "stopping")
        self.assertEqual(run.err.splitlines()[-1],
                         "mrlrantenna: ended by Ctrl+C: no report was written")
        self.assertEqual([path.name for path in self.folder.iterdir()], ["scenario.json"])

    def test_without_a_reader_changes_no_verdict_that_a_report_has(self):
        for report, wait_for, value in ((("--json", "a.json"), 1, 0), (("--json", "b.json"), 0, 0),
                                        ((), 0, OUTPUT_LOST)):
            with tempfile.TemporaryFile() as errors:
                process = subprocess.Popen(
                    ["wine", str(EXECUTABLE), "run", VERIFICATION, "--events", *report,
                     *TO_PASS], cwd=self.folder, env=environment(), stdin=subprocess.DEVNULL,
                    stdout=subprocess.PIPE, stderr=errors, start_new_session=True)
                try:
                    for _ in range(wait_for):
                        self.assertIn(b"runStarted", process.stdout.readline())
                    process.stdout.close()
                    self.assertEqual(process.wait(LIMIT_SECONDS), value)
                finally:
                    process.kill()
                    process.wait()
            for path in report[1:]:
                self.assertEqual(self.read_json(path)["exit"], 0)


# Replaces a module: writes the first two lines, then runs its last argument as Python code.
FAKE_MODULE = """
import json, sys, time
def say(**line):
    say.sequence += 1
    print(json.dumps({"sequence": say.sequence, "time": "", **line}), flush=True)
say.sequence = 0
say(type="runStarted", protocol=1, module={"name": "fake"}, planned=1, withoutDevice=[])
say(type="testStarted", run=1, test="T", interactive="person" in sys.argv[-1],
    device={"name": "D\\x1b[2J", "properties": {}}, parameters={})
exec(sys.argv[-1])
"""


class Host(ProgramTest):
    def host(self, jobs, *options, env=None):
        return subprocess.Popen(
            [sys.executable, str(HOST), str(self.write("jobs.json", jobs)), "--report",
             "gathered.json", *options], cwd=self.folder, env=env or environment(),
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            start_new_session=True)

    def finished(self, process):
        """Waits for the end of a host; returns its exit value and its output."""
        try:
            out, err = process.communicate(timeout=LIMIT_SECONDS)
        finally:
            process.kill()
            process.wait()
        self.assertEqual(err, b"")
        return process.returncode, out.decode("utf-8")

    def host_of_modules(self, jobs, scenario, *options):
        return self.host(jobs, "--module", str(EXECUTABLE), "--launcher", "wine", *options,
                         env=environment(self.scenario_file(scenario)))

    def host_of_fakes(self, *programs):
        (self.folder / "fake.py").write_text(FAKE_MODULE, encoding="utf-8")
        jobs = [{"name": f"job {number}", "arguments": [program]}
                for number, program in enumerate(programs, 1)]
        return self.finished(self.host(jobs, "--module", "fake.py", "--launcher", sys.executable,
                                       "--grace", "1"))

    def gathered(self):
        return self.read_json("gathered.json")

    def test_follows_two_modules_side_by_side_and_gathers_one_report(self):
        jobs = json.loads((HOST.parent / "jobs.json").read_text(encoding="utf-8"))
        jobs[1]["arguments"][-1] = "FailingSignalStrength=90"
        jobs[1]["arguments"][-3] = "WarningSignalStrength=95"
        begin = time.monotonic()
        exit_value, out = self.finished(
            self.host_of_modules(jobs, SCENARIOS / "two-adapters.json"))
        self.assertEqual(exit_value, 2, out)
        gathered = self.gathered()
        self.assertEqual([(job["name"], job["exit"], job["problem"]) for job in gathered["jobs"]],
                         [("built-in", 0, None), ("usb", 2, None)])
        for job, device in zip(gathered["jobs"], ("Built-in", "USB")):
            self.assertIn(device, job["results"][0]["device"]["name"])
            self.assertEqual(job["module"]["name"], "mrlrantenna")
        first, second = (job["results"][0]["started"] for job in gathered["jobs"])
        self.assertEqual(gathered["exit"], 2)
        self.assertLess(max(first, second),
                        min(event["time"] for event in gathered["jobs"][1]["results"][0]["events"]),
                        f"both ran at once, in {time.monotonic() - begin:.0f} s")
        self.assertRegex(out, r"usb +error: .*90")

    def test_passes_an_interrupt_on_and_ends_in_order(self):
        process = self.host_of_modules([{"name": "both", "arguments": [VERIFICATION, *TO_PASS]}],
                                       two_cards(60))
        self.addCleanup(process.kill)
        while b"Card 1" not in (line := process.stdout.readline()):
            self.assertNotEqual(line, b"", "the host ended too soon")
        time.sleep(INTO_THE_PAUSE_SECONDS)
        os.kill(process.pid, signal.SIGINT)
        exit_value, out = self.finished(process)
        self.assertEqual(exit_value, 6, out)
        self.assertIn("ends after the current test", out)
        self.assertEqual([result["result"] for result in self.gathered()["jobs"][0]["results"]],
                         ["PASS", "USERABORTED"])

    def test_distinguishes_wrong_usage_of_a_module_from_a_verdict(self):
        exit_value, out = self.finished(self.host_of_modules(
            [{"name": "typo", "arguments": ["--set", "SID=Lab"]}], None))
        self.assertEqual(exit_value, WRONG_USAGE, out)
        self.assertIn("SID", self.gathered()["jobs"][0]["problem"])

    def test_takes_an_incomplete_run_as_a_failure(self):
        exit_value, out = self.host_of_fakes(
            "pass",
            "say(type='broken', run=1, reason='oops')",
            "print('no line of the protocol', flush=True); time.sleep(60)",
            "say.sequence += 1; say(type='runEnded', exit=0)",
            "print('{\"type\":', end='')")
        self.assertEqual(exit_value, 8, out)
        self.assertEqual([job["exit"] for job in self.gathered()["jobs"]], [8] * 5)
        problems = [job["problem"] for job in self.gathered()["jobs"]]
        for problem, expected in zip(problems, ("ended in the middle", "broke down: oops",
                                                "protocol", "line 3 is missing",
                                                "ended in the middle")):
            self.assertIn(expected, problem)
        self.assertNotIn("\x1b", out)

    def test_ends_a_module_that_exceeds_its_time_and_waits_for_one_that_extends_it(self):
        exit_value, out = self.host_of_fakes(
            "import signal; signal.signal(signal.SIGINT, signal.SIG_IGN); time.sleep(60)",
            "say(type='progress', run=1, key='K', text='', longestSeconds=30); time.sleep(3); "
            "say(type='runEnded', run=1, exit=0)",
            "say(type='added later'); say(type='runEnded', exit=0)",
            "time.sleep(3)  # a person's doing\nsay(type='runEnded', exit=0)")
        self.assertEqual(exit_value, 8, out)
        self.assertEqual([(job["exit"], job["problem"]) for job in self.gathered()["jobs"]],
                         [(8, "took longer than it said"), (0, None), (0, None), (0, None)])

    def test_says_in_one_line_that_no_module_can_be_started(self):
        jobs = [{"name": name, "arguments": []} for name in ("a", "b")]
        (self.folder / "page.txt").write_text("no program", encoding="ascii")
        for program, words in (("absent.k5x", b"No such file or directory"),
                               ("./page.txt", b"Permission denied")):
            for options in (("--module", program), ("--module", "x", "--launcher", program)):
                with self.subTest(options):
                    process = self.host(jobs, *options)
                    out, err = process.communicate(timeout=LIMIT_SECONDS)
                    self.assertEqual((process.returncode, out), (127, b""))
                    self.assertEqual(
                        err, b"host: " + program.encode() + b" cannot be started: " + words + b"\n")

    def test_says_in_one_line_that_its_report_cannot_be_written(self):
        (self.folder / "gathered.json").mkdir()
        (self.folder / "fake.py").write_text(FAKE_MODULE, encoding="utf-8")
        for exit_value, worst in ((1, 8), (64, 64)):
            body = f"say(type='runEnded', exit={exit_value}); sys.exit({exit_value})"
            process = self.host([{"name": "a", "arguments": [body]}], "--module", "fake.py",
                                "--launcher", sys.executable)
            out, err = process.communicate(timeout=LIMIT_SECONDS)
            self.assertEqual(process.returncode, worst, err)
            self.assertIn(f"exit value {worst}\n".encode(), out)
            self.assertEqual(err.count(b"\n"), 1, err)
            self.assertIn(b"host: the report cannot be written: ", err)

    def test_refuses_malformed_jobs_and_wrong_usage(self):
        def assert_refused(words, jobs, *options):
            process = self.host(jobs, *options)
            _, err = process.communicate(timeout=LIMIT_SECONDS)
            self.assertEqual(process.returncode, WRONG_USAGE)
            self.assertIn(words, err)
        assert_refused(b"--module", [])
        for jobs in ([], {"name": "x"}, [{"name": "x"}], [{"name": "x", "arguments": [1]}]):
            assert_refused(b"cannot be used", jobs, "--module", "x")


if __name__ == "__main__":
    unittest.main()
