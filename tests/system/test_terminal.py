"""What a person at a terminal sees while a test runs; test_reports checks that a pipe gets none."""
import os
import shlex
import subprocess
import time
import unittest

from program import EXECUTABLE, LIMIT_SECONDS, ProgramTest, environment, settings

COLUMNS, ROWS = 100, 20


class Terminal:
    """A program in a terminal of its own, read as the screen shows it."""

    def __init__(self, folder, command, env):
        self._tmux = ["tmux", "-S", str(folder / "terminal")]
        line = " ".join(shlex.quote(str(word)) for word in command)
        # The shell keeps the screen open after the program has ended.
        subprocess.run([*self._tmux, "-f", os.devnull, "new-session", "-d", "-x", str(COLUMNS),
                        "-y", str(ROWS), f"{line}; sleep {LIMIT_SECONDS}"],
                       cwd=folder, env=env, check=True)

    def screen(self):
        return subprocess.run([*self._tmux, "capture-pane", "-p"], check=True,
                              capture_output=True, text=True, encoding="utf-8").stdout

    def screens_until(self, text):
        """Every different screen up to the one that has `text`."""
        seen = []
        end = time.monotonic() + LIMIT_SECONDS
        while True:
            screen = self.screen()
            if not seen or screen != seen[-1]:
                seen.append(screen)
            if text in screen:
                return seen
            if time.monotonic() > end:
                raise AssertionError(f"the screen never had {text!r}:\n{screen}")
            time.sleep(0.1)

    def close(self):
        subprocess.run([*self._tmux, "kill-server"], check=False, capture_output=True)


class LiveLine(ProgramTest):
    def test_shows_the_activity_and_disappears_with_the_verdict(self):
        command = ["wine", EXECUTABLE, "run", *settings(SSID="Lab", FailingSignalStrength=20)]
        terminal = Terminal(self.folder, command, environment(TERM="xterm-256color"))
        self.addCleanup(terminal.close)
        screens = terminal.screens_until("exit value 0")
        live = [line for screen in screens for line in screen.splitlines() if "so far" in line]
        self.assertRegex("\n".join(live),
                         r"(?m)^  Scanning for networks: \d+ s so far, at most \d+ s more$")
        self.assertGreater(len(set(live)), 2, "the seconds go on")
        self.assertNotIn("so far", screens[-1])
        self.assertRegex(screens[-1], r"(?m)^  PASS after \d+\.\d s$")


if __name__ == "__main__":
    unittest.main()
