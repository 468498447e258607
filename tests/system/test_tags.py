"""What names a run, from the command line to every report and every line of the stream."""
import json
import re
import unittest
import xml.etree.ElementTree as ElementTree

import jsonschema

import side_by_side
from program import ROOT, VERIFICATION, WRONG_USAGE, ProgramTest, settings
from test_host import line_validator

load_tests = side_by_side.load_tests

LAB = {"interfaces": [{"accessPoints": [{"ssid": "Lab", "signal": 72}]}]}
TO_PASS = ("run", VERIFICATION, *settings(SSID="Lab", FailingSignalStrength=20))
IDENTIFIER = re.compile(r"[0-9a-f]{8}-[0-9a-f]{4}-7[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}")


class Tags(ProgramTest):
    def run_station(self, *options, typed=""):
        return self.run_program(*TO_PASS, "--config", "station.toml", *options, scenario=LAB,
                                typed=typed)

    def setUp(self):
        super().setUp()
        self.write("station.toml", 'require-tags = ["serial", "station"]\n[tags]\n'
                   'station = "L3/07"\n[tag-patterns]\nserial = "[A-Z][0-9]{4}"\n')

    def test_name_a_run_in_every_report_and_line(self):
        run = self.run_station(
            "--tag", "serial=A1234", "--events", "--json", "reports/{station}/{serial}-{result}.json",
            "--junit", "r.xml", "--html", "r.html")
        self.assertEqual(run.exit, 0, run)
        report = self.read_json("reports/L3%2F07/A1234-PASS.json")
        schema = json.loads((ROOT / "docs" / "schemas" / "report.schema.json")
                            .read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator(schema).validate(report)
        self.assertRegex(report["runIdentifier"], IDENTIFIER)
        self.assertEqual(list(report)[:3], ["schema", "module", "runIdentifier"])
        self.assertEqual(report["tags"], {"serial": "A1234", "station": "L3/07"})
        [limits] = report["limits"]
        self.assertEqual((limits["name"], limits["source"]), (VERIFICATION, "commandLine"))
        # What Wine does not know is absent; a computer has a name.
        self.assertTrue(report["pc"]["name"])
        lines = [json.loads(line) for line in run.out.splitlines()]
        validator = line_validator()
        for line in lines:
            validator.validate(line)
            self.assertEqual(line["runIdentifier"], report["runIdentifier"])
        for member in ("tags", "pc", "limits"):
            self.assertEqual(lines[0][member], report[member])
        properties = {each.get("name"): each.get("value") for each in ElementTree.parse(
            self.folder / "r.xml").getroot().find("testsuite/properties")}
        self.assertEqual((properties["runIdentifier"], properties["tag.serial"],
                          properties["pc.name"], properties["limits.sha256"]),
                         (report["runIdentifier"], "A1234", report["pc"]["name"],
                          limits["sha256"]))
        page = (self.folder / "r.html").read_text(encoding="utf-8")
        for words in (report["runIdentifier"], "A1234", "L3/07", limits["sha256"]):
            self.assertIn(words, page)

    def test_are_asked_for_before_anything_runs(self):
        run = self.run_station("--tag-prompt", "serial", "--json", "r.json", typed="a\nB0007\r\n")
        self.assertEqual(run.exit, 0, run)
        self.assertIn("Tag serial:", run.err)
        self.assertIn("serial: B0007", run.out)
        self.assertEqual(self.read_json("r.json")["tags"],
                         {"station": "L3/07", "serial": "B0007"})

    def test_that_are_missing_or_wrong_end_the_run_before_it_begins(self):
        for options, typed, reason in (
                ((), "", "the tag serial is required"),
                (("--tag", "serial=x"), "", "does not match the pattern"),
                (("--tag", "serial=A1234", "--tag", "serial=A1235"), "", "more than once"),
                (("--tag-prompt", "serial"), "", "the input ended without an answer"),
                (("--tag", "serial=A1234", "--json", "{batch}.json"), "", "{batch}")):
            with self.subTest(options):
                run = self.run_station(*options, typed=typed)
                self.assertEqual((run.exit, run.out), (WRONG_USAGE, ""), run)
                self.assertIn(reason, run.err)

    def test_and_pc_are_those_of_the_capture_in_a_replay(self):
        run = self.run_station("--tag", "serial=A1234", "--capture", "c.jsonl", "--json", "a.json")
        self.assertEqual(run.exit, 0, run)
        replayed = self.run_program("replay", "c.jsonl", "--json", "{serial}.json")
        self.assertEqual((replayed.exit, replayed.out), (0, run.out), replayed)
        self.assertEqual((self.folder / "A1234.json").read_bytes(),
                         (self.folder / "a.json").read_bytes())

    def test_hidden_names_and_no_identity_leave_out_what_they_should(self):
        run = self.run_station("--tag", "serial=A1234", "--no-identity", "--json", "r.json",
                               "--capture", "c.jsonl", "--capture-names", "hidden")
        self.assertEqual(run.exit, 0, run)
        self.assertNotIn("pc", self.read_json("r.json"))
        self.assertNotIn("A1234", (self.folder / "c.jsonl").read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
