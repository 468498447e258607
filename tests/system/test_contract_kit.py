"""The kit for a real PC: made, unpacked, and run whole under Wine on the simulator's DLL.

Runs after the build of the Windows test programs, which the kit has.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import zipfile

from program import DIST, ROOT, environment

CHECKED = ROOT / "build" / "windows-checked"
MAKE_KIT = ROOT / "tools" / "package" / "make_kit.py"
PROGRAMS = ["test_mrl", "test_libmfc", "test_libuikit", "test_mrlrantenna",
            "test_mrlrantenna_dialog"]
# These programs have run whole as suites of their own by now. Here each runs an eighth of its tests,
# through the kit; all of them with MRLR_WHOLE_KIT=1.
SHARE = {"GTEST_TOTAL_SHARDS": "8", "GTEST_SHARD_INDEX": "0"}
if os.environ.get("MRLR_WHOLE_KIT"):
    SHARE = {}
LIMIT_SECONDS = 560


def made(output, **options):
    subprocess.run([sys.executable, str(MAKE_KIT), str(DIST.parent), str(CHECKED), str(output)],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
    [kit] = output.iterdir()
    return kit


class ContractKit(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.kit = made(cls.folder / "made")

    def test_has_the_same_bytes_for_every_user_and_time_zone(self):
        self.assertRegex(self.kit.name,
                         r"\Amrlrantenna-contract-6\.5\.000000001-win64(-modified)?\.zip\Z")
        again = made(self.folder / "again", umask=0o077,
                     env=dict(os.environ, TZ="Pacific/Kiritimati", LC_ALL="POSIX",
                              HOME=str(self.folder)))
        self.assertEqual(again.name, self.kit.name)
        self.assertEqual(again.read_bytes(), self.kit.read_bytes())

    def test_runs_whole_from_an_empty_folder(self):
        place = self.folder / "unpacked here"
        with zipfile.ZipFile(self.kit) as archive:
            archive.extractall(place)
        [folder] = place.iterdir()
        with open(self.folder / "output", "w+b") as output:
            run = subprocess.run(["wine", "cmd", "/c", "run-all.cmd", "--scan", "--radio"],
                                 cwd=folder, env=environment(**SHARE),
                                 stdin=subprocess.DEVNULL, stdout=output,
                                 stderr=subprocess.STDOUT, timeout=LIMIT_SECONDS, check=False)
            output.seek(0)
            text = output.read().decode("utf-8", "replace")[-4000:]
        self.assertEqual(run.returncode, 0, text)
        lines = [json.loads(line) for line in (folder / "results" / "contract.jsonl")
                 .read_text(encoding="utf-8").splitlines()]
        programs = [line for line in lines if "program" in line]
        self.assertEqual([line["program"] for line in programs], PROGRAMS)
        for line in programs:
            self.assertEqual(line.get("failed"), [], line)
            self.assertGreater(line["tests"], 0)
        verdicts = {line["check"]: line["verdict"] for line in lines if "check" in line}
        self.assertNotIn("broken", verdicts.values())
        self.assertEqual({check for check, verdict in verdicts.items() if verdict != "held"},
                         {"location.denied", "query.not-connected", "service.stopped"})


if __name__ == "__main__":
    unittest.main()
