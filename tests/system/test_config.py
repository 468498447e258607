"""The configuration file of a station, with the shipped executable."""
import unittest

from program import VERIFICATION, WRONG_USAGE, ProgramTest


class Configuration(ProgramTest):
    def refused(self, *arguments, naming):
        run = self.run_program(*arguments)
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertEqual(run.out, "", run)
        self.assertEqual(run.err.count("\n"), 1, run)
        for text in naming:
            self.assertIn(text, run.err)

    def test_applies_where_the_command_line_gives_no_value(self):
        (self.folder / "station").mkdir()
        self.write("station/lab.toml", f'''tests = ["{VERIFICATION}"]
            [parameters]
            SSID = "Lab"
            FailingSignalStrength = 90
            [devices]
            filter = "8c2f6b1e"
            [outputs]
            json = "last.json"
            ''')
        run = self.run_program("run", "--config", "station/lab.toml")
        self.assertEqual(run.exit, 2, run)
        report = self.read_json("station/last.json")
        self.assertEqual(report["results"][0]["parameters"]["SSID"], "Lab")
        run = self.run_program("run", "--config", r"station\lab.toml", "--set",
                               "FailingSignalStrength=20", "--json", "own.json")
        self.assertEqual(run.exit, 0, run)
        self.assertEqual(self.read_json("own.json")["results"][0]["parameters"],
                         {"SSID": "Lab", "WarningSignalStrength": 0, "FailingSignalStrength": 20})
        self.assertEqual(self.read_json("station/last.json"), report, "the older one is as it was")

    def test_template_is_accepted_as_it_is_printed(self):
        template = self.run_program("list", "--config-template")
        self.assertEqual(template.exit, 0, template)
        self.assertIn(VERIFICATION, template.out)
        self.assertIn("#SSID = ", template.out)
        self.write("station.toml", template.out)
        run = self.run_program("run", "--config", "station.toml")
        self.assertEqual(run.exit, 4, run)
        self.assertEqual(run.out, self.run_program("run").out)

    def test_speaks_the_language_that_it_names(self):
        self.write("station.toml", 'language = "de"\n[parameters]\nSSID = ""\n')
        run = self.run_program("run", "--config", "station.toml")
        self.assertIn("Es wurde kein Zugriffspunkt angegeben", run.out)

    def test_mistakes_are_refused_with_their_place(self):
        self.write("station.toml", '[parameters]\n  SSDI = "Lab"\n')
        self.refused("run", "--config", "station.toml",
                     naming=["station.toml", "line 2, column 3", '"SSDI"', '"SSID"'])

    def test_anything_but_an_ordinary_file_is_refused_unopened(self):
        for name in ("NUL", "CON", "COM1", "folder/aux.toml", r"\\.\pipe\mrlrantenna", ".", "no.toml"):
            with self.subTest(name):
                self.refused("run", "--config", name, naming=[f'"{name}" cannot be used'])


if __name__ == "__main__":
    unittest.main()
