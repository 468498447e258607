"""Captures of runs on the Linux kernel's simulated radios: the programs for both systems replay
them to the same report."""
import json
import lzma
import unittest

from linux_program import LinuxProgramTest
from program import RESULTS, ROOT

KEPT = ROOT / "tests" / "mrlrantenna" / "captures"
WEAK = ["FAILING_SIGNAL_STRENGTH_DETECTED"]
RADIO_OFF = ["ERROR_NDIS_DOT11_POWER_STATE_INVALID"]
# Result, events, and the fixed pauses in seconds.
VERDICTS = {"pass": ("PASS", [], 7), "warn": ("WARN", WEAK, 7), "fail": ("FAIL", WEAK, 7),
            "absent": ("FAIL", ["ACCESS_POINT_NOT_FOUND"], 44),
            "radio-off": ("CANNOTRUN", RADIO_OFF, 0),
            "switched-off": ("CANNOTRUN", RADIO_OFF, 14), "adapter-gone": ("CANNOTRUN", [], 7),
            "unprivileged": ("PASS", [], 0), "connected": ("PASS", [], 7),
            "hostile-name": ("PASS", [], 7)}


def content_of(path):
    return lzma.decompress(path.read_bytes()) if path.suffix == ".xz" else path.read_bytes()


class KeptCaptures(LinuxProgramTest):
    def test_replay_to_their_verdicts_on_both_systems(self):
        paths = {path.name.split(".")[0]: path for path in KEPT.iterdir()}
        self.assertEqual(set(paths), set(VERDICTS))
        for name, (result, events, seconds) in VERDICTS.items():
            with self.subTest(name):
                (self.folder / "kept.jsonl").write_bytes(content_of(paths[name]))
                reports = []
                for run, report in ((self.run_program, "linux.json"),
                                    (self.run_windows_program, "windows.json")):
                    done = run("replay", "kept.jsonl", "--json", report)
                    self.assertEqual(done.exit, RESULTS[result], done)
                    reports.append(self.read_json(report)["results"][0])
                for found in reports:
                    self.assertEqual((found["result"], [event["key"] for event in found["events"]]),
                                     (result, events))
                    self.assertGreaterEqual(found["seconds"], seconds)
                self.assertEqual(*[json.dumps({**found, "advice": None}) for found in reports])


if __name__ == "__main__":
    unittest.main()
