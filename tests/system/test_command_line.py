"""Bad input: one line on standard error, exit value 64, nothing run, nothing overwritten."""
import unittest

from program import VERIFICATION, WRONG_USAGE, ProgramTest

OLD_REPORT = "an older report\n"


class BadInput(ProgramTest):
    def refused(self, *arguments, naming, scenario=None):
        """Asserts the refusal, and that its line names every text of `naming`."""
        self.write("report.json", OLD_REPORT)
        run = self.run_program(*arguments, scenario=scenario)
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertEqual(run.out, "", run)
        self.assertEqual(run.err.count("\n"), 1, run)
        for text in naming:
            self.assertIn(text, run.err)
        self.assertEqual((self.folder / "report.json").read_text(encoding="utf-8"), OLD_REPORT)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()
                                if path.suffix == ".tmp"), [])
        return run

    def verify(self, *arguments):
        return ("run", VERIFICATION, "--json", "report.json", *arguments)

    def test_unknown_test(self):
        self.refused("run", "NoSuchTest", "--json", "report.json", naming=["NoSuchTest"])

    def test_unknown_parameter(self):
        self.refused(*self.verify("--set", "Strength=4"), naming=["Strength"])

    def test_malformed_setting(self):
        self.refused(*self.verify("--set", "SSID"), naming=["SSID"])

    def test_numbers_out_of_range(self):
        for number in ("4294967296", "-1", "1e3", "0x10", "4 0"):
            with self.subTest(number):
                self.refused(*self.verify("--set", f"FailingSignalStrength={number}"),
                             naming=["FailingSignalStrength", number])

    def test_unreadable_device_file(self):
        self.refused(*self.verify("--devices", "missing.json"), naming=["missing.json"])

    def test_malformed_device_file_is_refused_with_the_place(self):
        self.write("cards.json", '[{"name": "card",\n "capabilities": }]')
        self.refused(*self.verify("--devices", "cards.json"), naming=["cards.json", "line 2"])
        self.write("cards.json", [{"name": "card", "capabilities": ["Flying"], "properties": {}}])
        self.refused(*self.verify("--devices", "cards.json"), naming=["cards.json", "Flying"])

    def test_malformed_scenario_is_refused_with_the_place(self):
        scenario = self.write("scenario.json", {"interfaces": [{"accessPoints": [{"sid": "Lab"}]}]})
        self.refused(*self.verify("--set", "SSID=Lab"), scenario=scenario,
                     naming=["scenario.json", "/interfaces/0/accessPoints/0"])

    def test_missing_scenario(self):
        self.refused(*self.verify("--set", "SSID=Lab"), scenario=self.folder / "missing.json",
                     naming=["missing.json"])

    def test_unwritable_report(self):
        self.refused("run", VERIFICATION, "--json", "no-such-folder/report.json",
                     naming=["no-such-folder"])

    def test_unwritable_log(self):
        self.refused(*self.verify("--log", "no-such-folder/antenna.log"), naming=["no-such-folder"])

    def test_system_device_names_are_refused_as_files(self):
        for option in ("--devices", "--json", "--log"):
            for name in ("NUL", "COM1", "con.json", r"\\.\pipe\mrlrantenna"):
                with self.subTest(option=option, name=name):
                    run = self.run_program("run", option, name)
                    self.assertEqual(run.exit, WRONG_USAGE, run)
                    self.assertIn(f'"{name}"', run.err)
                    self.assertEqual(run.err.count("\n"), 1, run)

    def test_unknown_option(self):
        self.refused("list", "--colour", naming=["--colour"])


class Log(ProgramTest):
    def lines(self, level):
        """The lines of the log that `list` writes at `level`, without their times."""
        run = self.run_program("list", "--log", "run.log", "--log-level", level)
        self.assertEqual(run.exit, 0, run)
        log = (self.folder / "run.log").read_text(encoding="utf-8")
        return [line.partition(" ")[2] for line in log.splitlines()]

    def test_level_0_begins_and_ends_with_the_scope_of_the_run(self):
        lines = self.lines("0")
        self.assertRegex(lines[0], r"^0 mrlrantenna: > MRLRAntenna Run \(.*:112\)$")
        self.assertEqual(lines[-1], "0 mrlrantenna: < MRLRAntenna Run")

    def test_level_1_has_no_scopes(self):
        self.assertNotIn("MRLRAntenna Run", "\n".join(self.lines("1")))


class Listing(ProgramTest):
    def test_no_command_lists_tests_and_devices(self):
        run = self.run_program()
        self.assertEqual(run.exit, 0, run)
        self.assertIn("DiversityTest", run.out)
        self.assertIn(VERIFICATION, run.out)
        self.assertIn(r"\DEVICE\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}", run.out)
        self.assertEqual(self.run_program("list").out, run.out)

    def test_version(self):
        run = self.run_program("--version")
        self.assertEqual(run.exit, 0, run)
        self.assertIn("6.5", run.out)
        self.assertIn("000000001", run.out)

    def test_help_names_commands_options_and_exit_values(self):
        run = self.run_program("--help")
        self.assertEqual(run.exit, 0, run)
        for word in ("list", "run", "--set", "--device", "--devices", "--json", "--log",
                     "--log-level", "--version", "64"):
            self.assertIn(word, run.out)

    def test_a_device_is_chosen_by_a_part_of_its_guid_in_any_case(self):
        run = self.run_program("run", VERIFICATION, "--device", "8C2f6B1e")
        self.assertIn("No access point was named", run.out, "it ran")
        run = self.run_program("run", VERIFICATION, "--device", "no such card")
        self.assertEqual(run.exit, 3, run)

    def test_a_device_file_replaces_the_pcs_devices(self):
        self.write("cards.json", [{"name": "Karte f\u00fcr alle", "capabilities":
                                   ["Wireless", "NetworkCard"], "properties":
                                   {"wlanAPISupported": "", "WiMAX": ""}}])
        run = self.run_program("list", "--devices", "cards.json")
        self.assertIn("Karte f\u00fcr alle", run.out)
        self.assertNotIn("Simulated", run.out)
        run = self.run_program("run", VERIFICATION, "--devices", "cards.json")
        self.assertEqual(run.exit, 3, run)
        self.assertIn("WiMAX", run.out + run.err)


if __name__ == "__main__":
    unittest.main()
