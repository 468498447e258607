"""The executable in other languages: by option, from the system, and with added files of texts."""
import json
import shutil
import subprocess
import tempfile
import unittest

import program
from program import WRONG_USAGE, ProgramTest

LANGUAGES = ("ar", "de", "en", "es", "fr", "ja", "zh-Hans")


def texts(part, tag):
    path = program.ROOT / "resources" / part / "texts" / f"{tag}.json"
    return json.loads(path.read_text(encoding="utf-8"))


class Shipped(ProgramTest):
    def test_every_language_can_be_selected(self):
        for tag in LANGUAGES:
            with self.subTest(tag):
                run = self.run_program("--help", "--language", tag)
                self.assertEqual(run.exit, 0, run)
                self.assertTrue(run.out.startswith(texts("tesk5", tag)["HELP_PURPOSE"]), run)

    def test_refusals_are_in_the_language_too(self):
        run = self.run_program("--language=de", "run", "NoSuchTest")
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertIn("den Test „NoSuchTest“ gibt es nicht", run.err)

    def test_a_language_without_texts_is_refused_with_those_that_have_some(self):
        for tag in ("xx", "../../en", "nul"):
            with self.subTest(tag):
                run = self.run_program("list", "--language", tag)
                self.assertEqual(run.exit, WRONG_USAGE, run)
                self.assertIn(f'"{tag}"; give one of {", ".join(LANGUAGES)}\n', run.err)
                self.assertEqual(run.out, "")

    def test_a_german_windows_gets_german_texts(self):
        # Wine takes its user interface language from the environment.
        run = self.run_program("--help", LC_ALL="de_DE.UTF-8")
        self.assertTrue(run.out.startswith(texts("tesk5", "de")["HELP_PURPOSE"]), run)

    def test_a_windows_in_a_language_without_texts_gets_english_ones(self):
        run = self.run_program("--help", LC_ALL="pl_PL.UTF-8")
        self.assertTrue(run.out.startswith(texts("tesk5", "en")["HELP_PURPOSE"]), run)


class Dropped(ProgramTest):
    """A copy of the shipped tree to which files of texts are added."""

    def setUp(self):
        super().setUp()
        self.tree = self.folder / "tree"
        shutil.copytree(program.DIST, self.tree)

    def drop(self, part, tag, content):
        path = self.tree / "resources" / part / "texts" / f"{tag}.json"
        path.write_text(content if isinstance(content, str) else json.dumps(content),
                        encoding="utf-8")

    def run_copy(self, *arguments):
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            value = subprocess.run(["wine", str(self.tree / "mrlrantenna.k5x"), *arguments],
                                   cwd=self.folder, env=program.environment(),
                                   stdin=subprocess.DEVNULL, stdout=out, stderr=err, check=False,
                                   timeout=program.LIMIT_SECONDS).returncode
            out.seek(0)
            err.seek(0)
            return program.Run(value, out.read(), err.read())

    def test_two_files_add_a_language_and_fall_back_key_by_key(self):
        self.drop("tesk5", "nl", {"LIST_TESTS": "Tests van deze pc"})
        self.drop("mrlrantenna", "nl", {"SSID_NOT_SET": "Geen toegangspunt genoemd."})
        run = self.run_copy("list", "--language", "nl")
        self.assertEqual(run.exit, 0, run)
        self.assertTrue(run.out.startswith("Tests van deze pc\n"), run)
        self.assertIn("\nDevices\n", run.out)
        run = self.run_copy("run", program.VERIFICATION, "--language", "nl")
        self.assertIn("Geen toegangspunt genoemd.", run.out + run.err)

    def test_a_broken_file_is_ignored_and_named_in_the_log(self):
        self.drop("tesk5", "nl", '{"LIST_TESTS": "Tests van",\n oops}')
        run = self.run_copy("list", "--language", "nl", "--log", "texts.log")
        self.assertEqual(run.exit, 0, run)
        self.assertTrue(run.out.startswith("Tests\n"), run)
        log = (self.folder / "texts.log").read_text(encoding="utf-8")
        self.assertIn("nl.json are not used: line 2, column 2", log)


if __name__ == "__main__":
    unittest.main()
