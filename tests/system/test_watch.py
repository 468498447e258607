"""mrlrsignal watch on a simulated radio, in a real terminal and in pipes.

Runs after the native build, which has the program over the simulator.
"""
import array
import csv
import io
import json
import os
import pathlib
import re
import shlex
import signal
import subprocess
import time
import unittest

from program import LIMIT_SECONDS, ROOT, WRONG_USAGE, OUTPUT_LOST, RESULTS, ProgramTest, Run

EXECUTABLE = ROOT / "build" / "native" / "tests" / "programs" / "mrlrsignal_simulated"
LAB = {"bssid": "02:00:00:00:01:00", "rssi": -60, "heardEveryMs": 100, "channel": 36}
# Connected to Lab; the level rises by 12 dB after four seconds.
CONNECTED = {"interfaces": [{
    "connection": {"ssid": "Lab", "channel": 36, "links": True},
    "rssi": {"start": -60, "steps": [{"atMs": 4000, "by": 12}]},
    "accessPoints": [{"ssid": "Lab", "bss": [LAB]},
                     {"ssid": "日本語ネット", "bss": [{"bssid": "02:00:00:00:02:00", "rssi": -70,
                                                  "heardEveryMs": 100}]},
                     {"ssid": "a\u001b[31m\u202eb", "bss": [
                         {"bssid": "02:00:00:00:03:00", "rssi": -80, "heardEveryMs": 100}]}]}]}


class WatchTest(ProgramTest):
    def environment(self, scenario=None, **extra):
        env = {**os.environ, "LC_ALL": "C.UTF-8", "TERM": "xterm-256color", **extra}
        env["RADIOSIM_SCENARIO"] = str(self.write("scenario.json", scenario or CONNECTED))
        return env

    def watch(self, *options, scenario=None, **how):
        """Starts the program with pipes."""
        return subprocess.Popen([EXECUTABLE, "watch", *options], cwd=self.folder,
                                env=self.environment(scenario), stdin=subprocess.DEVNULL,
                                **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **how})

    def watched(self, *options, scenario=None):
        process = self.watch(*options, scenario=scenario)
        out, err = process.communicate(timeout=LIMIT_SECONDS)
        return Run(process.returncode, out, err)


class Records(WatchTest):
    def test_go_into_a_pipe_as_lines_of_json(self):
        run = self.watched("--set", "SSID=Lab", "--seconds", "2")
        self.assertEqual(run.exit, 0, run)
        records = [json.loads(line) for line in run.out.splitlines()]
        self.assertGreaterEqual(len(records), 8)
        self.assertEqual({key: records[0][key] for key in records[0] if key != "time"},
                         {"name": "Lab", "nameHex": "4c6162", "bssid": LAB["bssid"], "dbm": -60,
                          "percent": 80, "source": "link", "channel": 36, "band": 5, "mhz": 5180,
                          "chains": []})
        for record in records:
            self.assertRegex(record["time"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z$")
        self.assertEqual(run.err, "")

    def test_are_csv_when_asked_for_of_every_network(self):
        scenario = {"interfaces": [{"accessPoints": CONNECTED["interfaces"][0]["accessPoints"]}]}
        run = self.watched("--format", "csv", "--seconds", "2", scenario=scenario)
        rows = list(csv.DictReader(io.StringIO(run.out, newline="")))
        self.assertEqual({row["name"] for row in rows},
                         {"Lab", "日本語ネット", "a\u001b[31m\u202eb"})
        self.assertIn("2.4", {row["band"] for row in rows})
        self.assertTrue(run.out.endswith("\r\n"))

    def test_are_whole_lines_when_an_interrupt_ends_them(self):
        for options, value in (((), 0), (("--seconds", "60"), RESULTS["USERABORTED"])):
            with self.subTest(options=options):
                process = self.watch("--set", "SSID=Lab", *options)
                first = process.stdout.readline()
                process.send_signal(signal.SIGINT)
                rest = process.communicate(timeout=LIMIT_SECONDS)[0]
                self.assertEqual(process.returncode, value)
                for line in (first + rest).decode("utf-8").splitlines(keepends=True):
                    self.assertTrue(line.endswith("\n"), line)
                    json.loads(line)

    def test_that_cannot_be_written_end_it_at_once(self):
        with open("/dev/full", "wb") as full:
            process = self.watch("--set", "SSID=Lab", stdout=full)
            process.communicate(timeout=LIMIT_SECONDS)
        self.assertEqual(process.returncode, OUTPUT_LOST)
        process = self.watch("--set", "SSID=Lab")
        process.stdout.readline()
        process.stdout.close()
        self.assertEqual(process.wait(LIMIT_SECONDS), OUTPUT_LOST)
        process.stderr.close()

    def test_are_missing_for_a_reason_that_is_said_once(self):
        scenario = {"interfaces": [{"phys": [{"software": "off"}], "accessPoints": []}]}
        run = self.watched("--format", "jsonl", "--seconds", "1", scenario=scenario)
        self.assertEqual((run.exit, run.out), (0, ""))
        self.assertEqual(run.err, "mrlrsignal: The wireless radio is off: switch it on.\n")

    def test_refuses_what_it_cannot_use(self):
        for options, words in ((("--set", "BSSID=12"), "no BSSID"),
                               (("--format", "xml"), "xml"),
                               (("--seconds", "0"), "--seconds"),
                               (("--seconds", "soon"), "soon")):
            with self.subTest(options=options):
                run = self.watched(*options)
                self.assertEqual((run.exit, run.out), (WRONG_USAGE, ""))
                self.assertRegex(run.err, r"\Amrlrsignal: .*\n\Z")
                self.assertIn(words, run.err)


class View(WatchTest):
    def tmux(self, *arguments, check=True):
        return subprocess.run(["tmux", "-S", str(self.folder / "terminal"), *arguments],
                              cwd=self.folder, env=self.environment(), check=check,
                              capture_output=True, text=True, encoding="utf-8").stdout

    def start(self, *options, columns=80, rows=24, before="", terminal="xterm-256color"):
        """Starts the view in a shell that notes the terminal's settings before and after it."""
        command = shlex.join(map(str, (EXECUTABLE, "watch", *options)))
        self.tmux("-f", os.devnull, "new-session", "-d", "-x", str(columns), "-y", str(rows),
                  f"stty -a > before; echo on the screen before; {before} TERM={terminal} "
                  f"{command}; echo ended with $?; stty -a > after; sleep {LIMIT_SECONDS}")
        self.addCleanup(self.tmux, "kill-server", check=False)

    def screen(self):
        return self.tmux("capture-pane", "-p")

    def wait_for(self, pattern):
        end = time.monotonic() + LIMIT_SECONDS
        while not re.search(pattern, screen := self.screen()):
            self.assertLess(time.monotonic(), end, screen)
            time.sleep(0.1)
        return screen

    def press(self, *keys):
        self.tmux("send-keys", *keys)

    def process(self):
        shell = self.tmux("list-panes", "-F", "#{pane_pid}").strip()
        children = pathlib.Path(f"/proc/{shell}/task/{shell}/children").read_text().split()
        return int(children[-1])

    def assert_terminal_is_as_before(self, value=0):
        screen = self.wait_for(rf"ended with {value}\n")
        self.assertIn("on the screen before\n", screen)
        self.assertNotIn("dBm", screen)
        end = time.monotonic() + LIMIT_SECONDS
        while not (self.folder / "after").exists() or not (self.folder / "after").read_text():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.1)
        self.assertEqual((self.folder / "before").read_text(), (self.folder / "after").read_text())
        self.assertEqual(self.tmux("display-message", "-p", "#{cursor_flag}#{alternate_on}"),
                         "10\n")

    def test_shows_a_level_as_it_rises_and_its_difference_to_a_reference(self):
        self.start("--set", "SSID=Lab")
        screen = self.wait_for(r"-60\xa0dBm")
        self.assertTrue(screen.startswith(" Lab  02:00:00:00:01:00  channel 36 (5\xa0GHz)  "
                                          "Simulated Wireless Adapter\n"), screen)
        self.assertIn("from the link", screen)
        self.assertIn("from the connection, without scans; scans sent: 0", screen)
        self.press("r")
        screen = self.wait_for(r"now \+12\.0\xa0dB")
        self.assertRegex(screen, r"Level +-48\xa0dBm  100%  0\.\d\xa0s ago")
        self.assertRegex(screen, r"Best +-48\xa0dBm")
        self.assertRegex(screen, r"Reference +-60\.0\xa0dBm")
        self.assertIn("█", screen)
        self.assertIn("┤", screen)
        self.press("x")
        self.wait_for(r"(?s)\A(?!.*Reference)")
        self.press("q")
        self.assert_terminal_is_as_before()

    def test_lists_all_networks_and_watches_the_one_that_is_marked(self):
        self.start()
        self.wait_for(r"(?m)^   a\\x1B\[31m\\u202Eb +-80\xa0dBm   40% ")
        self.assertRegex(self.screen(), r"(?m)^ > Lab +-60\xa0dBm   80% ")
        self.press("Down")
        self.wait_for(r"(?m)^ > 日本語ネット +-70\xa0dBm ")
        self.press("Enter")
        self.wait_for(r"\A 日本語ネット  02:00:00:00:02:00")
        self.press("Escape")
        self.wait_for(r"(?m)^ > 日本語ネット ")
        self.press("q")
        self.assert_terminal_is_as_before()

    def test_follows_the_size_of_the_terminal(self):
        self.start("--set", "SSID=Lab")
        self.wait_for(r"┤")
        for columns, rows in ((60, 15), (200, 50), (30, 4), (80, 24)):
            with self.subTest(columns=columns, rows=rows):
                self.tmux("resize-window", "-x", str(columns), "-y", str(rows))
                screen = self.wait_for(rf"\A Lab .*\n(.*\n){{{rows - 2}}} q quit.*\n\Z")
                self.assertIn("dBm", screen)
                self.assertEqual("┤" in screen, rows > 4)
        self.press("q")
        self.assert_terminal_is_as_before()

    def test_gives_the_terminal_back_however_it_ends(self):
        for end, value in ((lambda: self.press("C-c"), 0),
                           (lambda: os.kill(self.process(), signal.SIGINT), 6),
                           (lambda: os.kill(self.process(), signal.SIGTERM), 6),
                           (lambda: os.kill(self.process(), signal.SIGHUP), 6)):
            with self.subTest(value=value):
                self.start("--set", "SSID=Lab")
                self.wait_for(r"-\d\d\xa0dBm")
                end()
                self.assert_terminal_is_as_before(value)
                self.doCleanups()
                self.setUp()

    def test_ends_after_its_seconds(self):
        self.start("--set", "SSID=Lab", "--seconds", "2")
        self.wait_for(r"dBm")
        self.assert_terminal_is_as_before()

    def test_ends_with_a_terminal_that_is_closed(self):
        self.start("--set", "SSID=Lab")
        self.wait_for(r"dBm")
        process = self.process()
        self.tmux("kill-session")
        end = time.monotonic() + LIMIT_SECONDS
        while pathlib.Path(f"/proc/{process}").exists():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.1)

    def test_has_no_colours_where_they_are_not_wanted(self):
        for before, options, coloured in (("", (), True), ("NO_COLOR=1", (), False),
                                          ("", ("--color", "never"), False)):
            with self.subTest(before=before, options=options):
                self.start("--set", "SSID=Lab", *options, before=before)
                self.wait_for(r"┤")
                screen = self.tmux("capture-pane", "-p", "-e")
                self.assertEqual("\x1b[3" in screen, coloured, screen)
                self.press("q")
                self.assert_terminal_is_as_before()
                self.doCleanups()
                self.setUp()

    def test_has_a_tone_that_a_key_turns_on(self):
        sound = self.folder / "sound.raw"
        self.write("asound.conf", f"""pcm.nothing {{ type null }}
            pcm.!default {{ type file; slave.pcm nothing; file "{sound}"; format raw }}""")
        self.start("--set", "SSID=Lab", before="ALSA_CONFIG_PATH=asound.conf")
        self.wait_for(r"-60\xa0dBm")
        self.press("t")
        self.wait_for(r"Tone +on")
        self.press("t")
        self.wait_for(r"(?s)\A(?!.*Tone)")
        self.press("q")
        self.assert_terminal_is_as_before()
        samples = array.array("h", sound.read_bytes())[:48000 * 80 // 1000]
        rises = sum(1 for before, after in zip(samples, samples[1:]) if before < 0 <= after)
        self.assertAlmostEqual(rises / 0.08, 880, delta=30)

    def test_says_that_there_is_no_sound_device(self):
        self.start("--set", "SSID=Lab", before="ALSA_CONFIG_PATH=/dev/null")
        self.wait_for(r"dBm")
        self.press("t")
        self.assertNotIn("ALSA", self.wait_for(r"There is no tone"))
        self.press("q")
        self.assert_terminal_is_as_before()

    def test_needs_a_terminal_that_follows_escape_sequences(self):
        for options, terminal in ((("--set", "SSID=Lab"), "dumb"), ((), "''")):
            with self.subTest(terminal=terminal):
                self.start(*options, terminal=terminal)
                screen = self.wait_for(rf"ended with {WRONG_USAGE}\n")
                self.assertIn("--format jsonl", screen)
                self.doCleanups()
                self.setUp()


if __name__ == "__main__":
    unittest.main()
