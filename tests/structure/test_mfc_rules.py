"""The slice of MFC refuses what the real one refuses, so that the sources also compile with that."""
import pathlib
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
COMPILER = "x86_64-w64-mingw32-g++-posix"
WINDOW = "struct Picture : CWnd { void act() { %s } };"


def compile_error(source):
    """The compiler's words on a source; empty when it compiles."""
    return subprocess.run(
        [COMPILER, "-std=c++20", "-fsyntax-only", "-DUNICODE", "-D_UNICODE",
         "-I", str(ROOT / "common" / "src" / "libmfc"), "-x", "c++", "-"],
        input=source, encoding="utf-8", stderr=subprocess.PIPE, check=False).stderr


class Rules(unittest.TestCase):
    def assert_compiles(self, source):
        self.assertEqual(compile_error(source), "")

    def test_windows_h_comes_after_the_headers_of_mfc(self):
        self.assert_compiles("#include <afxwin.h>\n#include <windows.h>\n")
        self.assertIn("windows.h was included before the MFC headers",
                      compile_error("#include <windows.h>\n#include <afxwin.h>\n"))

    def test_an_object_that_may_be_refused_is_made_with_the_global_operator(self):
        make = "#include <afxwin.h>\nCWnd* make() { return %snew (std::nothrow) CWnd; }\n"
        self.assert_compiles(make % "::")
        self.assertIn("no matching function", compile_error(make % ""))

    def test_windows_functions_are_qualified_where_an_operation_of_cwnd_hides_them(self):
        act = "#include <afxwin.h>\n" + WINDOW
        for call in ("GetParent(m_hWnd);", "SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0, 0);",
                     "GetDC(m_hWnd);", "RedrawWindow(m_hWnd, nullptr, nullptr, 0);"):
            self.assert_compiles(act % f"::{call}")
            self.assertIn("Picture::", compile_error(act % call), call)


if __name__ == "__main__":
    unittest.main()
