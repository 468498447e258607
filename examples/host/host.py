#!/usr/bin/env python3
"""A small diagnostics host: runs several modules side by side, follows what they do, and gathers
one report. Plain Python 3.8 or later, on Windows and elsewhere.

    python host.py jobs.json --module mrlrantenna.k5x --report gathered.json

A job is one process of the module: its name, and what follows `run --events` on its command line.
docs/hosts.md describes the lines that this program reads.
"""
import argparse
import datetime
import json
import pathlib
import queue
import signal
import subprocess
import sys
import tempfile
import threading
import time

PROTOCOL = 1
BROKEN_DOWN = 8
WRONG_USAGE = 64
# This host's own, as shells have it: the module cannot be started.
CANNOT_START = 127
# Exit values from good to bad; a run without a verdict, 74 among them, counts as broken down.
FROM_GOOD_TO_BAD = (0, 1, 6, 3, 4, 2, 5, BROKEN_DOWN, WRONG_USAGE, CANNOT_START)
# How long the module's output may stay open after its end: what it started may hold it.
LAST_WORDS_SECONDS = 2


def now():
    return datetime.datetime.now(datetime.timezone.utc).isoformat(timespec="milliseconds")


def visible(text):
    """`text` with every character escaped that could move a cursor or reverse the reading
    direction: it contains names of networks, which anyone nearby can choose."""
    return "".join(c if c.isprintable() else c.encode("unicode_escape").decode("ascii")
                   for c in text)


class Job:
    """One process of the module, and what it has reported so far."""

    def __init__(self, name, command, grace):
        self.name = name
        self.command = command
        self.grace = grace
        self.module = None
        self.without_device = []
        self.results = []
        self.problem = None
        self.ended = False  # its stream came to its regular end
        self.over = False   # its process is over
        self._sequence = 0
        self._process = None
        self._asked = False
        self._deadline = None
        self._errors = tempfile.TemporaryFile()

    def start(self, happenings):
        """Starts the process; what comes of it is put into `happenings` as (job, line), and None
        for its end."""
        # A group of its own: Ctrl+C at this host's console is for the host to pass on.
        group = ({"creationflags": subprocess.CREATE_NEW_PROCESS_GROUP}
                 if sys.platform == "win32" else {"start_new_session": True})
        self._allow(self.grace)
        try:
            self._process = subprocess.Popen(
                self.command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=self._errors, **group)
        except OSError as failure:
            self.problem = f"{self.command[0]} cannot be started: {failure.strerror}"
            happenings.put((self, None))
            return

        def read():
            for line in self._process.stdout:
                happenings.put((self, line))

        def wait():
            reader = threading.Thread(target=read, daemon=True)
            reader.start()
            self._process.wait()
            reader.join(LAST_WORDS_SECONDS)
            happenings.put((self, None))

        threading.Thread(target=wait, daemon=True).start()

    def take(self, raw):
        """Takes one line of the stream; returns what to show of it."""
        if not raw.endswith(b"\n"):
            return None  # cut off when the process was ended: not said
        try:
            line = json.loads(raw)
            self._sequence += 1
            if line["sequence"] != self._sequence:
                raise ValueError(f"line {self._sequence} is missing")
            # A type that is not known here is one that was added later.
            shown = self.TAKERS.get(line["type"])
            return shown and shown(self, line)
        except (ValueError, KeyError, TypeError) as failure:
            self.problem = f"does not keep to the protocol: {failure!r}"
            self.kill()
            return self.problem

    def _run_started(self, line):
        if line["protocol"] != PROTOCOL:
            raise ValueError(f"protocol {line['protocol']}")
        self.module = line["module"]
        self.without_device = line["withoutDevice"]
        return f"{line['planned']} planned" + "".join(
            f"; no device for {without['test']}" for without in self.without_device)

    def _test_started(self, line):
        # The test waits for a person, so there is no time limit.
        self._allow(None if line["interactive"] else self.grace)
        return f"{line['test']} on {line['device']['name']}"

    def _progress(self, line):
        longest = line["longestSeconds"]
        self._allow(None if longest is None else longest + self.grace)
        return line["text"] + ("" if longest is None else f" ({longest:.0f} s at most)")

    def _measurement(self, line):
        measurement = line["measurement"]
        limits = "".join(f", {limit['name']} {limit['value']}" for limit in measurement["limits"])
        return f"{measurement['name']}: {measurement['value']} {measurement['unit']}{limits}"

    def _event(self, line):
        return f"{line['event']['severity']}: {line['event']['text']}"

    def _test_ended(self, line):
        self._allow(self.grace)
        self.results.append(line["result"])
        return f"{line['result']['result']} after {line['result']['seconds']:.1f} s"

    def _broken(self, line):
        self.problem = f"broke down: {line['reason']}"
        return self.problem

    def _stopping(self, _line):
        return "ends after the current test"

    def _run_ended(self, line):
        self.ended = True
        return f"exit value {line['exit']}"

    TAKERS = {"runStarted": _run_started, "testStarted": _test_started, "progress": _progress,
              "measurement": _measurement, "event": _event, "testEnded": _test_ended,
              "broken": _broken, "stopping": _stopping, "runEnded": _run_ended}

    def finish(self):
        """Determines the verdict after the process has ended."""
        self.over = True
        with self._errors:
            self._errors.seek(0)
            words = self._errors.read().decode("utf-8", "replace").strip()
        if not self.ended and self.problem is None:
            self.problem = words or "ended in the middle"
        return self.problem

    def started(self):
        return self._process is not None

    def exit(self):
        if not self.started():
            return CANNOT_START
        value = self._process.returncode
        if value == WRONG_USAGE or (self.ended and value in FROM_GOOD_TO_BAD):
            return value
        return BROKEN_DOWN

    def check_time(self):
        """Asks a job that exceeds its announced time to end, and then kills it."""
        if self.over or self._deadline is None or time.monotonic() < self._deadline:
            return
        self.problem = "took longer than it said"
        if self._asked:
            self.kill()
        else:
            self.ask_to_stop()
            self._allow(self.grace)

    def ask_to_stop(self):
        """The first call ends the run after the current test, the second at once."""
        self._asked = True
        if self._process and self._process.poll() is None:
            self._process.send_signal(
                signal.CTRL_BREAK_EVENT if sys.platform == "win32" else signal.SIGINT)

    def kill(self):
        if self._process and self._process.poll() is None:
            self._process.kill()

    def _allow(self, seconds):
        self._deadline = None if seconds is None else time.monotonic() + seconds

    def report(self):
        return {"name": self.name, "command": self.command, "exit": self.exit(),
                "problem": self.problem, "module": self.module, "results": self.results,
                "withoutDevice": self.without_device}


def follow(jobs, say):
    """Runs the jobs to their end. Ctrl+C asks all of them to end."""
    happenings = queue.Queue()
    for job in jobs:
        job.start(happenings)
    if not any(job.started() for job in jobs):
        return
    while not all(job.over for job in jobs):
        try:
            try:
                job, raw = happenings.get(timeout=0.2)
                said = job.finish() if raw is None else job.take(raw)
                if said:
                    say(job, said)
            except queue.Empty:
                pass
            for job in jobs:
                job.check_time()
        except KeyboardInterrupt:
            for job in jobs:
                job.ask_to_stop()


def read_jobs(path, prefix, grace):
    """The jobs of the file; raises ValueError or OSError."""
    jobs = []
    entries = json.loads(path.read_text(encoding="utf-8"))
    if not isinstance(entries, list) or not entries:
        raise ValueError("it holds no list of jobs")
    for number, entry in enumerate(entries, 1):
        if not (isinstance(entry, dict) and isinstance(entry.get("name"), str)
                and isinstance(entry.get("arguments"), list)
                and all(isinstance(argument, str) for argument in entry["arguments"])):
            raise ValueError(f'entry {number} is no {{"name": TEXT, "arguments": [TEXT, ...]}}')
        jobs.append(Job(entry["name"], [*prefix, "run", "--events", *entry["arguments"]], grace))
    return jobs


class Parser(argparse.ArgumentParser):
    """Ends with the modules' own value for wrong usage: argparse's would mean FAIL."""

    def error(self, message):
        self.exit(WRONG_USAGE, f"{self.prog}: {message}\n")


def main():
    parser = Parser(description="Runs modules side by side and follows them.")
    parser.add_argument("jobs", type=pathlib.Path, help="JSON list of jobs, as jobs.json")
    parser.add_argument("--module", required=True, help="the executable of the jobs")
    parser.add_argument("--launcher", help="a program that starts the module, as wine")
    parser.add_argument("--report", type=pathlib.Path, help="where the gathered report goes")
    parser.add_argument("--grace", type=float, default=30,
                        help="seconds that a module may be silent beyond what it says; default 30")
    options = parser.parse_args()
    sys.stdout.reconfigure(errors="backslashreplace")
    prefix = ([options.launcher] if options.launcher else []) + [options.module]
    try:
        jobs = read_jobs(options.jobs, prefix, options.grace)
    except (OSError, ValueError) as failure:
        print(f"host: the jobs {options.jobs} cannot be used: {failure}", file=sys.stderr)
        return WRONG_USAGE

    begin, started = time.monotonic(), now()
    width = max(len(job.name) for job in jobs)

    def say(job, text):
        print(f"{time.monotonic() - begin:6.1f} s  {visible(job.name):{width}}  {visible(text)}",
              flush=True)

    follow(jobs, say)
    if not any(job.started() for job in jobs):
        print(f"host: {visible(jobs[0].problem)}", file=sys.stderr)
        return CANNOT_START
    exit_value = max((job.exit() for job in jobs), key=FROM_GOOD_TO_BAD.index)
    if options.report:
        try:
            options.report.write_text(json.dumps(
                {"started": started, "ended": now(), "exit": exit_value,
                 "jobs": [job.report() for job in jobs]}, indent=2) + "\n", encoding="utf-8")
        except OSError as failure:
            print(f"host: the report cannot be written: {failure}", file=sys.stderr)
            exit_value = max(exit_value, BROKEN_DOWN, key=FROM_GOOD_TO_BAD.index)
    print(f"{len(jobs)} jobs; exit value {exit_value}")
    return exit_value


if __name__ == "__main__":
    sys.exit(main())
