"""docs/windows.md and the checks of its assumptions: none is there without the other."""
import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = sorted((ROOT / "tools" / "contract" / "src").glob("*Checks.cpp"))
CHECK = re.compile(r'\{"([a-z]+\.[a-z0-9-]+)",\s*((?:"[^"]*"\s*)+),')
TEST = re.compile(r"^TEST(?:_[FP])?\((\w+),\s*(\w+)\)", re.MULTILINE)


def rows(page, heading):
    """The cells of the table under a heading, without its head."""
    section = page.split(f"\n## {heading}\n", 1)[1].split("\n## ", 1)[0]
    lines = [line for line in section.splitlines() if line.startswith("|")]
    return [[cell.strip() for cell in line.strip("|").split("|")] for line in lines[2:]]


class WindowsPage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = (ROOT / "docs" / "windows.md").read_text(encoding="utf-8")
        cls.readme = (ROOT / "tools" / "contract" / "kit" / "README.txt").read_text("ascii")

    def test_has_each_check_of_the_program_in_its_words_and_no_other(self):
        checks = {}
        for source in SOURCES:
            for identity, literals in CHECK.findall(source.read_text(encoding="utf-8")):
                checks[identity] = "".join(re.findall(r'"([^"]*)"', literals))
        self.assertGreater(len(checks), 30)
        page = [(cells[-1].strip("`"), cells[0])
                for cells in rows(self.page, "The Native Wifi interface")]
        self.assertEqual(sorted(page), sorted(checks.items()))

    def test_has_every_cell(self):
        for heading, columns in (("The Native Wifi interface", 4), ("Windows and controls", 5)):
            for cells in rows(self.page, heading):
                self.assertEqual(len(cells), columns, cells)
                self.assertTrue(all(cells), cells)

    def test_names_tests_and_steps_that_exist(self):
        steps = set()
        for cells in rows(self.page, "Windows and controls"):
            with self.subTest(cells[0]):
                tests = re.findall(r"`test_(\w+) (\w+)\.(\w+)`", cells[-1])
                named = re.findall(r"step (\d)", cells[-1])
                self.assertTrue(tests or named)
                for folder, suite, name in tests:
                    sources = (ROOT / "tests" / folder).glob("*.cpp")
                    self.assertIn((suite, name), [found for source in sources for found in
                                                  TEST.findall(source.read_text("utf-8"))])
                for step in named:
                    self.assertRegex(self.readme, rf"(?m)^{step}  ")
                steps.update(named)
        questions = re.findall(r"(?m)^(\d)  ((?:.+\n|\n(?!\d  |Send))+)", self.readme)
        self.assertEqual(steps, {step for step, text in questions if "?" in text},
                         "each question of the kit settles an assumption")


if __name__ == "__main__":
    unittest.main()
