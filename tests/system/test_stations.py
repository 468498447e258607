"""Stations that feed their events to a real MQTT broker, and a log shipper that reads them."""
import getpass
import json
import re
import socket
import subprocess
import sys
import unittest

import side_by_side
from display import stop
from program import (EXECUTABLE, LIMIT_SECONDS, ROOT, WRONG_USAGE, ProgramTest, environment,
                     settings)
sys.path.insert(0, str(ROOT / "tools" / "fleet"))
from parts import EXAMPLES, free_port, wait_until

load_tests = side_by_side.load_tests

BROKER_SECONDS = 20
TO_RATE = settings(SSID="Lab", WarningSignalStrength=40, FailingSignalStrength=20)
MANY_NETWORKS = 150


def example_port():
    """The port that the example's broker and its stations agree on."""
    return re.search(r"^listener (\d+) 127\.0\.0\.1$",
                     (EXAMPLES / "mosquitto.conf").read_text(encoding="utf-8"), re.M)[1]


class StationTest(ProgramTest):
    """A test with a port for a broker."""

    def setUp(self):
        super().setUp()
        self.port = free_port()

    def start_process(self, command, out, err, env=None):
        """Starts a program whose output is appended to files of this test's folder."""
        with open(self.folder / out, "ab") as out_file, open(self.folder / err, "ab") as err_file:
            process = subprocess.Popen(command, cwd=self.folder, env=env, stdin=subprocess.DEVNULL,
                                       stdout=out_file, stderr=err_file, start_new_session=True)
        self.addCleanup(stop, process)
        return process

    def start_broker(self, more=""):
        """Starts a broker with the example's configuration, on this test's port."""
        example = (EXAMPLES / "mosquitto.conf").read_text(encoding="utf-8")
        # Started by root, it would switch to a user who cannot write into this test's folder.
        configuration = self.write("mosquitto.conf", example.replace(example_port(), str(self.port))
                                   + f"user {getpass.getuser()}\n{more}")
        broker = self.start_process(["mosquitto", "-c", str(configuration)], "broker.out",
                                    "broker.err")
        wait_until(self.broker_answers, "the broker", BROKER_SECONDS)
        return broker

    def broker_answers(self):
        return subprocess.run(["mosquitto_pub", "-h", "127.0.0.1", "-p", str(self.port), "-t",
                               "probe", "-n"], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, check=False).returncode == 0

    def subscribe(self, *options):
        """Subscribes to the events of every station; returns a function for those so far."""
        path = self.folder / "gathered"
        subscriptions = self.subscriptions()
        self.start_process(["mosquitto_sub", "-h", "127.0.0.1", "-p", str(self.port), "-q", "1",
                            "-t", "antenna/+/events", "-F", r"%t\t%p", "-i", "gatherer", *options],
                           path.name, "gatherer.err")
        wait_until(lambda: self.subscriptions() > subscriptions, "the subscription", BROKER_SECONDS)

        def gathered_by_topic():
            by_topic = {}
            for line in path.read_text(encoding="utf-8").splitlines(keepends=True):
                topic, _, payload = line.partition("\t")
                by_topic.setdefault(topic, []).append(payload)
            return by_topic
        return gathered_by_topic

    def subscriptions(self):
        return (self.folder / "broker.err").read_bytes().count(b" as gatherer ")

    def start_station(self, signal, *options, name="bench-1", others=0):
        points = [{"ssid": "Lab", "signal": signal}]
        points += [{"ssid": f"Neighbour {number:03}", "signal": 5} for number in range(others)]
        scenario = self.write(f"{name}.json", {"interfaces": [{"accessPoints": points}]})
        return self.start_process(
            [sys.executable, str(EXAMPLES / "station.py"), name, "--module", str(EXECUTABLE),
             "--launcher", "wine", "--record", f"{name}.jsonl", "--port", str(self.port),
             *options, "--", *TO_RATE], f"{name}.out", f"{name}.err", environment(scenario))

    def record(self, name="bench-1"):
        path = self.folder / f"{name}.jsonl"
        return path.read_text(encoding="utf-8").splitlines(keepends=True) if path.exists() else []

    def errors(self, name="bench-1"):
        return (self.folder / f"{name}.err").read_text(encoding="utf-8")

    def whole_record(self, station, exit_value, name="bench-1"):
        """Waits for the end of a station; returns the lines of its record, those of one run."""
        self.assertEqual(station.wait(LIMIT_SECONDS), exit_value, self.errors(name))
        lines = [json.loads(line) for line in self.record(name)]
        self.assertEqual([line["sequence"] for line in lines], list(range(1, len(lines) + 1)))
        self.assertEqual((lines[0]["type"], lines[-1]["type"]), ("runStarted", "runEnded"))
        self.assertEqual(lines[-1]["exit"], exit_value)
        return self.record(name)


class Stations(StationTest):
    def test_several_at_once_each_have_a_topic_of_their_own(self):
        self.start_broker()
        gathered = self.subscribe()
        verdicts = {"bench-1": (60, 0), "bench-2": (30, 1), "Pr\u00fcfplatz 3": (10, 2)}
        running = {name: self.start_station(signal, name=name)
                   for name, (signal, _) in verdicts.items()}
        records = {f"antenna/{name}/events": self.whole_record(running[name], exit_value, name)
                   for name, (_, exit_value) in verdicts.items()}
        self.assertEqual("".join(map(self.errors, verdicts)), "")
        wait_until(lambda: sum(map(len, gathered().values())) >= sum(map(len, records.values())),
                   "every line", BROKER_SECONDS)
        self.assertEqual(gathered(), records)

    def test_keep_their_verdict_without_a_broker(self):
        record = self.whole_record(self.start_station(10, "--patience", "1"), 2)
        self.assertIn(f"station: {len(record)} lines did not reach the broker (Error: ",
                      self.errors())

    def test_keep_their_verdict_when_the_broker_does_not_answer(self):
        with socket.create_server(("127.0.0.1", 0)) as silent:
            self.port = silent.getsockname()[1]
            self.whole_record(self.start_station(60, "--patience", "1"), 0)
        self.assertIn("did not reach the broker", self.errors())

    def test_lose_nothing_when_the_broker_is_away_for_a_while(self):
        # A subscriber with a persistent session, and a broker that keeps its sessions.
        memory = f"persistence true\npersistence_location {self.folder}/\n"
        broker = self.start_broker(memory)
        gathered = self.subscribe("-c")
        station = self.start_station(30, "--patience", "60")
        wait_until(lambda: gathered().get("antenna/bench-1/events"), "the first line",
                   LIMIT_SECONDS)
        stop(broker)
        wait_until(lambda: any('"runEnded"' in line for line in self.record()),
                   "the end of the run", LIMIT_SECONDS)
        self.assertIsNone(station.poll(), "it has patience with the broker")
        self.start_broker(memory)
        record = self.whole_record(station, 1)
        self.assertEqual(self.errors(), "")

        def came():
            # A line whose acknowledgement was lost is sent again, directly after itself.
            lines = gathered()["antenna/bench-1/events"]
            return [line for number, line in enumerate(lines) if lines[number - 1:number] != [line]]
        wait_until(lambda: len(came()) >= len(record), "every line", BROKER_SECONDS)
        self.assertEqual(came(), record)

    def test_refuse_names_that_are_no_topic_level_and_unwritable_records(self):
        for arguments in (("a/b", "--module", "x", "--record", "r"),
                          ("#", "--module", "x", "--record", "r"),
                          ("bench-1", "--module", "x", "--record", "none/r"),
                          ("bench-1", "--record", "r")):
            run = subprocess.run([sys.executable, str(EXAMPLES / "station.py"), *arguments],
                                 cwd=self.folder, stdin=subprocess.DEVNULL, capture_output=True,
                                 timeout=LIMIT_SECONDS, check=False)
            self.assertEqual(run.returncode, WRONG_USAGE, run)
            self.assertEqual(run.stderr.count(b"\n"), 1, run)

    def test_end_with_a_value_of_their_own_when_the_module_cannot_be_started(self):
        run = subprocess.run([sys.executable, str(EXAMPLES / "station.py"), "bench-1", "--module",
                              str(self.folder / "none"), "--record", "r"],
                             cwd=self.folder, stdin=subprocess.DEVNULL, capture_output=True,
                             timeout=LIMIT_SECONDS, check=False)
        self.assertEqual(run.returncode, 127, run)
        self.assertRegex(run.stderr, rb"\Astation: the module cannot be started: .*\n\Z")

    def test_use_the_port_of_the_examples_broker_by_default(self):
        self.assertIn(f'default="{example_port()}"',
                      (EXAMPLES / "station.py").read_text(encoding="utf-8"))


class LogShipper(StationTest):
    def test_ships_every_line_whole(self):
        configuration = (EXAMPLES / "rsyslog.conf").read_text(encoding="utf-8")
        for there, here in (("/var/lib/antenna/", f"{self.folder}/"),
                            ("/var/log/antenna-events.jsonl", f"{self.folder}/shipped"),
                            ("/var/spool/rsyslog", str(self.folder))):
            self.assertEqual(configuration.count(there), 1, there)
            configuration = configuration.replace(there, here)
        self.start_process(
            ["/usr/sbin/rsyslogd", "-n", "-i", str(self.folder / "pid"), "-f",
             str(self.write("rsyslog.conf", configuration))], "shipper.out", "shipper.err")
        station = self.start_station(60, "--patience", "0", others=MANY_NETWORKS)
        record = "".join(self.whole_record(station, 0))
        self.assertGreater(max(map(len, record.splitlines())), 8192, "longer than common limits")
        shipped = self.folder / "shipped"

        def text():
            return shipped.read_text(encoding="utf-8") if shipped.exists() else ""
        wait_until(lambda: len(text()) >= len(record), "the shipped lines", BROKER_SECONDS)
        self.assertEqual(text(), record)


if __name__ == "__main__":
    unittest.main()
