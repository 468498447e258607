"""What check_text_keys.py accepts and refuses, on small trees made for the test; and that the
shipped texts are those that the code names."""

import json
import pathlib
import tempfile
import unittest

import check_text_keys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FRAMEWORK = "common/src/libtesk5/src"
MODULE = "modules/src/windows/diag/mrlrantenna"


class TextKeys(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()

    def texts(self, part, *keys):
        path = self.root / "resources" / part / "texts" / "en.json"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(json.dumps({key: "a text" for key in keys}), encoding="utf-8")

    def code(self, path, text):
        path = self.root / path
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def offences(self):
        return check_text_keys.check(self.root)

    def test_texts_that_code_names_pass(self):
        self.texts("tesk5", "LIST_TESTS", "INPUT_A", "INPUT_B")
        self.code(f"{FRAMEWORK}/a.cpp", 'line(message("LIST_TESTS"));\nk[] = {"INPUT_A", "INPUT_B"};')
        self.assertEqual(self.offences(), [])

    def test_a_key_without_a_text_is_named(self):
        self.texts("tesk5", "LIST_TESTS")
        self.code(f"{FRAMEWORK}/a.cpp", 'message("LIST_TESTS"); message( "PLAIN"); f("LIST_TEST");')
        self.assertEqual(self.offences(), [f"{FRAMEWORK}/a.cpp: there is no text of LIST_TEST",
                                           f"{FRAMEWORK}/a.cpp: there is no text of PLAIN"])

    def test_a_text_that_no_code_names_is_named(self):
        self.texts("tesk5", "LIST_TESTS", "LIST_NONE")
        self.code(f"{FRAMEWORK}/a.cpp", 'message("LIST_TESTS"); // "LIST_NONE" is gone')
        self.assertEqual(self.offences(),
                         ["resources/tesk5/texts/en.json: no code names LIST_NONE"])

    def test_a_page_names_texts_in_double_braces(self):
        self.texts("tesk5", "LIST_TESTS")
        self.code(f"{FRAMEWORK}/page.html", '<h1 class="LIST">{{LIST_TESTS}}</h1>{{LIST_NONE}}')
        self.assertEqual(self.offences(), [f"{FRAMEWORK}/page.html: there is no text of LIST_NONE"])

    def test_a_literal_may_name_the_beginning_of_keys(self):
        self.texts("tesk5", "LIST_RESULT_PASS", "LIST_OTHER")
        self.code(f"{FRAMEWORK}/a.cpp", 'message("LIST_RESULT_" + name);')
        self.assertEqual(self.offences(),
                         ["resources/tesk5/texts/en.json: no code names LIST_OTHER"])

    def test_the_modules_keys_are_looked_for_in_the_module(self):
        self.texts("tesk5")
        self.texts("mrlrantenna", "SSID", "WEAK")
        self.code(f"{FRAMEWORK}/a.cpp", 'f("SSID");')
        self.code(f"{MODULE}/a.cpp", 'createEvent("WEAK"); createLocalizedString("STRONG");')
        self.assertEqual(self.offences(), [
            f"{MODULE}/a.cpp: there is no text of STRONG",
            "resources/mrlrantenna/texts/en.json: no code names SSID"])

    def test_the_module_may_name_a_text_of_the_framework(self):
        self.texts("tesk5", "LIST_TESTS")
        self.texts("mrlrantenna")
        self.code(f"{FRAMEWORK}/a.cpp", 'message("LIST_TESTS");')
        self.code(f"{MODULE}/a.cpp", 'message("LIST_TESTS");')
        self.assertEqual(self.offences(), [])

    def test_the_shipped_texts_pass(self):
        self.assertEqual(check_text_keys.check(ROOT), [])


if __name__ == "__main__":
    unittest.main()
