"""Reports of the shipped program: several runs that write one file, and names that lead elsewhere."""
import json
import unittest

from program import RESULTS, VERIFICATION, WRONG_USAGE, ProgramTest, Started, environment

AT_ONCE = 6
ROUNDS = 4


class ReportFiles(ProgramTest):
    def verify(self, *arguments):
        """A run that ends at once: its parameters are missing."""
        self.write("cards.json", [{"name": "Card", "capabilities": ["Wireless", "NetworkCard"],
                                   "properties": {"wlanAPISupported": ""}}])
        return ("run", VERIFICATION, "--devices", "cards.json", *arguments)

    def there(self):
        return sorted(path.name for path in self.folder.iterdir())

    def test_that_several_runs_write_at_once_cost_none_its_verdict(self):
        arguments = self.verify("--json", "report.json")
        for _ in range(ROUNDS):
            runs = [Started(arguments, self.folder, environment()) for _ in range(AT_ONCE)]
            for run in runs:
                self.assertEqual(run.finish().exit, RESULTS["BADPARAMS"])
            self.assertEqual(self.read_json("report.json")["exit"], RESULTS["BADPARAMS"])
            self.assertEqual(self.there(), ["cards.json", "report.json"])

    def test_with_equal_names_of_their_own_are_as_many_as_the_runs(self):
        arguments = self.verify("--tag", "serial=A1", "--json", "made/{serial}-{result}.json",
                                "--ocp", "made/{serial}.jsonl")
        for _ in range(ROUNDS):
            runs = [Started(arguments, self.folder, environment()) for _ in range(AT_ONCE)]
            for run in runs:
                self.assertEqual(run.finish().exit, RESULTS["BADPARAMS"])
        made = self.folder / "made"
        reports = [json.loads(path.read_text(encoding="utf-8")) for path in made.glob("*.json")]
        self.assertEqual(len({report["runIdentifier"] for report in reports}), ROUNDS * AT_ONCE)
        streams = [path.read_text(encoding="ascii") for path in made.glob("*.jsonl")]
        self.assertEqual(len(streams), ROUNDS * AT_ONCE)
        for stream in streams:
            self.assertEqual((stream.count("testRunStart"), stream.count("testRunEnd")), (1, 1))

    def refused(self, *arguments, naming):
        run = self.run_program(*self.verify(*arguments))
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertEqual(run.out, "")
        self.assertIn(naming, run.err)
        self.assertEqual(len(run.err.splitlines()), 1, run)

    def test_are_one_file_whatever_its_names(self):
        path = "Z:" + str(self.folder / "report").replace("/", "\\")
        (self.folder / "folder").mkdir()
        (self.folder / "link").symlink_to("folder")
        for a, b in ((path, "\\\\?\\" + path), ("report", "REPORT"), (path, "report"),
                     ("folder\\report", "link\\report")):
            self.refused("--json", a, "--junit", b, naming="--json and --junit both name")

    def test_are_no_devices_and_have_names(self):
        (self.folder / "link").symlink_to("/dev/null")
        for option in ("--json", "--log"):
            self.refused(option, "link", naming="it is no ordinary file")
            self.refused(option, " ", naming=f"{option} needs FILE")
        self.refused("--json", "re?port.json", naming="its name is not valid")


if __name__ == "__main__":
    unittest.main()
