"""The machine-read reports of real runs, against their schemas and against each other."""
import functools
import json
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree

import jsonschema

from program import RESULTS, ROOT, SCENARIOS, VERIFICATION, ProgramTest

SCHEMAS = ROOT / "docs" / "schemas"
# A letter, an escape sequence, a line end, markup, the end of a CDATA section.
HOSTILE = b'A\x1b[2J\n<b>"&]]>'


@functools.cache
def report_schema():
    schema = json.loads((SCHEMAS / "report.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


class Reports(ProgramTest):
    def run_with_reports(self, *settings, scenario=None):
        """Runs the verification test; returns the Run, the JSON report and the root of the XML."""
        arguments = [argument for setting in settings for argument in ("--set", setting)]
        run = self.run_program("run", VERIFICATION, *arguments, "--json", "report.json",
                               "--junit", "report.xml", scenario=scenario)
        report = self.read_json("report.json")
        self.assertEqual([error.message for error in report_schema().iter_errors(report)], [])
        checked = subprocess.run(
            ["xmllint", "--noout", "--nonet", "--schema", SCHEMAS / "junit.xsd",
             self.folder / "report.xml"], capture_output=True, text=True, check=False)
        self.assertEqual(checked.returncode, 0, checked.stderr)
        return run, report, ElementTree.parse(self.folder / "report.xml").getroot()

    def only_case(self, root, **counts):
        """The one case of a report with these counts."""
        counts = {"tests": 1, "failures": 0, "errors": 0, "skipped": 0, **counts}
        for element in (root, root.find("testsuite")):
            self.assertEqual({name: int(element.get(name)) for name in counts}, counts)
        cases = root.findall("testsuite/testcase")
        self.assertEqual(len(cases), 1)
        self.assertEqual(cases[0].get("classname"), f"mrlrantenna.{VERIFICATION}")
        return cases[0]

    @staticmethod
    def properties(case):
        return {element.get("name"): element.get("value")
                for element in case.findall("properties/property")}

    def bench(self, signal):
        return self.write("scenario.json", {"interfaces": [{"accessPoints": [
            {"ssid": "Bench AP", "signal": signal},
            {"ssidHex": HOSTILE.hex(), "signal": 90}]}]})

    def test_a_pass_has_the_number_its_limits_and_every_visible_network(self):
        run, report, root = self.run_with_reports(
            "SSID=Bench AP", "WarningSignalStrength=40", "FailingSignalStrength=20",
            scenario=self.bench(60))
        self.assertEqual(run.exit, RESULTS["PASS"], run)
        result = report["results"][0]
        self.assertEqual(result["measurements"], [{
            "name": "DetectedSignalStrength", "value": 60, "unit": "%", "lowest": 0, "highest": 100,
            "limits": [{"name": "WarningSignalStrength", "value": 40, "severity": "warning"},
                       {"name": "FailingSignalStrength", "value": 20, "severity": "error"}],
            "brokenLimit": None}])
        case = self.only_case(root)
        self.assertEqual(case.get("name"), f"{VERIFICATION}[{result['device']['name']}]")
        self.assertEqual(float(case.get("time")), result["seconds"])
        properties = self.properties(case)
        self.assertEqual(properties["result"], "PASS")
        self.assertEqual(properties["parameter.SSID"], "Bench AP")
        self.assertEqual(properties["measurement.DetectedSignalStrength"], "60")
        self.assertEqual(properties["device.wlanAPISupported"], "true")
        self.assertIn("Signal strength: 60 %", case.findtext("system-out"))
        self.assertIn('  90 %  A\\x1B[2J\\n<b>"&]]>', case.findtext("system-out"))

    def test_a_warning_passes_with_its_text_in_the_output(self):
        run, report, root = self.run_with_reports(
            "SSID=Bench AP", "WarningSignalStrength=40", "FailingSignalStrength=20",
            scenario=self.bench(30))
        self.assertEqual(run.exit, RESULTS["WARN"], run)
        case = self.only_case(root)
        self.assertEqual(self.properties(case)["result"], "WARN")
        self.assertIn("warning: " + report["results"][0]["events"][0]["text"],
                      case.findtext("system-out"))

    def test_a_weak_signal_is_a_failure_with_its_event(self):
        run, report, root = self.run_with_reports(
            "SSID=Bench AP", "FailingSignalStrength=30", scenario=self.bench(30))
        self.assertEqual(run.exit, RESULTS["FAIL"], run)
        failure = self.only_case(root, failures=1).find("failure")
        self.assertEqual(failure.get("type"), "FAILING_SIGNAL_STRENGTH_DETECTED")
        self.assertEqual(failure.get("message"), report["results"][0]["events"][0]["text"])
        self.assertIn("MRLrAntenna.cpp:282)", failure.text)

    def test_a_radio_that_is_off_is_skipped(self):
        run, _, root = self.run_with_reports("SSID=Lab", scenario=SCENARIOS / "radio-off.json")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        skipped = self.only_case(root, skipped=1).find("skipped")
        self.assertNotEqual(skipped.get("message"), "")

    def test_missing_parameters_are_an_error(self):
        run, _, root = self.run_with_reports()
        self.assertEqual(run.exit, RESULTS["BADPARAMS"], run)
        self.assertEqual(self.only_case(root, errors=1).find("error").get("type"), "SSID_NOT_SET")

    def test_a_pc_without_adapter_skips_the_test(self):
        run, report, root = self.run_with_reports("SSID=Lab",
                                                  scenario=SCENARIOS / "no-adapter.json")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertEqual(report["results"], [])
        self.assertEqual([test["test"] for test in report["withoutDevice"]], [VERIFICATION])
        case = self.only_case(root, skipped=1)
        self.assertEqual(case.get("name"), VERIFICATION)
        self.assertNotEqual(case.find("skipped").get("message"), "")

    def test_the_schemas_refuse_anything_but_a_report(self):
        self.assertNotEqual(list(report_schema().iter_errors({"schema": 1})), [])
        bad = self.write("bad.xml", "<testsuites name='x'/>")
        checked = subprocess.run(["xmllint", "--noout", "--schema", SCHEMAS / "junit.xsd", bad],
                                 capture_output=True, check=False)
        self.assertNotEqual(checked.returncode, 0)


if __name__ == "__main__":
    unittest.main()
