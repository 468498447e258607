"""The way from one station to an archive in docs/stations.md: its commands, in their order."""
import contextlib
import getpass
import os
import pathlib
import re
import shutil
import signal
import socket
import subprocess
import tempfile
import unittest

from program import ROOT
from test_stations_archive import whole_run
from parts import EXAMPLES, PYTHON, Database, configuration, free_port, wait_until

PAGE = ROOT / "docs" / "stations.md"
LIMIT_SECONDS = 60


class Page(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.database = Database(self.folder, fsync=False)
        self.addCleanup(self.database.remove)
        self.database.start()
        self.addCleanup(self.database.stop)
        self.port = free_port()
        self.places = {"/etc/antenna": self.folder / "antenna", "broker.example": "localhost",
                       "8883": self.port, "8884": free_port()}
        # The folder of the examples, with a broker of this test's own.
        self.examples = self.folder / "stations"
        shutil.copytree(EXAMPLES, self.examples)
        broker = self.examples / "broker.conf"
        broker.write_text(configuration(broker.read_text(encoding="utf-8"), {
            "/etc/antenna": self.folder / "antenna", "/var/lib/mosquitto/": f"{self.folder}/",
            "listener 8883": f"listener {self.port} 127.0.0.1",
            "listener 8884": f"listener {self.places['8884']} 127.0.0.1"})
            + f"user {getpass.getuser()}\n", encoding="utf-8")
        # Debian's Python, and a program that says what mrlrsignal would.
        programs = self.folder / "programs"
        programs.mkdir()
        (programs / "python3").symlink_to(PYTHON)
        (self.folder / "lines").write_bytes(b"".join(each + b"\n" for each in whole_run("A1")))
        program = programs / "mrlrsignal"
        program.write_text(f"#!/bin/sh\nexec cat {self.folder}/lines\n", encoding="utf-8")
        program.chmod(0o755)
        connection = dict(word.split("=") for word in self.database.connection.split())
        self.environment = dict(os.environ, PATH=f"{programs}:{os.environ['PATH']}",
                                PGHOST=connection["host"], PGUSER=connection["user"])

    def run_block(self, block):
        """Runs the commands of a block; returns what they print."""
        commands = configuration(block, {there: here for there, here in self.places.items()
                                         if there in block})
        # The test's user may do in its folders what needs an administrator elsewhere.
        commands = "".join(line.removeprefix("sudo ")
                           for line in commands.splitlines(keepends=True)
                           if not line.startswith("sudo ") or line.startswith("sudo mosquitto "))
        with open(self.folder / "out", "w+b") as out, open(self.folder / "err", "ab") as err:
            shell = subprocess.Popen(["bash", "-e", "-o", "pipefail", "-c", commands],
                                     cwd=self.examples, env=self.environment, stdout=out,
                                     stderr=err, stdin=subprocess.DEVNULL, start_new_session=True)
            self.addCleanup(self.end, shell.pid)
            self.assertEqual(shell.wait(LIMIT_SECONDS), 0, f"{commands}\n{self.errors()}")
            out.seek(0)
            return out.read().decode("utf-8")

    @staticmethod
    def end(group):
        with contextlib.suppress(ProcessLookupError):  # nothing of the block runs any more
            os.killpg(group, signal.SIGKILL)

    def errors(self):
        return (self.folder / "err").read_text(encoding="utf-8", errors="replace")

    def test_leads_from_one_station_to_an_archive(self):
        section = PAGE.read_text(encoding="utf-8").split("## From one station to an archive")[1]
        section = section.split("\n### ")[0]
        blocks = re.findall(r"^```(?:sh)?\n(.*?)^```", section, re.MULTILINE | re.DOTALL)
        packages, certificates, broker, archive, station, question, answer = blocks
        for block in (packages, certificates, broker):
            self.run_block(block)
        with socket.socket() as probe:
            wait_until(lambda: probe.connect_ex(("127.0.0.1", self.port)) == 0, "the broker")
        self.run_block(archive)
        wait_until(lambda: "gather: gathering" in self.errors(), "the gatherer")
        self.run_block(station)
        self.assertNotIn("station:", self.errors())
        wait_until(lambda: self.database.query("select exit from run where exit is not null"),
                   "the end of the run")
        shown = "".join(line.rstrip() + "\n"
                        for line in self.run_block(question).splitlines() if line)
        self.assertEqual(shown, answer)


if __name__ == "__main__":
    unittest.main()
