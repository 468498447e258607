"""The machine-read reports of real runs, against their schemas and against each other."""
import functools
import json
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree

import jsonschema

import side_by_side
from program import RESULTS, ROOT, SCENARIOS, VERIFICATION, ProgramTest, settings

load_tests = side_by_side.load_tests

SCHEMAS = ROOT / "docs" / "schemas"
# A letter, an escape sequence, a line end, markup, the end of a CDATA section.
HOSTILE = b'A\x1b[2J\n<b>"&]]>'
FORCED_SCAN_SECONDS = 7


@functools.cache
def report_schema():
    schema = json.loads((SCHEMAS / "report.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def bench(signal):
    return {"interfaces": [{"accessPoints": [{"ssid": "Bench AP", "signal": signal},
                                             {"ssidHex": HOSTILE.hex(), "signal": 90}]}]}


class Reports(ProgramTest):
    def check_junit(self, path):
        return subprocess.run(
            ["xmllint", "--noout", "--nonet", "--schema", SCHEMAS / "junit.xsd", path],
            capture_output=True, text=True, check=False)

    def assert_reported(self, outcome, scenario, kind, **parameters):
        """Runs the verification test, whose one case must be of `kind` in JUnit's words; returns
        the Run, the JSON report and the case."""
        run = self.run_program("run", VERIFICATION, *settings(**parameters), "--json",
                               "report.json", "--junit", "report.xml", scenario=scenario)
        self.assertEqual(run.exit, RESULTS[outcome], run)
        report = self.read_json("report.json")
        self.assertEqual([error.message for error in report_schema().iter_errors(report)], [])
        self.assertEqual([result["result"] for result in report["results"]],
                         [] if report["withoutDevice"] else [outcome])
        checked = self.check_junit(self.folder / "report.xml")
        self.assertEqual(checked.returncode, 0, checked.stderr)
        root = ElementTree.parse(self.folder / "report.xml").getroot()
        for element in (root, root.find("testsuite")):
            counts = {name: int(element.get(name))
                      for name in ("tests", "failures", "errors", "skipped")}
            self.assertEqual({name for name, count in counts.items() if count}, {"tests", *kind})
        [case] = root.findall("testsuite/testcase")
        self.assertEqual(case.get("classname"), f"mrlrantenna.{VERIFICATION}")
        return run, report, case

    def test_a_pass_has_the_number_its_limits_and_every_visible_network(self):
        run, report, case = self.assert_reported(
            "PASS", bench(60), {}, SSID="Bench AP", WarningSignalStrength=40,
            FailingSignalStrength=20)
        for control in ("\x1b", "\r", "so far"):  # names, and the line that only terminals get
            self.assertNotIn(control, run.out + run.err)
        result = report["results"][0]
        self.assertGreaterEqual(result["seconds"], FORCED_SCAN_SECONDS)
        self.assertEqual(result["events"], [])
        self.assertEqual(result["measurements"], [{
            "name": "DetectedSignalStrength", "value": 60, "unit": "%", "lowest": 0, "highest": 100,
            "limits": [{"name": "WarningSignalStrength", "value": 40, "severity": "warning"},
                       {"name": "FailingSignalStrength", "value": 20, "severity": "error"}],
            "brokenLimit": None}])
        self.assertEqual(case.get("name"), f"{VERIFICATION}[{result['device']['name']}]")
        self.assertEqual(float(case.get("time")), result["seconds"])
        properties = {element.get("name"): element.get("value")
                      for element in case.findall("properties/property")}
        self.assertEqual(properties["result"], "PASS")
        self.assertEqual(properties["parameter.SSID"], "Bench AP")
        self.assertEqual(properties["measurement.DetectedSignalStrength"], "60")
        self.assertEqual(properties["device.wlanAPISupported"], "true")
        self.assertIn("Signal strength: 60%", case.findtext("system-out"))
        self.assertIn('  90%  A\\x1B[2J\\n<b>"&]]>', case.findtext("system-out"))

    def test_a_warning_passes_with_its_text_in_the_output(self):
        run, report, case = self.assert_reported(
            "WARN", bench(30), {}, SSID="bench ap", WarningSignalStrength=40,
            FailingSignalStrength=20)
        text = report["results"][0]["events"][0]["text"]
        self.assertIn("warning: " + text, case.findtext("system-out"))
        self.assertIn(text, run.out)

    def test_a_weak_signal_is_a_failure_with_its_event(self):
        _, report, case = self.assert_reported(
            "FAIL", bench(30), {"failures"}, SSID="Bench AP", FailingSignalStrength=30)
        failure = case.find("failure")
        self.assertEqual(failure.get("type"), "FAILING_SIGNAL_STRENGTH_DETECTED")
        self.assertEqual(failure.get("message"), report["results"][0]["events"][0]["text"])
        self.assertIn("MRLrAntenna.cpp:282)", failure.text)

    def test_a_radio_that_is_off_is_skipped(self):
        self.assert_reported("CANNOTRUN", SCENARIOS / "radio-off.json", {"skipped"}, SSID="Lab")

    def test_missing_parameters_are_an_error(self):
        self.assert_reported("BADPARAMS", None, {"errors"})

    def test_a_pc_without_adapter_skips_the_test(self):
        self.assert_reported("CANNOTRUN", SCENARIOS / "no-adapter.json", {"skipped"}, SSID="Lab")

    def test_the_schemas_refuse_anything_but_a_report(self):
        self.assertNotEqual(list(report_schema().iter_errors({"schema": 1})), [])
        self.assertNotEqual(
            self.check_junit(self.write("bad.xml", "<testsuites name='x'/>")).returncode, 0)


if __name__ == "__main__":
    unittest.main()
