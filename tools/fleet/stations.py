#!/usr/bin/python3
"""Simulated stations in one process: each records the lines of its runs and publishes them by MQTT,
quality of service 1, from a spool that outlives the process.

A line is done when the broker has acknowledged it and answers on the same connection --settle
seconds later. The broker acknowledges before it saves its queue: when it is killed, what it
acknowledged since it saved last is lost, the connection breaks, and the station continues at the
last line that was done. What comes twice by this, the archive keeps once.
"""
import argparse
import collections
import heapq
import pathlib
import random
import select
import ssl
import sys
import time

import paho.mqtt.client as mqtt

sys.dont_write_bytecode = True
import events

# Lines on their way to the broker, of one station.
WINDOW = 20
# How long a run takes, of the time from one to the next.
RUN_SHARE = 0.5
MARK_SECONDS = 1
# How often a station that has nothing to publish asks the broker for an answer.
PROBE_SECONDS = 1
TICK_SECONDS = 0.02


def name_of(number):
    return f"station-{number:04}"


class Spool:
    """The record of a station, and a mark in it: the end of the lines that are done."""

    def __init__(self, folder, name):
        self._record = open(folder / f"{name}.jsonl", "a+b", buffering=0)
        self._record.seek(0)
        content = self._record.read()
        self._end = content.rfind(b"\n") + 1
        self._record.truncate(self._end)  # a process killed in the middle of a line
        self.finished_runs = content[:self._end].count(b'{"type":"runEnded"')
        self._reader = open(folder / f"{name}.jsonl", "rb")
        self._mark_file = open(folder / f"{name}.mark", "a+b", buffering=0)
        self._mark_file.seek(0)
        marks = self._mark_file.read().split()
        self._mark = self._written = int(marks[-1]) if marks else 0
        self._next_write = 0.0
        self.restart()

    def append(self, line):
        self._record.write(line + b"\n")
        self._end += len(line) + 1

    def restart(self):
        """Continues reading at the mark."""
        self._reader.seek(self._mark)
        self._position = self._mark

    def read(self):
        """The next line and its end in the record; None when there is none."""
        if self._position == self._end:
            return None
        line = self._reader.readline()
        self._position += len(line)
        return line[:-1], self._position

    def set_mark(self, mark):
        self._mark = mark

    def save_mark(self, now):
        if self._mark != self._written and (now >= self._next_write or self.done):
            self._mark_file.truncate(0)
            self._mark_file.write(b"%d" % self._mark)
            self._written = self._mark
            self._next_write = now + MARK_SECONDS

    @property
    def done(self):
        return self._mark == self._end


class Station:
    """One station: produces lines and publishes them."""

    def __init__(self, name, options, context):
        self._name = name
        self._options = options
        self._context = context
        self._random = random.Random(f"{name} {options.seed}")
        self._spool = Spool(options.folder, name)
        self._bench = events.Bench(name, self._random)
        self._lines = iter(())
        self._client = None
        self._next_attempt = 0.0
        self._next_probe = 0.0
        self._on_the_way = {}
        self._settling = collections.deque()

    # What it produces.

    def produce(self, now):
        """Records its next line; returns when the one after it is due, None after the last."""
        line = next(self._lines, None)
        if line is None:
            if self._spool.finished_runs >= self._options.runs:
                return None
            share = self._spool.finished_runs / self._options.runs
            self._lines = self._bench.run(share, self._options.days * (1 - share))
            line = next(self._lines)
        self._spool.append(line)
        if line.startswith(b'{"type":"runEnded"'):
            self._spool.finished_runs += 1
            return now + self._options.interval * self._random.uniform(0, 2 * (1 - RUN_SHARE))
        return now + self._options.interval * RUN_SHARE / events.LINES

    @property
    def done(self):
        return self._spool.done and self._spool.finished_runs >= self._options.runs

    # How it publishes.

    def _connect(self, now):
        self._next_attempt = now + self._random.uniform(0.2, 1.0)
        client = mqtt.Client(f"{self._name}-spool")
        client.tls_set_context(self._context)
        client.username_pw_set(self._name, self._name)
        client.max_inflight_messages_set(WINDOW)
        client.on_publish = self._acknowledged
        client.on_unsubscribe = lambda *_: self._answered()
        self._on_the_way = {}
        self._settling.clear()
        self._spool.restart()
        try:
            client.connect("localhost", self._options.port)
        except OSError:
            return
        self._client = client

    def _acknowledged(self, _client, _userdata, mid):
        self._settling.append((time.monotonic() + self._options.settle, self._on_the_way.pop(mid)))
        self._answered()

    def _answered(self):
        now = time.monotonic()
        while self._settling and self._settling[0][0] <= now:
            self._spool.set_mark(self._settling.popleft()[1])

    def socket(self):
        return self._client.socket() if self._client else None

    def read(self):
        """Reads what has come: all of it, because TLS reads ahead of the socket."""
        try:
            self._client.loop_read()
            while (connection := self.socket()) and connection.pending():
                self._client.loop_read()
        except OSError:  # of TLS, which paho does not take for a lost connection
            self._client = None

    def work(self, now):
        """Connects when there is no connection; publishes what is recorded and not on its way."""
        if self.socket() is None:
            self._client = None
            if now >= self._next_attempt:
                self._connect(now)
            return
        try:
            self._publish(now)
        except OSError:
            self._client = None

    def _publish(self, now):
        self._client.loop_misc()
        self._spool.save_mark(now)
        while self._client.is_connected() and len(self._on_the_way) < WINDOW:
            if (entry := self._spool.read()) is None:
                break
            line, end = entry
            published = self._client.publish(f"antenna/{self._name}/events", line, qos=1)
            self._on_the_way[published.mid] = end
        if self._settling and not self._on_the_way and now >= self._next_probe:
            self._next_probe = now + PROBE_SECONDS
            self._client.unsubscribe("nothing")  # any request that the broker answers
        if self.socket() and self._client.want_write():
            self._client.loop_write()


def serve(stations, poll, known):
    """Reads what has come for the stations."""
    sockets = {}
    for station in stations:
        if connection := station.socket():
            sockets[connection.fileno()] = station
    for gone in known - sockets.keys():
        poll.unregister(gone)
    for new in sockets.keys() - known:
        poll.register(new, select.POLLIN)
    for descriptor, _ in poll.poll(TICK_SECONDS * 1000):
        sockets[descriptor].read()
    return set(sockets)


def run(options):
    context = ssl.create_default_context(cafile=options.cafile)
    stations = [Station(name_of(number), options, context)
                for number in range(options.first, options.first + options.count)]
    now = time.monotonic()
    due = [(now + random.uniform(0, options.interval), number) for number in range(len(stations))]
    heapq.heapify(due)
    poll, known = select.poll(), set()
    while not all(station.done for station in stations):
        now = time.monotonic()
        # One line of a station at a time; what is published is not far behind what is recorded.
        for _ in range(len(due)):
            if due[0][0] > now:
                break
            _, number = heapq.heappop(due)
            if (again := stations[number].produce(now)) is not None:
                heapq.heappush(due, (again, number))
        for station in stations:
            station.work(now)
        known = serve(stations, poll, known)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--folder", type=pathlib.Path, required=True, help="of the records")
    parser.add_argument("--first", type=int, required=True, help="number of the first station")
    parser.add_argument("--count", type=int, required=True, help="number of stations")
    parser.add_argument("--runs", type=int, required=True, help="of each station")
    parser.add_argument("--interval", type=float, required=True, help="seconds between two runs")
    parser.add_argument("--days", type=float, required=True, help="over which clocks spread runs")
    parser.add_argument("--seed", type=int, required=True)
    parser.add_argument("--settle", type=float, required=True, help="seconds")
    parser.add_argument("--port", type=int, required=True, help="of the broker")
    parser.add_argument("--cafile", required=True, help="certificate of its authority")
    run(parser.parse_args())


if __name__ == "__main__":
    main()
