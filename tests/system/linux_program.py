"""Runs the executable for Linux, on the radios of this machine or on a capture."""
import os
import subprocess

from program import LIMIT_SECONDS, ROOT, ProgramTest, Run

BUILD = ROOT / "build" / "linux"
DIST = BUILD / "dist"
EXECUTABLE = DIST / "mrlrantenna"


def environment(**extra):
    """The environment of this process, with English as the language unless `extra` has one."""
    kept = {name: value for name, value in os.environ.items()
            if not name.startswith("LC_") and name not in ("LANG", "LANGUAGE")}
    return {**kept, "LANG": "C.UTF-8", **extra}


def run_executable(executable, *arguments, folder=None, **extra):
    """Returns the finished Run."""
    done = subprocess.run([str(executable), *map(str, arguments)], cwd=folder,
                          env=environment(**extra), stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False,
                          timeout=LIMIT_SECONDS)
    return Run(done.returncode, done.stdout, done.stderr)


class LinuxProgramTest(ProgramTest):
    """A test with a folder of its own, which is the executable's current directory. The executable
    for Windows is at hand too, as run_windows_program()."""

    def run_windows_program(self, *arguments, **extra):
        return super().run_program(*arguments, **extra)

    def run_program(self, *arguments, **extra):
        return run_executable(EXECUTABLE, *arguments, folder=self.folder, **extra)
