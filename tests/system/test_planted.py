"""No DLL beside the program or in the current directory is loaded in place of the system's."""
import pathlib
import re
import shutil
import signal
import time
import unittest

import pe
import side_by_side
from program import DIST, EXECUTABLE, PROGRAMS, ROOT, SIGNAL, VERIFICATION, ProgramTest, environment, settings

load_tests = side_by_side.load_tests

PLANTED = ROOT / "build" / "windows" / "tests" / "helpers" / "planted.dll"
SOURCES = [path for folder in ("common", "modules") for path in (ROOT / folder).rglob("*.cpp")]

# Windows maps these from its own section objects (KnownDLLs), whatever lies beside a program; Wine
# does not, so planting them would show nothing.
KNOWN_TO_WINDOWS = {
    "advapi32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll",
    "rpcrt4.dll", "shell32.dll", "shlwapi.dll", "user32.dll", "ws2_32.dll",
}

# DLLs that the program loads late or looks up, and that Windows' own parts look up: themes, input,
# pictures, networks, profiles. Each has been planted beside programs before.
LOOKED_UP = ["wlanapi.dll", "iphlpapi.dll", "comctl32.dll", "gdiplus.dll", "uxtheme.dll", "dwmapi.dll", "cryptbase.dll",
             "cryptsp.dll", "profapi.dll", "userenv.dll", "netapi32.dll", "windowscodecs.dll",
             "propsys.dll", "textshaping.dll", "winnsi.dll", "dhcpcsvc.dll", "dhcpcsvc6.dll",
             "mscoree.dll", "msimg32.dll", "oleacc.dll", "usp10.dll", "wtsapi32.dll"]


class PlantedDlls(ProgramTest):
    def setUp(self):
        super().setUp()
        self.program_folder = self.folder / "program"
        shutil.copytree(DIST, self.program_folder)
        self.executable = self.program_folder / EXECUTABLE.name
        for folder in (self.program_folder, self.folder):
            for name in LOOKED_UP:
                shutil.copy(PLANTED, folder / name)

        # Wine prefers the planted files to its own DLLs of those names.
        base = environment()["WINEDLLOVERRIDES"]
        planted = (pathlib.PurePath(name).stem for name in LOOKED_UP)
        self.overrides = ";".join([base, *(f"{name}=n,b" for name in planted
                                           if f"{name}=" not in base)])

    def start_with_planted_dlls(self, *arguments):
        return self.start_program(*arguments, WINEDLLOVERRIDES=self.overrides)

    def assert_loaded(self, *names):
        self.assertEqual(sorted(path.relative_to(self.folder).as_posix()
                                for path in self.folder.rglob("*.ran")), list(names))

    def test_are_not_loaded_by_a_run(self):
        run = self.start_with_planted_dlls(
            "run", VERIFICATION, *settings(SSID="Lab", FailingSignalStrength=20)).finish()
        self.assertEqual(run.exit, 0, run)
        self.assert_loaded()

    def test_are_not_loaded_by_a_measurement_of_a_level(self):
        self.executable = self.program_folder / SIGNAL.name
        run = self.start_with_planted_dlls(
            "run", *settings(SSID="Lab", FailingLevel=-90, MaxSeconds=5)).finish()
        self.assertIn(run.exit, (0, 1, 3), run)
        self.assert_loaded()

    def test_are_not_loaded_by_a_list(self):
        run = self.start_with_planted_dlls("list").finish()
        self.assertEqual(run.exit, 0, run)
        self.assertIn("Simulated", run.out)
        self.assert_loaded()

    def test_are_not_loaded_by_the_dialog(self):
        started = self.start_with_planted_dlls("run", "DiversityTest")
        started.wait_until_it_says("DiversityTest (Antenna alignment) on")
        time.sleep(5)  # the dialog opens and draws its pictures
        started.process.send_signal(signal.SIGINT)
        run = started.finish()
        self.assertEqual(run.exit, 6, run)
        self.assert_loaded()

    def test_are_detected(self):
        """A program without these guards loads the planted DLL, and the test notices."""
        self.executable = shutil.copy(PLANTED.with_name("unguarded.exe"), self.program_folder)
        self.start_with_planted_dlls().finish()
        self.assert_loaded("program/iphlpapi.dll.ran")


class Imports(unittest.TestCase):
    @staticmethod
    def loaded_late(program):
        """DLLs that are loaded when one of their functions is first called."""
        linked = (ROOT / "build" / "windows" / f"{program.stem}.map").read_text(encoding="utf-8")
        return {f"{name}.dll" for name in re.findall(r"^delay_imports/delayed_(\w+)/lib", linked,
                                                     re.MULTILINE)}

    def test_at_the_start_are_dlls_that_windows_never_takes_from_a_programs_directory(self):
        for program in PROGRAMS:
            with self.subTest(program.name):
                self.assertEqual(set(pe.Image(program).imported_dlls()) - KNOWN_TO_WINDOWS, set())

    def test_of_other_dlls_come_with_the_first_call(self):
        self.assertEqual(self.loaded_late(EXECUTABLE), {"comctl32.dll", "gdiplus.dll"})
        self.assertEqual(self.loaded_late(SIGNAL), set())

    def test_sources_load_libraries_from_the_system_directory_alone(self):
        calls = [(path.name, line.strip()) for path in SOURCES
                 for line in path.read_text(encoding="utf-8").splitlines()
                 if re.search(r"\bLoadLibrary(Ex)?[AW]?\(", line)]
        self.assertEqual([name for name, _ in calls], ["SystemLibraryWin32.cpp"])
        self.assertIn("LOAD_LIBRARY_SEARCH_SYSTEM32", calls[0][1])


if __name__ == "__main__":
    unittest.main()
