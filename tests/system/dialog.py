"""The interactive test of the shipped executable, seen and driven from outside."""
import json
import os
import pathlib
import re
import select
import signal
import subprocess
import time
import types

from display import Display, Prefix, stop
from program import EXECUTABLE, ROOT, ProgramTest, Run, environment

PROBE = ROOT / "build" / "windows" / "dialogprobe" / "dialogprobe.exe"
SCREENSHOTS = ROOT / "build" / "screenshots"
OPEN_SECONDS = 90
ANSWER_SECONDS = 60
# A stop request is noticed by the next tick of a timer of ten seconds.
END_SECONDS = 60
LOOK_EVERY_SECONDS = 0.2

RESOURCE_IDS = ROOT / "modules" / "src" / "windows" / "diag" / "mrlrantenna" / "resource.h"
# Ids of the controls: ID.FINISH is that of IDC_FINISH.
ID = types.SimpleNamespace(**{
    name: int(value) for name, value in
    re.findall(r"^#define IDC_(\w+) (\d+)$", RESOURCE_IDS.read_text(encoding="utf-8"), re.M)})


def texts_of(language):
    """The module's texts by key."""
    return json.loads((ROOT / "resources" / "mrlrantenna" / "texts" / f"{language}.json")
                      .read_text(encoding="utf-8"))


TEXTS = texts_of("en")


class Dialog:
    """The open dialog of a running program, with its own display and Wine prefix."""

    def __init__(self, test, scenario=None, dpi=96, language="en", options=()):
        self._folder = test.folder
        self._display = Display()
        test.addCleanup(self._display.close)
        prefix = Prefix(dpi)
        test.addCleanup(prefix.close)
        self._environment = environment(scenario, WINEPREFIX=str(prefix.path),
                                        DISPLAY=self._display.name)
        self._probe = self._start(PROBE, "--title", texts_of(language)["TITLE"],
                                  "--wait", str(OPEN_SECONDS * 1000),
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                  stderr=subprocess.DEVNULL)
        test.addCleanup(self._probe.stdout.close)
        test.addCleanup(self._probe.stdin.close)
        test.addCleanup(stop, self._probe)
        self._wait_for_the_desktop()
        with open(self._folder / "out.txt", "wb") as out, \
                open(self._folder / "err.txt", "wb") as err:
            self._program = self._start(EXECUTABLE, "run", "DiversityTest", "--json", "report.json",
                                        "--language", language, *options,
                                        stdin=subprocess.DEVNULL, stdout=out, stderr=err)
        test.addCleanup(stop, self._program)
        self._ask("window", seconds=OPEN_SECONDS + ANSWER_SECONDS)

    def _wait_for_the_desktop(self):
        """Returns when Wine's desktop is there. The first process with windows makes it, and no
        other one can open a window meanwhile."""
        subprocess.run(["wine", str(PROBE), "--title", "no such window", "--wait", "0"],
                       cwd=self._folder, env=self._environment, input=b"window\n",
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       timeout=OPEN_SECONDS, check=False)

    def _start(self, program, *arguments, **streams):
        return subprocess.Popen(["wine", str(program), *arguments], cwd=self._folder,
                                env=self._environment, **streams)

    def _ask(self, *words, seconds=ANSWER_SECONDS):
        """The probe's answer to a command, as a list of objects."""
        self._probe.stdin.write(" ".join(map(str, words)).encode("utf-8") + b"\n")
        self._probe.stdin.flush()
        answer = b""
        end = time.monotonic() + seconds
        pipe = self._probe.stdout.fileno()
        while not (answer == b"\n" or answer.endswith(b"\n\n")):
            ready, _, _ = select.select([pipe], [], [], max(end - time.monotonic(), 0))
            piece = os.read(pipe, 65536) if ready else b""
            if not piece:
                raise AssertionError(f"no answer to {words}; the program says:\n{self.output()!r}")
            answer += piece
        lines = [json.loads(line) for line in answer.splitlines() if line]
        for line in lines:
            if "error" in line:
                raise AssertionError(f"{words}: {line['error']}; the program says:\n{self.output()!r}")
        return lines

    # What it shows.

    def window(self):
        return self._ask("window")[0]

    def controls(self):
        """All controls by id, in the order of the Tab key."""
        return {control["id"]: control for control in self._ask("show")}

    def control(self, control_id):
        return self._ask("show", control_id)[0]

    def text(self, control_id):
        return self.control(control_id)["text"]

    def strength(self):
        """Percent as a number (None without one), rating, and the meter's position."""
        controls = self.controls()
        percent = controls[ID.STRENGTH_PERCENT]["text"]
        return (int(percent.removesuffix("%")) if percent else None,
                controls[ID.STRENGTH_TEXT]["text"], controls[ID.SIGNAL_METER]["position"])

    def focus(self):
        """Id of the control that has the keyboard focus."""
        return self._ask("focus")[0]["id"]

    def open_windows(self):
        """Places of the visible top-level windows, lists that have dropped down among them."""
        return [tuple(window["rect"]) for window in self._ask("windows") if window["visible"]]

    def rooms(self):
        """For each visible text: id, text, the size that it has and the size that it needs."""
        return self._ask("fit")

    def objects(self):
        """The program's resources: drawing objects (gdi), windows (user), private memory in KiB
        and open files."""
        process = pathlib.Path("/proc") / str(self._program.pid)
        memory = re.search(r"^RssAnon:\s*(\d+) kB$", (process / "status").read_text("ascii"), re.M)
        return {**self._ask("objects")[0], "memory": int(memory[1]),
                "files": len(list((process / "fd").iterdir()))}

    def colours(self, control_id):
        return self._display.colours(self.control(control_id)["rect"])

    def screenshot(self, name):
        """Writes a picture of the dialog to build/screenshots."""
        self._display.picture(self.window()["rect"], SCREENSHOTS / f"{name}.png")

    # What a person does.

    def click(self, control_id):
        self._ask("click", control_id)

    def click_with_the_mouse(self, control_id):
        left, top, right, bottom = self.control(control_id)["rect"]
        self._display.click((left + right) // 2, (top + bottom) // 2)

    def select(self, index):
        self._ask("select", ID.NETWORK_COMBO, index)

    def press(self, *keys):
        """Presses real keys."""
        self._display.press(*keys)

    def interrupt(self):
        """Ctrl+C in the console."""
        self._program.send_signal(signal.SIGINT)

    # How it ends.

    def is_running(self):
        return self._program.poll() is None

    def output(self):
        """Exit value and output of the program, so far."""
        return Run(self._program.poll(), (self._folder / "out.txt").read_bytes(),
                   (self._folder / "err.txt").read_bytes())

    def ended(self):
        """Waits for the program to end by itself; its exit value and output."""
        try:
            self._program.wait(END_SECONDS)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the program goes on:\n{self.output()!r}") from None
        return self.output()


class DialogTest(ProgramTest):
    """A test that opens the dialog."""

    def open(self, scenario=None, dpi=96, language="en", options=()):
        """Opens the dialog in a radio environment: a file, or what to write into one."""
        return Dialog(self, self.scenario_file(scenario), dpi, language, options)

    def assert_becomes(self, read, expected, seconds=40):
        """Waits until `read()` gives `expected`, or a value for which `expected(value)` holds."""
        holds = expected if callable(expected) else lambda value: value == expected
        end = time.monotonic() + seconds
        while not holds(value := read()):
            if time.monotonic() > end:
                self.fail(f"still {value!r}" + ("" if callable(expected) else
                                                f", and not {expected!r}"))
            time.sleep(LOOK_EVERY_SECONDS)
        return value

    def result(self):
        """The one result in the report."""
        results = self.read_json("report.json")["results"]
        self.assertEqual(len(results), 1)
        return results[0]
