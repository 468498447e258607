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

    def test_keys_in_code_and_texts_are_the_same(self):
        for keys, file, code, *offences in (
                ("LIST_TESTS INPUT_A INPUT_B", "a.cpp",
                 'line(message("LIST_TESTS"));\nk[] = {"INPUT_A", "INPUT_B"};'),
                ("LIST_TESTS", "a.cpp", 'message("LIST_TESTS"); message( "PLAIN"); f("LIST_TEST");',
                 f"{FRAMEWORK}/a.cpp: there is no text of LIST_TEST",
                 f"{FRAMEWORK}/a.cpp: there is no text of PLAIN"),
                ("LIST_TESTS LIST_NONE", "a.cpp", 'message("LIST_TESTS"); // "LIST_NONE" is gone',
                 "resources/tesk5/texts/en.json: no code names LIST_NONE"),
                # A page names texts in double braces.
                ("LIST_TESTS", "a.html", '<h1 class="LIST">{{LIST_TESTS}}</h1>{{LIST_NONE}}',
                 f"{FRAMEWORK}/a.html: there is no text of LIST_NONE"),
                # A text for one system.
                ("LIST_TESTS LIST_TESTS@linux", "a.cpp", 'message("LIST_TESTS");'),
                ("LIST_TESTS LIST_TESTS@amiga LIST_NONE@linux", "a.cpp",
                 'message("LIST_TESTS");',
                 "resources/tesk5/texts/en.json: LIST_NONE@linux stands for no text, or for no "
                 "system of linux, windows",
                 "resources/tesk5/texts/en.json: LIST_TESTS@amiga stands for no text, or for no "
                 "system of linux, windows"),
                # A literal may name the beginning of keys.
                ("LIST_RESULT_PASS LIST_OTHER", "a.cpp", 'message("LIST_RESULT_" + name);',
                 "resources/tesk5/texts/en.json: no code names LIST_OTHER")):
            with self.subTest(code):
                self.texts("tesk5", *keys.split())
                self.code(f"{FRAMEWORK}/{file}", code)
                self.assertEqual(self.offences(), offences)
                (self.root / FRAMEWORK / file).unlink()

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
