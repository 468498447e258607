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

    def offence(self, path, header):
        """The message for the file `path` with the one line `#include header`, or None."""
        if not header.startswith('"'):
            header = f"<{header}>"
        self.file(path, f"#include {header}\n")
        found = self.offences()
        (self.root / path).unlink()
        self.assertLessEqual(len(found), 1, found)
        return found[0].removeprefix(f"{path}:1: ") if found else None

    def assert_passes(self, path, *headers):
        for header in headers:
            with self.subTest(path=path, header=header):
                self.assertIsNone(self.offence(path, header))

    def assert_refused(self, path, header, message):
        with self.subTest(path=path, header=header):
            self.assertEqual(self.offence(path, header), message)


class Arrows(Tree):
    # Each component with a file of its own and one header by which others know it.
    FILES = {
        "mrl": f"{MRL}/src/A.cpp",
        "nativewifi": f"{WIFI}/src/A.cpp",
        "tesk5": f"{TESK5}/src/run/A.cpp",
        "networkadapters": f"{ADAPTERS}/src/A.cpp",
        "libmfc": f"{MFC}/src/A.cpp",
        "libUikit": f"{UIKIT}/src/A.cpp",
        "radiosim": f"{RADIOSIM}/src/A.cpp",
        "dialogprobe": f"{DIALOGPROBE}/A.cpp",
        "module": f"{MODULE}/WirelessDevice.cpp",
        "module's Win32 half": f"{MODULE}/mrlrantennaDlg.cpp",
    }
    HEADERS = {
        "mrl": "mrl/String.h",
        "nativewifi": "nativewifi/Api.h",
        "tesk5": "tesk5/Test.h",
        "networkadapters": "networkadapters/MachineDevices.h",
        "libmfc": "afxwin.h",
        "libUikit": "libUikit/PngControl.h",
        "radiosim": "radiosim/Engine.h",
    }
    ALLOWED = {
        "mrl": {"mrl"},
        "nativewifi": {"mrl", "nativewifi"},
        "tesk5": {"mrl", "tesk5"},
        "networkadapters": {"mrl", "nativewifi", "tesk5", "networkadapters"},
        "libmfc": {"mrl", "libmfc"},
        "libUikit": {"mrl", "libmfc", "libUikit"},
        "radiosim": {"mrl", "nativewifi", "radiosim"},
        "dialogprobe": {"mrl"},
        "module": {"mrl", "nativewifi", "tesk5", "networkadapters"},
        "module's Win32 half": {"mrl", "nativewifi", "tesk5", "networkadapters", "libmfc",
                                "libUikit"},
    }

    def test_every_arrow_of_the_picture_passes_and_every_other_is_refused(self):
        for source, path in self.FILES.items():
            for target, header in self.HEADERS.items():
                if target in self.ALLOWED[source]:
                    self.assert_passes(path, header)
                else:
                    self.assert_refused(path, header,
                                        f"{source} must not include {target} ({header})")

    def test_standard_headers_pass_everywhere(self):
        for path in self.FILES.values():
            self.assert_passes(path, "vector", "cstdint", "unistd.h")

    def test_arrays_are_part_of_mrl(self):
        self.file("common/src/libcommon/mrlarray/mrl/MRLArrayRep.h")
        self.assert_passes(self.FILES["module"], "mrl/MRLArrayRep.h")

    def test_the_neutral_half_of_the_module_cannot_reach_the_other(self):
        self.file(f"{MODULE}/mrlrantennaDlg.h")
        self.assert_refused(f"{MODULE}/WirelessDevice.h", '"mrlrantennaDlg.h"',
                            "module must not include module's Win32 half (mrlrantennaDlg.h)")

    def test_the_win32_half_uses_the_neutral_one(self):
        self.file(f"{MODULE}/WirelessDevice.h")
        self.assert_passes(f"{MODULE}/mrlrantennaDlg.cpp", '"WirelessDevice.h"', "WirelessDevice.h")

    def test_the_file_that_makes_all_objects_makes_the_application_too(self):
        self.file(f"{MODULE}/MRLrAntennaApp.h")
        self.assert_passes(f"{MODULE}/ModuleObjects.cpp", '"MRLrAntennaApp.h"')
        self.assert_refused(f"{MODULE}/ModuleObjects.cpp", "windows.h",
                            "windows.h is for the Win32 parts of the house")

    def test_a_path_through_parent_folders_leads_to_the_same_file(self):
        self.file(f"{TESK5}/tesk5/Test.h")
        self.assert_refused(self.FILES["nativewifi"], '"../../libtesk5/tesk5/Test.h"',
                            "nativewifi must not include tesk5 (../../libtesk5/tesk5/Test.h)")

    def test_headers_in_a_librarys_src_are_private(self):
        self.file(f"{WIFI}/src/Loader.h")
        self.assert_passes(self.FILES["nativewifi"], '"Loader.h"')
        self.assert_refused(self.FILES["networkadapters"], '"../../libnativewifi/src/Loader.h"',
                            "../../libnativewifi/src/Loader.h is private to nativewifi")

    def test_a_header_beside_the_source_wins_over_one_of_that_name_elsewhere(self):
        self.file(f"{TESK5}/src/run/Plan.h")
        self.file(f"{MODULE}/Plan.h")
        self.assert_passes(self.FILES["tesk5"], '"Plan.h"')

    def test_a_file_outside_every_component_is_refused(self):
        self.assert_refused("common/src/libother/A.cpp", "vector",
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
        "commandline": "model texts devices run reports console",
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
                    path = f"{TESK5}/src/{room}/A.cpp"
                    if target == room or target in allowed.split():
                        self.assert_passes(path, header)
                    else:
                        name = header.strip('"')
                        self.assert_refused(path, header,
                                            f"tesk5's {room} must not include its {target} ({name})")

    def test_a_public_header_is_of_the_room_that_implements_it(self):
        self.assert_refused(f"{TESK5}/tesk5/PublicModel.h", "tesk5/PublicTexts.h",
                            "tesk5's model must not include its texts (tesk5/PublicTexts.h)")
        self.assert_passes(f"{TESK5}/tesk5/PublicTexts.h", "tesk5/PublicModel.h")

    def test_a_public_header_without_a_source_is_of_the_model(self):
        self.assert_refused(f"{TESK5}/tesk5/Plain.h", "tesk5/PublicTexts.h",
                            "tesk5's model must not include its texts (tesk5/PublicTexts.h)")

    def test_a_public_header_leads_to_no_private_one(self):
        self.assert_refused(f"{TESK5}/tesk5/PublicRun.h", '"run/Run.h"',
                            "run/Run.h is private, and this header is public")

    def test_a_file_in_no_room_is_refused(self):
        self.assert_refused(f"{TESK5}/src/A.cpp", '"model/Model.h"',
                            f"{TESK5}/src/A.cpp lies in no room of tesk5")
        self.assert_refused(f"{TESK5}/src/attic/A.cpp", '"model/Model.h"',
                            f"{TESK5}/src/attic/A.cpp lies in no room of tesk5")


class Win32Headers(Tree):
    def test_they_pass_in_the_win32_parts(self):
        for path in (f"{MFC}/afxwin.h", f"{MFC}/src/A.cpp", f"{UIKIT}/libUikit/A.h",
                     f"{UIKIT}/src/A.cpp", f"{WIFI}/nativewifi/WlanTypes.h",
                     f"{WIFI}/src/LoaderWin32.cpp", f"{MRL}/src/OutputStream.cpp",
                     f"{RADIOSIM}/dll/Exports.cpp", f"{DIALOGPROBE}/A.h",
                     f"{MODULE}/mrlrantennaDlgMeter.cpp", f"{MODULE}/DiversityTest.cpp",
                     f"{MODULE}/MRLrAntennaApp.h"):
            self.assert_passes(path, "windows.h", "commctrl.h", "iphlpapi.h", "Windows.h")

    def test_they_are_refused_elsewhere(self):
        for path in (f"{MRL}/src/Clock.cpp", f"{MRL}/mrl/OutputStream.h", f"{WIFI}/src/Api.cpp",
                     f"{WIFI}/nativewifi/Api.h", f"{TESK5}/src/ConsoleWin32.cpp",
                     f"{RADIOSIM}/src/Engine.cpp", f"{MODULE}/WirelessDevice.cpp",
                     f"{MODULE}/MRLrAntenna.cpp"):
            for header in ("windows.h", "Windows.h", "commctrl.h", "wlanapi.h", "winsock2.h"):
                self.assert_refused(path, header, f"{header} is for the Win32 parts of the house")


class ThirdPartyHeaders(Tree):
    def test_each_passes_in_its_place(self):
        self.assert_passes(f"{MRL}/src/Unicode.cpp", "utf8cpp/utf8.h")
        self.assert_passes(f"{MRL}/mrl/Json.h", "nlohmann/json.hpp")
        for path in (f"{TESK5}/src/CommandLine.cpp", f"{RADIOSIM}/src/Scenario.cpp"):
            self.assert_passes(path, "CLI/CLI.hpp")

    def test_each_is_refused_elsewhere(self):
        self.assert_refused(f"{MRL}/src/Logger.cpp", "utf8cpp/utf8.h",
                            "utf8cpp has no place here (utf8cpp/utf8.h)")
        for path in (f"{TESK5}/tesk5/Report.h", f"{RADIOSIM}/src/Scenario.cpp",
                     f"{DIALOGPROBE}/A.cpp"):
            self.assert_refused(path, "nlohmann/json.hpp",
                                "nlohmann has no place here (nlohmann/json.hpp)")
        self.assert_refused(f"{MODULE}/MRLrAntenna.cpp", "CLI/CLI.hpp",
                            "CLI has no place here (CLI/CLI.hpp)")

    def test_test_headers_are_refused_in_the_product(self):
        for header in ("gtest/gtest.h", "support/VirtualClock.h", "fuzzer/FuzzedDataProvider.h"):
            self.assert_refused(f"{TESK5}/src/A.cpp", header,
                                f"test code has no place here ({header})")


class Reading(Tree):
    PATH = f"{MRL}/src/A.cpp"

    def test_an_offence_names_file_and_line(self):
        self.file(self.PATH, "// head\n\n#include <vector>\n  #  include <tesk5/Test.h>\n")
        self.assertEqual(self.offences(),
                         [f"{self.PATH}:4: mrl must not include tesk5 (tesk5/Test.h)"])

    def test_every_offence_is_reported(self):
        self.file(self.PATH, "#include <tesk5/Test.h>\n#include <windows.h>\n")
        self.file(f"{WIFI}/nativewifi/A.h", "#include <afxwin.h>\n")
        self.assertEqual([line.split(": ")[0] for line in self.offences()],
                         [f"{self.PATH}:1", f"{self.PATH}:2", f"{WIFI}/nativewifi/A.h:1"])

    def test_comments_include_nothing_and_keep_the_count_of_lines(self):
        self.file(self.PATH, "/* a\n#include <windows.h>\n*/\n// #include <windows.h>\n"
                             "#include <windows.h>\n")
        self.assertEqual([line.split(": ")[0] for line in self.offences()], [f"{self.PATH}:5"])

    def test_a_text_with_the_marks_of_a_comment_hides_nothing(self):
        self.file(self.PATH, 'auto a = "/*";\n#include <windows.h>\nauto b = "*/";\n')
        self.assertEqual(len(self.offences()), 1)

    def test_an_include_for_one_system_counts_too(self):
        self.file(self.PATH, "#ifdef _WIN32\n#include <windows.h>\n#endif\n")
        self.assertEqual(len(self.offences()), 1)

    def test_an_include_of_a_macro_is_refused(self):
        self.file(self.PATH, "#include HEADER\n")
        self.assertEqual(self.offences(),
                         [f"{self.PATH}:1: an #include of a macro cannot be checked"])

    def test_other_files_are_not_read(self):
        self.file(f"{MODULE}/mrlrantenna.rc", "#include <windows.h>\n")
        self.file("tests/mrl/A.cpp", "#include <windows.h>\n")
        self.assertEqual(self.offences(), [])

    def test_invalid_utf8_does_not_stop_the_check(self):
        self.file(self.PATH)
        (self.root / self.PATH).write_bytes(b"// M\xfcller\n#include <windows.h>\n")
        self.assertEqual(len(self.offences()), 1)


class CommandLine(Tree):
    def run_main(self, *arguments):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            try:
                code = check_includes.main(list(arguments))
            except SystemExit as leaving:
                code = leaving.code
        return code, out.getvalue(), err.getvalue()

    def test_a_clean_tree_is_silent(self):
        self.file(f"{MRL}/src/A.cpp", "#include <mrl/A.h>\n")
        self.assertEqual(self.run_main("--root", str(self.root)), (0, "", ""))

    def test_an_offence_is_a_line_and_exit_code_1(self):
        self.file(f"{MRL}/src/A.cpp", "#include <windows.h>\n")
        code, out, _ = self.run_main("--root", str(self.root))
        self.assertEqual(code, 1)
        self.assertEqual(out, f"{MRL}/src/A.cpp:1: windows.h is for the Win32 parts of the house\n")

    def test_a_folder_without_sources_is_refused(self):
        code, out, err = self.run_main("--root", str(self.root / "nowhere"))
        self.assertNotEqual(code, 0)
        self.assertEqual(out, "")
        self.assertIn("nowhere", err)


if __name__ == "__main__":
    unittest.main()
