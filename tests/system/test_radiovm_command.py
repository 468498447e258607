"""The image of tools/radiovm, and what the command says when the machine does not come to its end:
with programs in the place of QEMU and apt that fail, hang or end too early."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tools" / "radiovm"))
import image

RADIOVM = ROOT / "tools" / "radiovm" / "radiovm"
UNAVAILABLE = 69
WRONG_USAGE = 64
CASE_FAILED = 1

# Finds the shared folder and the console among QEMU's arguments.
QEMU = """#!/bin/bash
for argument; do
    case $argument in
        local,path=*) share=${argument#local,path=} share=${share%%,*} ;;
        file:*) console=${argument#file:} ;;
    esac
done
begin() { mkdir "$share/results/$1"; echo 1.5 >"$share/results/$1/begun"; }
finish() { echo "9.5 $2" >"$share/results/$1/ended"; }
"""
APT_CACHE = """#!/bin/sh
echo '  Depends: linux-image-6.1.0-1-amd64'
"""


class Image(unittest.TestCase):
    def test_is_the_same_for_equal_files(self):
        archives = []
        for names, umask in ((("a", "b"), 0o022), (("b", "a"), 0o077)):
            with tempfile.TemporaryDirectory() as folder:
                tree = pathlib.Path(folder) / "tree"
                (tree / "bin").mkdir(parents=True)
                before = os.umask(umask)
                self.addCleanup(os.umask, before)
                for name in names:
                    (tree / "bin" / name).write_text(name, encoding="utf-8")
                    (tree / "bin" / name).chmod(0o644)
                (tree / "link").symlink_to("bin/a")
                image.pack(tree, pathlib.Path(folder) / "archive")
                archives.append((pathlib.Path(folder) / "archive").read_bytes())
        self.assertEqual(*archives)


class RadioVm(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.programs = self.folder / "programs"
        self.programs.mkdir()

    def program(self, name, text):
        """Puts a program before the system's own."""
        path = self.programs / name
        path.write_text(text, encoding="utf-8")
        path.chmod(0o755)

    def start(self, *arguments, path=None):
        """Starts the command; without an image, which a module of its own replaces."""
        (self.folder / "image.py").write_text(
            f"import pathlib\nROOT = pathlib.Path({str(ROOT)!r})\n"
            "class ImageError(Exception): pass\n"
            f"def image(): return pathlib.Path({str(self.folder)!r})\n", encoding="utf-8")
        script = ("import sys, runpy; sys.dont_write_bytecode = True; "
                  f"sys.path.insert(0, {str(RADIOVM.parent)!r}); "
                  f"sys.path.insert(0, {str(self.folder)!r}); import image; "
                  f"sys.argv[0] = {str(RADIOVM)!r}; "
                  f"runpy.run_path(sys.argv[0], run_name='__main__')")
        return self.finished([sys.executable, "-c", script, "--results",
                              str(self.folder / "results"), *arguments], path)

    def finished(self, command, path=None):
        path = f"{self.programs}:{os.environ['PATH']}" if path is None else path
        return subprocess.run(command, env={**os.environ, "PATH": path}, capture_output=True,
                              text=True, timeout=60, check=False)

    def assert_says(self, run, *parts):
        self.assertEqual(run.returncode, UNAVAILABLE, run)
        self.assertEqual(run.stderr.count("\n"), 1, run)
        for part in parts:
            self.assertIn(part, run.stderr)

    def test_shows_the_cases_and_their_time(self):
        self.program("qemu-system-x86_64", QEMU + "begin killed\nfinish killed 0\n"
                     'echo "radiovm: the end" >"$console"\n')
        run = self.start("killed")
        self.assertEqual(run.returncode, 0, run)
        self.assertRegex(run.stdout, r"\Akilled +8\.0 s, exit 0\n1 cases in ")

    def test_ends_with_1_when_a_case_failed(self):
        self.program("qemu-system-x86_64", QEMU + "begin killed\nfinish killed 143\n"
                     'echo "radiovm: the end" >"$console"\n')
        self.assertEqual(self.start().returncode, CASE_FAILED)

    def test_names_a_case_that_hangs(self):
        self.program("qemu-system-x86_64", QEMU + "begin killed\nbegin hidden\nfinish hidden 0\n"
                     "exec sleep 1000\n")
        self.assert_says(self.start("--limit", "1"),
                         "did not end within 1 s during killed: see ")

    def test_says_that_the_kernel_panicked(self):
        self.program("qemu-system-x86_64", QEMU + "begin killed\n"
                     'echo "[ 3.2] Kernel panic - not syncing: Fatal exception" >"$console"\n')
        self.assert_says(self.start(), "panicked during killed (Fatal exception)")

    def test_says_that_the_machine_ended_too_early(self):
        self.program("qemu-system-x86_64", QEMU)
        self.assert_says(self.start(), "the machine ended before its cases")

    def test_says_that_a_case_did_not_end_with_the_machine(self):
        self.program("qemu-system-x86_64", QEMU + "begin killed\n"
                     'echo "radiovm: the end" >"$console"\n')
        self.assert_says(self.start(), "killed did not come to its end")

    def test_says_what_the_machine_could_not_do(self):
        self.program("qemu-system-x86_64", QEMU +
                     'printf "radiovm: the module rfkill cannot be loaded\\nradiovm: the end\\n" '
                     '>"$console"\n')
        self.assert_says(self.start(), "radiovm: the module rfkill cannot be loaded: see ")

    def test_says_what_to_install_when_qemu_is_missing_or_fails(self):
        self.assert_says(self.start(path=str(self.programs)), "install the package qemu-system-x86")
        self.program("qemu-system-x86_64", "#!/bin/sh\necho 'no accelerator found' >&2\nexit 1\n")
        self.assert_says(self.start(), "no accelerator found", "install the package")

    def test_refuses_an_unknown_case(self):
        run = self.start("twins")
        self.assertEqual((run.returncode, run.stderr),
                         (WRONG_USAGE, "radiovm: no case twins; --list shows them\n"))

    def test_says_what_to_do_when_apt_offers_nothing(self):
        self.program("apt-cache", "#!/bin/sh\nexit 0\n")
        self.assert_says(self.finished([str(RADIOVM), "killed"]), "apt-get update")
        self.program("apt-cache", APT_CACHE)
        self.program("apt-get", "#!/bin/sh\necho 'E: Unable to locate package iw' >&2\nexit 100\n")
        self.assert_says(self.finished([str(RADIOVM), "killed"]), "Unable to locate package iw",
                         "apt-get update")


if __name__ == "__main__":
    unittest.main()
