"""The table of ./bench: how it judges a figure, and that docs/performance.md has every figure."""
import pathlib
import re
import sys
import tempfile
import unittest
from unittest import mock

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "benchmarks"))
import run_benchmarks  # noqa: E402  (the path must be there first)
from goals import GOALS, Goal  # noqa: E402

RATIO = Goal("refresh", "A refresh", "us", "the call alone", ratio=4)
LIMIT = Goal("size", "The executable", "MB", limit=3)


class Row(unittest.TestCase):
    def test_a_ratio_at_its_goal_is_met_and_above_it_is_not(self):
        cells, met = run_benchmarks.row(RATIO, {"figure": 36, "floor": 9})
        self.assertEqual(cells, ("A refresh", "36.0 us", "the call alone: 9.00 us", "4.00",
                                 "at most 4", "yes"))
        self.assertTrue(met)
        cells, met = run_benchmarks.row(RATIO, {"figure": 36.1, "floor": 9})
        self.assertEqual(cells[-1], "NO")
        self.assertFalse(met)

    def test_a_figure_of_zero_meets_a_floor_of_zero(self):
        self.assertTrue(run_benchmarks.row(RATIO, {"figure": 0, "floor": 0})[1])
        self.assertFalse(run_benchmarks.row(RATIO, {"figure": 1, "floor": 0})[1])

    def test_a_figure_without_a_floor_has_a_limit(self):
        cells, met = run_benchmarks.row(LIMIT, {"figure": 2.5})
        self.assertEqual(cells, ("The executable", "2.50 MB", "", "", "at most 3 MB", "yes"))
        self.assertTrue(met)
        self.assertFalse(run_benchmarks.row(LIMIT, {"figure": 3.1})[1])

    def test_numbers_have_three_significant_digits(self):
        self.assertEqual([run_benchmarks.number(value) for value in (0, 0.051, 4.2, 31.44, 4711)],
                         ["0", "0.05", "4.20", "31.4", "4,711"])


class Page(unittest.TestCase):
    def test_recording_replaces_the_table_and_nothing_else(self):
        with tempfile.TemporaryDirectory() as folder:
            page = pathlib.Path(folder) / "page.md"
            page.write_text(f"before\n\n{run_benchmarks.BEGIN}\nold\n{run_benchmarks.END}\n\nafter\n",
                            encoding="utf-8")
            with mock.patch.object(run_benchmarks, "PAGE", page):
                run_benchmarks.record([run_benchmarks.row(LIMIT, {"figure": 2.5})[0]])
                run_benchmarks.record([run_benchmarks.row(LIMIT, {"figure": 2.6})[0]])
            text = page.read_text(encoding="utf-8")
        self.assertTrue(text.startswith("before\n\n"))
        self.assertTrue(text.endswith("\n\nafter\n"))
        self.assertIn("| The executable | 2.60 MB |", text)
        self.assertNotIn("old", text)
        self.assertNotIn("2.50", text)

    def test_the_page_has_a_row_for_every_goal(self):
        text = (ROOT / "docs" / "performance.md").read_text(encoding="utf-8")
        table = text.partition(run_benchmarks.BEGIN)[2].partition(run_benchmarks.END)[0]
        rows = re.findall(r"^\| ([^|]+) \|", table, re.MULTILINE)
        self.assertEqual(rows, ["what", "---", *(goal.what for goal in GOALS)])


class Goals(unittest.TestCase):
    def test_each_has_a_key_of_its_own_and_a_floor_where_it_is_a_ratio(self):
        self.assertEqual(len({goal.key for goal in GOALS}), len(GOALS))
        for goal in GOALS:
            self.assertEqual(bool(goal.floor), bool(goal.ratio), goal.key)


if __name__ == "__main__":
    unittest.main()
