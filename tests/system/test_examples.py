"""Commands that people copy, from help and every page: each ends with a verdict or what it shows."""
import concurrent.futures
import re
import shlex
import shutil
import unittest

from program import DIST, RESULTS, ROOT, ProgramTest, settings

PAGES = [*(ROOT / "docs").glob("*.md"), ROOT / "README.md", ROOT / "tools" / "package" / "README.txt",
         ROOT / "tools" / "radiosim" / "README.md"]
FIRST_WORDS = ("list", "run", "doctor", "replay", "networks", "watch", "history", "--help", "--version")
# A program or ./run with or without its name, and behind it words with one blank between them: two begin a remark.
COMMAND = re.compile(r"(?:\b(?P<name>mrlrantenna|mrlrsignal)(?:\.k5x)?|"
                     r"\./run(?: --program (?P<chosen>mrlrsignal))?)"
                     r"(?P<arguments>(?: (?:\"[^\"\n]*\"|[^\s\"'`;>#]+))+)")
VERDICTS = {RESULTS[word] for word in ("PASS", "WARN", "FAIL")}
AT_ONCE = 4
# What the examples name.
NETWORKS = {"Lab": {"bssid": "02:00:00:00:01:00", "rssi": -62},
            "Bench2": {"rssi": -65, "channel": 36}, "Bed&Breakfast": {"rssi": -70}}
CARD = "Intel(R) Wi-Fi 6 AX201"


def commands_in(text, program):
    """The arguments of every command of a program in a text, without the usage lines."""
    text = re.sub(r" *[\\^]\n *", " ", text).replace("SSID=NAME", "SSID=Lab")
    for command in COMMAND.finditer(text):
        if (command["name"] or command["chosen"] or "mrlrantenna") != program:
            continue
        words = [word for word in shlex.split(command["arguments"]) if word != "--%"]
        if words[0] in FIRST_WORDS and not any(re.search(r"[\[{]|\.\.\.", word) for word in words):
            yield tuple(words)


class Examples:
    """What holds for each program; tests of one inherit it."""

    program = None
    # The page with the files that its commands name.
    page = None
    configurations = ()
    measuring = ()
    fewest = 0

    def setUp(self):
        super().setUp()
        tree = self.folder / "tree"
        shutil.copytree(DIST, tree)
        for owner in (tree / "resources").iterdir():  # a language that a page has added
            if (owner / "texts").is_dir():
                (owner / "texts" / "nl.json").write_text("{}")
        self.executable = tree / f"{self.program}.k5x"
        self.scenario = self.write("scenario.json", {"interfaces": [{
            "description": CARD,
            "accessPoints": [{"ssid": name, "signal": 60, "bss": [radio]}
                             for name, radio in NETWORKS.items()]}]})
        pages = [(ROOT / "docs" / name).read_text(encoding="utf-8")
                 for name in (self.page, "command-line.md")]
        for name in self.configurations:
            self.write(name, re.search(r"```toml\n(.*?)```", pages[0], re.S)[1])
        self.write("line.jsonl", '{"journal":1,"started":"2026-11-20T19:55:01.123Z","result":"PASS",'
                                 '"tests":[]}\n')
        self.write("cards.json", re.search(r"```json\n(\[.*?)```", pages[1], re.S)[1])

    def run_all(self, commands):
        """Runs each command; returns [(command, run)]."""
        with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
            runs = pool.map(lambda words: self.run_program(*words, scenario=self.scenario), commands)
            return list(zip(commands, runs))

    def help_page(self, *command):
        return self.run_program(*command, "--help").out

    def test_of_pages_and_help_end_with_a_verdict(self):
        texts = [page.read_text(encoding="utf-8") for page in PAGES]
        texts += [self.help_page(*command) for command in ((), ("list",), ("run",), ("doctor",), ("replay",),
                                                            ("history",))]
        commands = sorted({command for text in texts
                           for command in commands_in(text, self.program)})
        self.assertGreater(len(commands), self.fewest)
        # A person ends the dialog, so only whether it would begin is tried here.
        commands = [(*command, "--check") if "DiversityTest" in command else command
                    for command in commands]
        # Shown until a person ends it; one that is given its seconds takes fewer here.
        commands = [(*" ".join(command).partition(" --seconds ")[0].split(" "), "--seconds", "1")
                    if command[0] == "watch" else command for command in commands]
        made_before = [command for command in commands if "replay" not in command]
        replays = [command for command in commands if "replay" in command]
        self.assertTrue(replays)
        for command, run in self.run_all(made_before) + self.run_all(replays):
            with self.subTest(shlex.join(command)):
                measures = command[0] in ("run", "replay") and not {"--check", "--help"} & set(command)
                # Windows has no levels of chains.
                expected = ({RESULTS["CANNOTRUN"]} if "AntennaChainTest" in command else
                            VERDICTS if measures else {0})
                self.assertIn(run.exit, expected, run)

    def test_of_options_are_understood_with_a_command_that_takes_them(self):
        measure = ("run", *settings(SSID="Lab", **self.measuring), "--check")
        for command, base in (("run", measure), ("list", ("list",)), ("doctor", ("doctor",))):
            examples = [tuple(shlex.split(example)) for example in
                        re.findall(r"(?m)^ +example: (.+)$", self.help_page(command))]
            self.assertGreater(len(examples), 5)
            whole = [example if not example[0].startswith("--") else
                     ("run", "--check", *example) if example[0] == "--set" else
                     (*base, *example)
                     for example in examples]
            for example, run in self.run_all(whole):
                with self.subTest(shlex.join(example)):
                    self.assertIn(run.exit, VERDICTS | {0} if "run" in example else {0}, run)


class OfTheAntennaProgram(Examples, ProgramTest):
    program = "mrlrantenna"
    page = "command-line.md"
    configurations = ("station.toml",)
    measuring = {"FailingSignalStrength": 20}
    fewest = 20


class OfTheLevelProgram(Examples, ProgramTest):
    program = "mrlrsignal"
    page = "signal.md"
    configurations = ("lab.toml", "limits.toml")  # the second is made by a command
    measuring = {"FailingLevel": -70}
    fewest = 10

    def setUp(self):
        super().setUp()
        calibration = self.run_program(
            "calibrate", *settings(BSSID=NETWORKS["Lab"]["bssid"]), "--reference=-60", "--unit", "G-1",
            "--station", "Bench1", "--out", "station.toml", scenario=self.scenario, typed=5 * "\n")
        self.assertEqual(calibration.exit, 0, calibration)
        # With the settings of the page: its commands take one file or the other.
        self.write("station.toml", "\n".join(
            (self.folder / name).read_text(encoding="utf-8") for name in ("station.toml", "lab.toml")))


if __name__ == "__main__":
    unittest.main()
