#!/usr/bin/env python3
"""Runs every suite of both builds and counts the tests: the last line is `N passed, M failed`.

A suite is a GoogleTest program of the native build, one of the Windows build (under Wine), or a
folder of Python tests. Each suite's output is kept in build/test-logs and shown when it fails.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
LOGS = ROOT / "build" / "test-logs"
# A suite that takes longer hangs.
SUITE_LIMIT_SECONDS = 600
PYTHON_FOLDERS = ("structure", "system")


def google_test_suites():
    for build, launcher in (("native", []), ("windows", ["wine"])):
        folder = ROOT / "build" / build / "tests" / "bin"
        for program in sorted(folder.glob("test_*")):
            if program.suffix in ("", ".exe"):
                yield f"{build}/{program.stem}", launcher + [str(program)]


def run_google_test(name, command):
    """Runs one program; returns (passed, failed)."""
    log = LOGS / (name.replace("/", "-") + ".log")
    with tempfile.TemporaryDirectory() as folder:
        report = pathlib.Path(folder) / "report.json"
        arguments = [f"--gtest_output=json:{report}", "--gtest_brief=1"]
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
    if code != 0 and failed == 0:
        failed = 1  # a sanitizer's finding at exit, for instance
    if failed:
        print(log.read_text(encoding="utf-8", errors="replace")[-20000:])
    return passed, failed


def run_python(folder):
    """Runs the unittest files of tests/<folder>; returns (passed, failed)."""
    command = [sys.executable, "-m", "unittest", "discover", "-v", "-s", str(ROOT / "tests" / folder),
               "-t", str(ROOT / "tests" / folder)]
    log = LOGS / f"python-{folder}.log"
    with open(log, "wb") as output:
        code = subprocess.run(command, stdout=output, stderr=subprocess.STDOUT,
                              timeout=3 * SUITE_LIMIT_SECONDS, check=False).returncode
    text = log.read_text(encoding="utf-8", errors="replace")
    passed = sum(line.endswith("... ok") or line == "ok" for line in text.splitlines())
    failed = sum(line.startswith(("FAIL:", "ERROR:")) for line in text.splitlines())
    if code != 0:
        failed = max(failed, 1)
        print(text[-20000:])
    return passed, failed


def main(patterns):
    LOGS.mkdir(parents=True, exist_ok=True)
    suites = [(name, lambda command=command, name=name: run_google_test(name, command))
              for name, command in google_test_suites()]
    suites += [(f"python/{folder}", lambda folder=folder: run_python(folder))
               for folder in PYTHON_FOLDERS if (ROOT / "tests" / folder).is_dir()]
    total_passed = total_failed = 0
    for name, run in suites:
        if patterns and not any(pattern in name for pattern in patterns):
            continue
        start = time.monotonic()
        passed, failed = run()
        total_passed += passed
        total_failed += failed
        print(f"{name:<34} {passed:5} passed {failed:4} failed {time.monotonic() - start:7.1f} s",
              flush=True)
    if total_passed + total_failed == 0:
        print(f"no suite matches {' '.join(patterns)}; without a pattern every suite runs")
        return 1
    print(f"{total_passed} passed, {total_failed} failed")
    return 1 if total_failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
