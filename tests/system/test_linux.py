"""The executable for Linux as it is built: its tree, its commands, and verdicts on captures."""
import json
import pathlib
import re
import subprocess
import unittest

from linux_program import DIST, EXECUTABLE, LinuxProgramTest
from program import RESULTS, ROOT, VERIFICATION, WRONG_USAGE, settings
from test_reports import report_schema
from test_shipped_tree import files, resources

REASON = "This test runs on Windows only, because its dialog does."
# The class of radios is there as soon as the kernel has cfg80211, and with it nl80211.
KERNEL_HAS_NL80211 = pathlib.Path("/sys/class/ieee80211").is_dir()
NO_NL80211 = ("The kernel has no wireless interface, nl80211 (WlanOpenHandle: error 1062). It comes "
              "with the driver of an adapter: plug the adapter in, or type \"sudo modprobe "
              "cfg80211\". Kernels for virtual machines and clouds often lack it; start another one.")


class Tree(LinuxProgramTest):
    def test_is_the_executables_and_their_texts_and_nothing_else(self):
        programs = ["mrlrantenna", "mrlrsignal"]
        self.assertEqual(sorted(path.name for path in DIST.iterdir()), [*programs, "share"])
        for program in programs:
            with self.subTest(program=program):
                parts = {program, "networkadapters", "tesk5"}
                texts = {name: content for name, content in resources().items()
                         if "texts" in name.parts and name.parts[0] in parts}
                self.assertEqual(files(DIST / "share" / program), texts)

    def readelf(self, *options):
        return subprocess.run(["readelf", "--wide", *options, str(EXECUTABLE)], check=True,
                              stdout=subprocess.PIPE, text=True).stdout

    def test_executable_has_the_mitigations_of_debian_and_no_symbols(self):
        self.assertRegex(self.readelf("--file-header"), r"Type: +DYN \(Position-Independent")
        segments = self.readelf("--program-headers")
        self.assertIn("GNU_RELRO", segments)
        self.assertRegex(segments, r"GNU_STACK .* RW ")
        dynamic = self.readelf("--dynamic")
        self.assertRegex(dynamic, r"FLAGS_1.*NOW.*PIE")
        self.assertNotIn("PATH", dynamic)  # no RPATH, no RUNPATH
        imports = self.readelf("--dyn-syms")
        self.assertIn("__stack_chk_fail", imports)
        self.assertRegex(imports, r"\w+_chk@GLIBC")
        self.assertNotIn(".symtab", self.readelf("--section-headers"))

    def test_executable_names_no_place_of_the_build(self):
        self.assertNotIn(str(ROOT).encode(), EXECUTABLE.read_bytes())


class Commands(LinuxProgramTest):
    def test_go_by_the_name_that_was_typed_and_messages_by_that_of_the_program(self):
        run = self.run_program("run", "--help")
        self.assertEqual((run.exit, run.err), (0, ""), run)
        self.assertIn("  mrlrantenna run [TEST...] [OPTIONS]\n", run.out)
        self.assertNotIn(".k5x", run.out)
        # Only what can run here is an example.
        self.assertNotIn("DiversityTest", run.out)
        run = self.run_program("--version")
        self.assertEqual((run.exit, run.out), (0, "mrlrantenna 6.5 (build 000000001)\n"), run)
        run = self.run_program("runn")
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertTrue(run.err.startswith("mrlrantenna: "), run)

    def test_speak_the_language_of_the_environment(self):
        for variables, words in (({"LANG": "de_AT.UTF-8"}, "Testet Geräte dieses PCs."),
                                 ({"LANG": "de_AT.UTF-8", "LC_ALL": "C"}, "Tests devices of this"),
                                 ({"LC_MESSAGES": "fr_FR.UTF-8"}, "Teste des périphériques de ce PC."),
                                 ({"LANG": "xx_XX.UTF-8"}, "Tests devices of this PC.")):
            with self.subTest(variables):
                self.assertTrue(self.run_program("--help", **variables).out.startswith(words))
        # What another system shows is left out.
        self.assertIn("LC_ALL, LC_MESSAGES or LANG", self.run_program("--help").out)

    def test_take_no_texts_from_the_current_folder(self):
        for place in ("resources/tesk5/texts", "share/mrlrantenna/tesk5/texts"):
            (self.folder / place).mkdir(parents=True)
            self.write(f"{place}/en.json", {"LIST_TESTS": "planted"})
        self.assertTrue(self.run_program("list").out.startswith("Tests\n"))

    def test_list_says_that_the_dialog_is_for_windows(self):
        run = self.run_program("list")
        self.assertEqual((run.exit, run.err), (0, ""), run)
        self.assertIn(f"    {REASON}", run.out)
        self.assertNotIn("DiversityTest\n    yes", run.out)

    def test_naming_the_dialog_ends_with_cannotrun_and_the_reason(self):
        run = self.run_program("run", "DiversityTest", "--json", "report.json")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertIn(f"  possible cause: {REASON}", run.err)
        report = self.read_json("report.json")
        self.assertEqual([error.message for error in report_schema().iter_errors(report)], [])
        [without] = report["withoutDevice"]
        self.assertEqual([advice["key"] for advice in without["advice"]],
                         ["DIVERSITY_TEST_NEEDS_WINDOWS"])

    @unittest.skipIf(KERNEL_HAS_NL80211, "this kernel has nl80211")
    def test_say_that_the_kernel_has_no_nl80211(self):
        self.assertIn(f"  {NO_NL80211}\n", self.run_program("list").out)
        run = self.run_program("doctor")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertTrue(run.out.startswith(f"problem: {NO_NL80211}\n"), run)
        run = self.run_program("run", *settings(SSID="Lab", FailingSignalStrength=20),
                               "--json", "report.json")
        self.assertEqual(run.exit, RESULTS["CANNOTRUN"], run)
        self.assertIn(f"  possible cause: {NO_NL80211}\n", run.err)
        report = self.read_json("report.json")
        self.assertEqual([error.message for error in report_schema().iter_errors(report)], [])
        self.assertEqual(report["withoutDevice"][0]["advice"][0]["key"], "DOCTOR_SERVICE_STOPPED")


class Captures(LinuxProgramTest):
    """Captures of the executable for Windows, on the simulated radio."""

    def captured(self, signal, **parameters):
        scenario = {"interfaces": [{"accessPoints": [{"ssid": "Lab", "signal": signal}]}]}
        run = self.run_windows_program(
            "run", VERIFICATION, *settings(SSID="Lab", **parameters), "--capture", "field.jsonl",
            "--json", "windows.json", "--junit", "windows.xml", scenario=scenario)
        return run, self.read_json("windows.json")

    def test_give_the_verdict_and_the_reports_that_they_gave_on_windows(self):
        before, there = self.captured(35, WarningSignalStrength="40", FailingSignalStrength="20")
        self.assertEqual(before.exit, RESULTS["WARN"], before)
        run = self.run_program("replay", "field.jsonl", "--json", "linux.json", "--junit",
                               "linux.xml", "--html", "linux.html")
        self.assertEqual((run.exit, run.out, run.err), (before.exit, before.out, before.err))
        self.assertEqual(self.read_json("linux.json"), there)
        self.assertEqual([error.message for error in report_schema().iter_errors(there)], [])
        self.assertEqual((self.folder / "linux.xml").read_text(),
                         (self.folder / "windows.xml").read_text())
        self.assertIn("35%", (self.folder / "linux.html").read_text())
        for level, verdict in ((10, "PASS"), (36, "FAIL")):
            run = self.run_program("replay", "field.jsonl", *settings(
                WarningSignalStrength=0, FailingSignalStrength=level))
            self.assertEqual(run.exit, RESULTS[verdict], run)

    def test_are_followed_as_events(self):
        self.captured(35, FailingSignalStrength="20")
        run = self.run_program("replay", "field.jsonl", "--events")
        self.assertEqual(run.exit, 0, run)
        events = [json.loads(line) for line in run.out.splitlines()]
        self.assertTrue(events)
        self.assertTrue(re.search(r'"PASS"', run.out), run)


if __name__ == "__main__":
    unittest.main()
