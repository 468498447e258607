"""Runs the shipped executable under Wine, against a simulated radio environment."""
import json
import os
import pathlib
import subprocess
import tempfile
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
    env.pop("RADIOSIM_SCENARIO", None)
    if scenario is not None:
        env["RADIOSIM_SCENARIO"] = str(scenario)
    env.update(extra)
    return env


class Run:
    """A finished run: exit value, output and error output as text."""

    def __init__(self, completed):
        self.exit = completed.returncode
        self.out = completed.stdout.decode("utf-8")
        self.err = completed.stderr.decode("utf-8")

    def __repr__(self):
        return f"exit {self.exit}\n--- out\n{self.out}--- err\n{self.err}"


class ProgramTest(unittest.TestCase):
    """A test with a folder of its own, which is the executable's current directory."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_program(self, *arguments, scenario=None, **extra):
        run = Run(subprocess.run(["wine", str(EXECUTABLE), *arguments], cwd=self.folder,
                                 env=environment(scenario, **extra), capture_output=True,
                                 stdin=subprocess.DEVNULL, timeout=LIMIT_SECONDS, check=False))
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
