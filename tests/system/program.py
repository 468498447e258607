"""Runs the shipped executable under Wine, against a simulated radio environment."""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tests"))
import wine_starts
DIST = ROOT / "build" / "windows" / "dist"
EXECUTABLE = DIST / "mrlrantenna.k5x"
SIGNAL = DIST / "mrlrsignal.k5x"
PROGRAMS = (EXECUTABLE, SIGNAL)
# The parts of the programs' resources.
RESOURCES = [ROOT / "resources" / part
             for part in ("mrlrantenna", "mrlrsignal", "networkadapters", "tesk5")]
SCENARIOS = ROOT / "tools" / "radiosim" / "scenarios"
VERIFICATION = "WirelessSignalStrengthVerificationTest"
# Longer than the longest run: two forced scans, half a minute of polling, Wine's start.
LIMIT_SECONDS = 120

# Result words and the exit values that stand for them.
RESULTS = {"PASS": 0, "WARN": 1, "FAIL": 2, "CANNOTRUN": 3, "BADPARAMS": 4, "INTERNALERROR": 5,
           "USERABORTED": 6, "COMPLETED": 7, "EXITEDABNORMALLY": 8}
WRONG_USAGE = 64
OUTPUT_LOST = 74
REPLAY_DIFFERS = 65
# Time, priority, logger and text.
LOG_LINE = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z \d [\w.]+: .+")


def environment(scenario=None, **extra):
    """The environment for a run: the project's Wine prefix and, if given, a scenario file."""
    env = dict(os.environ)
    env.setdefault("WINEPREFIX", str(ROOT / "build" / "wineprefix"))
    env.setdefault("WINEDEBUG", "-all,err+heap")
    env.setdefault("WINEDLLOVERRIDES", "wlanapi=n;mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe=")
    env["LC_ALL"] = "C.UTF-8"  # decides Windows' language, and so the texts
    env.pop("RADIOSIM_SCENARIO", None)
    if scenario is not None:
        env["RADIOSIM_SCENARIO"] = str(scenario)
    env.update(extra)
    return env


def settings(**parameters):
    """The options that give parameters these values."""
    return tuple(word for name, value in parameters.items()
                 for word in ("--set", f"{name}={value}"))


class Run:
    """A finished run: exit value, output and error output as text."""

    def __init__(self, exit_value, out, err):
        self.exit = exit_value
        self.out = out.decode("utf-8")
        self.err = err.decode("utf-8")

    def __repr__(self):
        return f"exit {self.exit}\n--- out\n{self.out}--- err\n{self.err}"


class Started:
    """A running program. Its output goes to files: processes that Wine starts beside it may keep a
    pipe open long after the program has ended. A start that Wine failed is repeated once."""

    def __init__(self, arguments, folder, env, executable=EXECUTABLE, typed=""):
        self._command = ["wine", str(executable), *arguments]
        self._folder = folder
        self._trace = tempfile.NamedTemporaryFile()
        self._environment = {"RADIOSIM_TRACE": self._trace.name, **env}
        self._repeated = False
        self._typed = tempfile.TemporaryFile()
        self._typed.write(typed.encode("utf-8"))
        self._out = tempfile.TemporaryFile()
        self._err = tempfile.TemporaryFile()
        self._start()

    def _start(self):
        self._typed.seek(0)
        self.process = subprocess.Popen(self._command, cwd=self._folder, env=self._environment,
                                        stdin=self._typed, stdout=self._out,
                                        stderr=self._err, start_new_session=True)

    def _written(self):
        return [os.pread(stream.fileno(), 1 << 24, 0) for stream in (self._out, self._err)]

    def _repeat_if_never_began(self):
        """After the end of the process: whether the program was started again."""
        if self._repeated or not wine_starts.never_began(
                self.process.returncode, b"".join(self._written()),
                [self._environment["RADIOSIM_TRACE"]]):
            return False
        self._repeated = True
        wine_starts.note_repeat(" ".join(self._command))
        self._start()
        return True

    def wait_until_it_says(self, text):
        """Waits until standard output has `text`."""
        end = time.monotonic() + LIMIT_SECONDS
        while text.encode("utf-8") not in self._written()[0]:
            ended = self.process.poll() is not None and not self._repeat_if_never_began()
            if ended or time.monotonic() > end:
                raise AssertionError(f"the program did not say {text!r}: {self._written()}")
            time.sleep(0.1)

    def finish(self):
        """Waits for the end; returns the Run."""
        try:
            exit_value = self.process.wait(LIMIT_SECONDS)
            if self._repeat_if_never_began():
                exit_value = self.process.wait(LIMIT_SECONDS)
        finally:
            self.process.kill()
            self.process.wait()
        with self._typed, self._out, self._err, self._trace:
            return Run(exit_value, *self._written())


class ProgramTest(unittest.TestCase):
    """A test with a folder of its own, which is the executable's current directory."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.executable = EXECUTABLE

    def scenario_file(self, scenario):
        """A scenario as a file: it is one, or what to write into one."""
        return self.write("scenario.json", scenario) if isinstance(scenario, dict) else scenario

    def start_program(self, *arguments, scenario=None, typed="", **extra):
        started = Started(arguments, self.folder,
                          environment(self.scenario_file(scenario), **extra), self.executable,
                          typed)
        self.addCleanup(started.process.kill)
        return started

    def run_program(self, *arguments, scenario=None, typed="", **extra):
        run = self.start_program(*arguments, scenario=scenario, typed=typed, **extra).finish()
        self.assertNotIn("err:heap:", run.err, "Wine's heap complains")
        return run

    def write(self, name, content):
        """Writes a file into the folder; anything but text is written as JSON."""
        path = self.folder / name
        path.write_text(content if isinstance(content, str) else json.dumps(content),
                        encoding="utf-8")
        return path

    def read_json(self, name):
        return json.loads((self.folder / name).read_text(encoding="utf-8"))
