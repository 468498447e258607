"""A sample of what tools/mutants changes in the verification test and the wireless device: do the
tests notice? The whole table is in docs/reliability.md."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLE = 20
SEED = 1
# Of the viable ones, in percent. Where the sources change the sample is another one, and a mutant in
# it may be one of those that docs/reliability.md lists as not to be noticed.
NOTICED_AT_LEAST = 80


class Sample(unittest.TestCase):
    def test_is_noticed(self):
        with tempfile.TemporaryDirectory() as folder:
            # Results of its own: what an earlier run found out says nothing of the tests of today.
            tool = subprocess.run(
                [sys.executable, ROOT / "tools" / "mutants", "--sample", str(SAMPLE), "--seed",
                 str(SEED), "--files", "/MRLrAntenna.cpp", "--files", "/WirelessDevice",
                 "--results", pathlib.Path(folder) / "results.jsonl"],
                capture_output=True, text=True, check=False)
        self.assertEqual(tool.returncode, 0, tool.stderr)
        row = re.search(r"^\| all \| (\d+) \| (\d+) \| (\d+) \| (\d+) \|", tool.stdout, re.MULTILINE)
        self.assertIsNotNone(row, tool.stdout)
        mutants, noticed, survived, unviable = map(int, row.groups())
        self.assertEqual(mutants, SAMPLE)
        self.assertEqual(noticed + survived + unviable, SAMPLE)
        self.assertGreaterEqual(100 * noticed, NOTICED_AT_LEAST * (noticed + survived), tool.stdout)


if __name__ == "__main__":
    unittest.main()
