"""mrlrsignal with names that are meant to do harm, with files, and with a place it cannot write to."""
import html
import json
import re
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree

import jsonschema

from program import RESULTS, ROOT, SIGNAL, WRONG_USAGE, ProgramTest, settings

SCHEMAS = ROOT / "docs" / "schemas"
# An escape sequence, a line end, markup and the end of a CDATA section; a turned reading direction;
# ill-formed UTF-8; an element of a page, and no byte more than a name may have.
NAMES = (b'A\x1b[2J\n<b>"&]]>', "\u202eLab\u2028\u200b".encode("utf-8"), b"\xff\xfe\xc3(\x9b31m",
         b"</bdi><script>alert(2)</script>~")
# What nothing may show as it is: controls, and what turns or hides text.
UNSAFE = re.compile("[\x00-\x09\x0b-\x1f\x7f-\x9f\u200b-\u200f\u2028-\u202e\u2066-\u2069\ufeff]")


def on_the_air(*names):
    return {"interfaces": [{"accessPoints": [
        {"ssidHex": name.hex(), "bss": [{"bssid": f"02:00:00:00:01:{number:02x}",
                                         "rssi": -60 - number, "heardEveryMs": 100}]}
        for number, name in enumerate(names)]}]}


class SignalTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.executable = SIGNAL

    def assert_safe(self, *texts):
        for text in texts:
            self.assertNotRegex(text.replace("\r\n", "\n"), UNSAFE)


class HostileNames(SignalTest):
    def test_are_measured_and_do_nothing_on_the_console_and_in_reports(self):
        for name in NAMES:
            with self.subTest(name):
                run = self.run_program(
                    "run", *settings(SSID=f"hex:{name.hex()}", FailingLevel=-20),
                    *("--json", "r.json", "--junit", "r.xml", "--html", "r.html"),
                    scenario=on_the_air(*NAMES))
                self.assertEqual(run.exit, RESULTS["FAIL"], run)
                self.assert_safe(run.out, run.err)
                report = self.read_json("r.json")
                jsonschema.Draft202012Validator(json.loads(
                    (SCHEMAS / "report.schema.json").read_text(encoding="utf-8"))).validate(report)
                [event] = report["results"][0]["events"]
                self.assertEqual(event["key"], "LEVEL_BELOW_FAILING")
                self.assert_markup_is_text(name)

    def assert_markup_is_text(self, name):
        junit = self.folder / "r.xml"
        checked = subprocess.run(["xmllint", "--noout", "--nonet", "--schema",
                                  SCHEMAS / "junit.xsd", junit], capture_output=True, check=False)
        self.assertEqual(checked.returncode, 0, checked.stderr)
        self.assertIsNone(ElementTree.parse(junit).getroot().find(".//b"))
        page = (self.folder / "r.html").read_text(encoding="utf-8")
        self.assert_safe(page)
        self.assertNotIn("<script", page)
        if b"<" in name:
            markup = re.search(rb"<.*?>", name)[0].decode("ascii")
            self.assertIn(html.escape(markup, quote=False), page)

    def test_are_ascii_in_the_stream_of_events(self):
        run = self.run_program("run", *settings(BSSID="02:00:00:00:01:00", FailingLevel=-20),
                               "--events", scenario=on_the_air(*NAMES))
        self.assertEqual(run.exit, RESULTS["FAIL"], run)
        self.assertTrue(run.out.isascii())
        self.assertNotIn("\x1b", run.out)
        lines = [json.loads(line) for line in run.out.splitlines()]
        self.assertIn("LEVEL_BELOW_FAILING", [line["event"]["key"] for line in lines
                                              if "event" in line])

    def test_are_shown_harmlessly_by_the_doctor_and_as_candidates(self):
        run = self.run_program("doctor", *settings(SSID="Lab"), scenario=on_the_air(*NAMES))
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assert_safe(run.out, run.err)
        self.assertIn(r"A\x1B[2J\n", run.out)
        self.assertIn(r"\u202ELab", run.out)

    def test_in_options_are_refused_harmlessly(self):
        for option in ("Band=\x1b[31m", "FailingLevel=\u202e-70", "\x1b]0;x\x07=1", "BSSID=\x1b[2J"):
            with self.subTest(option):
                run = self.run_program("run", *settings(SSID="Lab"), "--set", option)
                self.assertEqual(run.exit, WRONG_USAGE, run)
                self.assertEqual(run.err.count("\n"), 1, run)
                self.assert_safe(run.err)


class Files(SignalTest):
    def test_of_a_configuration_have_the_parameters_and_are_checked_as_those_of_options(self):
        self.write("station.toml", '[parameters]\nSSID = "Lab"\nFailingLevel = -70\n'
                                   "WarningLevel = -65.5\nGuardBand = 1\n")
        run = self.run_program("run", "--config", "station.toml", "--json", "r.json",
                               scenario=on_the_air(b"Lab"))
        self.assertEqual(run.exit, RESULTS["PASS"], run)
        given = self.read_json("r.json")["results"][0]["parameters"]
        self.assertEqual((given["SSID"], given["WarningLevel"]), ("Lab", -65.5))
        run = self.run_program("run", "--config", "station.toml", *settings(GuardBand=5))
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertIn("Make it smaller, or move the limits apart", run.err)
        self.write("wrong.toml", '[parameters]\nSSID = "Lab"\nFailingLevel = 70\n')
        run = self.run_program("run", "--config", "wrong.toml")
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertIn("did you mean -70?", run.err)

    def test_of_a_template_are_a_configuration_with_every_parameter(self):
        template = self.run_program("list", "--config-template").out
        for name in ("SSID", "BSSID", "Band", "WarningLevel", "FailingLevel", "GuardBand", "Offset",
                     "Samples", "MaxSeconds", "MaxSpread", "MaxDrift"):
            self.assertRegex(template, rf"(?m)^# ?{name} = ")
        self.write("station.toml", template)
        run = self.run_program("run", "--config", "station.toml",
                               *settings(SSID="Lab", FailingLevel=-70), "--check")
        self.assertEqual(run.exit, 0, run)

    def test_of_reports_that_cannot_be_written_are_refused_before_anything_runs(self):
        (self.folder / "folder").mkdir()
        for place in ("folder", "mis?sing.json"):
            run = self.run_program("run", *settings(SSID="Lab", FailingLevel=-70), "--json", place,
                                   scenario=on_the_air(b"Lab"))
            self.assertEqual(run.exit, WRONG_USAGE, run)
            self.assertEqual((run.out, run.err.count("\n")), ("", 1), run)


class Pages(SignalTest):
    """docs/signal.md names what the program has."""

    PAGE = (ROOT / "docs" / "signal.md").read_text(encoding="utf-8")

    def test_name_every_test_and_parameter_with_its_range_and_default(self):
        listed = self.run_program("list", "--device", "none").out.split("\n\n")[0]
        tests = re.findall(r"(?m)^  (\w+)", listed)
        self.assertIn("SignalLevelTest", tests)
        for test in tests:
            self.assertIn(f"`{test}`", self.PAGE)
        rows = {row[0]: row[1:] for row in re.findall(
            r"(?m)^\| `(\w+)` \| (.*?) \| (.*?) \|", self.PAGE)}
        for name, about in re.findall(r"(?m)^    parameter: +(\w+) \((.*)\)$", listed):
            with self.subTest(name):
                self.assertIn(name, rows)
                for number in re.findall(r"-?\d+ to -?\d+", about):
                    self.assertIn(number, rows[name][0])

    def test_name_every_event(self):
        objects = (ROOT / "modules/src/diag/mrlrsignal/levels/ModuleObjects.h").read_text(encoding="utf-8")
        keys = re.findall(r'EVENT\(\w+, "(\w+)"\)', objects)
        self.assertGreater(len(keys), 10)
        for key in keys:
            self.assertIn(f"`{key}`", self.PAGE)


if __name__ == "__main__":
    unittest.main()
