"""The command doctor of the real executable, with one problem of the radio environment each."""
import unittest

from program import RESULTS, SCENARIOS, VERIFICATION, ProgramTest

ACCESS_DENIED = 5
SERVICE_NOT_ACTIVE = 1062


def networks(*names):
    return {"interfaces": [{"accessPoints": [{"ssid": name, "signal": 60} for name in names]}]}


def failing(code, *functions):
    return {**networks("Lab"), "faults": [{"function": name, "code": code} for name in functions]}


class Doctor(ProgramTest):
    def examine(self, scenario, *arguments):
        """What it says in a scenario: the problems, without their heads."""
        if isinstance(scenario, dict):
            scenario = self.write("scenario.json", scenario)
        run = self.run_program("doctor", *arguments, scenario=scenario)
        problems = [line.removeprefix("problem: ") for line in run.out.splitlines()
                    if line.startswith("problem: ")]
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"] if problems else 0, run)
        self.assertEqual(run.err, "", run)
        return problems

    def test_it_finds_nothing_on_a_working_pc(self):
        self.assertEqual(self.examine(SCENARIOS / "office.json", "--set", "SSID=Lab"), [])

    def test_it_names_the_stopped_service(self):
        problems = self.examine(failing(SERVICE_NOT_ACTIVE, "WlanOpenHandle"))
        self.assertEqual(len(problems), 1)
        self.assertIn("The wireless service (WLAN AutoConfig) is not running", problems[0])

    def test_it_names_the_feature_of_a_server_without_wlanapi(self):
        run = self.run_program("doctor", WINEDLLOVERRIDES="wlanapi=;mscoree=;mshtml=")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertIn('add the feature "Wireless LAN Service"', run.out)

    def test_it_says_that_there_is_no_adapter(self):
        problems = self.examine(SCENARIOS / "no-adapter.json")
        self.assertEqual(len(problems), 1)
        self.assertIn(f"There is no wireless adapter for DiversityTest, {VERIFICATION}.",
                      problems[0])

    def test_it_distinguishes_the_two_ways_to_switch_a_radio_off(self):
        hardware = self.examine(SCENARIOS / "hardware-switch-off.json")
        self.assertEqual(len(hardware), 1)
        self.assertIn("switched off by the computer's hardware switch", hardware[0])
        software = self.examine(SCENARIOS / "radio-off.json")
        self.assertEqual(len(software), 1)
        self.assertIn("switched off in Windows", software[0])

    def test_it_names_the_settings_page_that_denies_wifi_information(self):
        problems = self.examine(failing(ACCESS_DENIED, "WlanScan", "WlanGetAvailableNetworkList",
                                        "WlanGetNetworkBssList"))
        self.assertEqual(len(problems), 1)
        self.assertIn("Settings > Privacy & security > Location (ms-settings:privacy-location)",
                      problems[0])

    def test_it_says_how_a_name_differs(self):
        wanted = ("--set", "SSID=lab")
        self.assertEqual(self.examine(networks(" LAB "), *wanted), [])
        self.assertIn('but "Lab-5G" at 60 %, of which it is only a part',
                      self.examine(networks("Office", "Lab-5G"), *wanted)[0])
        self.assertIn('"L" comes earlier',
                      self.examine(networks("L", "Lab"), *wanted)[0])
        self.assertIn('Visible: "Office", "Bench".',
                      self.examine(networks("Office", "Bench"), *wanted)[0])

    def test_a_hostile_name_cannot_write_to_the_terminal(self):
        problems = self.examine(networks("\x1b[2J\n<b>"), "--set", "SSID=Lab")
        self.assertIn('Visible: "\\x1B[2J\\n<b>".', problems[0])

    def test_a_run_that_cannot_run_says_the_same(self):
        scenario = SCENARIOS / "radio-off.json"
        problems = self.examine(scenario)
        run = self.run_program("run", VERIFICATION, "--set", "SSID=Lab", "--json", "report.json",
                               scenario=scenario)
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertIn(f"  possible cause: {problems[0]}\n", run.out)
        advice = self.read_json("report.json")["results"][0]["advice"]
        self.assertEqual([(finding["key"], finding["text"]) for finding in advice],
                         [("DOCTOR_RADIO_SOFTWARE_OFF", problems[0])])

    def test_a_run_that_does_not_find_its_access_point_says_the_same(self):
        scenario = self.write("scenario.json", networks("Lab-5G"))
        problems = self.examine(networks("Lab-5G"), "--set", "SSID=Lab")
        run = self.run_program("run", VERIFICATION, "--set", "SSID=Lab", scenario=scenario)
        self.assertEqual(run.exit, RESULTS["FAIL"], run)
        self.assertIn(f"  possible cause: {problems[0]}\n", run.out)


if __name__ == "__main__":
    unittest.main()
