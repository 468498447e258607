"""The parts behind a line of stations, each a real program on this machine with the configuration
of examples/stations: the broker, the database and the gatherer. Any of them may be killed."""
import contextlib
import getpass
import itertools
import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import tempfile
import time

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "examples" / "stations"
# Debian's Python has Debian's libraries.
PYTHON = "/usr/bin/python3"
START_SECONDS = 60
POLL_SECONDS = 0.05
# The server refuses to run as root.
DATABASE_USER = "postgres"
DATABASE = "antenna"
# Below the ports of clients, so that no client takes one meanwhile.
PORTS = itertools.count(20000 + os.getpid() % 10000)


def free_port():
    for port in PORTS:
        with socket.socket() as probe:
            try:
                probe.bind(("127.0.0.1", port))
                return port
            except OSError:
                continue


def wait_until(true, what, seconds=START_SECONDS):
    end = time.monotonic() + seconds
    while not true():
        if time.monotonic() > end:
            raise TimeoutError(f"waited in vain for: {what}")
        time.sleep(POLL_SECONDS)


class Part:
    """A program that is started, killed and started again; a file of the folder has its output."""

    def __init__(self, name, folder, command):
        self.name = name
        self.log = folder / f"{name}.log"
        self._command = command
        self._process = None
        self.most_memory = 0.0

    def launch(self):
        with open(self.log, "ab") as log:
            self._process = subprocess.Popen(self._command, stdin=subprocess.DEVNULL, stdout=log,
                                             stderr=log, start_new_session=True)

    def start(self):
        """Starts the program and waits until it answers; again when it has ended before."""
        self.launch()

        def answers():
            if self._process.poll() is not None:
                self.launch()
            return self.answers()
        wait_until(answers, f"{self.name}; see {self.log}")

    def answers(self):
        return True

    def poll(self):
        return self._process.poll()

    def send(self, number):
        self._process.send_signal(number)

    def kill(self):
        self.note_memory()
        self._process.kill()
        self._process.wait()

    def stop(self):
        if self._process:
            self.note_memory()
            self._process.terminate()
            try:
                self._process.wait(START_SECONDS)
            except subprocess.TimeoutExpired:
                self.kill()

    def note_memory(self):
        """Notes the most memory that the program has used, in MB."""
        with contextlib.suppress(OSError, TypeError):
            status = pathlib.Path(f"/proc/{self._process.pid}/status").read_text(encoding="utf-8")
            kilobytes = int(re.search(r"^VmHWM:\s+(\d+)", status, re.MULTILINE)[1])
            self.most_memory = max(self.most_memory, kilobytes / 1024)


def configuration(text, replacements):
    """The text of an example with other places; each must be in it."""
    for there, here in replacements.items():
        if there not in text:
            raise ValueError(f"the example has no {there}")
        text = text.replace(there, str(here))
    return text


class Broker(Part):
    """A broker with the configuration for production, on ports of its own."""

    def __init__(self, folder, users, autosave_seconds=10):
        """users: names and passwords."""
        self._folder = folder
        self.port, self.certificate_port = free_port(), free_port()
        self.cafile = folder / "ca.crt"
        for arguments in (["authority", folder], ["server", folder, "localhost"]):
            subprocess.run([EXAMPLES / "certificates.sh", *arguments], check=True)
        shutil.copy(EXAMPLES / "acl", folder / "acl")
        passwords = folder / "passwords"
        passwords.write_text("".join(f"{user}:{password}\n" for user, password in users.items()),
                             encoding="utf-8")
        subprocess.run(["mosquitto_passwd", "-U", passwords], check=True)
        file = folder / "broker.conf"
        text = configuration((EXAMPLES / "broker.conf").read_text(encoding="utf-8"), {
            "listener 8883": f"listener {self.port} 127.0.0.1",
            "listener 8884": f"listener {self.certificate_port} 127.0.0.1",
            "/etc/antenna/": f"{folder}/", "/var/lib/mosquitto/": f"{folder}/",
            "autosave_interval 10": f"autosave_interval {autosave_seconds}"})
        # Started by root, it would switch to a user who cannot write into this folder.
        file.write_text(f"{text}user {getpass.getuser()}\n", encoding="utf-8")
        super().__init__("broker", folder, ["mosquitto", "-c", file])

    def answers(self):
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", self.port)) == 0

    def save(self, client_id):
        """Saves its memory; returns when that has the client's session."""
        saved = self._folder / "antenna.db"

        def has_session():
            self.send(signal.SIGUSR1)
            return saved.exists() and client_id.encode() in saved.read_bytes()
        wait_until(has_session, "the broker's saved sessions")


class Database(Part):
    """A PostgreSQL cluster of its own, reached by a socket in its folder, with the archive."""

    def __init__(self, folder, fsync=True):
        """fsync: wait for the disk, which matters when the machine loses its power, and takes the
        database some seconds after it was killed."""
        # In a folder that its user may enter.
        self._place = pathlib.Path(tempfile.mkdtemp(prefix="antenna-"))
        self._as_user = []
        if os.geteuid() == 0:
            shutil.chown(self._place, DATABASE_USER, DATABASE_USER)
            self._as_user = ["setpriv", f"--reuid={DATABASE_USER}", f"--regid={DATABASE_USER}",
                             "--clear-groups"]
        programs = max(pathlib.Path("/usr/lib/postgresql").iterdir(),
                       key=lambda folder: int(folder.name)) / "bin"
        cluster = self._place / "cluster"
        subprocess.run([*self._as_user, programs / "initdb", "--auth=trust", "--no-sync",
                        f"--username={DATABASE_USER}", "--encoding=UTF8", "--locale=C.UTF-8",
                        cluster], check=True, stdout=subprocess.DEVNULL, cwd="/")
        self.connection = f"host={self._place} user={DATABASE_USER} dbname={DATABASE}"
        super().__init__("database", folder, [
            *self._as_user, programs / "postgres", "-D", cluster, "-k", self._place,
            "-c", "listen_addresses=", "-c", "timezone=UTC",
            "-c", f"fsync={'on' if fsync else 'off'}"])

    def make_archive(self):
        server = self.connection.replace(f"dbname={DATABASE}", "dbname=postgres")
        self._psql(["--command", f"create database {DATABASE}"], server)
        self._psql(["--single-transaction", "--file", EXAMPLES / "archive.sql"], self.connection)

    def _psql(self, arguments, connection):
        return subprocess.run(["psql", "--no-psqlrc", "--quiet", "--set", "ON_ERROR_STOP=1",
                               "--dbname", connection, *arguments], check=True, cwd="/",
                              stdout=subprocess.PIPE, text=True).stdout

    def query(self, statement):
        """The rows of a query, each a list of texts; null is empty."""
        out = self._psql(["--tuples-only", "--no-align", "--field-separator=\t", "--command",
                          statement], self.connection)
        return [line.split("\t") for line in out.splitlines()]

    def ask(self, path):
        """The questions of a file, each with its answer as psql shows it."""
        return self._psql(["--echo-all", "--file", path.resolve()], self.connection)

    def answers(self):
        server = self.connection.replace(f"dbname={DATABASE}", "dbname=postgres")
        return subprocess.run(["psql", "--no-psqlrc", "--dbname", server, "--command", "select 1"],
                              cwd="/", stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              check=False).returncode == 0

    def stop(self):
        if self._process:
            self.send(signal.SIGINT)  # ends its connections
            self._process.wait(START_SECONDS)

    def remove(self):
        shutil.rmtree(self._place)


class Gatherer(Part):
    """gather.py with a user of its own."""

    def __init__(self, folder, broker, database, password):
        file = folder / "gatherer.password"
        file.write_text(password, encoding="utf-8")
        super().__init__("gatherer", folder, [
            PYTHON, EXAMPLES / "gather.py", "--database", database.connection, "--host",
            "localhost", "--port", str(broker.port), "--cafile", broker.cafile, "--username",
            "gatherer", "--password-file", file])

    def answers(self):
        return self.log.read_bytes().rstrip().endswith(b"gather: gathering")
