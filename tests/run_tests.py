#!/usr/bin/env python3
"""Runs every suite of both builds and counts the tests: the last line is `N passed, M failed`.

A suite is a GoogleTest program of a native build (under ThreadSanitizer: that of the threads alone),
one of the Windows build (under Wine), a fuzzer (its seeds and what was found before, then a fixed
number of inputs of its own), a program of benchmarks (each runs once, whatever its figure), or a
file of Python tests. Each suite's output is kept in
build/test-logs and shown when it fails.
"""
import collections
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "fuzz"))
from seeds import seed_folders

LOGS = ROOT / "build" / "test-logs"
# A suite that takes longer hangs.
SUITE_LIMIT_SECONDS = 600
PYTHON_FOLDERS = ("structure", "system")
# A few seconds; tools/fuzz takes as long as one likes.
INPUTS_OF_A_FUZZER = 2000
INPUTS_OF_A_SLOW_FUZZER = {"reports": 300, "text_file": 300}


def google_test_suites():
    for build, launcher in (("native", []), ("thread-sanitizer", []), ("windows-checked", ["wine"])):
        folder = ROOT / "build" / build / "tests" / "bin"
        for program in sorted(folder.glob("test_*")):
            if program.suffix in ("", ".exe"):
                yield f"{build}/{program.stem}", launcher + [str(program)]


def run_google_test(name, command):
    """Runs one program; returns (passed, failed)."""
    log = LOGS / (name.replace("/", "-") + ".log")
    with tempfile.TemporaryDirectory() as folder:
        report = pathlib.Path(folder) / "report.json"
        # By name alone: a Windows program does not take this system's absolute paths.
        arguments = [f"--gtest_output=json:{report.name}", "--gtest_brief=1"]
        with open(log, "wb") as output:
            try:
                code = subprocess.run(command + arguments, stdout=output, stderr=subprocess.STDOUT,
                                      cwd=folder, timeout=SUITE_LIMIT_SECONDS).returncode
            except subprocess.TimeoutExpired:
                output.write(b"\nthe suite did not end in time\n")
                code = "time-out"
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


def fuzzers():
    for program in sorted((ROOT / "build" / "fuzz" / "bin").glob("fuzz_*")):
        yield f"fuzz/{program.name}", program


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


def benchmark_programs():
    for program in sorted((ROOT / "build" / "native" / "benchmarks" / "bin").glob("bench_*")):
        yield f"native/{program.name}", program


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


def main(patterns):
    # The texts that tests compare are English, whatever the person speaks who runs them.
    os.environ["LC_ALL"] = "C.UTF-8"
    LOGS.mkdir(parents=True, exist_ok=True)
    # Three lanes side by side: the programs keep a processor busy; the executable's real pauses,
    # which the Python tests mostly consist of, do not.
    programs = collections.deque((name, run_google_test, (name, command))
                                 for name, command in google_test_suites())
    programs.extend((name, run_fuzzer, (program,)) for name, program in fuzzers())
    programs.extend((name, run_benchmarks, (program,)) for name, program in benchmark_programs())
    scripts = collections.deque((f"python/{path.parent.name}/{path.stem}", run_python, (path,))
                                for folder in PYTHON_FOLDERS
                                for path in sorted((ROOT / "tests" / folder).glob("test_*.py")))
    lanes = [programs, scripts, scripts]
    # Wine's services start with its first program and keep that program's output open for good: a
    # test that reads its program's output to the end must not be the first.
    subprocess.run(["wine", "cmd", "/c", "exit"], stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    totals = {"passed": 0, "failed": 0}
    lock = threading.Lock()

    def run_lane(lane):
        while True:
            try:
                name, run, arguments = lane.popleft()
            except IndexError:
                return
            if patterns and not any(pattern in name for pattern in patterns):
                continue
            start = time.monotonic()
            try:
                passed, failed = run(*arguments)
            except (OSError, subprocess.SubprocessError) as failure:
                print(f"{name}: {failure}")
                passed, failed = 0, 1
            with lock:
                totals["passed"] += passed
                totals["failed"] += failed
                print(f"{name:<42} {passed:5} passed {failed:4} failed "
                      f"{time.monotonic() - start:7.1f} s", flush=True)

    threads = [threading.Thread(target=run_lane, args=(lane,)) for lane in lanes]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if not any(totals.values()):
        print(f"no suite matches {' '.join(patterns)}; without a pattern every suite runs")
        return 1
    print(f"{totals['passed']} passed, {totals['failed']} failed")
    return 1 if totals["failed"] else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
