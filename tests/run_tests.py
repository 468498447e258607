#!/usr/bin/env python3
"""Builds the tests, runs every suite and counts the tests: the last line is `N passed, M failed`.

The builds run beside the tests of the executable, which mostly wait, and beside the suites of the
builds that are done. A suite is a GoogleTest
program of a native build (under ThreadSanitizer: only that of the threads) or of the Windows build
(under Wine), a fuzzer (its seeds and earlier finds, then a fixed number of new inputs), a program
of benchmarks (each runs once, whatever its figure), or a file of Python tests. The output of each
suite is kept in build/test-logs and shown when it fails.
"""
import json
import os
import pathlib
import queue
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "fuzz"))
sys.path.insert(0, str(ROOT / "tests"))
from seeds import seed_folders
import wine_starts

LOGS = ROOT / "build" / "test-logs"
# A suite that takes longer hangs: alone none takes 200 seconds, but beside the others one of the
# nicer ones may take 420.
SUITE_LIMIT_SECONDS = 1200
PYTHON_FOLDERS = ("structure", "system")
# A few seconds; tools/fuzz runs for longer.
INPUTS_OF_A_FUZZER = 2000
INPUTS_OF_A_SLOW_FUZZER = {"journal": 300, "reports": 300, "text_file": 300}


# How many suites of a kind run side by side. The Windows build's programs share the desktop and run
# one after another; scripts mostly wait for the executable's real pauses. Programs of the native
# builds, and the builds, keep a processor busy. They are nicer than the rest: a program under Wine
# waits for Wine's server all the time, and would then wait for a processor each time.
SIDE_BY_SIDE = {"windows": 1, "scripts": 3, "programs": 2}
NICENESS = {"programs": 10, "builds": 10}

# Each build with the targets that the suites need, and what starts its programs: the Windows build
# first, whose programs take the longest.
BUILDS = (("windows-checked", ("all",), ("wine",)),
          ("linux", ("mrlrantenna", "mrlrsignal", "contract", "radio_pace"), ()),
          ("native", ("all", "benchmarks"), ()),
          ("thread-sanitizer", ("test_threads",), ()),
          ("mutants", ("test_mrlrantenna", "test_mrlrantenna_frame"), ()))
# Python suites of the build's programs, which run after it; the others run beside the builds.
SCRIPTS_OF_BUILDS = {"windows-checked": ("python/system/test_contract_kit",),
                     "native": ("python/system/test_watch",),
                     "mutants": ("python/system/test_mutants",),
                     "linux": ("python/system/test_linux", "python/system/test_debian_package",
                               "python/system/test_kept_captures",
                               "python/system/test_radiovm")}
# The order of the tests in a program; printed, so that a run can be repeated.
SEED = int(os.environ.get("MRLR_TEST_SEED", 1167))


def build(preset, targets):
    """Builds the targets of a preset; returns (passed, failed)."""
    LOGS.mkdir(parents=True, exist_ok=True)
    log = LOGS / f"build-{preset}.log"
    with open(log, "wb") as output:
        for command in (["cmake", "--preset", preset],
                        ["cmake", "--build", "--preset", preset, "--target", *targets]):
            if subprocess.run(command, cwd=ROOT, stdout=output, stderr=subprocess.STDOUT,
                              check=False).returncode != 0:
                print(log.read_text(encoding="utf-8", errors="replace")[-20000:])
                return 0, 1
    return 0, 0


def suites_of(preset, launcher):
    """The suites of a build: name, function and arguments."""
    if preset == "mutants":
        return  # the programs of `native` once more
    folder = ROOT / "build" / preset
    for program in sorted((folder / "tests" / "bin").glob("test_*")):
        if program.suffix in ("", ".exe"):
            yield f"{preset}/{program.stem}", run_google_test, (
                f"{preset}/{program.stem}", [*launcher, str(program)])
    if preset == "native":
        for program in sorted((folder / "bin").glob("fuzz_*")):
            yield f"fuzz/{program.name}", run_fuzzer, (program,)
        for program in sorted((folder / "benchmarks" / "bin").glob("bench_*")):
            yield f"{preset}/{program.name}", run_benchmarks, (program,)


def run_google_test(name, command):
    """Runs one program; returns (passed, failed)."""
    log = LOGS / (name.replace("/", "-") + ".log")
    with tempfile.TemporaryDirectory() as folder:
        report = pathlib.Path(folder) / "report.json"
        # By name alone: a Windows program does not take this system's absolute paths.
        arguments = [f"--gtest_output=json:{report.name}", "--gtest_brief=1", "--gtest_shuffle",
                     f"--gtest_random_seed={SEED}"]

        def start():
            with open(log, "wb") as output:
                try:
                    code = subprocess.run(command + arguments, stdout=output,
                                          stderr=subprocess.STDOUT, cwd=folder,
                                          timeout=SUITE_LIMIT_SECONDS, check=False).returncode
                except subprocess.TimeoutExpired:
                    output.write(b"\nthe suite did not end in time\n")
                    code = "time-out"
            return code, "wine" in command and wine_starts.never_began(
                code, log.read_bytes(), [report])

        code = wine_starts.with_one_repeat(name, start)
        try:
            counts = json.loads(report.read_text(encoding="utf-8", errors="replace"))
            failed = counts["failures"] + counts.get("errors", 0)
            passed = counts["tests"] - failed - counts.get("disabled", 0)
        except (OSError, ValueError, KeyError):
            passed, failed = 0, 1  # the program ended before it could report
    if failed == 0 and (code != 0 or b"err:heap:" in log.read_bytes()):
        failed = 1  # a sanitizer's finding at exit, or Wine's heap complains
    if failed:
        print(log.read_text(encoding="utf-8", errors="replace")[-20000:])
    return passed, failed


def run_fuzzer(program):
    """Runs one fuzzer; returns (passed, failed): an input of the tree is a test, and so is the rest
    as a whole."""
    name = program.name.removeprefix("fuzz_")
    runs = INPUTS_OF_A_SLOW_FUZZER.get(name, INPUTS_OF_A_FUZZER)
    folders = seed_folders(name)
    seeds = sum(1 for folder in folders for path in folder.iterdir() if path.is_file())
    log = LOGS / f"{program.name}.log"
    with tempfile.TemporaryDirectory() as folder, open(log, "wb") as output:
        command = [program, "-seed=1", f"-runs={seeds + runs}", "-max_len=4096",
                   "-timeout=60", f"-artifact_prefix={LOGS}/{program.name}-", folder, *folders]
        code = subprocess.run(command, stdout=output, stderr=subprocess.STDOUT, cwd=folder,
                              timeout=SUITE_LIMIT_SECONDS, check=False).returncode
    if code != 0:
        print(log.read_text(encoding="utf-8", errors="replace")[-20000:])
        return 0, 1
    return seeds + 1, 0


def run_benchmarks(program):
    """Runs each benchmark of a program for a moment; returns (passed, failed)."""
    log = LOGS / f"{program.name}.log"
    with open(log, "wb") as output:
        command = [program, "--benchmark_min_time=0.001", "--benchmark_format=json"]
        result = subprocess.run(command, stdout=subprocess.PIPE, stderr=output, check=False,
                                timeout=SUITE_LIMIT_SECONDS)
        output.write(result.stdout)
    try:
        runs = json.loads(result.stdout)["benchmarks"]
        failed = sum(1 for run in runs if run.get("error_occurred"))
    except (ValueError, KeyError):
        runs, failed = [], 1
    if result.returncode != 0 or not runs:
        failed = max(failed, 1)
    if failed:
        print(log.read_text(encoding="utf-8", errors="replace")[-20000:])
    return max(len(runs) - failed, 0), failed


def run_python(path):
    """Runs one unittest file; returns (passed, failed)."""
    command = [sys.executable, "-m", "unittest", "-v", path.stem]
    log = LOGS / f"python-{path.parent.name}-{path.stem}.log"
    with open(log, "wb") as output:
        code = subprocess.run(command, stdout=output, stderr=subprocess.STDOUT, cwd=path.parent,
                              timeout=SUITE_LIMIT_SECONDS, check=False).returncode
    text = log.read_text(encoding="utf-8", errors="replace")
    failed = len(re.findall(r"^(?:FAIL|ERROR): ", text, re.MULTILINE))
    # What a test prints may stand before its "ok": the sum at the end counts.
    ran = re.search(r"^Ran (\d+) tests? in ", text, re.MULTILINE)
    passed = max(int(ran.group(1)) - failed, 0) if ran else 0
    if code != 0:
        failed = max(failed, 1)
        print(text[-20000:])
    return passed, failed


def about_repeats(repeats):
    """The line about starts that Wine failed, and the number of failures that they count as."""
    text = f"Starts that Wine failed and that were repeated: {len(repeats)}"
    if len(repeats) <= wine_starts.MOST_REPEATS:
        return text, 0
    return f"{text}, more than {wine_starts.MOST_REPEATS}:\n  " + "\n  ".join(repeats), 1


class Lanes:
    """Suites that run side by side, and the sum of their counts."""

    def __init__(self, patterns):
        self._patterns = patterns
        self._lock = threading.Lock()
        self._waiting = {lane: queue.Queue() for lane in SIDE_BY_SIDE}
        self.passed = self.failed = 0

    def matches(self, name):
        return not self._patterns or any(pattern in name for pattern in self._patterns)

    def run(self, name, function, arguments):
        """Runs one suite or build, counts it and says so."""
        start = time.monotonic()
        try:
            passed, failed = function(*arguments)
        except (OSError, subprocess.SubprocessError) as failure:
            print(f"{name}: {failure}")
            passed, failed = 0, 1
        with self._lock:
            self.passed += passed
            self.failed += failed
            print(f"{name:<42} {passed:5} passed {failed:4} failed "
                  f"{time.monotonic() - start:7.1f} s", flush=True)

    def needs(self, preset, scripts):
        """Whether a pattern may name a suite of the build `preset`."""
        others = [f"{name}/" for name, _, _ in BUILDS if name != preset]
        if not self._patterns or any(map(self.matches, SCRIPTS_OF_BUILDS.get(preset, ()))):
            return True
        return any(
            not pattern.startswith(tuple(others)) and not any(pattern in name for name in scripts)
            for pattern in self._patterns)

    def add(self, lane, suites):
        """Suites for one kind of lane, those that a pattern names."""
        for suite in suites:
            if self.matches(suite[0]):
                self._waiting[lane].put(suite)

    def run_builds(self, scripts):
        """Each build; its suites run when it is done. `scripts` are all Python suites."""
        be_nice("builds")
        try:
            for preset, targets, launcher in BUILDS:
                if not self.needs(preset, scripts):
                    continue
                self.run(f"build/{preset}", build, (preset, targets))
                self.add("windows" if launcher else "programs", suites_of(preset, launcher))
                self.add("windows" if launcher else "scripts",
                         ((name, run_python, (scripts[name],))
                          for name in SCRIPTS_OF_BUILDS.get(preset, ())))
        finally:
            for lane, side_by_side in SIDE_BY_SIDE.items():
                for _ in range(side_by_side):
                    self._waiting[lane].put(None)

    def run_waiting(self, lane):
        """Takes one suite after another until there are no more."""
        be_nice(lane)
        while suite := self._waiting[lane].get():
            self.run(*suite)

    def run_all(self, scripts):
        """The builds, and beside them and after them the suites."""
        threads = [threading.Thread(target=self.run_waiting, args=(lane,))
                   for lane, side_by_side in SIDE_BY_SIDE.items() for _ in range(side_by_side)]
        threads.append(threading.Thread(target=self.run_builds, args=(scripts,)))
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()


def be_nice(lane):
    """Makes this thread nicer, and with it the programs that it starts."""
    if more := NICENESS.get(lane):
        thread = threading.get_native_id()
        os.setpriority(os.PRIO_PROCESS, thread, os.getpriority(os.PRIO_PROCESS, thread) + more)


def main(patterns):
    # A shell without job control starts background jobs with Ctrl+C ignored, and programs inherit
    # that; the tests of interruption need it.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    # The texts that tests compare are English, whatever the language of the system.
    os.environ["LC_ALL"] = "C.UTF-8"
    LOGS.mkdir(parents=True, exist_ok=True)
    notes = LOGS / "wine-repeats"
    notes.unlink(missing_ok=True)
    os.environ[wine_starts.NOTES] = str(notes)
    print(f"Tests are shuffled with seed {SEED}; MRLR_TEST_SEED={SEED} repeats their order.",
          flush=True)
    scripts = {f"python/{folder}/{path.stem}": path for folder in PYTHON_FOLDERS
               for path in sorted((ROOT / "tests" / folder).glob("test_*.py"))}
    # Wine's services start with its first program and keep that program's output open: a
    # test that reads its program's output to the end must not be the first.
    subprocess.run(["wine", "cmd", "/c", "exit"], stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    lanes = Lanes(patterns)
    of_builds = {name for names in SCRIPTS_OF_BUILDS.values() for name in names}
    lanes.add("scripts", ((name, run_python, (path,)) for name, path in scripts.items()
                          if name not in of_builds))
    lanes.run_all(scripts)
    if lanes.passed == lanes.failed == 0:
        print(f"no suite matches {' '.join(patterns)}; without a pattern every suite runs")
        return 1
    text, failed = about_repeats(wine_starts.repeats(notes))
    lanes.failed += failed
    print(text)
    print(f"{lanes.passed} passed, {lanes.failed} failed")
    return 1 if lanes.failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
