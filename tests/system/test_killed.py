"""A process that is killed leaves whole reports and log lines, and the next run works."""
import contextlib
import os
import re
import signal
import time
import unittest

from program import LOG_LINE, VERIFICATION, ProgramTest, settings

# Enough results for a report whose writing takes a while.
CARDS = 400


class Killed(ProgramTest):
    def kill(self, started):
        """Ends the program as Windows' task manager does: it cannot react."""
        with contextlib.suppress(ProcessLookupError):  # it may be over already
            os.killpg(started.process.pid, signal.SIGKILL)
        started.finish()

    def leftovers(self):
        return [path for path in self.folder.iterdir()
                if re.fullmatch(r"report\.json\.\d+-\d+\.tmp", path.name)]

    def wait_for_the_temporary_file(self, started):
        """Returns when the report is being written, or when the program has ended."""
        while not self.leftovers() and started.process.poll() is None:
            pass

    def assert_next_run_works(self):
        run = self.run_program("run", VERIFICATION, "--json", "report.json", "--log", "run.log")
        self.assertEqual(run.exit, 4, run)
        self.assertEqual(self.read_json("report.json")["results"][0]["result"], "BADPARAMS")
        self.assertEqual(self.leftovers(), [])
        lines = (self.folder / "run.log").read_text(encoding="utf-8").split("\n")
        self.assertEqual(lines.pop(), "")
        for line in lines:
            self.assertRegex(line, LOG_LINE)

    def test_during_the_scan(self):
        self.write("report.json", '{"an older": "report"}')
        started = self.start_program("run", VERIFICATION, *settings(SSID="Lab"), "--json",
                                     "report.json", "--log", "run.log", "--log-level", "0")
        started.wait_until_it_says("WirelessSignalStrength")
        self.kill(started)
        self.assertEqual(self.read_json("report.json"), {"an older": "report"})
        self.assertEqual(self.leftovers(), [])
        self.assert_next_run_works()

    def test_at_any_moment_around_the_writing_of_the_report(self):
        self.write("cards.json", [
            {"name": f"Card {number}", "capabilities": ["Wireless", "NetworkCard"],
             "properties": {"wlanAPISupported": "", "DeviceSystemName": "x" * 2000}}
            for number in range(CARDS)])
        arguments = ("run", VERIFICATION, "--devices", "cards.json", "--json", "report.json")
        whole = self.run_program(*arguments)
        self.assertEqual(whole.exit, 4, whole)
        old = (self.folder / "report.json").read_bytes()
        seen = set()
        for attempt in range(12):
            started = self.start_program(*arguments)
            started.wait_until_it_says(f"on Card {CARDS - 1}")
            if attempt % 2:
                self.wait_for_the_temporary_file(started)
            else:  # other moments, each later than the one before
                time.sleep(0.004 * attempt)
            self.kill(started)
            report = self.read_json("report.json")
            self.assertEqual(len(report["results"]), CARDS, "old or new, it is whole")
            new = (self.folder / "report.json").read_bytes() != old
            seen.add("the new report" if new else
                     "the old report and a temporary file" if self.leftovers() else
                     "the old report")
            old = (self.folder / "report.json").read_bytes()
        print(f"left behind in {attempt + 1} attempts: {', '.join(sorted(seen))}")
        self.run_program(*arguments)
        self.assertEqual(self.leftovers(), [], "the next report takes what was left away")
        self.assert_next_run_works()


if __name__ == "__main__":
    unittest.main()
