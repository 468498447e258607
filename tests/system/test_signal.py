"""mrlrsignal under Wine: levels in dBm, from the command line to the report."""
import json
import unittest

import jsonschema

from program import ROOT, RESULTS, SIGNAL, WRONG_USAGE, ProgramTest, settings

SCHEMA = ROOT / "docs" / "schemas" / "report.schema.json"


def radio(number, rssi, **more):
    return {"bssid": f"02:00:00:00:01:{number:02x}", "rssi": rssi, "heardEveryMs": 100, **more}


def networks(*radios):
    return {"interfaces": [{"accessPoints": [{"ssid": "Lab", "bss": list(radios)}]}]}


class Signal(ProgramTest):
    def setUp(self):
        super().setUp()
        self.executable = SIGNAL

    def measure(self, scenario, *options, **parameters):
        run = self.run_program("run", "--json", "report.json", *options,
                               *settings(SSID="Lab", **parameters), scenario=scenario)
        report = self.read_json("report.json")
        jsonschema.Draft202012Validator(json.loads(SCHEMA.read_text(encoding="utf-8"))).validate(
            report)
        return run, report["results"][0]

    def test_rates_a_level_and_keeps_its_readings(self):
        noise = {"deviation": 1.5, "carried": 0.5, "seed": 3}
        scenario = networks(radio(0, {"start": -63, "noise": noise}, channel=36))
        for failing, warning, result in ((-80, -75, "PASS"), (-80, -58, "WARN"),
                                         (-58, -55, "FAIL")):
            with self.subTest(result=result):
                run, record = self.measure(scenario, FailingLevel=failing, WarningLevel=warning)
                self.assertEqual(run.exit, RESULTS[result], run)
                self.assertEqual(record["result"], result)
                [measurement] = record["measurements"]
                self.assertEqual(measurement["unit"], "dBm")
                self.assertAlmostEqual(measurement["value"], -63, delta=2)
                [series] = record["series"]
                self.assertGreaterEqual(len(series["points"]), 11)
                self.assertEqual(series["points"][0]["attributes"]["Channel"], 36)

    def test_says_why_there_is_no_level(self):
        for scenario, word in (
                (networks(radio(0, -50), radio(1, -65)), "02:00:00:00:01:01"),
                (networks(radio(0, -50, heardUntilMs=0)), "old entry"),
                (networks(), "was not seen")):
            with self.subTest(word=word):
                run, record = self.measure(scenario, FailingLevel=-70, MaxSeconds=5)
                self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
                self.assertEqual(record["result"], "CANNOTRUN")
                self.assertIn(word, run.out)

    def test_refuses_wrong_parameters_before_anything_runs(self):
        for given, words in (
                ({"FailingLevel": -70}, "Give SSID or BSSID"),
                ({"SSID": "Lab"}, "Give WarningLevel, FailingLevel or both"),
                ({"BSSID": "02:00:00", "FailingLevel": -70}, '"02:00:00" is no BSSID'),
                ({"SSID": "Lab", "FailingLevel": 70}, r"FailingLevel=70: .*did you mean -70\?"),
                ({"SSID": "Lab", "FailingLevel": -60, "WarningLevel": -70}, "must be the lower one"),
                ({"SSID": "Lab", "FailingLevel": -70, "WarningLevel": -68, "GuardBand": 3},
                 "Make it smaller, or move the limits apart")):
            with self.subTest(words):
                run = self.run_program("run", "--json", "report.json", *settings(**given))
                self.assertEqual(run.exit, WRONG_USAGE, run)
                self.assertRegex(run.err, rf"\Amrlrsignal: .*{words}.*\n\Z")
                self.assertEqual(run.out, "")
                self.assertFalse((self.folder / "report.json").exists())

    def test_says_that_windows_has_no_levels_of_chains(self):
        """Without asking the driver, and in a run that names the test only."""
        scenario = networks(radio(0, -50, chains=[0, -30]))
        run = self.run_program("run", "AntennaChainTest", "--json", "report.json",
                               *settings(SSID="Lab"), scenario=scenario)
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertIn("Windows has no public way to read the levels of receive chains", run.err)
        run, record = self.measure(scenario, FailingLevel=-70)
        self.assertEqual((run.exit, record["test"]), (RESULTS["PASS"], "SignalLevelTest"), run)
        listed = self.run_program("list", scenario=scenario)
        self.assertRegex(listed.out, r"(?s)SignalLevelTest\n.*default 15.*AntennaChainTest\n"
                                     r".*default 15.dB.*default 16.*AntennaChainTest\n.*: no: does"
                                     r" not run on this system")


if __name__ == "__main__":
    unittest.main()
