"""Which starts are repeated because Wine failed before the program began, and which are not."""
import os
import pathlib
import stat
import sys
import tempfile
import unittest
from unittest import mock

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(TESTS))
sys.path.insert(0, str(TESTS / "system"))
import program
import run_tests
import wine_starts


class FakeWine(unittest.TestCase):
    """Replaces Wine by a script that counts its starts."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.notes = self.folder / "repeats"
        path = f"{self.folder}:{os.environ['PATH']}"
        changed = mock.patch.dict(os.environ, {"PATH": path, wine_starts.NOTES: str(self.notes)})
        changed.start()
        self.addCleanup(changed.stop)

    def wine_does(self, *starts):
        """Sets the shell command of each start in turn; the last one serves all further starts."""
        (self.folder / "starts").unlink(missing_ok=True)
        script = self.folder / "wine"
        lines = "\n".join(f"[ $n = {i} ] && {{ {start}; }}" for i, start in enumerate(starts, 1))
        script.write_text(f"#!/bin/sh\necho >>{self.folder}/starts\n"
                          f"n=$(wc -l <{self.folder}/starts)\n"
                          f"[ $n -gt {len(starts)} ] && n={len(starts)}\n{lines}\n")
        script.chmod(script.stat().st_mode | stat.S_IXUSR)

    def starts(self):
        return len((self.folder / "starts").read_text().splitlines())

    def run_program(self):
        return program.Started(("list",), self.folder, dict(os.environ)).finish()

    def repeats(self):
        return len(wine_starts.repeats(self.notes))


class Starts(FakeWine):
    def unit_tests(self):
        with mock.patch.object(run_tests, "LOGS", self.folder):
            return run_tests.run_google_test("fake", ["wine", "test_x.exe"])

    def test_that_never_began_are_repeated_once(self):
        self.wine_does("exit 1", "echo done; exit 0")
        run = self.run_program()
        self.assertEqual((run.exit, run.out), (0, "done\n"))
        self.assertEqual((self.starts(), self.repeats()), (2, 1))

    def test_are_not_repeated_a_second_time(self):
        self.wine_does("exit 1")
        self.assertEqual(self.run_program().exit, 1)
        self.assertEqual(self.starts(), 2)

    def test_that_an_assertion_of_the_dynamic_loader_ended_are_repeated(self):
        self.wine_does("echo 'Inconsistency detected by ld.so: x' >&2; exit 127", "exit 0")
        self.assertEqual(self.run_program().exit, 0)
        self.assertEqual(self.repeats(), 1)

    def test_of_unit_tests_that_reported_nothing_are_repeated(self):
        self.wine_does("exit 1", """echo '{"tests": 3, "failures": 0}' >report.json; exit 0""")
        self.assertEqual(self.unit_tests(), (3, 0))
        self.assertEqual(self.repeats(), 1)

    def test_of_unit_tests_that_failed_are_not_repeated(self):
        self.wine_does("""echo '{"tests": 3, "failures": 1}' >report.json; exit 1""")
        self.assertEqual(self.unit_tests(), (2, 1))
        self.assertEqual((self.starts(), self.repeats()), (1, 0))

    def test_that_wrote_called_the_radio_or_crashed_are_not_repeated(self):
        for start in ("echo WARN; exit 1", "echo complaint >&2; exit 1",
                      'echo call >"$RADIOSIM_TRACE"; exit 1', "exit 5"):
            with self.subTest(start):
                self.wine_does(start)
                self.assertEqual(self.run_program().exit, int(start[-1]))
                self.assertEqual((self.starts(), self.repeats()), (1, 0))


class Sum(unittest.TestCase):
    def test_names_the_repeats_and_fails_beyond_three(self):
        for repeats, failed in ((0, 0), (3, 0), (4, 1)):
            with self.subTest(repeats=repeats):
                text, more = run_tests.about_repeats(["a start"] * repeats)
                self.assertEqual(more, failed)
                self.assertIn(f"repeated: {repeats}", text)


if __name__ == "__main__":
    unittest.main()
