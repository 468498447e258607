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


class Repeated(FakeWine):
    def test_is_a_silent_end_with_1(self):
        self.wine_does("exit 1", "echo done; exit 0")
        run = self.run_program()
        self.assertEqual((run.exit, run.out), (0, "done\n"))
        self.assertEqual((self.starts(), self.repeats()), (2, 1))

    def test_is_an_assertion_of_the_dynamic_loader(self):
        self.wine_does("echo 'Inconsistency detected by ld.so: x' >&2; exit 127", "exit 0")
        self.assertEqual(self.run_program().exit, 0)
        self.assertEqual(self.repeats(), 1)

    def test_is_a_program_of_unit_tests_that_reported_nothing(self):
        self.wine_does("exit 1", """echo '{"tests": 3, "failures": 0}' >report.json; exit 0""")
        with mock.patch.object(run_tests, "LOGS", self.folder):
            self.assertEqual(run_tests.run_google_test("fake", ["wine", "test_x.exe"]), (3, 0))
        self.assertEqual(self.repeats(), 1)

    def test_is_each_start_once_at_most(self):
        self.wine_does("exit 1")
        self.assertEqual(self.run_program().exit, 1)
        self.assertEqual(self.starts(), 2)


class NeverRepeated(FakeWine):
    def assert_not_repeated(self, start, exit_value):
        self.wine_does(start)
        self.assertEqual(self.run_program().exit, exit_value)
        self.assertEqual((self.starts(), self.repeats()), (1, 0))

    def test_is_a_program_that_wrote_something(self):
        self.assert_not_repeated("echo WARN; exit 1", 1)

    def test_is_a_program_that_wrote_to_standard_error(self):
        self.assert_not_repeated("echo complaint >&2; exit 1", 1)

    def test_is_a_quiet_program_that_called_the_radio(self):
        self.assert_not_repeated('echo call >"$RADIOSIM_TRACE"; exit 1', 1)

    def test_is_a_crash(self):
        self.assert_not_repeated("exit 5", 5)

    def test_are_failed_unit_tests(self):
        self.wine_does("""echo '{"tests": 3, "failures": 1}' >report.json; exit 1""")
        with mock.patch.object(run_tests, "LOGS", self.folder):
            self.assertEqual(run_tests.run_google_test("fake", ["wine", "test_x.exe"]), (2, 1))
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
