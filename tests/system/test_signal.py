"""mrlrsignal under Wine: levels in dBm, from the command line to the report."""
import csv
import hashlib
import io
import json
import unittest

import jsonschema

from program import ROOT, RESULTS, SIGNAL, WRONG_USAGE, ProgramTest, settings

SCHEMA = ROOT / "docs" / "schemas" / "report.schema.json"


def radio(number, rssi, **more):
    return {"bssid": f"02:00:00:00:01:{number:02x}", "rssi": rssi, "heardEveryMs": 100, **more}


def networks(*radios):
    return {"interfaces": [{"accessPoints": [{"ssid": "Lab", "bss": list(radios)}]}]}


class Signal(ProgramTest):
    def setUp(self):
        super().setUp()
        self.executable = SIGNAL

    def measure(self, scenario, *options, **parameters):
        run = self.run_program("run", "--json", "report.json", *options,
                               *settings(SSID="Lab", **parameters), scenario=scenario)
        report = self.read_json("report.json")
        jsonschema.Draft202012Validator(json.loads(SCHEMA.read_text(encoding="utf-8"))).validate(
            report)
        return run, report["results"][0]

    def test_rates_a_level_and_keeps_its_readings(self):
        noise = {"deviation": 1.5, "carried": 0.5, "seed": 3}
        scenario = networks(radio(0, {"start": -63, "noise": noise}, channel=36))
        for failing, warning, result in ((-80, -75, "PASS"), (-80, -58, "WARN"),
                                         (-58, -55, "FAIL")):
            with self.subTest(result=result):
                run, record = self.measure(scenario, FailingLevel=failing, WarningLevel=warning)
                self.assertEqual(run.exit, RESULTS[result], run)
                self.assertEqual(record["result"], result)
                [measurement] = record["measurements"]
                self.assertEqual(measurement["unit"], "dBm")
                self.assertAlmostEqual(measurement["value"], -63, delta=2)
                [series] = record["series"]
                self.assertGreaterEqual(len(series["points"]), 11)
                self.assertEqual(series["points"][0]["attributes"]["Channel"], 36)

    def test_writes_a_study_that_fits_its_schema(self):
        schema = json.loads((ROOT / "docs" / "schemas" / "study.schema.json")
                            .read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        validator = jsonschema.Draft202012Validator(schema)
        lines = [f"{part},{person},{-50 - 3 * part - trial * person % 2}"
                 for part in range(5) for person in range(2) for trial in range(3)]
        (self.folder / "readings.csv").write_text("part,operator,level\n" + "\n".join(lines))
        run = self.run_program("study", "--from", "readings.csv", "--tolerance", "20", "--file",
                               "bench.study.json", "--csv", "raw.csv", "--page", "bench.html")
        self.assertEqual(run.exit, 0, run)
        validator.validate(self.read_json("bench.study.json"))
        self.assertEqual(len((self.folder / "raw.csv").read_text().splitlines()), 31)
        self.assertIn("</html>", (self.folder / "bench.html").read_text(encoding="utf-8"))

        run = self.run_program("study", "--type1", "--reference=-56", "--tolerance", "40", "--from",
                               "readings.csv", "--file", "one.study.json")
        self.assertEqual(run.exit, 0, run)
        validator.validate(self.read_json("one.study.json"))

        guided = ("study", "--file", "guided.study.json", *settings(SSID="Lab", MaxSeconds=5))
        size = ("--parts", "2", "--operators", "1", "--trials", "2")
        scenario = networks(radio(0, -50))
        run = self.run_program(*guided, *size, scenario=scenario, typed="\n\nr\nslipped\n")
        self.assertEqual(run.exit, RESULTS["USERABORTED"], run)
        study = self.read_json("guided.study.json")
        validator.validate(study)
        self.assertEqual(len(study["session"]["measurements"]), 1)
        self.assertEqual(study["session"]["struckOut"][0]["reason"], "slipped")
        run = self.run_program(*guided, scenario=scenario, typed="\n\n\n")
        self.assertEqual(run.exit, 0, run)
        validator.validate(self.read_json("guided.study.json"))

    def test_applies_the_calibration_of_its_station(self):
        target = ("--set", "BSSID=02:00:00:00:01:00")
        scenario = networks(radio(0, -60))
        run = self.run_program("calibrate", *target, "--reference=-57", "--unit", "G-1",
                               "--station", "Bench1", "--placements", "2", "--out", "station.toml",
                               scenario=scenario, typed="\n\n")
        self.assertEqual(run.exit, 0, run)
        run, record = self.measure(scenario, "--config", "station.toml", FailingLevel=-70)
        self.assertEqual(run.exit, RESULTS["PASS"], run)
        [measurement] = record["measurements"]
        self.assertEqual(measurement["value"], -57)
        fingerprint = hashlib.sha256((self.folder / "station.toml").read_bytes()).hexdigest()
        self.assertEqual(measurement["attributes"]["CalibrationSHA256"], fingerprint)
        for level, result in ((-60, "PASS"), (-50, "FAIL")):
            run = self.run_program("calibrate", "--check", "--config", "station.toml", *target,
                                   "--allowed", "4", scenario=networks(radio(0, level)),
                                   typed=5 * "\n")
            self.assertEqual(run.exit, RESULTS[result], run)

    def test_says_why_there_is_no_level(self):
        for scenario, word in (
                (networks(radio(0, -50), radio(1, -65)), "02:00:00:00:01:01"),
                (networks(radio(0, -50, heardUntilMs=0)), "old entry"),
                (networks(), "was not seen")):
            with self.subTest(word=word):
                run, record = self.measure(scenario, FailingLevel=-70, MaxSeconds=5)
                self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
                self.assertEqual(record["result"], "CANNOTRUN")
                self.assertIn(word, run.out)

    def test_refuses_wrong_parameters_before_anything_runs(self):
        for given, words in (
                ({"FailingLevel": -70}, "Give SSID or BSSID"),
                ({"SSID": "Lab"}, "Give WarningLevel, FailingLevel or both"),
                ({"BSSID": "02:00:00", "FailingLevel": -70}, '"02:00:00" is no BSSID'),
                ({"SSID": "Lab", "FailingLevel": 70}, r"FailingLevel=70: .*did you mean -70\?"),
                ({"SSID": "Lab", "FailingLevel": -60, "WarningLevel": -70}, "must be the lower one"),
                ({"SSID": "Lab", "FailingLevel": -70, "WarningLevel": -68, "GuardBand": 3},
                 "Make it smaller, or move the limits apart")):
            with self.subTest(words):
                run = self.run_program("run", "--json", "report.json", *settings(**given))
                self.assertEqual(run.exit, WRONG_USAGE, run)
                self.assertRegex(run.err, rf"\Amrlrsignal: .*{words}.*\n\Z")
                self.assertEqual(run.out, "")
                self.assertFalse((self.folder / "report.json").exists())

    def test_watch_records_the_readings_of_a_connection(self):
        scenario = {"interfaces": [{
            "connection": {"ssid": "Lab", "channel": 36, "links": True}, "rssi": -48,
            "accessPoints": networks(radio(0, -50))["interfaces"][0]["accessPoints"]}]}
        run = self.run_program("watch", "--format", "jsonl", "--seconds", "3",
                               *settings(SSID="Lab"), scenario=scenario)
        self.assertEqual((run.exit, run.err), (0, ""), run)
        records = [json.loads(line) for line in run.out.splitlines()]
        self.assertGreaterEqual(len(records), 10)
        for record in records:
            self.assertEqual((record["name"], record["dbm"], record["source"], record["mhz"]),
                             ("Lab", -48, "link", 5180))

    def test_says_that_windows_has_no_levels_of_chains(self):
        """Without asking the driver, and in a run that names the test only."""
        scenario = networks(radio(0, -50, chains=[0, -30]))
        run = self.run_program("run", "AntennaChainTest", "--json", "report.json",
                               *settings(SSID="Lab"), scenario=scenario)
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertIn("Windows has no public way to read the levels of receive chains", run.err)
        run, record = self.measure(scenario, FailingLevel=-70)
        self.assertEqual((run.exit, record["test"]), (RESULTS["PASS"], "SignalLevelTest"), run)
        listed = self.run_program("list", scenario=scenario)
        self.assertRegex(listed.out, r"(?s)SignalLevelTest\n.*default 15.*AntennaChainTest\n"
                                     r".*default 15.dB.*default 16.*AntennaChainTest\n.*: no: does"
                                     r" not run on this system")

    def air(self):
        """Several names, radios, widths and kinds of security; some names are hostile."""
        def named(name, *radios, **more):
            return {"ssidHex": name.hex(), "bss": list(radios), **more}
        return {"interfaces": [{"scanDurationMs": 100, "accessPoints": [
            named(b"Lab", radio(0, -50, channel=36, width=80), radio(0x10, -70),
                  auth="wpa3-sae"),
            named("工場".encode(), radio(0x20, -60, channel=100, width=160)),
            named(b"\x1b[2J\x00\xff", radio(0x30, -65), auth="open"),
            named("\u202edaB,\"x\"\r\n".encode(), radio(0x40, -80))]}]}

    def test_networks_shows_what_is_on_the_air(self):
        run = self.run_program("networks", scenario=self.air())
        self.assertEqual((run.exit, run.err), (0, ""), run)
        lines = run.out.splitlines()
        self.assertEqual([line.split()[0] for line in lines],
                         ["dBm", "-50", "-60", "-65", "-70", "-80"])
        self.assertRegex(lines[1], r"5 +36 +80 +WPA3 +02:00:00:00:01:00 +Lab\Z")
        self.assertRegex(lines[2], r"160 +WPA2 .* 工場\Z")
        self.assertRegex(lines[3], r"Open .* hex:1b5b324a00ff\Z")
        self.assertRegex(lines[5], r' \\u202EdaB,"x"\\r\\n\Z')

    def test_networks_writes_records(self):
        run = self.run_program("networks", "--format", "jsonl", scenario=self.air())
        records = [json.loads(line) for line in run.out.splitlines()]
        names = [b"Lab", "工場".encode(), b"\x1b[2J\x00\xff", b"Lab",
                 "\u202edaB,\"x\"\r\n".encode()]
        self.assertEqual([bytes.fromhex(record["nameHex"]) for record in records], names)
        self.assertIsNone(records[2]["name"])
        self.assertEqual(records[4]["name"].encode(), names[4])
        run = self.run_program("networks", "--format", "csv", "--set", "Band=2.4",
                               scenario=self.air())
        rows = list(csv.DictReader(io.StringIO(run.out, newline="")))
        self.assertEqual([row["dbm"] for row in rows], ["-65", "-70", "-80"])
        self.assertEqual(rows[2]["name"].encode(), names[4])
        self.assertEqual(rows[0]["security"], "Open")

    def test_networks_says_why_it_shows_none(self):
        for options, scenario, exit_value, word in (
                ((), networks(), RESULTS["CANNOTRUN"], "heard no network"),
                (("--set", "SSID=Other"), self.air(), RESULTS["CANNOTRUN"], "none that --set"),
                (("--set", "BSSID=Lab"), self.air(), WRONG_USAGE, "no BSSID"),
                (("--format", "xml"), self.air(), WRONG_USAGE, "csv"),
                ((), ROOT / "tools/radiosim/scenarios/location-denied.json",
                 RESULTS["CANNOTRUN"], "Location")):
            with self.subTest(word=word):
                run = self.run_program("networks", *options, scenario=scenario)
                self.assertEqual((run.exit, run.out), (exit_value, ""), run)
                self.assertIn(word, run.err)


if __name__ == "__main__":
    unittest.main()
