"""What tools/mutants changes in a source, what it leaves alone, and what it keeps and says of it."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
from mutation import campaign
from mutation.lab import ROOT, Verdict, sources, waited
from mutation.mutants import mutants_of


def function(*lines, before="", head="void f()"):
    return "\n".join((f"{before}{head} {{", *(f"    {line}" for line in lines), "}\n"))


def changed(text, kind=None):
    """The lines that differ, of every mutant of one kind, each without its indentation."""
    found = []
    for mutant in mutants_of("a.cpp", text):
        if kind in (None, mutant.kind):
            lines = [line[1:].strip() for line in mutant.diff(text).splitlines()
                     if line.startswith("+") and not line.startswith("+++")]
            found.append(" ".join(lines))
    return found


COMPARISONS = function("g(a < b);", "g(c == d);")
RESERVE = function("g();", "a.reserve(b.size());", "h();")
# What is shown, a source, a kind of change (None: every one), and the changed lines.
CHANGES = (
    ("comparisons are turned", COMPARISONS, "comparison turned", ["g(a > b);", "g(c != d);"]),
    ("comparisons are shifted by one", COMPARISONS, "comparison shifted", ["g(a <= b);"]),
    ("templates are no comparisons",
     function("g(static_cast<long>(a), std::vector<std::vector<char>>());",
              before="template <typename T>\n"), "comparison turned", []),
    ("conditions are negated",
     function("if (a && b()) {", "    g();", "}", "while (c()) {", "    h();", "}"),
     "condition negated", ["if (!(a && b())) {", "if (a || b()) {", "while (!(c())) {"]),
    ("the condition of a for is its middle",
     function("for (int i = 0; i < n(); ++i) {", "    g();", "}"),
     "condition negated", ["for (int i = 0; !(i < n()); ++i) {"]),
    ("a comparison that is turned is not negated too",
     function("if (a == b) {", "    g();", "}"), "condition negated", []),
    ("the arms of a choice are exchanged",
     function("g(a ? b(1, 2) : c);"), "condition negated", ["g(a ? c : b(1, 2));"]),
    ("a negation is taken away", function("g(!a);"), "condition negated", ["g(a);"]),
    ("statements are removed", function("g();", "m_a = 1;", "if (b) {", "    return;", "}", "h();"),
     "statement removed", [";", ";", ";", ";"]),
    ("what a function returns last stays",
     function("return a();", head="int f()"), "statement removed", []),
    ("a declaration goes only where nothing uses it",
     function("const Trace trace(1);", "const int used = a();", "g(used);"),
     "statement removed", [";", ";"]),
    ("memory reserved for speed is nothing that tests see", RESERVE, "statement removed", [";", ";"]),
    ("memory reserved for speed keeps its place", RESERVE, "statements exchanged", []),
    ("constants are altered",
     "constexpr int A = 99;\nconstexpr double B = 30.0;\nconstexpr unsigned C = 0xFFu;\n"
     "constexpr bool D = true;\n", "constant altered",
     ["constexpr int A = 100;", "constexpr double B = 31.0;", "constexpr unsigned C = 256u;",
      "constexpr bool D = false;"]),
    ("texts are altered in a letter that is not escaped",
     'const char* a = "\\n%d of";\nconst char* b = "";\n', "text altered",
     ['const char* a = "\\n%d xf";', 'const char* b = "x";']),
    ("of joined texts one is altered",
     'const char* a = "one "\n    "text";\n', "text altered", ['const char* a = "xne "']),
    ("signs change in casts and in locals",
     function("const mrl::Uint32 n = g(static_cast<int>(a));",
              "for (mrl::Uint32 i = 0; i < n; ++i) {", "    h();", "}"), "sign changed",
     ["const mrl::Int32 n = g(static_cast<int>(a));",
      "const mrl::Uint32 n = g(static_cast<unsigned int>(a));"]),
    ("signs of parameters change where no header declares them",
     "namespace {\nvoid f(unsigned int a) {\n    g(a);\n}\n} // namespace\n", "sign changed",
     ["void f(int a) {"]),
    ("signs of line numbers stay",
     "namespace {\nvoid f(int line, mrl::Uint32 logLine) {\n    g(line, logLine);\n}\n} // namespace\n",
     "sign changed", []),
    ("signs of other parameters stay",
     function("g(a);", head="void f(unsigned int a)"), "sign changed", []),
    ("neighbouring arguments are exchanged", function("g(a, b(1, x), 2);"), "arguments exchanged",
     ["g(b(1, x), a, 2);", "g(a, 2, b(1, x));", "g(a, b(x, 1), 2);"]),
    ("arguments whose order means nothing stay",
     function("g(std::min(a, b));"), "arguments exchanged", []),
    ("bodies of lambdas are functions too", function("g([this](int a) { h(a); });"),
     "statement removed", [";", "g([this](int a) { ; });"]),
    ("a body behind initialisers of members is found",
     "A::A(int a) : m_a(a), m_b{a} {\n    g();\n}\n", "statement removed", [";"]),
    ("comments, preprocessor lines and what is for the compiler stay",
     '// a < b, "c", 1\n/* return 1; */\n#include "a.h"\n#define A(b) \\\n    ((b) < 1)\n'
     "static_assert(sizeof(int) == 4);\nusing mrl::String;\n", None, []),
    ("raw texts end at their own mark",
     'auto a = R"x(1 " < 2 )" b)x";\n', None, ['auto a = R"x(1 " < 2 )" x)x";']),
)


class WhatIsChanged(unittest.TestCase):
    def test_is_each_kind_in_its_place(self):
        for shown, text, kind, expected in CHANGES:
            with self.subTest(shown):
                self.assertEqual(sorted(changed(text, kind)), sorted(expected))

    def test_marks_inside_texts_mean_nothing(self):
        kinds = {mutant.kind for mutant in
                 mutants_of("a.cpp", 'auto a = "if (b < 1) { return; } // c";\nauto d = \'"\';\n')}
        self.assertEqual(kinds, {"text altered", "constant altered"})

    def test_neighbouring_statements_are_exchanged_where_neither_follows_from_the_other(self):
        for lines, *expected in (
                (("g();", "if (a) {", "    h();", "}"), ("if (a) {", "    h();", "}", "g();")),
                (("const int a = g();", "h(a);", "return;"),),
                (("g();", 'const mrl::Char* a = MRL_TEXT("x");', "h(a);"),),
                (("m_a = 0;", "m_b = 0;"),),
                (("m_a = 0;", "m_b = m_a;"), ("m_b = m_a;", "m_a = 0;"))):
            with self.subTest(lines):
                text = function(*lines)
                self.assertEqual([mutant.applied(text) for mutant in mutants_of("a.cpp", text)
                                  if mutant.kind == "statements exchanged"],
                                 [function(*other) for other in expected])

    def test_rows_of_a_message_map_are_removed(self):
        text = "BEGIN_MESSAGE_MAP(A, B)\nON_WM_PAINT()\nON_WM_CLOSE()\nEND_MESSAGE_MAP()\n"
        self.assertEqual([m.applied(text).splitlines() for m in mutants_of("a.cpp", text)],
                         [["BEGIN_MESSAGE_MAP(A, B)", "", "ON_WM_CLOSE()", "END_MESSAGE_MAP()"],
                          ["BEGIN_MESSAGE_MAP(A, B)", "ON_WM_PAINT()", "", "END_MESSAGE_MAP()"]])


class EverySource(unittest.TestCase):
    def test_is_understood_and_has_mutants_that_differ_from_it(self):
        for file, _, programs in sources():
            with self.subTest(file=file):
                text = (ROOT / file).read_text(encoding="utf-8")
                self.assertTrue(programs)
                for mutant in mutants_of(file, text):
                    self.assertNotEqual(mutant.applied(text), text)
                    self.assertGreater(len(mutant.diff(text).splitlines()), 3)

    def test_the_two_tests_have_mutants_of_every_kind(self):
        kinds = set()
        for file, _, _ in sources():
            kinds |= {m.kind for m in mutants_of(file, (ROOT / file).read_text(encoding="utf-8"))}
        self.assertEqual(kinds, {
            "comparison turned", "comparison shifted", "condition negated", "statement removed",
            "statements exchanged", "constant altered", "text altered", "sign changed",
            "arguments exchanged"})


class Program:
    """Writes a line in each of the given seconds of a clock that only waiting moves, and ends."""

    def __init__(self, output, writes, ends):
        self._output = output
        self._writes = writes
        self._ends = ends
        self.seconds = 0

    def own_time(self, _process):
        return self.seconds

    def wait(self, timeout):
        before, self.seconds = self.seconds, self.seconds + timeout
        if self._ends is not None and self._ends <= self.seconds:
            return 0
        for _ in (moment for moment in self._writes if before < moment <= self.seconds):
            self._output.write(b"a line\n")
            self._output.flush()
        raise subprocess.TimeoutExpired("program", timeout)

    def poll(self):
        return None


class TheTimeOfAProgram(unittest.TestCase):
    def end_of(self, writes, ends=None):
        """The exit value, and the second in which the program was left."""
        with tempfile.TemporaryFile() as output:
            program = Program(output, writes, ends)
            return waited(program, 100, output, 20, program.own_time), program.seconds

    def test_is_over_soon_when_it_is_silent(self):
        self.assertEqual(self.end_of(writes=[3, 4]), (None, 24))

    def test_is_over_when_it_writes_for_ever(self):
        self.assertEqual(self.end_of(writes=range(200)), (None, 100))

    def test_is_all_its_own_while_it_writes(self):
        self.assertEqual(self.end_of(writes=[19, 38, 57, 76], ends=95), (0, 95))


class Bench:
    """In the lab's place: what comes of a mutant is known, and each try is counted."""

    def __init__(self, results, programs="one"):
        self.results = list(results)
        self.programs = programs
        self.tried = 0

    def signature(self, _file):
        return self.programs

    def remember(self, _file, _test):
        pass

    def stop(self):
        pass

    def try_mutant(self, _mutant, _text):
        self.tried += 1
        result = self.results.pop(0)
        if result == "Ctrl+C":
            raise KeyboardInterrupt
        return Verdict(result, "Suite.Test" if result == "noticed" else "")


class Campaigns(unittest.TestCase):
    TEXT = "constexpr int A = 1;\nconstexpr int B = 2;\nconstexpr int C = 3;\n"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name) / "results.jsonl"
        self.mutants = mutants_of("a.cpp", self.TEXT)
        self.assertEqual(len(self.mutants), 3)

    def run_on(self, bench, text=None):
        return campaign.run(self.mutants, {"a.cpp": text or self.TEXT},
                            campaign.Results(self.path), bench, 1, lambda *_: None)

    def test_a_run_that_was_stopped_goes_on_there(self):
        with self.assertRaises(KeyboardInterrupt):
            self.run_on(Bench(["noticed", "Ctrl+C"]))
        bench = Bench(["survived", "unviable"])
        outcomes = self.run_on(bench)
        self.assertEqual(bench.tried, 2)
        self.assertEqual([entry["result"] for _, entry in outcomes],
                         ["noticed", "survived", "unviable"])

    def test_other_tests_try_only_what_survived_the_old_ones(self):
        self.run_on(Bench(["noticed", "survived", "unviable"]))
        bench = Bench(["noticed"], programs="two")
        self.assertEqual([entry["result"] for _, entry in self.run_on(bench)],
                         ["noticed", "noticed", "unviable"])
        self.assertEqual(bench.tried, 1)

    def test_another_text_of_the_source_is_tried_anew(self):
        self.run_on(Bench(["noticed"] * 3))
        bench = Bench(["noticed"] * 3)
        self.run_on(bench, self.TEXT + "\n")
        self.assertEqual(bench.tried, 3)

    def test_a_line_that_was_cut_harms_only_itself(self):
        self.run_on(Bench(["noticed"] * 3))
        self.path.write_text(self.path.read_text()[:-20])
        bench = Bench(["survived"])
        self.run_on(bench)
        self.assertEqual(bench.tried, 1)
        lines = self.path.read_text().splitlines()
        self.assertEqual(json.loads(lines[-1])["result"], "survived")

    def test_a_share_is_the_same_for_the_same_seed(self):
        mutants = mutants_of("a.cpp", "".join(f"constexpr int A{i} = {i};\n" for i in range(100)))
        self.assertEqual(campaign.chosen(mutants, 20, 7), campaign.chosen(mutants, 20, 7))
        self.assertNotEqual(campaign.chosen(mutants, 20, 7), campaign.chosen(mutants, 20, 8))
        self.assertEqual(len(campaign.chosen(mutants, 20, 7)), 20)
        self.assertEqual(campaign.chosen(mutants, None, 7), mutants)

    def test_the_table_counts_by_file_and_shows_survivors(self):
        page = campaign.markdown(self.run_on(Bench(["noticed", "survived", "unviable"])),
                                 {"a.cpp": self.TEXT}, "All 3 mutants.")
        self.assertEqual(page, """All 3 mutants.

| source | mutants | noticed | survived | unviable | noticed of the viable |
| --- | --- | --- | --- | --- | --- |
| `a.cpp` | 3 | 1 | 1 | 1 | 50 % |
| all | 3 | 1 | 1 | 1 | 50 % |

Survivors:

`a.cpp`, line 2: constant altered

```diff
--- a/a.cpp
+++ b/a.cpp
@@ -1,3 +1,3 @@
 constexpr int A = 1;
-constexpr int B = 2;
+constexpr int B = 3;
 constexpr int C = 3;
```
""")


if __name__ == "__main__":
    unittest.main()
