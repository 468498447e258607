"""The executable in other languages: by option, from the system, and with added files of texts."""
import json
import shutil
import unittest

from program import DIST, EXECUTABLE, PROGRAMS, ROOT, VERIFICATION, ProgramTest

LANGUAGES = ("ar", "de", "en", "es", "fr", "ja", "zh-Hans")


class Languages(ProgramTest):
    def assert_helps_in(self, tag, *arguments, **variables):
        texts = ROOT / "resources" / "tesk5" / "texts" / f"{tag}.json"
        purpose = json.loads(texts.read_text(encoding="utf-8"))["HELP_PURPOSE"]
        run = self.run_program("--help", *arguments, **variables)
        self.assertEqual(run.exit, 0, run)
        self.assertTrue(run.out.startswith(purpose), run)

    def test_that_are_shipped_can_be_selected(self):
        for program in PROGRAMS:
            self.executable = program
            for tag in LANGUAGES:
                with self.subTest(tag, program=program.stem):
                    self.assert_helps_in(tag, "--language", tag)

    def test_are_those_of_windows_where_they_have_texts_and_else_english(self):
        # Wine takes its user interface language from the environment.
        self.assert_helps_in("de", LC_ALL="de_DE.UTF-8")
        self.assert_helps_in("en", LC_ALL="pl_PL.UTF-8")

    def test_are_added_by_two_files_and_fall_back_key_by_key(self):
        tree = self.folder / "tree"
        shutil.copytree(DIST, tree)
        self.executable = tree / EXECUTABLE.name
        for part, texts in (("tesk5", {"LIST_TESTS": "Tests van deze pc"}),
                            ("mrlrantenna", {"SSID_NOT_SET": "Geen toegangspunt genoemd."})):
            self.write(f"tree/resources/{part}/texts/nl.json", texts)
        run = self.run_program("list", "--language", "nl")
        self.assertEqual(run.exit, 0, run)
        self.assertTrue(run.out.startswith("Tests van deze pc\n"), run)
        self.assertIn("\nDevices\n", run.out)
        run = self.run_program("run", VERIFICATION, "--language", "nl")
        self.assertIn("Geen toegangspunt genoemd.", run.out + run.err)


if __name__ == "__main__":
    unittest.main()
