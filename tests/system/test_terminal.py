"""What a person at a terminal sees while a test runs; test_reports checks that a pipe gets none."""
import os
import shlex
import subprocess
import time
import unittest

from program import EXECUTABLE, LIMIT_SECONDS, ProgramTest, environment, settings

COLUMNS, ROWS = 100, 20
NARROW_COLUMNS = 42


class LiveLine(ProgramTest):
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

    def run_in_terminal(self, columns):
        command = ["wine", EXECUTABLE, "run", *settings(SSID="Lab", FailingSignalStrength=20)]
        # The shell keeps the screen open after the program has ended.
        self.tmux("-f", os.devnull, "new-session", "-d", "-x", str(columns), "-y", str(ROWS),
                  f"{shlex.join(map(str, command))}; echo ended with $?; sleep {LIMIT_SECONDS}")
        self.addCleanup(self.tmux, "kill-server")

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


if __name__ == "__main__":
    unittest.main()
