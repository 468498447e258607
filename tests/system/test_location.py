"""Windows 11 24H2 without access to the location: every command, and what its user sees.

Scans, both lists and the current connection are denied; the state of the radio and the connection's
signal are not.
"""
import unittest

import side_by_side
from dialog import ID, TEXTS, DialogTest
from program import RESULTS, SCENARIOS, VERIFICATION, ProgramTest, settings

load_tests = side_by_side.load_tests

DENIED = SCENARIOS / "location-denied.json"
MEASURE = ("run", VERIFICATION, *settings(SSID="Lab", FailingSignalStrength=20))
REMEDY = "Settings > Privacy & security > Location (ms-settings:privacy-location)"


def cause(function):
    return ("Simulated Wireless-AC Adapter: Windows denies access to Wi-Fi information "
            f"({function}: error 5). In {REMEDY}")


class LocationDenied(ProgramTest):
    def test_changes_nothing_for_a_list(self):
        run = self.run_program("list", scenario=DENIED)
        self.assertEqual(run.exit, 0, run)
        self.assertIn("Simulated Wireless-AC Adapter: yes\n", run.out)

    def test_is_the_one_problem_that_doctor_finds(self):
        for arguments in ((), settings(SSID="Lab", FailingSignalStrength=20)):
            run = self.run_program("doctor", *arguments, scenario=DENIED)
            self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
            self.assertIn(f"problem: {cause('WlanScan')}, turn on", run.out)
            self.assertIn("ok: Simulated Wireless-AC Adapter: the radio is on.\n", run.out)
            self.assertIn("\nProblems found: 1; exit value 3\n", run.out)

    def test_fails_a_verification_whose_first_words_are_the_cause(self):
        run = self.run_program(*MEASURE, "--json", "report.json", "--html", "report.html",
                               scenario=DENIED)
        self.assertEqual(run.exit, RESULTS["FAIL"], run)
        self.assertTrue(run.out.splitlines()[1].startswith(
            f"  possible cause: {cause('WlanGetAvailableNetworkList')}"), run)
        [result] = self.read_json("report.json")["results"]
        self.assertEqual([advice["key"] for advice in result["advice"]], ["DOCTOR_LOCATION_OFF"])
        self.assertEqual([event["key"] for event in result["events"]],
                         ["NO_ACCESS_POINT_FOUND", "ACCESS_POINT_NOT_FOUND"])
        self.assertEqual(result["measurements"], [])
        self.assertIn("Privacy &amp; security", (self.folder / "report.html").read_text("utf-8"))

    def test_changes_nothing_for_a_check_of_the_parameters(self):
        self.assertEqual(self.run_program(*MEASURE, "--check", scenario=DENIED).exit, 0)


class DialogWithoutLocation(DialogTest):
    def test_is_open_and_empty_and_names_the_cause_at_its_end(self):
        dialog = self.open(DENIED)
        controls = dialog.controls()
        self.assertEqual(controls[ID.ADAPTER_NAME]["text"], "Simulated Wireless-AC Adapter")
        self.assertEqual(controls[ID.NETWORK_COMBO]["entries"], [])
        self.assertEqual(controls[ID.RADIO_STATUS]["text"], TEXTS["RADIO_BUTTON_ON"])
        for control in (ID.SSID, ID.AUTH, ID.CIPHER, ID.STRENGTH_PERCENT):
            self.assertEqual(controls[control]["text"], "")
        dialog.screenshot("location-denied")
        dialog.click(ID.FINISH)
        run = dialog.ended()
        self.assertEqual(run.exit, 0, run)
        self.assertIn(f"possible cause: {cause('WlanGetAvailableNetworkList')}", run.out)
        result = self.result()
        self.assertEqual(result["result"], "COMPLETED")
        self.assertEqual([advice["key"] for advice in result["advice"]], ["DOCTOR_LOCATION_OFF"])


if __name__ == "__main__":
    unittest.main()
