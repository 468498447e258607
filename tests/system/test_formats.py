"""One run of each program writes every report and every open format at once, each as its schema
has it, and all of the same run."""
import functools
import json
import subprocess
import time
import unittest

import jsonschema

import side_by_side
from program import LIMIT_SECONDS, RESULTS, ROOT, SIGNAL, VERIFICATION, WRONG_USAGE, ProgramTest, settings

load_tests = side_by_side.load_tests

SCHEMAS = ROOT / "docs" / "schemas"
TAGS = {"serial": "A1", "part": "P-7", "revision": "C", "station": "L3-07", "operator": "Ann",
        "process": "42", "location": "Hall 3", "purpose": "Line"}


@functools.cache
def schema(name):
    content = json.loads((SCHEMAS / f"{name}.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(content)
    if name == "events":
        # Its lines contain parts of the report, whose schema is in the same folder.
        report = json.loads((SCHEMAS / "report.schema.json").read_text(encoding="utf-8"))
        content["$defs"]["report"] = {"$id": "report.schema.json", **report}
    return jsonschema.Draft202012Validator(content)


def tags(values):
    return [word for name, value in values.items() for word in ("--tag", f"{name}={value}")]


def lines_of(text):
    return [json.loads(line) for line in text.splitlines()]


class Formats(ProgramTest):
    def assert_fits(self, name, value):
        self.assertEqual([error.message for error in schema(name).iter_errors(value)], [], value)

    def run_with_everything(self, *arguments, scenario):
        run = self.run_program(
            "run", *arguments, "--events", "--json", "report.json", "--junit", "report.xml",
            "--html", "report.html", "--ocp", "run.jsonl", "--wsjf", "unit.json", "--openhtf",
            "record.json", *tags(TAGS), scenario=scenario)
        self.assertEqual(run.err, "")
        for event in lines_of(run.out):
            self.assert_fits("events", event)
        ocp = lines_of((self.folder / "run.jsonl").read_text(encoding="ascii"))
        for line in ocp:
            self.assert_fits("ocp", line)
        report, unit, record = (self.read_json(name)
                                for name in ("report.json", "unit.json", "record.json"))
        self.assert_fits("report", report)
        self.assert_fits("wsjf", unit)
        self.assert_fits("openhtf", record)
        junit = subprocess.run(["xmllint", "--noout", "--nonet", "--schema", SCHEMAS / "junit.xsd",
                                self.folder / "report.xml"], capture_output=True, text=True,
                               check=False)
        self.assertEqual(junit.returncode, 0, junit.stderr)
        self.assertTrue(TAGS["serial"] in (self.folder / "report.html").read_text(encoding="utf-8"))
        # All are about one run of one unit.
        begin = ocp[1]["testRunArtifact"]["testRunStart"]
        self.assertEqual(begin["dutInfo"]["dutInfoId"], TAGS["serial"])
        self.assertEqual({report["runIdentifier"], unit["id"], record["metadata"]["run_name"]},
                         {begin["metadata"]["runIdentifier"]})
        self.assertEqual({unit["sn"], record["dut_id"], report["tags"]["serial"]},
                         {TAGS["serial"]})
        return run, report, ocp, unit, record

    def messages(self, ocp, kind):
        return [line["testStepArtifact"][kind] for line in ocp
                if kind in line.get("testStepArtifact", {})]

    def test_of_the_signal_strength_are_all_of_one_run(self):
        scenario = {"interfaces": [{"accessPoints": [{"ssid": "Bench AP", "signal": 30},
                                                     {"ssidHex": "1b5b324a0a22", "signal": 9}]}]}
        run, report, ocp, unit, record = self.run_with_everything(
            VERIFICATION, *settings(SSID="Bench AP", WarningSignalStrength=40,
                                    FailingSignalStrength=20), scenario=scenario)
        self.assertEqual(run.exit, RESULTS["WARN"])
        [measurement] = self.messages(ocp, "measurement")
        self.assertEqual(measurement["value"], 30)
        self.assertEqual([(each["name"], each["value"]) for each in measurement["validators"]],
                         [("warn_limit", 40), ("fail_limit", 20)])
        [diagnosis] = self.messages(ocp, "diagnosis")
        self.assertEqual(diagnosis["verdict"],
                         "wireless-signal-strength-verification-test-marginal")
        self.assertEqual(diagnosis["message"], report["results"][0]["events"][0]["text"])
        self.assertEqual(ocp[-1]["testRunArtifact"],
                         {"testRunEnd": {"status": "COMPLETE", "result": "PASS"}})
        [step] = unit["root"]["steps"]
        self.assertEqual((unit["result"], step["steps"][0]["numericMeas"][0]["lowLimit"]), ("P", 20))
        [phase] = record["phases"]
        self.assertEqual(phase["measurements"]["DetectedSignalStrength"]["validators"],
                         ["20 < Marginal:40 < x"])
        self.assertTrue(record["marginal"])

    def test_of_a_level_have_its_readings(self):
        self.executable = SIGNAL
        scenario = {"interfaces": [{"accessPoints": [{"ssid": "Lab", "bss": [
            {"bssid": "02:00:00:00:01:00", "rssi": -63, "heardEveryMs": 100}]}]}]}
        run, report, ocp, unit, record = self.run_with_everything(
            *settings(SSID="Lab", FailingLevel=-60), scenario=scenario)
        self.assertEqual(run.exit, RESULTS["FAIL"])
        [series] = report["results"][0]["series"]
        points = [point["value"] for point in series["points"]]
        self.assertEqual([each["value"] for each in self.messages(ocp, "measurementSeriesElement")],
                         points)
        self.assertEqual(self.messages(ocp, "measurementSeriesEnd")[0]["totalCount"], len(points))
        [step] = unit["root"]["steps"]
        self.assertEqual([float(value) for value in
                          step["chart"]["series"][0]["ydata"].split(";")], points)
        self.assertEqual(step["steps"][0]["numericMeas"][0]["status"], "F")
        [phase] = record["phases"]
        self.assertEqual([value for _, value in
                          phase["measurements"][series["name"] + ".Series"]["measured_value"]],
                         points)
        self.assertEqual(record["outcome"], "FAIL")

    def test_of_a_run_that_was_killed_end_without_a_verdict(self):
        started = self.start_program("run", VERIFICATION, *settings(
            SSID="Lab", FailingSignalStrength=20), "--ocp", "run.jsonl", "--openhtf", "record.json")
        file = self.folder / "run.jsonl"
        end = time.monotonic() + LIMIT_SECONDS
        while not (file.exists() and "testStepStart" in file.read_text(encoding="ascii")):
            self.assertLess(time.monotonic(), end)
            time.sleep(0.1)
        started.process.kill()
        started.finish()
        text = file.read_text(encoding="ascii")
        for line in lines_of(text):
            self.assert_fits("ocp", line)
        self.assertNotIn("testRunEnd", text)
        self.assertFalse((self.folder / "record.json").exists())

    def test_name_a_missing_tag_before_anything_runs(self):
        given = {name: value for name, value in TAGS.items() if name not in ("part", "process")}
        run = self.run_program("run", VERIFICATION, *settings(SSID="Lab", FailingSignalStrength=20),
                               "--wsjf", "unit.json", *tags(given))
        self.assertEqual(run.exit, WRONG_USAGE)
        self.assertEqual(run.out, "")
        self.assertEqual(run.err, "mrlrantenna: --wsjf needs the tags part and process; give each "
                                  "with --tag, for example --tag part=VALUE; a replay has "
                                  "the tags of the captured run\n")


if __name__ == "__main__":
    unittest.main()
