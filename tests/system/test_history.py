"""Journals of real runs, by several processes at once and killed ones, and what history says."""
import contextlib
import json
import os
import pathlib
import signal
import unittest

import jsonschema

from program import RESULTS, VERIFICATION, WRONG_USAGE, ProgramTest, Started, environment, settings

SCHEMAS = pathlib.Path(__file__).resolve().parents[2] / "docs" / "schemas"
AT_ONCE = 6
ROUNDS = 3
# Enough results for a line that takes a while to write.
CARDS = 300


def validator(name):
    """The schema of that name; its parts of the report have their schema in the same folder."""
    schema = json.loads((SCHEMAS / f"{name}.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    report = json.loads((SCHEMAS / "report.schema.json").read_text(encoding="utf-8"))
    schema.setdefault("$defs", {})["report"] = {"$id": "report.schema.json", **report}
    return jsonschema.Draft202012Validator(schema)


class History(ProgramTest):
    def cards(self, count=1, text=""):
        self.write("cards.json", [
            {"name": f"Card {number}", "capabilities": ["Wireless", "NetworkCard"],
             "properties": {"wlanAPISupported": "", "DeviceSystemName": text}}
            for number in range(count)])
        return ("run", VERIFICATION, "--devices", "cards.json", "--journal", "line.jsonl")

    def bytes(self):
        return (self.folder / "line.jsonl").read_bytes()

    def lines(self):
        return [json.loads(line) for line in self.bytes().decode("ascii").splitlines()]

    def history(self, *arguments):
        run = self.run_program("history", "line.jsonl", "--format", "json", *arguments)
        self.assertEqual(run.exit, 0, run)
        return json.loads(run.out)

    def test_of_a_measured_run_keeps_its_schema_and_so_does_the_line(self):
        arguments = ("run", VERIFICATION, *settings(SSID="Lab", FailingSignalStrength="20"),
                     "--journal", "line.jsonl")
        for _ in range(2):
            self.assertEqual(self.run_program(*arguments).exit, 0)
        schema = validator("journal")
        for line in self.lines():
            self.assertEqual([error.message for error in schema.iter_errors(line)], [])
        self.assertNotEqual(list(schema.iter_errors({"journal": 1})), [])
        history = self.history()
        schema = validator("history")
        self.assertEqual([error.message for error in schema.iter_errors(history)], [])
        self.assertNotEqual(list(schema.iter_errors({"schema": 1})), [])
        self.assertEqual((history["runs"], history["results"]), (2, {"PASS": 2}))
        self.assertEqual(history["levels"][0]["levels"][1]["measurement"],
                         self.lines()[1]["tests"][0]["measurements"][0])

    def test_of_several_processes_at_once_has_every_run(self):
        arguments = self.cards()
        for _ in range(ROUNDS):
            runs = [Started(arguments, self.folder, environment()) for _ in range(AT_ONCE)]
            for run in runs:
                self.assertEqual(run.finish().exit, RESULTS["BADPARAMS"])
        identifiers = {line["runIdentifier"] for line in self.lines()}
        self.assertEqual(len(identifiers), ROUNDS * AT_ONCE)
        self.assertEqual(self.history()["runs"], ROUNDS * AT_ONCE)

    def test_of_killed_processes_keeps_every_whole_line(self):
        arguments = self.cards(CARDS, "x" * 2000)
        self.assertEqual(self.run_program(*arguments).exit, RESULTS["BADPARAMS"])
        whole = self.bytes()
        for _ in range(4):
            before = self.bytes()
            started = self.start_program(*arguments)
            started.wait_until_it_says(f"on Card {CARDS - 1}")
            while self.bytes() == before and started.process.poll() is None:
                pass
            with contextlib.suppress(ProcessLookupError):  # it may be over already
                os.killpg(started.process.pid, signal.SIGKILL)
            started.finish()
            self.assertTrue(self.bytes().startswith(before))
        self.assertEqual(self.run_program(*arguments).exit, RESULTS["BADPARAMS"])
        self.assertTrue(self.bytes().startswith(whole))
        self.assertTrue(self.bytes().endswith(b"\n"))
        history = self.history()
        self.assertGreaterEqual(history["runs"], 2)
        self.assertEqual(history["runs"] + history["brokenLines"],
                         len(self.bytes().splitlines()))

    def test_of_a_journal_that_was_cut_or_is_from_a_later_version_has_the_other_runs(self):
        arguments = self.cards()
        self.assertEqual(self.run_program(*arguments).exit, RESULTS["BADPARAMS"])
        with open(self.folder / "line.jsonl", "ab") as journal:
            journal.write(b'{"journal":2}\n' + self.bytes()[:100])
        self.assertEqual(self.run_program(*arguments).exit, RESULTS["BADPARAMS"])
        run = self.run_program("history", "line.jsonl")
        self.assertEqual(run.exit, 0, run)
        self.assertIn("BADPARAMS 2", run.out)
        self.assertIn('"line.jsonl", line 3 does not count', run.err)
        self.assertIn("of a later version", run.err)

    def test_refuses_a_journal_that_is_a_folder_or_may_not_be_written(self):
        (self.folder / "line.jsonl").mkdir()
        for command in (self.cards(), ("history", "line.jsonl")):
            run = self.run_program(*command)
            self.assertEqual(run.exit, WRONG_USAGE, run)
            self.assertIn("it is a directory", run.err)
            self.assertEqual(len(run.err.splitlines()), 1, run)

    def test_page_shows_the_yield(self):
        self.assertEqual(self.run_program(*self.cards()).exit, RESULTS["BADPARAMS"])
        run = self.run_program("history", "line.jsonl", "--page", "history.html")
        self.assertEqual(run.exit, 0, run)
        page = (self.folder / "history.html").read_text(encoding="utf-8")
        self.assertIn("<title>History of runs</title>", page)
        self.assertIn("BADPARAMS 1", page)


if __name__ == "__main__":
    unittest.main()
