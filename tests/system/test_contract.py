"""The program that checks the assumptions about the Native Wifi interface, on the simulator's DLL."""
import json
import signal
import time

from program import DIST, OUTPUT_LOST, SCENARIOS, WRONG_USAGE, ProgramTest

CONTRACT = DIST.parent / "contract" / "contract.exe"


class ContractTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.executable = CONTRACT

    def lines(self, name="contract.jsonl"):
        return [json.loads(line) for line in
                (self.folder / name).read_text(encoding="utf-8").splitlines()]

    def verdicts(self):
        return {line["check"]: line["verdict"] for line in self.lines() if "check" in line}

    def calls(self):
        return [json.loads(line)["function"] for line in
                (self.folder / "trace.jsonl").read_text(encoding="utf-8").splitlines()]

    def test_changes_nothing_by_default_and_says_what_it_saw(self):
        run = self.run_program(RADIOSIM_TRACE="trace.jsonl")
        self.assertEqual(run.exit, 0, run)
        head, *others = self.lines()
        self.assertEqual(head["contract"], 1)
        self.assertRegex(head["system"], r"\A\d+\.\d+\.\d+\Z")
        self.assertEqual([interface["description"] for interface in head["interfaces"]],
                         ["Simulated Wireless-AC Adapter"])
        self.assertFalse(head["scan"] or head["radio"])
        self.assertNotIn("broken", self.verdicts().values())
        self.assertEqual(self.verdicts()["query.radio-state"], "held")
        self.assertFalse({"WlanScan", "WlanSetInterface"} & set(self.calls()))
        captured = [line["captured"] for line in others if "captured" in line]
        self.assertEqual(captured[0]["names"], "hidden")
        self.assertGreater(len(captured), 15)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()),
                         ["contract.jsonl", "trace.jsonl"])

    def test_says_which_assumption_is_broken(self):
        scenario = json.loads((SCENARIOS / "office.json").read_text(encoding="utf-8"))
        scenario["faults"] = [{"function": "WlanQueryInterface", "opcode": 4, "dataSize": 16}]
        run = self.run_program(scenario=scenario)
        self.assertEqual(run.exit, 1, run)
        self.assertEqual([check for check, verdict in self.verdicts().items()
                          if verdict == "broken"], ["query.radio-state"])

    def test_puts_the_radio_back_after_an_interrupt(self):
        scenario = json.loads((SCENARIOS / "office.json").read_text(encoding="utf-8"))
        # Switching it off takes so long that the interrupt comes before it is on again.
        scenario["faults"] = [{"function": "WlanSetInterface", "nth": 1, "delayMs": 5000}]
        started = self.start_program("--radio", scenario=scenario, RADIOSIM_TRACE="trace.jsonl")
        started.wait_until_it_says("switched off")
        time.sleep(1)
        started.process.send_signal(signal.SIGINT)
        run = started.finish()
        self.assertEqual(self.calls().count("WlanSetInterface"), 2, run)
        self.assertIn("switched on again", run.out)
        self.assertEqual(self.verdicts()["radio.off-connection"], "not observable")
        self.assertIn('"interrupted"', run.out)

    def test_has_the_results_of_test_programs(self):
        self.write("test_a.json", {"tests": 2, "failures": 1, "testsuites": [{"testsuite": [
            {"name": "Good", "classname": "A"},
            {"name": "Bad", "classname": "A", "failures": [{"failure": "text"}]}]}]})
        self.write("test_b.json", "{")
        run = self.run_program("--tests", "test_a.json", "test_b.json", "test_c.json")
        self.assertEqual(run.exit, 0, run)
        _, first, second, third, *_ = self.lines()
        self.assertEqual(first, {"program": "test_a", "tests": 2, "failed": [
            {"test": "A.Bad", "failures": [{"failure": "text"}]}]})
        self.assertIn("reason", second)
        self.assertEqual(third, {"program": "test_c.json",
                                 "reason": "the report cannot be read"})

    def test_refuses_what_it_does_not_know_and_a_file_that_cannot_be_written(self):
        self.assertEqual(self.run_program("--wrong").exit, WRONG_USAGE)
        run = self.run_program("--output", "none/contract.jsonl")
        self.assertEqual(run.exit, OUTPUT_LOST)
        self.assertIn("none/contract.jsonl cannot be written", run.err)
        self.assertEqual(self.run_program("--help").exit, 0)


if __name__ == "__main__":
    import unittest
    unittest.main()
