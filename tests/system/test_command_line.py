"""Bad input: one line on standard error, exit value 64, nothing run, nothing overwritten."""
import unittest

from program import ROOT, VERIFICATION, WRONG_USAGE, ProgramTest

HELPERS = ROOT / "build" / "windows" / "tests" / "helpers"
OLD_REPORT = "an older report\n"
TO_REPORT = ("run", VERIFICATION, "--json", "report.json")
# Arguments, and texts that the line about them has.
REFUSED = (
    (("run", "NoSuchTest", "--json", "report.json"), ["NoSuchTest"]),
    ((*TO_REPORT, "--set", "Strength=4"), ["Strength"]),
    ((*TO_REPORT, "--set", "FailingSignalStrength=-1"), ["FailingSignalStrength", "-1"]),
    ((*TO_REPORT, "--devices", "cards.json"), ["cards.json", "line 2"]),
    ((*TO_REPORT, "--config", "station.toml"),
     ["station.toml", "line 2, column 3", '"SSDI"', '"SSID"']),
    ((*TO_REPORT, "--config", "folder/aux.toml"), ['"folder/aux.toml" cannot be used']),
    ((*TO_REPORT, "--log", r"\\.\pipe\mrlrantenna"), [r'"\\.\pipe\mrlrantenna"']),
    (("run", "--json", "con.json"), ['"con.json"']),
    (("run", "--json", "cards.json/report.json"), ["cards.json/report.json"]),
    (("list", "--colour"), ["--colour"]),
    (("list", "--events"), ["--events"]),
    (("list", "--language", "../../en"),
     ['"../../en"; give one of ar, de, en, es, fr, ja, zh-Hans']),
)


class RefusalTest(ProgramTest):
    def refused(self, *arguments, naming, scenario=None):
        """Asserts the refusal, and that its line names every text of `naming`."""
        self.write("report.json", OLD_REPORT)
        before = sorted(self.folder.iterdir())
        run = self.run_program(*arguments, scenario=scenario)
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertEqual(run.out, "", run)
        self.assertEqual(run.err.count("\n"), 1, run)
        for text in naming:
            self.assertIn(text, run.err)
        self.assertEqual((self.folder / "report.json").read_text(encoding="utf-8"), OLD_REPORT)
        self.assertEqual(sorted(self.folder.iterdir()), before)


class BadInput(RefusalTest):
    def test_is_refused_and_named(self):
        self.write("cards.json", '[{"name": "card",\n "capabilities": }]')
        self.write("station.toml", '[parameters]\n  SSDI = "Lab"\n')
        for arguments, naming in REFUSED:
            with self.subTest(arguments):
                self.refused(*arguments, naming=naming)

    def test_of_the_simulator_is_refused_with_its_place(self):
        scenario = self.write("scenario.json", {"interfaces": [{"accessPoints": [{"sid": "Lab"}]}]})
        self.refused(*TO_REPORT, "--set", "SSID=Lab", scenario=scenario,
                     naming=["scenario.json", "/interfaces/0/accessPoints/0"])


class LoneSurrogate(RefusalTest):
    def test_is_refused_wherever_it_stands(self):
        program = self.executable
        self.executable = HELPERS / "lone_surrogate.exe"
        for argument in ("", "--json=report.json", "--set=SSID=Lab", "--log=a", "--device="):
            with self.subTest(argument):
                self.refused("Z:" + str(program).replace("/", "\\"), argument,
                             naming=[f'mrlrantenna: "{argument}\ufffd" has a character that is'])


class Log(ProgramTest):
    def test_level_0_begins_and_ends_with_the_scope_of_the_run(self):
        run = self.run_program("list", "--log", "run.log", "--log-level", "0")
        self.assertEqual(run.exit, 0, run)
        log = (self.folder / "run.log").read_text(encoding="utf-8")
        lines = [line.partition(" ")[2] for line in log.splitlines()]
        self.assertRegex(lines[0], r"^0 mrlrantenna: > MRLRAntenna Run \(.*:112\)$")
        self.assertEqual(lines[-1], "0 mrlrantenna: < MRLRAntenna Run")


class Listing(ProgramTest):
    def test_no_command_lists_tests_and_devices(self):
        run = self.run_program()
        self.assertEqual(run.exit, 0, run)
        self.assertIn("DiversityTest", run.out)
        self.assertIn(VERIFICATION, run.out)
        self.assertIn(r"\DEVICE\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}", run.out)
        self.assertEqual(self.run_program("list").out, run.out)


if __name__ == "__main__":
    unittest.main()
