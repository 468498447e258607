"""A full disk: a small file system of the test's own, filled to the last page.

Reports are whole or absent there, the old one stays, no temporary file is left, the verdict is
shown and the exit value is the documented one; with room again, the next run works.
"""
import ctypes
import itertools
import json
import os
import pathlib
import subprocess
import tempfile
import time
import unittest

from display import Prefix
from program import (EXECUTABLE, LIMIT_SECONDS, LOG_LINE, OUTPUT_LOST, RESULTS, SCENARIOS, VERIFICATION,
                     WRONG_USAGE, ProgramTest, environment, settings)

# The unit in which the file system allocates.
PAGE = os.sysconf("SC_PAGESIZE")
DISK_PAGES = 64
CARDS = 10
KINDS = {"--json": "report.json", "--junit": "report.xml", "--html": "report.html"}
CLONE_NEWNS, CLONE_NEWUSER = 0x00020000, 0x10000000


def leave_for_a_namespace():
    """Gives this process and its children a mount namespace of their own. Root may do that, and
    other users where the system allows user namespaces."""
    libc = ctypes.CDLL(None, use_errno=True)
    user, group = os.getuid(), os.getgid()
    if libc.unshare(CLONE_NEWNS) != 0:
        if libc.unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0:
            raise RuntimeError("nothing may be mounted here, so a full disk cannot be shown: "
                               f"{os.strerror(ctypes.get_errno())}. Run this test as root, or allow "
                               "user namespaces (sysctl kernel.unprivileged_userns_clone=1)")
        own = pathlib.Path("/proc/self")
        (own / "setgroups").write_text("deny", encoding="ascii")
        (own / "uid_map").write_text(f"0 {user} 1", encoding="ascii")
        (own / "gid_map").write_text(f"0 {group} 1", encoding="ascii")
    subprocess.run(["mount", "--make-rprivate", "/"], check=True)


def setUpModule():
    leave_for_a_namespace()
    # Wine's server opens the files, so it must be in the namespace: a prefix of its own has one.
    prefix = Prefix()
    unittest.addModuleCleanup(prefix.close)
    os.environ["WINEPREFIX"] = str(prefix.path)


class FullDisk(ProgramTest):
    def setUp(self):
        super().setUp()
        self.beside = self.folder  # a folder on another disk
        disk = tempfile.TemporaryDirectory()
        self.addCleanup(disk.cleanup)
        self.folder = pathlib.Path(disk.name)
        self.mount()

    def mount(self, *options):
        subprocess.run(["mount", "-t", "tmpfs", "-o",
                        ",".join((f"size={DISK_PAGES * PAGE}", *options)), "test",
                        str(self.folder)], check=True)
        self.addCleanup(subprocess.run, ["umount", "--lazy", str(self.folder)], check=True)

    # The disk.

    def free_pages(self):
        return os.statvfs(self.folder).f_bavail * os.statvfs(self.folder).f_frsize // PAGE

    def leave(self, pages):
        """Fills the disk until exactly `pages` pages are free."""
        filler = self.folder / "filler"
        filler.unlink(missing_ok=True)
        filler.write_bytes(bytes((self.free_pages() - pages) * PAGE))
        self.assertEqual(self.free_pages(), pages)

    def make_room(self):
        (self.folder / "filler").unlink()

    def there(self):
        """The files on the disk, without those that fill it."""
        return sorted(path.name for path in self.folder.iterdir() if path.name != "filler")

    # The runs.

    def cards(self, padding):
        """Devices whose reports take several pages. Runs do not pause: no network is named."""
        path = self.beside / "cards.json"
        path.write_text(json.dumps([
            {"name": f"Card {number}", "capabilities": ["Wireless", "NetworkCard"],
             "properties": {"wlanAPISupported": "", "DeviceSystemName": "x" * padding}}
            for number in range(CARDS)]), encoding="utf-8")
        return path

    def run_of_cards(self, padding, *arguments):
        return self.run_program("run", VERIFICATION, "--devices", str(self.cards(padding)),
                                *arguments)

    def padding_to_the_middle_of_a_page(self, option, name):
        """Returns padding and pages of a report that takes the same number of pages in each run,
        although the lengths of its times vary."""
        sizes = []
        for padding in (1000, 1000 + PAGE // 8 // CARDS):
            self.assertEqual(self.run_of_cards(padding, option, name).exit, RESULTS["BADPARAMS"])
            sizes.append((self.folder / name).stat().st_size)
        (self.folder / name).unlink()
        for padding, size in zip((1000, 1000 + PAGE // 8 // CARDS), sizes):
            if PAGE // 16 < size % PAGE < PAGE - PAGE // 16:
                return padding, size // PAGE + 1
        self.fail(f"sizes {sizes} are all at a page's end")

    def assert_not_replaced(self, run, *names):
        """The run ended with all verdicts shown; then these reports failed."""
        self.assertEqual(run.exit, RESULTS["EXITEDABNORMALLY"], run)
        self.assertEqual(run.out.count("BADPARAMS after"), CARDS, run)
        for name in names:
            self.assertIn(f'the report "{name}" could not be written: the disk is full', run.err)


class Reports(FullDisk):
    def test_are_whole_or_as_they_were_at_every_level(self):
        for option, name in KINDS.items():
            padding, pages = self.padding_to_the_middle_of_a_page(option, name)
            self.assertGreater(pages, 2)
            path = self.folder / name
            for old, free in itertools.product((None, '{"an older": "report"}'), (0, 1, pages - 1)):
                with self.subTest(name, old=old, free=free):
                    if old is not None:
                        path.write_text(old, encoding="utf-8")
                    self.leave(free)
                    self.assert_not_replaced(self.run_of_cards(padding, option, name), name)
                    self.assertEqual(self.there(), [name] if old else [])
                    if old is not None:
                        self.assertEqual(path.read_text(encoding="utf-8"), old)
            with self.subTest(name, free="just enough"):
                path.unlink()
                self.leave(pages)
                self.assert_replaced(self.run_of_cards(padding, option, name), name)
            with self.subTest(name, free="none, then enough"):
                self.leave(0)
                self.assert_not_replaced(self.run_of_cards(padding, option, name), name)
                self.make_room()
                self.assert_replaced(self.run_of_cards(padding, option, name), name)
            path.unlink()

    def assert_replaced(self, run, name):
        self.assertEqual(run.exit, RESULTS["BADPARAMS"], run)
        self.assertEqual(self.there(), [name])
        text = (self.folder / name).read_text(encoding="utf-8")
        for number in range(CARDS):
            self.assertIn(f"Card {number}", text)
        self.assertRegex(text, r"(^\{[^\0]*\}|</(testsuites|html)>)\s*\Z")

    def test_that_fail_are_named_and_those_that_fit_are_written(self):
        self.leave(0)
        run = self.run_of_cards(1000, *(part for kind in KINDS.items() for part in kind))
        self.assert_not_replaced(run, *KINDS.values())
        self.assertEqual(self.there(), [])
        self.make_room()
        padding, pages = self.padding_to_the_middle_of_a_page("--junit", "report.xml")
        self.leave(pages)
        run = self.run_of_cards(padding, "--html", "report.html", "--junit", "report.xml")
        self.assert_not_replaced(run, "report.html")
        self.assertNotIn("report.xml", run.err)
        self.assertEqual(self.there(), ["report.xml"])

    def test_use_the_space_of_a_temporary_file_that_a_killed_run_left(self):
        padding, pages = self.padding_to_the_middle_of_a_page("--json", "report.json")
        leftover = self.folder / "report.json.4294967291-42.tmp"  # no process has that number
        leftover.mkdir()
        (leftover / "mrl-report").write_bytes(bytes(pages * PAGE))
        self.leave(0)
        self.assert_replaced(self.run_of_cards(padding, "--json", "report.json"), "report.json")

    def test_that_cannot_be_created_are_refused_before_anything_runs(self):
        self.mount("nr_inodes=2")  # the folder's, and one file
        (self.folder / "a").touch()
        run = self.run_of_cards(10, "--json", "report.json")
        self.assertEqual(run.exit, WRONG_USAGE, run)
        self.assertIn("the disk is full", run.err)
        self.assertEqual(run.out, "")
        self.assertEqual(self.there(), ["a"])


class Logs(FullDisk):
    def test_leave_the_verdict_and_are_cut_in_one_line_only(self):
        log = self.folder / "run.log"
        # The only free space is the rest of the file's last page.
        old = "2026-11-20T19:55:01.123Z 1 older: ".ljust(PAGE - 301, "x") + "\n"
        log.write_text(old, encoding="utf-8")
        self.leave(0)
        arguments = ("--log", "run.log", "--log-level", "0")
        run = self.run_of_cards(10, *arguments)
        self.assertEqual(run.exit, RESULTS["BADPARAMS"], run)
        self.assertIn("exit value 4", run.out)
        text = log.read_text(encoding="utf-8")
        self.assertEqual(len(text), PAGE, "as much as there was room for")
        self.make_room()
        self.assertEqual(self.run_of_cards(10, *arguments).exit, RESULTS["BADPARAMS"])
        after = log.read_text(encoding="utf-8")
        self.assertTrue(after.startswith(text))
        self.assertTrue(after.endswith("\n"))
        lines = after[len(old):].split("\n")
        cut = text.rpartition("\n")[2]
        self.assertIn(cut, lines, "the line that was cut has ended")
        for line in lines:
            if line not in (cut, ""):
                self.assertRegex(line, LOG_LINE)


class Output(FullDisk):
    def exit_value(self, *arguments, to):
        with open(to, "ab") as out:
            return subprocess.run(
                ["wine", str(EXECUTABLE), *arguments], cwd=self.folder, env=environment(),
                stdin=subprocess.DEVNULL, stdout=out, stderr=subprocess.DEVNULL,
                timeout=LIMIT_SECONDS, check=False).returncode

    def test_that_is_lost_has_an_exit_value_unless_a_report_has_the_verdict(self):
        run = ("run", VERIFICATION, "--devices", str(self.cards(10)))
        report = ("--json", str(self.beside / "report.json"))
        full = self.folder / "output.txt"
        full.touch()
        self.leave(0)
        for arguments, value in ((run, OUTPUT_LOST), ((*run, "--events"), OUTPUT_LOST),
                                 ((*run, *report), RESULTS["BADPARAMS"]),
                                 (("list",), OUTPUT_LOST), (("--help",), OUTPUT_LOST)):
            with self.subTest(arguments):
                self.assertEqual(self.exit_value(*arguments, to=full), value)
        self.assertEqual(full.read_bytes(), b"")
        self.assertEqual(self.exit_value(*run, to=os.devnull), RESULTS["BADPARAMS"])


class Events(FullDisk):
    """Standard output is a file on the disk."""

    def test_that_come_when_there_is_room_again_have_lines_of_their_own(self):
        # Only the beginning of the first line fits, into the rest of a page.
        earlier = "x" * (PAGE - 100) + "\n"
        stream = self.folder / "events.jsonl"
        stream.write_text(earlier, encoding="ascii")
        self.leave(0)
        with open(stream, "ab") as out:
            program = subprocess.Popen(
                ["wine", str(EXECUTABLE), "run", VERIFICATION, "--events", "--json",
                 str(self.beside / "report.json"),
                 *settings(SSID="Lab", FailingSignalStrength=40)],
                cwd=self.folder, env=environment(SCENARIOS / "weak-signal.json"),
                stdin=subprocess.DEVNULL, stdout=out)
        self.addCleanup(program.wait, LIMIT_SECONDS)
        self.addCleanup(program.kill)
        self.wait_until_full(stream)
        self.make_room()
        self.assertEqual(program.wait(LIMIT_SECONDS), RESULTS["FAIL"])
        _, cut, *rest, end = stream.read_bytes().split(b"\n")
        self.assertTrue(cut.startswith(b'{"type":"runStarted"'), cut)
        self.assertEqual(len(earlier) + len(cut), PAGE, "the next line has begun behind it")
        self.assertEqual(end, b"")
        events = [json.loads(line) for line in rest]
        self.assertEqual([event["type"] for event in events[-2:]], ["testEnded", "runEnded"])
        numbers = [event["sequence"] for event in events]
        self.assertEqual(numbers, list(range(numbers[0], numbers[0] + len(numbers))))
        self.assertGreater(numbers[0], 2, "what was lost has its numbers")
        report = json.loads((self.beside / "report.json").read_text(encoding="utf-8"))
        self.assertEqual(report["results"], [events[-2]["result"]])

    def wait_until_full(self, stream):
        """Waits until the disk is full, and then into the pause of the forced scan."""
        end = time.monotonic() + LIMIT_SECONDS
        while stream.stat().st_size < PAGE:
            self.assertLess(time.monotonic(), end, "the program writes nothing")
            time.sleep(0.05)
        time.sleep(2)


if __name__ == "__main__":
    unittest.main()
