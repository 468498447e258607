"""Captures by the shipped executable, their replays, and the simulator that reads them."""
import json
import unittest

import jsonschema

import side_by_side
from dialog import ID, DialogTest
from program import (REPLAY_DIFFERS, ROOT, SCENARIOS, VERIFICATION, WRONG_USAGE, ProgramTest,
                     settings)

load_tests = side_by_side.load_tests

RUN = ("run", VERIFICATION, *settings(SSID="Lab", FailingSignalStrength=20))


def without_times(report):
    """`report` with its times gone: those of the capture are the same, to be sure of it or not."""
    if isinstance(report, dict):
        return {name: without_times(value) for name, value in report.items()
                if name not in ("started", "ended", "seconds", "time")}
    return [without_times(value) for value in report] if isinstance(report, list) else report


class Captures(ProgramTest):
    def lines(self):
        text = (self.folder / "c.jsonl").read_text(encoding="utf-8")
        self.assertTrue(text.endswith("\n"))
        return [json.loads(line) for line in text.splitlines()]

    def test_of_a_run_fits_its_schema_and_replays_to_the_same_report_at_once(self):
        captured = self.run_program(*RUN, "--json", "a.json", "--capture", "c.jsonl")
        self.assertEqual(captured.exit, 0, captured)
        schema = json.loads((ROOT / "docs" / "schemas" / "capture.schema.json")
                            .read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        validator = jsonschema.Draft202012Validator(schema)
        lines = self.lines()
        for line in lines:
            self.assertEqual([error.message for error in validator.iter_errors(line)], [])
        self.assertTrue({"capture", "adapters", "call", "notification", "end"}
                        <= {name for line in lines for name in line})
        self.assertFalse(validator.is_valid({"at": 0, "thread": 1}))
        # Without a radio: the simulator would refuse this scenario.
        replayed = self.run_program("replay", "c.jsonl", "--json", "b.json",
                                    scenario=self.write("none.json", "nothing"))
        self.assertEqual((replayed.exit, replayed.err), (0, captured.err), replayed)
        self.assertEqual(replayed.out, captured.out)
        self.assertEqual(without_times(self.read_json("b.json")),
                         without_times(self.read_json("a.json")))
        self.assertEqual((self.folder / "b.json").read_bytes(),
                         (self.folder / "a.json").read_bytes())

    def test_of_doctor_and_list_replay_to_the_same(self):
        for command in (("list",), ("doctor", *settings(SSID="Lab"))):
            with self.subTest(command):
                captured = self.run_program(*command, "--capture", "c.jsonl")
                replayed = self.run_program("replay", "c.jsonl",
                                            scenario=self.write("none.json", "nothing"))
                self.assertEqual((replayed.exit, replayed.out, replayed.err),
                                 (captured.exit, captured.out, captured.err))

    def test_with_hidden_names_tell_no_network_and_give_the_same_verdict(self):
        run = self.run_program(*RUN, "--capture", "c.jsonl", "--capture-names", "hidden")
        text = (self.folder / "c.jsonl").read_text(encoding="utf-8")
        office = json.loads((SCENARIOS / "office.json").read_text(encoding="utf-8"))
        for access_point in office["interfaces"][0]["accessPoints"]:
            name = access_point.get("ssid", "")
            if len(name) > 2:
                self.assertNotIn(f'"{name}"', text)
                self.assertNotIn(name.encode("utf-8").hex() + "00", text)
        self.assertEqual(self.run_program("replay", "c.jsonl").exit, run.exit)

    def test_that_differ_or_are_none_end_with_their_exit_values(self):
        self.run_program("list", "--capture", "c.jsonl")
        path = self.folder / "c.jsonl"
        path.write_text(path.read_text(encoding="utf-8").replace("WlanCloseHandle", "WlanScan"),
                        encoding="utf-8")
        run = self.run_program("replay", "c.jsonl")
        self.assertEqual(run.exit, REPLAY_DIFFERS, run)
        self.assertIn("expected was WlanScan", run.err)
        self.write("c.jsonl", "nothing\n")
        self.assertEqual(self.run_program("replay", "c.jsonl").exit, WRONG_USAGE)

    def test_are_scenarios_of_the_simulator(self):
        captured = self.run_program(*RUN, "--capture", "c.jsonl")
        again = self.run_program(*RUN, scenario=self.folder / "c.jsonl")
        self.assertEqual((again.exit, again.err), (captured.exit, captured.err))


class OfTheDialog(DialogTest):
    def test_is_not_replayed_but_opens_the_dialog_in_the_simulator(self):
        bench = {"interfaces": [{"accessPoints": [
            {"ssid": "Attic", "signal": 30}, {"ssid": "Bench", "signal": 70}]}]}
        for scenario, options in ((bench, ("--capture", "c.jsonl")),
                                  (self.folder / "c.jsonl", ())):
            dialog = self.open(scenario, options=options)
            self.assertEqual(dialog.control(ID.NETWORK_COMBO)["entries"], ["Attic", "Bench"])
            dialog.select(1)
            self.assert_becomes(lambda shown=dialog: shown.text(ID.SSID), "Bench")
            self.assertEqual(dialog.strength()[0], 70)
            dialog.press("Escape")
            dialog.ended()
        replayed = self.run_program("replay", "c.jsonl")
        self.assertEqual(replayed.exit, WRONG_USAGE, replayed)
        self.assertIn("DiversityTest", replayed.err)


if __name__ == "__main__":
    unittest.main()
