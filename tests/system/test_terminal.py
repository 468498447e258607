"""What a person at a terminal sees: while a test runs (test_reports checks that a pipe gets none of
it), and after a start by double click."""
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import time
import unittest

from program import DIST, EXECUTABLE, LIMIT_SECONDS, ROOT, ProgramTest, environment, settings

sys.path.insert(0, str(ROOT / "tools" / "package"))

import make_package  # noqa: E402

COLUMNS, ROWS = 100, 20
NARROW_COLUMNS = 42


class TerminalTest(ProgramTest):
    def tmux(self, *arguments):
        return subprocess.run(["tmux", "-S", str(self.folder / "terminal"), *arguments],
                              cwd=self.folder, env=environment(TERM="xterm-256color"), check=True,
                              capture_output=True, text=True, encoding="utf-8").stdout

    def screens_until(self, text):
        """Every different screen up to the one that has `text`."""
        seen = []
        end = time.monotonic() + LIMIT_SECONDS
        while not seen or text not in seen[-1]:
            self.assertLess(time.monotonic(), end, seen)
            screen = self.tmux("capture-pane", "-p")
            if screen not in seen[-1:]:
                seen.append(screen)
            time.sleep(0.1)
        return seen

    def start_in_terminal(self, columns, *command, redirected=""):
        # The shell keeps the screen open after the program has ended.
        self.tmux("-f", os.devnull, "new-session", "-d", "-x", str(columns), "-y", str(ROWS),
                  f"{shlex.join(map(str, command))} {redirected}; echo ended with $?; "
                  f"sleep {2 * LIMIT_SECONDS}")
        self.addCleanup(self.tmux, "kill-server")


class LiveLine(TerminalTest):
    def run_in_terminal(self, columns):
        self.start_in_terminal(columns, "wine", EXECUTABLE, "run",
                               *settings(SSID="Lab", FailingSignalStrength=20))

    def test_shows_the_activity_and_disappears_with_the_verdict(self):
        self.run_in_terminal(COLUMNS)
        screens = self.screens_until("exit value 0")
        live = [line for screen in screens for line in screen.splitlines() if "so far" in line]
        self.assertRegex("\n".join(live),
                         r"(?m)^  Scanning for networks: \d+\xa0s so far, at most \d+\xa0s more$")
        self.assertGreater(len(set(live)), 2, "the seconds go on")
        self.assertNotIn("so far", screens[-1])
        self.assertRegex(screens[-1], r"(?m)^  PASS after \d+\.\d\ss$")

    def test_makes_room_for_the_answers_to_interrupts_which_break_between_words(self):
        self.run_in_terminal(NARROW_COLUMNS)
        self.screens_until("so far")
        self.tmux("send-keys", "C-c")
        screen = self.screens_until("without a report")[-1]
        self.assertRegex(screen, r"\AWirelessSignalStrengthVerificationTest\n"
                         r"\(Signal strength check\) on Simulated\nWireless-AC Adapter\n"
                         r"mrlrantenna: stopping: the current test\n"
                         r"ends within [34]\d\ss, then the run; Ctrl\+C\n"
                         r"once more ends the program at once,\n"
                         r"without a report\n")
        self.screens_until("so far")
        self.tmux("send-keys", "C-c")
        screen = self.screens_until("ended with")[-1]
        self.assertRegex(screen, r"without a report\n"
                         r"mrlrantenna: ended by Ctrl\+C: no report\n"
                         r"was written\n"
                         r"ended with 6\n")


class DoubleClick(TerminalTest):
    """A console that closes with the program, as Explorer gives it one."""

    CMD = r"C:\windows\system32\cmd.exe"

    def script(self):
        """The package's start script, beside the program."""
        tree = self.folder / "unpacked here"
        shutil.copytree(DIST, tree)
        script = tree / "mrlrantenna.cmd"
        script.write_bytes(make_package.start_script("mrlrantenna"))
        return script

    def waits_and_ends(self, name):
        screen = self.screens_until("Press Enter")[-1]
        self.assertIn(f"  {name} doctor\n\nPress Enter to close this window.\n", screen)
        self.assertNotIn("\nended with", screen)
        self.tmux("send-keys", "Enter")
        self.screens_until("\nended with 0")

    def test_shows_the_help_and_waits(self):
        self.start_in_terminal(COLUMNS, "wine", EXECUTABLE)
        self.waits_and_ends("mrlrantenna.k5x")

    def test_on_the_script_shows_the_help_and_waits(self):
        self.start_in_terminal(COLUMNS, "wine", self.CMD, "/c",
                               "Z:" + str(self.script()).replace("/", "\\"))
        self.waits_and_ends("mrlrantenna")

    def test_is_not_what_a_prompt_does(self):
        folder = pathlib.PurePath(self.script()).parent
        self.tmux("-f", os.devnull, "new-session", "-d", "-x", str(COLUMNS), "-y", "60",
                  "-c", folder, shlex.join(["wine", self.CMD]))
        self.addCleanup(self.tmux, "kill-server")
        self.screens_until(">")
        self.tmux("send-keys", "mrlrantenna", "Enter")
        screen = self.screens_until("Devices")[-1]
        self.assertNotIn("Press Enter", screen)
        self.tmux("send-keys", "echo still here", "Enter")
        self.screens_until("\nstill here")

    def test_is_not_what_a_host_with_a_pipe_does(self):
        os.mkfifo(self.folder / "pipe")
        self.start_in_terminal(COLUMNS, "wine", EXECUTABLE, redirected="<> pipe")
        self.assertNotIn("Press Enter", self.screens_until("ended with 0")[-1])


if __name__ == "__main__":
    unittest.main()
