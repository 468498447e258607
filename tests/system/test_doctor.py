"""The command doctor of the real executable, and its findings under runs without a verdict."""
import unittest

import side_by_side
from program import RESULTS, SCENARIOS, VERIFICATION, ProgramTest, settings

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


if __name__ == "__main__":
    unittest.main()
