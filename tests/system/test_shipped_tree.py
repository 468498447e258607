"""The deliverable tree: its contents, and what the executable needs of a Windows PC."""
import pathlib
import re
import shutil
import unittest

import pe
from program import DIST, EXECUTABLE, RESOURCES, ROOT, SIGNAL, ProgramTest, settings

# Loaded when the dialog opens.
FOR_THE_DIALOG = {"comctl32.dll", "gdiplus.dll", "msimg32.dll", "windowscodecs.dll"}
# The DLLs that open network connections.
NETWORK_DLLS = (
    "dnsapi", "mpr", "mswsock", "netapi32", "rasapi32", "urlmon", "webservices", "websocket",
    "wininet", "winhttp", "ws2_32", "wsock32",
)


def files(folder):
    """{path in the folder: content} of every file in it."""
    return {path.relative_to(folder): path.read_bytes()
            for path in folder.rglob("*") if path.is_file()}


def resources():
    """The same of the program's resources in the tree."""
    return {path.relative_to(ROOT / "resources"): path.read_bytes()
            for part in RESOURCES for path in part.rglob("*") if path.is_file()}


class ShippedTree(ProgramTest):
    def test_holds_the_executables_and_their_resources_and_nothing_else(self):
        self.assertEqual(sorted(path.name for path in DIST.iterdir()),
                         ["mrlrantenna.k5x", "mrlrsignal.k5x", "resources"])

    def test_resources_are_those_of_the_repository(self):
        self.assertEqual(files(DIST / "resources"), resources())

    def test_runs_without_its_resources(self):
        self.executable = pathlib.Path(shutil.copy(EXECUTABLE, self.folder))
        run = self.run_program("run")
        self.assertEqual(run.exit, 4, run)
        self.assertIn("No access point was named", run.out, "the texts are compiled in as well")
        self.executable = pathlib.Path(shutil.copy(SIGNAL, self.folder))
        run = self.run_program("run")
        self.assertIn("No access point is named", run.err)

    def test_takes_its_resources_from_beside_the_executable_first(self):
        texts = "resources/mrlrantenna/texts/en.json"
        (self.folder / texts).parent.mkdir(parents=True)
        self.write(texts, {"SSID_NOT_SET": "planted"})
        self.assertNotIn("planted", self.run_program("run").out)


class Processes(ProgramTest):
    """Each DLL that is loaded lengthens a start."""

    def loaded(self, *arguments):
        run = self.run_program(*arguments, WINEDEBUG="+loaddll")
        found = re.findall(r'Loaded L"[^"]*\\\\([^"\\]+)"', run.err)
        program = self.executable.name
        self.assertIn(program, found, run)
        return {name.lower() for name in found[found.index(program):]}

    def test_load_nothing_of_the_dialog_for_a_list(self):
        loaded = self.loaded("list")
        self.assertIn("wlanapi.dll", loaded)
        self.assertEqual(loaded & FOR_THE_DIALOG, set())

    def test_load_nothing_of_the_dialog_for_a_measurement(self):
        loaded = self.loaded("run", *settings(SSID="Lab", WarningSignalStrength=20))
        self.assertIn("rpcrt4.dll", loaded)
        self.assertEqual(loaded & FOR_THE_DIALOG, set())


    def test_load_nothing_that_draws_for_levels(self):
        self.executable = SIGNAL
        loaded = self.loaded("run", *settings(SSID="Lab", FailingLevel=-70, MaxSeconds=5))
        self.assertEqual(loaded & FOR_THE_DIALOG, set())


class Executables:
    """What holds for each program; tests of one inherit it."""

    path = None

    @classmethod
    def setUpClass(cls):
        cls.image = pe.Image(cls.path)

    def test_is_a_console_program_for_64_bit_windows(self):
        self.assertEqual(self.image.machine, pe.MACHINE_X64)
        self.assertEqual(self.image.subsystem, pe.SUBSYSTEM_CONSOLE)

    def test_opens_no_network_connection(self):
        for dll in NETWORK_DLLS:
            with self.subTest(dll):
                self.assertNotIn(f"{dll}.dll", self.image.imported_dlls())
                # Nor is it looked up by name when the program runs.
                for name in (dll, dll.upper()):
                    self.assertNotIn(f"{name}.dll".encode("ascii"), self.image.data)
                    self.assertNotIn(f"{name}.dll".encode("utf-16-le"), self.image.data)

    def test_carries_the_loaders_protections(self):
        for characteristic in pe.DLL_CHARACTERISTICS:
            with self.subTest(characteristic):
                self.assertTrue(self.image.has(characteristic))

    def test_can_be_loaded_at_any_address(self):
        self.assertFalse(self.image.characteristics & pe.RELOCATIONS_STRIPPED)
        self.assertGreater(self.image.relocations_size, 0)

    def test_has_no_memory_that_is_both_written_and_executed(self):
        flags = pe.SECTION_CHARACTERISTICS
        for name, section in self.image.sections.items():
            with self.subTest(name):
                self.assertFalse(section & flags["executable"] and section & flags["writable"])
        self.assertTrue(self.image.sections[".text"] & flags["executable"])

    def test_functions_guard_their_stack(self):
        linked = (DIST.parent / f"{self.path.stem}.map").read_text(encoding="utf-8")
        check = re.search(r"^ +0x([0-9a-f]+) +__stack_chk_fail$", linked, re.MULTILINE)
        self.assertIsNotNone(check, "the function that ends a damaged program is linked")
        # Each function with a buffer on its stack calls it once; there were more than 600 at first.
        self.assertGreater(self.image.calls_of(int(check[1], 16)), 300)

    def test_carries_its_manifest_which_asks_for_no_elevation(self):
        self.assertEqual(self.image.data.count(b"<requestedExecutionLevel"), 1)
        begin = self.image.data.index(b"<requestedExecutionLevel")
        level = self.image.data[begin:self.image.data.index(b"/>", begin)].decode("ascii")
        self.assertIn('level="asInvoker"', level)
        self.assertIn('uiAccess="false"', level)

    def test_carries_its_version(self):
        def named(key, value):
            return (key + "\0").encode("utf-16-le"), (value + "\0").encode("utf-16-le")
        self.assertIn("VS_VERSION_INFO".encode("utf-16-le"), self.image.data)
        for key, value in (named("OriginalFilename", self.path.name),
                           named("ProductVersion", "6.5 build 000000001")):
            begin = self.image.data.index(key) + len(key)
            # At most two bytes of padding lie between a name and its value.
            self.assertIn(value, self.image.data[begin:begin + 2 + len(value)])

    def test_carries_no_build_time(self):
        self.assertEqual(self.image.timestamp, 0)

    def test_carries_no_path_of_the_machine_that_built_it(self):
        self.assertNotIn(str(ROOT).encode("utf-8"), self.image.data)

    def assert_names_its_source(self, name):
        name = name.encode("ascii") + b"\0"
        self.assertIn(b"\0" + name, self.image.data)
        self.assertNotIn(b"/" + name, self.image.data)


class Antenna(Executables, unittest.TestCase):
    path = EXECUTABLE

    def test_manifest_names_the_controls_and_the_density_of_its_dialog(self):
        for text in (b"Microsoft.Windows.Common-Controls", b"PerMonitorV2"):
            with self.subTest(text):
                self.assertEqual(self.image.data.count(text), 1)

    def test_names_its_sources_as_the_repository_does(self):
        self.assert_names_its_source("modules/src/windows/diag/mrlrantenna/mrlrantennaDlg.cpp")


class Signal(Executables, unittest.TestCase):
    path = SIGNAL

    def test_names_its_sources_as_the_repository_does(self):
        self.assert_names_its_source("modules/src/diag/mrlrsignal/levels/SignalLevelTest.cpp")


if __name__ == "__main__":
    unittest.main()
