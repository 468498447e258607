"""The configuration file of a station, with the shipped executable."""
import unittest

from program import VERIFICATION, ProgramTest


class Configuration(ProgramTest):
    def test_applies_where_the_command_line_gives_no_value(self):
        (self.folder / "station").mkdir()
        self.write("station/lab.toml", f'''tests = ["{VERIFICATION}"]
            language = "de"
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
        self.assertIn("Rückgabewert 2", run.out)
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


if __name__ == "__main__":
    unittest.main()
