"""What check_texts.py accepts and refuses, on small trees made for the test; and that the shipped
texts pass."""

import json
import pathlib
import tempfile
import unittest

import check_texts

ROOT = pathlib.Path(__file__).resolve().parents[2]
ENGLISH = {"LIST": "&Networks:", "END": "&Finish", "WEAK": "{Name} is weak: {Percent} %"}
GERMAN = {"LIST": "&Netzwerke:", "END": "&Fertig", "WEAK": "{Name} hat nur {Percent} %"}


class Texts(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()
        self.file("a", "en", ENGLISH)

    def file(self, component, language, content):
        path = self.root / "resources" / component / "texts" / f"{language}.json"
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content if isinstance(content, str) else json.dumps(content),
                        encoding="utf-8")

    def offences(self):
        return check_texts.check(self.root)

    def test_a_translation_has_the_keys_placeholders_blanks_and_access_keys_of_english(self):
        for changes, *messages in (
                ({},),
                ({"END": None, "BEGIN": "Anfang"}, "missing: END", "superfluous: BEGIN"),
                ({"WEAK": "{Name}: {Prozent} %"},
                 "WEAK: missing: {Percent}", "WEAK: superfluous: {Prozent}"),
                ({"WEAK": "{name}: {Percent} %"},
                 "WEAK: missing: {Name}", "WEAK: superfluous: {name}"),
                ({"END": ""}, "END: empty", "END: has 0 access keys"),
                ({"LIST": "&Netzwerke: "}, "LIST: white space at its ends differs"),
                ({"LIST": "Netzwerke:", "WEAK": "{Name} && {Percent} &schwach"},
                 "LIST: has 0 access keys", "WEAK: has 1 access keys"),
                ({"WEAK": "{Name} & {Percent} %"},),
                ({"END": "&neu"}, "access key N is that of LIST and END")):
            with self.subTest(changes):
                texts = {key: text for key, text in {**GERMAN, **changes}.items()
                         if text is not None}
                self.file("a", "de", texts)
                self.assertEqual(self.offences(),
                                 [f"resources/a/texts/de.json: {message}" for message in messages])

    def test_the_english_access_keys_differ_too(self):
        self.file("a", "en", {**ENGLISH, "END": "E&nd"})
        self.assertEqual(self.offences(),
                         ["resources/a/texts/en.json: access key N is that of LIST and END"])

    def test_a_key_that_is_there_twice_is_refused(self):
        self.file("a", "de", '{"LIST": "&A", "LIST": "&B"}')
        self.assertEqual(self.offences(), ["resources/a/texts/de.json: twice: LIST"])

    def test_a_file_that_is_no_flat_json_is_refused(self):
        self.file("a", "de", {"LIST": {"one": "&Netzwerk"}})
        self.file("a", "fr", "{")
        german, french = self.offences()
        self.assertEqual(german,
                         "resources/a/texts/de.json: no flat object of keys and texts")
        self.assertIn("resources/a/texts/fr.json: no JSON in UTF-8", french)

    def test_a_file_is_named_after_a_language(self):
        self.file("a", "zh-Hans", ENGLISH)
        self.file("a", "German", ENGLISH)
        self.assertEqual(self.offences(),
                         ["resources/a/texts/German.json: is not named after a language"])

    def test_every_folder_has_english_and_the_same_languages(self):
        self.file("a", "de", GERMAN)
        self.file("b", "en", {})
        self.file("c", "de", {})
        self.assertEqual(self.offences(),
                         ["resources/c/texts/en.json: is missing",
                          "resources/b/texts/de.json: is missing, and another folder has it"])


class ShippedTexts(unittest.TestCase):
    LANGUAGES = {"ar", "de", "en", "es", "fr", "ja", "zh-Hans"}

    def test_each_language_has_what_english_has(self):
        self.assertEqual(check_texts.check(ROOT), [])

    def test_there_are_seven_languages(self):
        folders = list(ROOT.glob("resources/*/texts"))
        self.assertTrue(folders)
        for folder in folders:
            with self.subTest(folder=folder.parent.name):
                self.assertLessEqual(self.LANGUAGES, {path.stem for path in folder.glob("*.json")})


if __name__ == "__main__":
    unittest.main()
