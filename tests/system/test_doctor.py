"""The command doctor of the real executable, and its findings under runs without a verdict."""
import unittest

import side_by_side
from program import RESULTS, SCENARIOS, VERIFICATION, WRONG_USAGE, ProgramTest, settings

load_tests = side_by_side.load_tests

# Two forced scans, and half a minute in which the list of networks is read again and again.
SEARCH_SECONDS = 44


class Doctor(ProgramTest):
    def examine(self, scenario, *arguments):
        """The problems that it names, without their heads."""
        run = self.run_program("doctor", *arguments, scenario=scenario)
        problems = [line.removeprefix("problem: ") for line in run.out.splitlines()
                    if line.startswith("problem: ")]
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"] if problems else 0, run)
        self.assertEqual(run.err, "", run)
        return problems

    def assert_run_says_the_same(self, scenario, outcome, finding):
        """Returns the result of the run, below which the one problem stands."""
        [problem] = self.examine(scenario, *settings(SSID="Lab"))
        run = self.run_program("run", VERIFICATION, *settings(SSID="Lab"), "--json", "report.json",
                               scenario=scenario)
        self.assertEqual(run.exit, RESULTS[outcome], run)
        self.assertIn(f"  possible cause: {problem}\n", run.out)
        [result] = self.read_json("report.json")["results"]
        self.assertEqual([(advice["key"], advice["text"]) for advice in result["advice"]],
                         [(finding, problem)])
        return result

    def test_finds_nothing_on_a_working_pc(self):
        self.assertEqual(self.examine(SCENARIOS / "office.json", *settings(SSID="Lab")), [])

    def test_names_the_feature_of_a_server_without_wlanapi_as_a_run_names_the_loaders_reason(self):
        for command, words in ((("doctor",), 'add the feature "Wireless LAN Service"'),
                               (("run", VERIFICATION, *settings(SSID="Lab")), "126")):
            run = self.run_program(*command, WINEDLLOVERRIDES="wlanapi=;mscoree=;mshtml=")
            self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
            self.assertIn(words, run.out + run.err)

    def test_names_what_a_run_that_cannot_run_names(self):
        self.assert_run_says_the_same(SCENARIOS / "radio-off.json", "CANNOTRUN",
                                      "DOCTOR_RADIO_SOFTWARE_OFF")

    def test_names_what_a_run_that_does_not_find_its_access_point_names(self):
        result = self.assert_run_says_the_same(
            {"interfaces": [{"accessPoints": [{"ssid": "Lab-5G", "signal": 60}]}]}, "FAIL",
            "DOCTOR_NAME_PART")
        self.assertEqual([event["key"] for event in result["events"]], ["ACCESS_POINT_NOT_FOUND"])
        self.assertGreaterEqual(result["seconds"], SEARCH_SECONDS)

    def test_names_the_form_for_a_name_in_utf_8_which_a_run_then_takes(self):
        scenario = {"interfaces": [{"accessPoints": [{"ssid": "B\u00fcro", "signal": 60}]}]}
        [problem] = self.examine(scenario, *settings(SSID="B\u00fcro"))
        self.assertIn("--set SSID=hex:42C3BC726F", problem)
        run = self.run_program(
            "run", *settings(SSID="hex:42C3BC726F", WarningSignalStrength="99"), "--html",
            "report.html", "--json", "report.json", scenario=scenario, TZ="Asia/Kolkata")
        self.assertEqual(run.exit, RESULTS["WARN"], run)
        shown = "B\u00c3\u00bcro [UTF-8: B\u00fcro]"
        self.assertIn(shown, run.out)
        page = (self.folder / "report.html").read_text(encoding="utf-8")
        self.assertIn(shown, page)
        self.assertIn(" UTC+05:30<", page)
        [result] = self.read_json("report.json")["results"]
        self.assertEqual(result["events"][0]["variables"]["SSIDName"], "B\u00c3\u00bcro")

    def test_and_run_refuse_a_broken_form_before_anything_runs(self):
        for command in ("doctor", "run"):
            run = self.run_program(command, *settings(SSID="hex:42C"))
            self.assertEqual((run.exit, run.out), (WRONG_USAGE, ""), run)
            self.assertIn('"hex:42C" has an odd number of digits after hex:; give two', run.err)


class Gone(ProgramTest):
    """The adapter is unplugged between a list and the run that names it."""

    GUID = "8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20"
    PRESENT = {"interfaces": [{"description": "USB Card",
                               "accessPoints": [{"ssid": "Lab", "signal": 60}]}]}

    def run_after_the_list(self, *options):
        listed = self.run_program("list", scenario=self.PRESENT)
        self.assertIn(f"\\DEVICE\\{{{self.GUID}}}", listed.out)
        run = self.run_program("run", VERIFICATION, *options, "--json", "report.json",
                               *settings(SSID="Lab", FailingSignalStrength=20),
                               scenario=SCENARIOS / "no-adapter.json")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        return run

    def test_by_its_name_or_guid_it_is_no_device_of_this_pc(self):
        for text in ("USB Card", self.GUID):
            run = self.run_after_the_list("--device", text)
            self.assertIn(f"mrlrantenna: no device for {VERIFICATION}\n", run.err)
            self.assertIn("possible cause: There is no wireless adapter", run.err)
            [without] = self.read_json("report.json")["withoutDevice"]
            self.assertEqual(without["test"], VERIFICATION)

    def test_from_a_device_file_it_is_named_with_its_system_name(self):
        self.write("cards.json", [{"name": "USB Card", "capabilities": ["Wireless", "NetworkCard"],
                                   "properties": {"DeviceSystemName": f"\\DEVICE\\{{{self.GUID}}}",
                                                  "wlanAPISupported": "true"}}])
        run = self.run_after_the_list("--devices", "cards.json")
        self.assertIn("  possible cause: USB Card: Windows has no wireless adapter with the system "
                      f'name "\\DEVICE\\{{{self.GUID}}}".', run.out)


if __name__ == "__main__":
    unittest.main()
