"""Runs the shipped executable under Wine, against a simulated radio environment."""
import json
import os
import pathlib
import subprocess
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
DIST = ROOT / "build" / "windows" / "dist"
EXECUTABLE = DIST / "mrlrantenna.k5x"
SCENARIOS = ROOT / "tools" / "radiosim" / "scenarios"
VERIFICATION = "WirelessSignalStrengthVerificationTest"
# Longer than the longest run: two forced scans, half a minute of polling, Wine's start.
LIMIT_SECONDS = 120

# Result words and the exit values that stand for them.
RESULTS = {"PASS": 0, "WARN": 1, "FAIL": 2, "CANNOTRUN": 3, "BADPARAMS": 4, "INTERNALERROR": 5,
           "USERABORTED": 6, "COMPLETED": 7, "EXITEDABNORMALLY": 8}
WRONG_USAGE = 64


def environment(scenario=None, **extra):
    """The environment for a run: the project's Wine prefix and, if given, a scenario file."""
    env = dict(os.environ)
    env.setdefault("WINEPREFIX", str(ROOT / "build" / "wineprefix"))
    env.setdefault("WINEDEBUG", "-all,err+heap")
    env.setdefault("WINEDLLOVERRIDES", "wlanapi=n;mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe=")
    env["LC_ALL"] = "C.UTF-8"  # Windows' language follows it, and the texts Windows' language
    env.pop("RADIOSIM_SCENARIO", None)
    if scenario is not None:
        env["RADIOSIM_SCENARIO"] = str(scenario)
    env.update(extra)
    return env


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
    pipe open long after the program has ended."""

    def __init__(self, arguments, folder, env):
        self._out = tempfile.TemporaryFile()
        self._err = tempfile.TemporaryFile()
        self.process = subprocess.Popen(["wine", str(EXECUTABLE), *arguments], cwd=folder, env=env,
                                        stdin=subprocess.DEVNULL, stdout=self._out,
                                        stderr=self._err, start_new_session=True)

    def wait_until_it_says(self, text):
        """Waits until standard output has `text`."""
        end = time.monotonic() + LIMIT_SECONDS
        while text.encode("utf-8") not in os.pread(self._out.fileno(), 1 << 20, 0):
            if time.monotonic() > end:
                raise AssertionError(f"the program did not say {text!r}")
            time.sleep(0.1)

    def finish(self):
        """Waits for the end; returns the Run."""
        try:
            exit_value = self.process.wait(LIMIT_SECONDS)
        finally:
            self.process.kill()
            self.process.wait()
        with self._out, self._err:
            self._out.seek(0)
            self._err.seek(0)
            return Run(exit_value, self._out.read(), self._err.read())


class ProgramTest(unittest.TestCase):
    """A test with a folder of its own, which is the executable's current directory."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_program(self, *arguments, scenario=None, **extra):
        run = Started(arguments, self.folder, environment(scenario, **extra)).finish()
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
