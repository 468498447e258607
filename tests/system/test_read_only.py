"""Folders and files that the user may not write: refused before the run, with the reason."""
import ctypes
import os
import time
import unittest

import display
from program import VERIFICATION, WRONG_USAGE, ProgramTest, settings

PR_CAPBSET_DROP = 24
# What lets the superuser write everywhere: CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER.
WRITE_EVERYWHERE = (1, 2, 3)
REPORTS = ("--json", "--junit", "--html", "--ocp", "--openhtf")


def setUpModule():
    # The superuser without these is an ordinary user for files. They are lost with the next program,
    # and Wine's server opens the files: a prefix of its own has a server of its own.
    if os.getuid() == 0:
        libc = ctypes.CDLL(None, use_errno=True)
        for capability in WRITE_EVERYWHERE:
            if libc.prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0:
                raise OSError(ctypes.get_errno(), "a capability cannot be dropped")
    prefix = display.Prefix()
    unittest.addModuleCleanup(prefix.close)
    os.environ["WINEPREFIX"] = str(prefix.path)


class ReadOnly(ProgramTest):
    def assert_refused(self, option, file):
        before = time.monotonic()
        run = self.run_program("run", VERIFICATION, *settings(SSID="Lab", FailingSignalStrength=20),
                               option, file)
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertEqual(run.out, "", f"after {time.monotonic() - before:.0f} s")
        self.assertEqual(run.err.count("\n"), 1, run)
        self.assertIn(f'"{file}" cannot be written: Permission denied; name a file', run.err)

    def test_folders_are_refused_with_the_reason(self):
        folder = self.folder / "folder"
        folder.mkdir()
        folder.chmod(0o555)
        for option in (*REPORTS, "--log", "--capture"):
            for file in ("folder/file", "folder/deeper/still/file"):
                with self.subTest(option, file=file):
                    self.assert_refused(option, file)
        self.assertEqual(list(folder.iterdir()), [])

    def test_files_are_refused_with_the_reason_and_keep_what_they_have(self):
        file = self.write("file", "old")
        file.chmod(0o444)
        for option in (*REPORTS, "--log", "--capture"):
            with self.subTest(option):
                self.assert_refused(option, "file")
        self.assertEqual(file.read_text(encoding="utf-8"), "old")
        self.assertEqual(list(self.folder.iterdir()), [file])


if __name__ == "__main__":
    unittest.main()
