"""Stations and the gatherer at a real broker with TLS, users and rights, and what it refuses."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from program import ROOT
sys.path.insert(0, str(ROOT / "tools" / "fleet"))
from parts import EXAMPLES, Broker, wait_until

STATION = "Pr\u00fcfplatz 3"
USERS = {STATION: "of the station", "bench-2": "of the other", "gatherer": "of the gatherer"}
WRONG_USAGE = 64
# A program that says what a module says: a line of events.
MODULE = 'print(\'{"type":"runStarted"}\')\n'
LARGE_BYTES = 1_100_000
LIMIT_SECONDS = 30


class Security(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.broker = Broker(cls.folder, USERS)
        cls.broker.start()
        cls.addClassCleanup(cls.broker.stop)
        (cls.folder / "module.py").write_text(MODULE, encoding="utf-8")
        (cls.folder / "large.py").write_text(f"print('x' * {LARGE_BYTES})\n", encoding="utf-8")

    def setUp(self):
        self.subscribe()

    def subscribe(self, *options):
        """Starts the gatherer; `_heard` is what it may read."""
        self._heard = self.folder / f"{self.id()}.heard"
        self._gatherer = self.start("mosquitto_sub", self._heard, "gatherer", USERS["gatherer"],
                                    "--id", "gatherer", "-t", "antenna/+/events", "-F", "%t %p",
                                    *options)
        self.addCleanup(self._gatherer.wait)
        self.addCleanup(self._gatherer.terminate)
        self.hears("the subscription works")

    def stop_gatherer(self):
        self._gatherer.terminate()
        self._gatherer.wait()

    def start(self, program, out, user, password, *options, tls=True):
        """A client of the broker with a password."""
        folder = self.folder / f"{program}-{user}"
        folder.mkdir(exist_ok=True)
        (folder / program).write_text(f"-P {password}\n", encoding="utf-8")
        with open(out, "wb") as stream:
            return subprocess.Popen(
                [program, "-h", "localhost", "-p", str(self.broker.port), "-q", "1", "-V", "5",
                 "-u", user, *(("--cafile", str(self.broker.cafile)) if tls else ()), *options],
                env=dict(os.environ, XDG_CONFIG_HOME=str(folder)), stdin=subprocess.DEVNULL,
                stdout=stream, stderr=subprocess.STDOUT)

    def publish(self, user, topic, payload, password=None):
        out = self.folder / "published"
        client = self.start("mosquitto_pub", out, user, password or USERS[user], "-t", topic, "-m",
                            payload)
        return client.wait(LIMIT_SECONDS), out.read_text(encoding="utf-8")

    def hears(self, payload):
        """Everything that the gatherer has heard when this line of the other station comes."""
        sentinel = f"antenna/bench-2/events {payload}\n"

        def came():
            self.publish("bench-2", "antenna/bench-2/events", payload)
            return sentinel in self._heard.read_text(encoding="utf-8")
        wait_until(came, payload)
        return self._heard.read_text(encoding="utf-8").replace(sentinel, "")

    def run_station(self, name, *options, password="", port=None, module="module.py"):
        """The exit value and the errors of station.py."""
        (self.folder / "mosquitto_pub").write_text(f"-P {password}\n" if password else "",
                                                   encoding="utf-8")
        run = subprocess.run(
            [sys.executable, EXAMPLES / "station.py", name, "--launcher", sys.executable,
             "--module", self.folder / module, "--record", self.folder / "record", "--host",
             "localhost", "--port", str(port or self.broker.port), "--patience", "0", *options],
            env=dict(os.environ, XDG_CONFIG_HOME=str(self.folder)), stdin=subprocess.DEVNULL,
            capture_output=True, timeout=LIMIT_SECONDS, check=False)
        self.assertEqual(run.returncode, 0, "a broker does not change a verdict")
        return run.stderr.decode("utf-8")

    def with_password(self, name, password, topic_name=None):
        return self.run_station(topic_name or name, "--cafile", self.broker.cafile, "--username",
                                name, password=password)

    def certificate(self, name, days="10"):
        subprocess.run([EXAMPLES / "certificates.sh", "client", self.folder, name], check=True,
                       env=dict(os.environ, DAYS=days))
        return ("--cafile", self.broker.cafile, "--cert", self.folder / f"{name}.crt", "--key",
                self.folder / f"{name}.key")

    def with_certificate(self, name, options):
        return self.run_station(name, *options, port=self.broker.certificate_port)

    def assert_refused(self, errors, reason, broker_reason=""):
        self.assertRegex(errors,
                         rf"\Astation: 1 lines did not reach the broker \((?s:.*){reason}")
        self.assertEqual(self.hears("sentinel").replace(
            "antenna/bench-2/events the subscription works\n", ""), "")
        self.assertIn(broker_reason, self.broker.log.read_text(encoding="utf-8"))

    def assert_published(self, errors):
        self.assertEqual(errors, "")
        self.assertIn(f"antenna/{STATION}/events " + '{"type":"runStarted"}\n',
                      self.hears("sentinel"))

    def test_a_station_publishes_with_its_password(self):
        self.assert_published(self.with_password(STATION, USERS[STATION]))

    def test_a_station_publishes_with_its_certificate(self):
        self.assert_published(self.with_certificate(STATION, self.certificate(STATION)))

    def test_a_wrong_password_is_refused(self):
        self.assert_refused(self.with_password(STATION, "wrong"), "Not authorized")

    def test_no_password_is_refused(self):
        self.assert_refused(self.run_station(STATION, "--cafile", self.broker.cafile),
                            "Not authorized")

    def test_another_stations_topic_is_refused_with_a_password(self):
        self.assert_refused(self.with_password(STATION, USERS[STATION], "bench-2"),
                            "Not authorized")

    def test_another_stations_topic_is_refused_with_a_certificate(self):
        self.assert_refused(self.with_certificate("bench-2", self.certificate(STATION)),
                            "Not authorized")

    def test_a_line_that_is_too_large_is_refused(self):
        self.assert_refused(self.run_station(
            STATION, *self.certificate(STATION), port=self.broker.certificate_port,
            module="large.py"), "Packet too large")

    def test_an_expired_certificate_of_a_station_is_refused(self):
        self.assert_refused(self.with_certificate(STATION, self.certificate(STATION, "-1")), "",
                            "certificate verify failed")

    def test_an_expired_certificate_of_the_broker_is_refused(self):
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            broker = Broker(folder, USERS)
            subprocess.run([EXAMPLES / "certificates.sh", "server", folder, "localhost"],
                           check=True, env=dict(os.environ, DAYS="-1"))
            broker.start()
            self.addCleanup(broker.stop)
            errors = self.run_station(STATION, "--cafile", broker.cafile, "--username", STATION,
                                      password=USERS[STATION], port=broker.port)
            self.assertIn("alert certificate expired", broker.log.read_text(encoding="utf-8"))
        self.assert_refused(errors, "TLS error")

    def test_a_broker_of_another_authority_is_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([EXAMPLES / "certificates.sh", "authority", folder], check=True)
            errors = self.run_station(STATION, "--cafile", f"{folder}/ca.crt", "--username",
                                      STATION, password=USERS[STATION])
        self.assert_refused(errors, "TLS error", "alert unknown ca")

    def test_a_client_without_tls_is_refused(self):
        self.assert_refused(self.run_station(STATION, "--username", STATION,
                                             password=USERS[STATION]), "", "wrong version number")

    def test_a_client_without_a_certificate_is_refused_where_one_is_needed(self):
        self.assert_refused(self.run_station(
            STATION, "--cafile", self.broker.cafile, "--username", STATION,
            password=USERS[STATION], port=self.broker.certificate_port), "",
                            "peer did not return a certificate")

    def test_a_station_reads_nothing(self):
        heard = self.folder / "heard by a station"
        connected = f" as {STATION} ".encode()
        before = self.broker.log.read_bytes().count(connected)
        client = self.start("mosquitto_sub", heard, STATION, USERS[STATION],
                            "-t", "antenna/#", "-t", "antenna/+/events", "-t",
                            f"antenna/{STATION}/events")
        self.addCleanup(client.wait)
        self.addCleanup(client.terminate)
        wait_until(lambda: self.broker.log.read_bytes().count(connected) > before, "the connection")
        self.hears("something")
        self.assertNotIn("something", heard.read_text(encoding="utf-8"))

    def test_the_gatherer_writes_nothing(self):
        for topic in ("antenna/gatherer/events", f"antenna/{STATION}/events"):
            _, errors = self.publish("gatherer", topic, "from the gatherer")
            self.assertIn("Not authorized", errors)
        self.assertNotIn("from the gatherer", self.hears("sentinel"))

    def test_a_station_does_not_take_the_gatherers_queue(self):
        self.stop_gatherer()
        self.subscribe("--disable-clean-session")
        self.stop_gatherer()
        line = f"antenna/{STATION}/events kept for the gatherer\n"
        self.publish(STATION, f"antenna/{STATION}/events", "kept for the gatherer")
        # A client that begins a new session under the name of another one ends that.
        thief = self.start("mosquitto_pub", self.folder / "thief", "bench-2", USERS["bench-2"],
                           "--id", "gatherer", "-t", "antenna/bench-2/events", "-m", "mine")
        self.assertEqual(thief.wait(LIMIT_SECONDS), 0)
        self.subscribe("--disable-clean-session")
        self.assertIn(line, self.hears("sentinel"))

    def test_certificates_are_made_for_names_that_are_no_files_of_the_authority(self):
        for arguments in (("client", "ca"), ("client", "server"), ("client", "a/b"),
                          ("client", "a+b"), ("client", ""), ("server", ""), ("authority", "x"),
                          ("other", "x")):
            role, name = arguments
            run = subprocess.run([EXAMPLES / "certificates.sh", role, self.folder, name],
                                 capture_output=True, check=False)
            self.assertEqual(run.returncode, WRONG_USAGE, arguments)
            self.assertIn(b"certificates.sh authority FOLDER", run.stderr)


if __name__ == "__main__":
    unittest.main()
