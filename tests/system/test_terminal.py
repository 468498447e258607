"""What a person at a terminal sees while a test runs; test_reports checks that a pipe gets none."""
import os
import shlex
import subprocess
import time
import unittest

from program import EXECUTABLE, LIMIT_SECONDS, ProgramTest, environment, settings

COLUMNS, ROWS = 100, 20


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

    def test_shows_the_activity_and_disappears_with_the_verdict(self):
        command = ["wine", EXECUTABLE, "run", *settings(SSID="Lab", FailingSignalStrength=20)]
        # The shell keeps the screen open after the program has ended.
        self.tmux("-f", os.devnull, "new-session", "-d", "-x", str(COLUMNS), "-y", str(ROWS),
                  f"{shlex.join(map(str, command))}; sleep {LIMIT_SECONDS}")
        self.addCleanup(self.tmux, "kill-server")
        screens = self.screens_until("exit value 0")
        live = [line for screen in screens for line in screen.splitlines() if "so far" in line]
        self.assertRegex("\n".join(live),
                         r"(?m)^  Scanning for networks: \d+ s so far, at most \d+ s more$")
        self.assertGreater(len(set(live)), 2, "the seconds go on")
        self.assertNotIn("so far", screens[-1])
        self.assertRegex(screens[-1], r"(?m)^  PASS after \d+\.\d s$")


if __name__ == "__main__":
    unittest.main()
