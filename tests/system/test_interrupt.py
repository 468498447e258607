"""Ctrl+C at the console: the first ends the run after the current test, the second at once."""
import signal
import subprocess
import time
import unittest

from program import EXECUTABLE, LIMIT_SECONDS, VERIFICATION, ProgramTest, environment

# Well into the forced scan's pause of 7 seconds.
INTO_THE_PAUSE_SECONDS = 3


class Interrupt(ProgramTest):
    def start(self):
        """Starts a run of one test on two adapters, in the middle of the first."""
        scenario = self.write("scenario.json", {"interfaces": [
            {"guid": f"00000000-0000-0000-0000-00000000000{number}",
             "description": f"Card {number}", "accessPoints": [{"ssid": "Lab", "signal": 60}]}
            for number in (1, 2)]})
        process = subprocess.Popen(
            ["wine", str(EXECUTABLE), "run", VERIFICATION, "--set", "SSID=Lab", "--set",
             "FailingSignalStrength=20", "--json", "report.json"],
            cwd=self.folder, env=environment(scenario), stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, start_new_session=True)
        self.addCleanup(process.kill)
        time.sleep(INTO_THE_PAUSE_SECONDS)
        return process

    def test_once_ends_the_run_after_the_current_test(self):
        process = self.start()
        process.send_signal(signal.SIGINT)
        out, err = process.communicate(timeout=LIMIT_SECONDS)
        self.assertEqual(process.returncode, 6, err)
        self.assertIn("Ctrl+C", err.decode("utf-8"))
        results = self.read_json("report.json")["results"]
        self.assertEqual([(result["device"]["name"], result["result"]) for result in results],
                         [("Card 1", "PASS"), ("Card 2", "USERABORTED")], out)

    def test_twice_ends_the_process_at_once_and_leaves_no_report(self):
        process = self.start()
        process.send_signal(signal.SIGINT)
        time.sleep(1)
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=LIMIT_SECONDS)
        self.assertEqual(process.returncode, 6)
        self.assertEqual([path.name for path in self.folder.iterdir()], ["scenario.json"])


if __name__ == "__main__":
    unittest.main()
