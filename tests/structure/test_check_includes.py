"""What check_includes.py accepts and refuses, on small trees made for the test."""

import contextlib
import io
import pathlib
import tempfile
import unittest

import check_includes

MRL = "common/src/libcommon/mrlbase"
WIFI = "common/src/libnativewifi"
TESK5 = "common/src/libtesk5"
ADAPTERS = "common/src/libnetworkadapters"
MFC = "common/src/libmfc"
UIKIT = "common/src/libuikit"
MODULE = "modules/src/windows/diag/mrlrantenna"
SIGNAL = "modules/src/diag/mrlrsignal"
RADIOSIM = "tools/radiosim"
DIALOGPROBE = "tools/dialogprobe"


class Tree(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name).resolve()
        (self.root / "common").mkdir()

    def file(self, path, text=""):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def offences(self):
        return check_includes.check(self.root)

    def assert_offence(self, path, header, message=None):
        """The file `path` with the one line `#include header` has this offence, or none."""
        with self.subTest(path=path, header=header):
            self.file(path, f"#include {header}\n" if header.startswith('"') else
                      f"#include <{header}>\n")
            found = self.offences()
            (self.root / path).unlink()
            self.assertEqual(found, [f"{path}:1: {message}"] if message else [])

    def assert_passes(self, path, *headers):
        for header in headers:
            self.assert_offence(path, header)


class Arrows(Tree):
    # Each component with a file of its own, a header by which others know it, and the components
    # whose headers it may include besides its own.
    COMPONENTS = {
        "mrl": (f"{MRL}/src/A.cpp", "mrl/String.h", ""),
        "nativewifi": (f"{WIFI}/src/A.cpp", "nativewifi/Api.h", "mrl"),
        "tesk5": (f"{TESK5}/src/run/A.cpp", "tesk5/Test.h", "mrl"),
        "networkadapters": (f"{ADAPTERS}/src/A.cpp", "networkadapters/MachineDevices.h",
                            "mrl nativewifi tesk5"),
        "libmfc": (f"{MFC}/src/A.cpp", "afxwin.h", "mrl"),
        "libUikit": (f"{UIKIT}/src/A.cpp", "libUikit/PngControl.h", "mrl libmfc"),
        "radiosim": (f"{RADIOSIM}/src/A.cpp", "radiosim/Engine.h", "mrl nativewifi"),
        "dialogprobe": (f"{DIALOGPROBE}/A.cpp", None, "mrl"),
        "module": (f"{MODULE}/WirelessDevice.cpp", None,
                   "mrl nativewifi tesk5 networkadapters statistics gauge"),
        "statistics": (f"{SIGNAL}/statistics/A.cpp", "statistics/Robust.h", ""),
        "gauge": (f"{SIGNAL}/gauge/A.cpp", "gauge/Study.h", "statistics"),
        "module's Win32 half": (f"{MODULE}/mrlrantennaDlg.cpp", None,
                                "mrl nativewifi tesk5 networkadapters libmfc libUikit"),
    }

    def test_every_arrow_of_the_picture_passes_and_every_other_is_refused(self):
        for source, (path, _, allowed) in self.COMPONENTS.items():
            self.assert_passes(path, "vector", "cstdint", "unistd.h")
            for target, (_, header, _) in self.COMPONENTS.items():
                if header and (target == source or target in allowed.split()):
                    self.assert_passes(path, header)
                elif header:
                    self.assert_offence(path, header,
                                        f"{source} must not include {target} ({header})")

    def test_files_are_of_the_component_whose_folder_they_lie_in(self):
        for path in ("common/src/libcommon/mrlarray/mrl/MRLArrayRep.h", f"{MODULE}/mrlrantennaDlg.h",
                     f"{MODULE}/MRLrAntennaApp.h", f"{MODULE}/WirelessDevice.h",
                     f"{TESK5}/tesk5/Test.h", f"{TESK5}/src/run/Plan.h", f"{MODULE}/Plan.h",
                     f"{WIFI}/src/Loader.h"):
            self.file(path)
        self.assert_passes(f"{MODULE}/A.cpp", "mrl/MRLArrayRep.h")
        # The two halves of the module, and the file that makes the objects of both.
        self.assert_offence(f"{MODULE}/A.h", '"mrlrantennaDlg.h"',
                            "module must not include module's Win32 half (mrlrantennaDlg.h)")
        self.assert_passes(f"{MODULE}/mrlrantennaDlg.cpp", '"WirelessDevice.h"', "WirelessDevice.h")
        self.assert_passes(f"{MODULE}/ModuleObjects.cpp", '"MRLrAntennaApp.h"')
        self.assert_offence(f"{MODULE}/ModuleObjects.cpp", "windows.h",
                            "windows.h is for the Win32 parts of the house")
        # A path through parent folders leads to the same file.
        self.assert_offence(f"{WIFI}/src/A.cpp", '"../../libtesk5/tesk5/Test.h"',
                            "nativewifi must not include tesk5 (../../libtesk5/tesk5/Test.h)")
        # Headers in a library's src are private.
        self.assert_passes(f"{WIFI}/src/A.cpp", '"Loader.h"')
        self.assert_offence(f"{ADAPTERS}/src/A.cpp", '"../../libnativewifi/src/Loader.h"',
                            "../../libnativewifi/src/Loader.h is private to nativewifi")
        # A header beside the source comes before one of that name elsewhere.
        self.assert_passes(f"{TESK5}/src/run/A.cpp", '"Plan.h"')
        self.assert_offence("common/src/libother/A.cpp", "vector",
                            "lies in no component of the house")


class Rooms(Tree):
    """The rooms of the framework, each with a private header and a public one that it implements."""

    # Every room, and those that it may include.
    ALLOWED = {
        "model": "",
        "texts": "model",
        "devices": "model texts",
        "run": "model texts devices",
        "reports": "model texts devices run",
        "console": "model texts devices run",
        "history": "model texts run reports",
        "commandline": "model texts devices run reports console history",
    }

    def setUp(self):
        super().setUp()
        for room in self.ALLOWED:
            self.file(f"{TESK5}/src/{room}/{room.title()}.h")
            self.file(f"{TESK5}/tesk5/Public{room.title()}.h")
            self.file(f"{TESK5}/src/{room}/Public{room.title()}.cpp")

    def test_every_arrow_of_the_picture_passes_and_every_other_is_refused(self):
        for room, allowed in self.ALLOWED.items():
            for target in self.ALLOWED:
                for header in (f'"{target}/{target.title()}.h"', f"tesk5/Public{target.title()}.h"):
                    passes = target == room or target in allowed.split()
                    self.assert_offence(
                        f"{TESK5}/src/{room}/A.cpp", header, None if passes else
                        f"tesk5's {room} must not include its {target} ({header.strip(chr(34))})")

    def test_a_public_header_is_of_the_room_that_implements_it_else_of_the_model(self):
        for path in ("PublicModel.h", "Plain.h"):
            self.assert_offence(f"{TESK5}/tesk5/{path}", "tesk5/PublicTexts.h",
                                "tesk5's model must not include its texts (tesk5/PublicTexts.h)")
        self.assert_passes(f"{TESK5}/tesk5/PublicTexts.h", "tesk5/PublicModel.h")
        self.assert_offence(f"{TESK5}/tesk5/PublicRun.h", '"run/Run.h"',
                            "run/Run.h is private, and this header is public")

    def test_a_file_in_no_room_is_refused(self):
        for path in (f"{TESK5}/src/A.cpp", f"{TESK5}/src/attic/A.cpp"):
            self.assert_offence(path, '"model/Model.h"', f"{path} lies in no room of tesk5")


class RoomsOfTheSecondModule(Tree):
    # Each room of the module of levels, and the rooms whose headers it may include.
    ROOMS = {
        "records": "", "tables": "", "options": "", "levels": "",
        "networks": "levels records",
        "watch": "levels records",
        "study": "levels options tables",
        "limits": "levels options tables study",
        "calibrate": "levels options",
    }

    def setUp(self):
        super().setUp()
        for room in self.ROOMS:
            self.file(f"{SIGNAL}/{room}/A.h")
        self.file(f"{SIGNAL}/Program.h")

    def test_every_arrow_passes_and_every_other_is_refused(self):
        for room, allowed in self.ROOMS.items():
            for target in self.ROOMS:
                self.assert_offence(
                    f"{SIGNAL}/{room}/B.cpp", f"{target}/A.h",
                    None if target == room or target in allowed.split() else
                    f"mrlrsignal's {room} must not include its {target} ({target}/A.h)")
            self.assert_offence(f"{SIGNAL}/{room}/B.cpp", "Program.h",
                                f"mrlrsignal's {room} must not include its program (Program.h)")

    def test_the_program_has_all_commands(self):
        self.assert_passes(f"{SIGNAL}/Commands.cpp", "levels/A.h", "records/A.h", "networks/A.h",
                           "watch/A.h", "study/A.h", "limits/A.h", "calibrate/A.h", "Program.h")

    def test_a_file_in_no_room_is_refused(self):
        self.assert_offence(f"{SIGNAL}/attic/A.cpp", "records/A.h",
                            f"{SIGNAL}/attic/A.cpp lies in no room of mrlrsignal")


class Places(Tree):
    """Headers that pass in certain files alone."""

    def test_win32_headers_pass_in_the_win32_parts(self):
        for path in (f"{MFC}/afxwin.h", f"{MFC}/src/A.cpp", f"{UIKIT}/libUikit/A.h",
                     f"{UIKIT}/src/A.cpp", f"{WIFI}/nativewifi/WlanTypes.h",
                     f"{WIFI}/src/LoaderWin32.cpp", f"{MRL}/src/OutputStream.cpp",
                     f"{RADIOSIM}/dll/Exports.cpp", f"{DIALOGPROBE}/A.h",
                     f"{MODULE}/mrlrantennaDlgMeter.cpp", f"{MODULE}/DiversityTest.cpp",
                     f"{MODULE}/MRLrAntennaApp.h"):
            self.assert_passes(path, "windows.h", "commctrl.h", "iphlpapi.h", "Windows.h")
        for path in (f"{MRL}/src/Clock.cpp", f"{MRL}/mrl/OutputStream.h", f"{WIFI}/src/Api.cpp",
                     f"{WIFI}/nativewifi/Api.h", f"{TESK5}/src/ConsoleWin32.cpp",
                     f"{RADIOSIM}/src/Engine.cpp", f"{MODULE}/WirelessDevice.cpp",
                     f"{MODULE}/MRLrAntenna.cpp"):
            for header in ("windows.h", "Windows.h", "commctrl.h", "wlanapi.h", "winsock2.h"):
                self.assert_offence(path, header, f"{header} is for the Win32 parts of the house")

    def test_third_party_headers_pass_in_one_place_each_and_test_headers_nowhere(self):
        for path, header, name in (
                (f"{MRL}/src/Unicode.cpp", "utf8cpp/utf8.h", None),
                (f"{MRL}/mrl/Json.h", "nlohmann/json.hpp", None),
                (f"{TESK5}/src/CommandLine.cpp", "CLI/CLI.hpp", None),
                (f"{RADIOSIM}/src/Scenario.cpp", "CLI/CLI.hpp", None),
                (f"{MRL}/src/Logger.cpp", "utf8cpp/utf8.h", "utf8cpp"),
                (f"{TESK5}/tesk5/Report.h", "nlohmann/json.hpp", "nlohmann"),
                (f"{DIALOGPROBE}/A.cpp", "nlohmann/json.hpp", "nlohmann"),
                (f"{MODULE}/MRLrAntenna.cpp", "CLI/CLI.hpp", "CLI"),
                (f"{TESK5}/src/A.cpp", "gtest/gtest.h", "test code"),
                (f"{TESK5}/src/A.cpp", "support/VirtualClock.h", "test code"),
                (f"{TESK5}/src/A.cpp", "fuzzer/FuzzedDataProvider.h", "test code")):
            self.assert_offence(path, header, name and f"{name} has no place here ({header})")


class Reading(Tree):
    PATH = f"{MRL}/src/A.cpp"

    def test_finds_every_include_and_its_line(self):
        windows = "#include <windows.h>\n"
        for text, lines in (
                ("// head\n\n#include <vector>\n  #  include <tesk5/Test.h>\n" + windows, [4, 5]),
                (f"/* a\n{windows}*/\n// {windows}{windows}", [5]),
                (f'auto a = "/*";\n{windows}auto b = "*/";\n', [2]),
                (f"#ifdef _WIN32\n{windows}#endif\n", [2]),
                (f"// M\udcfcller\n{windows}", [2])):
            with self.subTest(text):
                self.file(self.PATH)
                (self.root / self.PATH).write_bytes(text.encode("utf-8", "surrogateescape"))
                self.assertEqual([offence.split(": ")[0] for offence in self.offences()],
                                 [f"{self.PATH}:{line}" for line in lines])

    def test_an_include_of_a_macro_is_refused(self):
        self.file(self.PATH, "#include HEADER\n")
        self.assertEqual(self.offences(),
                         [f"{self.PATH}:1: an #include of a macro cannot be checked"])

    def test_other_files_are_not_read(self):
        self.file(f"{MODULE}/mrlrantenna.rc", "#include <windows.h>\n")
        self.file("tests/mrl/A.cpp", "#include <windows.h>\n")
        self.assertEqual(self.offences(), [])


class CommandLine(Tree):
    def run_main(self, root):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            try:
                code = check_includes.main(["--root", str(root)])
            except SystemExit as leaving:
                code = leaving.code
        return code, out.getvalue(), err.getvalue()

    def test_prints_a_line_for_each_offence_and_fails_then(self):
        self.file(f"{MRL}/src/A.cpp", "#include <mrl/A.h>\n")
        self.assertEqual(self.run_main(self.root), (0, "", ""))
        self.file(f"{MRL}/src/A.cpp", "#include <windows.h>\n")
        self.assertEqual(self.run_main(self.root), (1, (
            f"{MRL}/src/A.cpp:1: windows.h is for the Win32 parts of the house\n"), ""))

    def test_refuses_a_folder_without_sources(self):
        code, out, err = self.run_main(self.root / "nowhere")
        self.assertNotEqual(code, 0)
        self.assertEqual(out, "")
        self.assertIn("nowhere", err)


if __name__ == "__main__":
    unittest.main()
