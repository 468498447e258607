"""What tools/mutants changes in a source, what it leaves alone, and what it keeps and says of it."""

import json
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
from mutation import campaign
from mutation.lab import ROOT, Verdict, sources
from mutation.mutants import mutants_of


def function(body, before="", head="void f()"):
    return f"{before}{head} {{\n{body}\n}}\n"


def changed(text, kind=None):
    """The lines that differ, of every mutant of one kind, each without its indentation."""
    found = []
    for mutant in mutants_of("a.cpp", text):
        if kind in (None, mutant.kind):
            lines = [line[1:].strip() for line in mutant.diff(text).splitlines()
                     if line.startswith("+") and not line.startswith("+++")]
            found.append(" ".join(lines))
    return found


class WhatIsChanged(unittest.TestCase):
    def assert_changed(self, text, kind, expected):
        self.assertEqual(sorted(changed(text, kind)), sorted(expected))

    def test_comparisons_are_turned_and_shifted_by_one(self):
        text = function("    g(a < b);\n    g(c == d);")
        self.assert_changed(text, "comparison turned", ["g(a > b);", "g(c != d);"])
        self.assert_changed(text, "comparison shifted", ["g(a <= b);"])

    def test_templates_are_no_comparisons(self):
        text = function("    g(static_cast<long>(a), std::vector<std::vector<char>>());",
                        before="template <typename T>\n")
        self.assert_changed(text, "comparison turned", [])

    def test_conditions_are_negated(self):
        self.assert_changed(
            function("    if (a && b()) {\n        g();\n    }\n    while (c()) {\n        h();\n    }"),
            "condition negated",
            ["if (!(a && b())) {", "if (a || b()) {", "while (!(c())) {"])

    def test_the_condition_of_a_for_is_its_middle(self):
        self.assert_changed(function("    for (int i = 0; i < n(); ++i) {\n        g();\n    }"),
                            "condition negated", ["for (int i = 0; !(i < n()); ++i) {"])

    def test_a_comparison_that_is_turned_is_not_negated_too(self):
        self.assert_changed(function("    if (a == b) {\n        g();\n    }"), "condition negated", [])

    def test_the_arms_of_a_choice_are_exchanged(self):
        self.assert_changed(function("    g(a ? b(1, 2) : c);"), "condition negated",
                            ["g(a ? c : b(1, 2));"])

    def test_a_negation_is_taken_away(self):
        self.assert_changed(function("    g(!a);"), "condition negated", ["g(a);"])

    def test_statements_are_removed(self):
        self.assert_changed(
            function("    g();\n    m_a = 1;\n    if (b) {\n        return;\n    }\n    h();"),
            "statement removed", [";", ";", ";", ";"])

    def test_what_a_function_returns_last_stays(self):
        self.assert_changed(function("    return a();", head="int f()"), "statement removed", [])

    def test_a_declaration_goes_only_where_nothing_uses_it(self):
        self.assert_changed(
            function("    const Trace trace(1);\n    const int used = a();\n    g(used);"),
            "statement removed", [";", ";"])

    def assert_exchanged(self, body, expected):
        text = function(body)
        self.assertEqual([mutant.applied(text) for mutant in mutants_of("a.cpp", text)
                          if mutant.kind == "statements exchanged"],
                         [function(other) for other in expected])

    def test_neighbouring_statements_are_exchanged(self):
        self.assert_exchanged("    g();\n    if (a) {\n        h();\n    }",
                              ["    if (a) {\n        h();\n    }\n    g();"])

    def test_what_follows_from_the_statement_before_is_not_exchanged_with_it(self):
        self.assert_exchanged("    const int a = g();\n    h(a);\n    return;", [])

    def test_assignments_that_cannot_see_each_other_are_not_exchanged(self):
        self.assert_exchanged("    m_a = 0;\n    m_b = 0;", [])
        self.assert_exchanged("    m_a = 0;\n    m_b = m_a;", ["    m_b = m_a;\n    m_a = 0;"])

    def test_memory_reserved_for_speed_is_nothing_that_tests_see(self):
        text = function("    g();\n    a.reserve(b.size());\n    h();")
        self.assert_changed(text, "statement removed", [";", ";"])
        self.assert_changed(text, "statements exchanged", [])

    def test_constants_are_altered(self):
        self.assert_changed(
            "constexpr int A = 99;\nconstexpr double B = 30.0;\nconstexpr unsigned C = 0xFFu;\n"
            "constexpr bool D = true;\n",
            "constant altered",
            ["constexpr int A = 100;", "constexpr double B = 31.0;", "constexpr unsigned C = 256u;",
             "constexpr bool D = false;"])

    def test_texts_are_altered_in_a_letter_that_is_not_escaped(self):
        self.assert_changed('const char* a = "\\n%d of";\nconst char* b = "";\n', "text altered",
                            ['const char* a = "\\n%d xf";', 'const char* b = "x";'])

    def test_of_joined_texts_one_is_altered(self):
        self.assert_changed('const char* a = "one "\n    "text";\n', "text altered",
                            ['const char* a = "xne "'])

    def test_signs_change_in_casts_and_in_locals(self):
        self.assert_changed(
            function("    const mrl::Uint32 n = g(static_cast<int>(a));\n"
                     "    for (mrl::Uint32 i = 0; i < n; ++i) {\n        h();\n    }"),
            "sign changed",
            ["const mrl::Int32 n = g(static_cast<int>(a));",
             "const mrl::Uint32 n = g(static_cast<unsigned int>(a));"])

    def test_signs_of_parameters_change_where_no_header_declares_them(self):
        hidden = "namespace {\nvoid f(unsigned int a) {\n    g(a);\n}\n} // namespace\n"
        self.assert_changed(hidden, "sign changed", ["void f(int a) {"])
        self.assert_changed(function("    g(a);", head="void f(unsigned int a)"), "sign changed", [])

    def test_neighbouring_arguments_are_exchanged(self):
        self.assert_changed(function("    g(a, b(1, x), 2);"), "arguments exchanged",
                            ["g(b(1, x), a, 2);", "g(a, 2, b(1, x));", "g(a, b(x, 1), 2);"])

    def test_arguments_whose_order_means_nothing_stay(self):
        self.assert_changed(function("    g(std::min(a, b));"), "arguments exchanged", [])

    def test_rows_of_a_message_map_are_removed(self):
        text = "BEGIN_MESSAGE_MAP(A, B)\nON_WM_PAINT()\nON_WM_CLOSE()\nEND_MESSAGE_MAP()\n"
        self.assertEqual([m.applied(text).splitlines() for m in mutants_of("a.cpp", text)],
                         [["BEGIN_MESSAGE_MAP(A, B)", "", "ON_WM_CLOSE()", "END_MESSAGE_MAP()"],
                          ["BEGIN_MESSAGE_MAP(A, B)", "ON_WM_PAINT()", "", "END_MESSAGE_MAP()"]])

    def test_bodies_of_lambdas_are_functions_too(self):
        self.assert_changed(function("    g([this](int a) { h(a); });"), "statement removed",
                            [";", "g([this](int a) { ; });"])

    def test_a_body_behind_initialisers_of_members_is_found(self):
        text = "A::A(int a) : m_a(a), m_b{a} {\n    g();\n}\n"
        self.assert_changed(text, "statement removed", [";"])


class WhatIsLeftAlone(unittest.TestCase):
    def test_comments_preprocessor_lines_and_what_is_for_the_compiler(self):
        self.assertEqual(changed('// a < b, "c", 1\n/* return 1; */\n#include "a.h"\n'
                                 "#define A(b) \\\n    ((b) < 1)\n"
                                 "static_assert(sizeof(int) == 4);\nusing mrl::String;\n"), [])

    def test_marks_inside_texts(self):
        kinds = {mutant.kind for mutant in
                 mutants_of("a.cpp", 'auto a = "if (b < 1) { return; } // c";\nauto d = \'"\';\n')}
        self.assertEqual(kinds, {"text altered", "constant altered"})

    def test_raw_texts_end_at_their_own_mark(self):
        self.assertEqual(changed('auto a = R"x(1 " < 2 )" b)x";\n'),
                         ['auto a = R"x(1 " < 2 )" x)x";'])


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
