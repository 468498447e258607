"""The verification test as on a production line: real pauses, real executable."""
import unittest

from program import RESULTS, SCENARIOS, VERIFICATION, ProgramTest


def one_network(signal, **interface):
    """A scenario with one adapter that sees one network."""
    return {"interfaces": [{"accessPoints": [{"ssid": "Bench AP", "signal": signal}], **interface}]}


class Verification(ProgramTest):
    def verify(self, *settings, scenario=None, report=True):
        arguments = [argument for setting in settings for argument in ("--set", setting)]
        if report:
            arguments += ["--json", "report.json"]
        return self.run_program("run", VERIFICATION, *arguments, scenario=scenario)

    def result(self):
        """The one result in the report."""
        results = self.read_json("report.json")["results"]
        self.assertEqual(len(results), 1)
        return results[0]

    def test_a_strong_signal_passes(self):
        run = self.verify("SSID=Lab", "WarningSignalStrength=40", "FailingSignalStrength=20")
        self.assertEqual(run.exit, 0, run)
        self.assertIn("PASS", run.out)
        result = self.result()
        self.assertEqual(result["result"], "PASS")
        self.assertEqual(result["events"], [])
        self.assertGreaterEqual(result["seconds"], 7, "the forced scan's pause is kept")

    def test_a_weak_signal_warns_and_a_weaker_one_fails(self):
        scenario = self.write("scenario.json", one_network(30))
        run = self.verify("SSID=bench ap", "WarningSignalStrength=40", "FailingSignalStrength=20",
                          scenario=scenario)
        self.assertEqual(run.exit, RESULTS["WARN"], run)
        event = self.result()["events"][0]
        self.assertEqual((event["key"], event["severity"], event["line"]),
                         ("FAILING_SIGNAL_STRENGTH_DETECTED", "warning", 291))
        self.assertEqual(list(event["variables"].items()),
                         [("SSIDName", "bench ap"), ("FailingSignalStrength", 40),
                          ("DetectedSignalStrength", 30)])
        self.assertIn(event["text"], run.out)

        run = self.verify("SSID=Bench AP", "FailingSignalStrength=30", scenario=scenario)
        self.assertEqual(run.exit, RESULTS["FAIL"], run)
        self.assertEqual(self.result()["events"][0]["severity"], "error")

    def test_an_access_point_that_is_not_there_fails_after_two_scans_and_half_a_minute(self):
        run = self.verify("SSID=Nowhere", "FailingSignalStrength=20")
        self.assertEqual(run.exit, RESULTS["FAIL"], run)
        result = self.result()
        self.assertEqual([event["key"] for event in result["events"]], ["ACCESS_POINT_NOT_FOUND"])
        self.assertGreaterEqual(result["seconds"], 44)

    def test_a_radio_that_is_off_cannot_be_tested(self):
        run = self.verify("SSID=Lab", scenario=SCENARIOS / "radio-off.json")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)

    def test_missing_thresholds_are_reported_after_the_search(self):
        run = self.verify("SSID=Lab")
        self.assertEqual(run.exit, RESULTS["BADPARAMS"], run)
        self.assertEqual(self.result()["events"][0]["key"],
                         "WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO")

    def test_a_missing_name_is_reported_at_once(self):
        run = self.verify(report=False)
        self.assertEqual(run.exit, RESULTS["BADPARAMS"], run)
        self.assertIn("No access point was named", run.out)

    def test_a_pc_without_adapter_lists_its_devices_and_why_none_suits(self):
        run = self.verify("SSID=Lab", scenario=SCENARIOS / "no-adapter.json")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)

    def test_a_pc_without_native_wifi_reports_that(self):
        run = self.run_program("run", VERIFICATION, "--set", "SSID=Lab",
                               WINEDLLOVERRIDES="wlanapi=;mscoree=;mshtml=")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertIn("126", run.out + run.err, "the loader's reason")

    def test_a_hostile_name_cannot_write_to_the_terminal_or_break_the_report(self):
        hostile = "41425B1B5B324A0A3C623E22"  # letters, an escape sequence, a line end, markup
        scenario = self.write("scenario.json", {"interfaces": [{"accessPoints": [
            {"ssidHex": hostile, "signal": 60}, {"ssid": "Lab", "signal": 60}]}]})
        run = self.run_program("run", VERIFICATION, "--set", "SSID=Lab", "--set",
                               "FailingSignalStrength=20", "--log-level", "1", scenario=scenario)
        self.assertEqual(run.exit, 0, run)
        self.assertNotIn("\x1b", run.out + run.err)
        compared = [line for line in run.err.splitlines() if "SSID Being Compared: AB" in line]
        self.assertEqual(len(compared), 1, run)
        self.assertIn('AB[\\x1B[2J\\n<b>"', compared[0])

    def test_the_log_is_appended_one_line_an_entry(self):
        for _ in range(2):
            run = self.run_program("run", VERIFICATION, "--log", "antenna.log")
            self.assertEqual(run.exit, RESULTS["BADPARAMS"], run)
        lines = (self.folder / "antenna.log").read_text(encoding="utf-8").splitlines()
        entries = [line for line in lines if line.endswith(
            " 1 mrlrantenna: 245 WirelessSignalStrengthVerificationTest::SSID parameter was not set")]
        self.assertEqual(len(entries), 2, lines)
        for line in lines:
            self.assertRegex(line, r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z \d [\w.]+: ")

    def test_traces_show_every_step_on_request(self):
        run = self.run_program("run", VERIFICATION, "--log-level", "0")
        place = "modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:241"
        self.assertIn(f" 0 mrlrantenna: > {VERIFICATION} ({place})\n", run.err)
        self.assertIn(f" 0 mrlrantenna: < {VERIFICATION}\n", run.err)


if __name__ == "__main__":
    unittest.main()
