"""Ctrl+C at the console: the first ends the run after the current test, the second at once."""
import signal
import time
import unittest

from program import VERIFICATION, ProgramTest, Started, environment

# Within the pause of the forced scan, which takes 7 seconds.
INTO_THE_PAUSE_SECONDS = 1


class Interrupt(ProgramTest):
    def start(self):
        """Starts a run of one test on two adapters, in the middle of the first."""
        scenario = self.write("scenario.json", {"interfaces": [
            {"guid": f"00000000-0000-0000-0000-00000000000{number}",
             "description": f"Card {number}", "accessPoints": [{"ssid": "Lab", "signal": 60}]}
            for number in (1, 2)]})
        started = Started(("run", VERIFICATION, "--set", "SSID=Lab", "--set",
                           "FailingSignalStrength=20", "--json", "report.json"),
                          self.folder, environment(scenario))
        self.addCleanup(started.process.kill)
        started.wait_until_it_says("on Card 1")
        time.sleep(INTO_THE_PAUSE_SECONDS)
        return started

    def test_once_ends_the_run_after_the_current_test(self):
        started = self.start()
        started.process.send_signal(signal.SIGINT)
        run = started.finish()
        self.assertEqual(run.exit, 6, run)
        self.assertIn("Ctrl+C", run.err)
        results = self.read_json("report.json")["results"]
        self.assertEqual([(result["device"]["name"], result["result"]) for result in results],
                         [("Card 1", "PASS"), ("Card 2", "USERABORTED")], run)

    def test_twice_ends_the_process_at_once_and_leaves_no_report(self):
        started = self.start()
        started.process.send_signal(signal.SIGINT)
        time.sleep(1)
        started.process.send_signal(signal.SIGINT)
        self.assertEqual(started.finish().exit, 6)
        self.assertEqual([path.name for path in self.folder.iterdir()], ["scenario.json"])


if __name__ == "__main__":
    unittest.main()
