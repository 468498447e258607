#!/usr/bin/env python3
"""Runs the module on a station and feeds its events to an MQTT broker, one message a line, topic
antenna/STATION/events. Needs mosquitto_pub, the command-line client of Mosquitto.

    python station.py bench-1 --module mrlrantenna.k5x --record bench-1.jsonl -- --set SSID=Lab ...

Ends with the module's exit value, whatever becomes of the broker: every line goes to the record
first, and a line that the broker has not taken is offered again until the module has ended and
--patience is over.
"""
import argparse
import queue
import re
import subprocess
import sys
import threading
import time

# How long one attempt may take, and the pause before the next.
ATTEMPT_SECONDS = 5
PAUSE_SECONDS = 0.5
# How long the module's output may stay open after its end: what it started may hold it.
LAST_WORDS_SECONDS = 2
WRONG_USAGE = 64
# This station's own, as shells have it: the module cannot be started.
CANNOT_START = 127
# Options that are mosquitto_pub's own. A password is not among them: others see a command line;
# mosquitto_pub has a configuration file for it.
CLIENT_OPTIONS = {"cafile": "certificate of the broker's authority; switches TLS on",
                  "cert": "this station's certificate", "key": "its key",
                  "username": "this station's name at the broker"}
# What mosquitto_pub says of a message that the broker has refused.
REFUSED = re.compile(r"Publish \d+ failed")
USAGE = "%(prog)s STATION --module FILE --record FILE [OPTIONS] -- WHAT FOLLOWS run --events"


class Publisher:
    """Publishes lines in their order, on a thread of its own: the module never waits for it."""

    def __init__(self, command):
        self._command = command
        self._lines = queue.Queue()
        self._give_up = None  # when, once the module has ended
        self.lost = 0
        self.reason = ""
        self._thread = threading.Thread(target=self._run)
        self._thread.start()

    def offer(self, line):
        self._lines.put(line)

    def close(self, patience):
        """Waits until all lines are published, the time is up, or Ctrl+C is pressed."""
        self._give_up = time.monotonic() + patience
        self._lines.put(None)
        while self._thread.is_alive():
            try:
                self._thread.join()
            except KeyboardInterrupt:
                self._give_up = time.monotonic()

    def _run(self):
        while (line := self._lines.get()) is not None:
            # Nothing is published after a lost line: a stream with a gap would look complete.
            while self.lost or not self._published(line):
                if self._give_up is not None and time.monotonic() >= self._give_up:
                    self.lost += 1
                    break
                time.sleep(PAUSE_SECONDS)

    def _published(self, line):
        try:
            # One client a line: it ends with 0 when the broker has acknowledged the message.
            client = subprocess.run(self._command, input=line, stdout=subprocess.DEVNULL,
                                    stderr=subprocess.PIPE, timeout=ATTEMPT_SECONDS, check=False)
        except (OSError, subprocess.TimeoutExpired) as failure:
            self.reason = str(failure)
            return False
        self.reason = client.stderr.decode("utf-8", "replace").strip()
        # A broker that acknowledges a line and drops it, because the station may not write it, says
        # so since MQTT 5; the client then ends with 0 all the same.
        return client.returncode == 0 and not REFUSED.search(self.reason)


def station_name(text):
    """A level of a topic."""
    if not text or not text.isprintable() or any(c in text for c in "/+#"):
        raise argparse.ArgumentTypeError("a station's name has no /, + or # and is not empty")
    return text


def run_module(command, take):
    """Runs the module, gives each line of its output to `take`, and returns its exit value."""
    module = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)

    def read():
        for line in module.stdout:
            take(line)

    reader = threading.Thread(target=read, daemon=True)
    reader.start()
    while True:
        try:
            exit_value = module.wait()
            reader.join(LAST_WORDS_SECONDS)
            return exit_value
        except KeyboardInterrupt:
            pass  # the module has got it too, and ends its run


class Parser(argparse.ArgumentParser):
    """Ends with the modules' own value for wrong usage: argparse's would mean FAIL."""

    def error(self, message):
        self.exit(WRONG_USAGE, f"{self.prog}: {message}\n")


def main():
    parser = Parser(usage=USAGE, description="Feeds the events of a station to an MQTT broker.")
    parser.add_argument("station", type=station_name, help="its name, a level of the topic")
    parser.add_argument("--module", required=True, help="the executable")
    parser.add_argument("--launcher", help="a program that starts the module, as wine")
    parser.add_argument("--record", required=True, help="file that every line is appended to")
    parser.add_argument("--host", default="127.0.0.1", help="the broker; default 127.0.0.1")
    parser.add_argument("--port", default="18883", help="its port; default 18883")
    parser.add_argument("--patience", type=float, default=10,
                        help="seconds for the broker after the module's end; default 10")
    for name, explanation in CLIENT_OPTIONS.items():
        parser.add_argument(f"--{name}", help=explanation)
    at = sys.argv.index("--") if "--" in sys.argv else len(sys.argv)
    options = parser.parse_args(sys.argv[1:at])
    command = [*([options.launcher] if options.launcher else []), options.module, "run", "--events",
               *sys.argv[at + 1:]]
    try:
        record = open(options.record, "ab", buffering=0)
    except OSError as failure:
        print(f"station: the record cannot be written: {failure}", file=sys.stderr)
        return WRONG_USAGE
    security = [word for name in CLIENT_OPTIONS if getattr(options, name)
                for word in (f"--{name}", getattr(options, name))]
    publisher = Publisher(["mosquitto_pub", "-V", "5", "-h", options.host, "-p", options.port,
                           *security, "-q", "1", "-t", f"antenna/{options.station}/events", "-s"])

    failures = []

    def take(line):
        try:
            record.write(line)
        except OSError as failure:  # a full disk keeps no module waiting
            failures.append(f"the record is not whole: {failure}")
        if line.endswith(b"\n"):  # a line that was cut off is nothing that was said
            publisher.offer(line.rstrip(b"\r\n"))

    try:
        exit_value = run_module(command, take)
    except OSError as failure:
        print(f"station: the module cannot be started: {failure}", file=sys.stderr)
        exit_value = CANNOT_START
    publisher.close(options.patience)
    if publisher.lost:
        failures.append(f"{publisher.lost} lines did not reach the broker ({publisher.reason}); "
                        f"they are in {options.record}")
    for failure in dict.fromkeys(failures):
        print(f"station: {failure}", file=sys.stderr)
    return exit_value


if __name__ == "__main__":
    sys.exit(main())
