"""The program for Linux on the kernel's own simulated radios, in a virtual machine: what it says is
held against what iw and hostapd say there."""
import datetime
import json
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest

from program import RESULTS as VALUES, ROOT

sys.path.insert(0, str(ROOT / "tools" / "radiovm"))
import machine
import radio_lists
from radio_lists import CCMP, NO_CIPHER, OPEN, OWE, PRIVACY, RSNA_PSK, SAE, TKIP, WPA_PSK, quality

LINUX = ROOT / "build" / "linux"
RESULTS = ROOT / "build" / "radiovm" / "results"
# The cases take 40 s on a processor of their own.
LIMIT_SECONDS = 500
# What a level may differ by between two looks at it, and the percentage.
DBM = 1
PERCENT = 2 * DBM
# What a run takes beyond its fixed pauses, on the clock of the virtual machine.
SLACK_SECONDS = 5

HOSTILE = bytes.fromhex("1b5b33316d220a27fffe80c03c2f7363726970743e263b25732e2e2f")
ENDING = b"Ending\0."
# The levels that the scenes set, by hostapd's names.
LEVELS = {"open": -55, "wpa2": -65, "wpa3": -70, "twin-low": -80, "twin-high": -62,
          "hostile": -68, "owe": -72}
# Authentication and cipher as the interface numbers them.
NETWORKS = {b"Open": (OPEN, NO_CIPHER), b"Protected": (RSNA_PSK, CCMP), b"Safe": (SAE, CCMP),
            b"Twin": (RSNA_PSK, CCMP), HOSTILE: (WPA_PSK, TKIP), "Büro".encode(): (OWE, CCMP)}
# The same in the words of iw.
SUITES = {OPEN: "", RSNA_PSK: "PSK", WPA_PSK: "PSK", SAE: "SAE", OWE: "OWE"}
CIPHERS = {NO_CIPHER: "", CCMP: "CCMP", TKIP: "TKIP"}
RADIO_OFF = "ERROR_NDIS_DOT11_POWER_STATE_INVALID"
# Opcodes of WlanQueryInterface; the connection's quality and rates, and where they are.
CONNECTION, CHANNEL, RSSI = 7, 8, 0x10000102
CONNECTION_RATES = 576
ASSOCIATION_END = struct.Struct("<III")


def setUpModule():
    machine.run(RESULTS, [LINUX / "dist", LINUX / "contract" / "contract",
                          LINUX / "radiovm" / "pace"], limit=LIMIT_SECONDS)


def text_of(case, name):
    return (RESULTS / case / name).read_text(encoding="utf-8", errors="surrogateescape")


def hostapd(name):
    """What hostapd says of an access point."""
    return dict(line.split("=", 1) for line in text_of("access-points", name).splitlines())


def without_advice(report):
    """A report's content. Advice is also about the machine itself, which a capture does not have.
    """
    content = json.loads(report.read_text(encoding="utf-8"))
    for result in content["results"]:
        del result["advice"]
    return content


class CaseTest(unittest.TestCase):
    """A test of what one case left."""
    maxDiff = None

    def iw(self, case, look):
        """The access points that iw listed."""
        return radio_lists.of_iw(text_of(case, f"{look}.scan"))

    def blocks(self, case, run, function):
        """The blocks that the table's function handed out in a run."""
        return radio_lists.blocks(RESULTS / case / f"{run}.jsonl", function)

    def last_networks(self, case, run):
        return radio_lists.networks(self.blocks(case, run, "WlanGetAvailableNetworkList")[-1])

    def said(self, case, run):
        return text_of(case, f"{run}.out") + text_of(case, f"{run}.err")

    def verdict(self, case, run, result, events, seconds):
        """The one result of a run, which has this verdict and these events after these pauses;
        `events` None for any."""
        report = json.loads(text_of(case, f"{run}.json"))
        self.assertEqual(len(report["results"]), 1, report)
        found = report["results"][0]
        self.assertEqual(found["result"], result, self.said(case, run))
        keys = [event["key"] for event in found["events"]]
        self.assertEqual(keys, keys if events is None else events, self.said(case, run))
        self.assertEqual(int(text_of(case, f"{run}.exit")), VALUES[result])
        self.assertGreaterEqual(found["seconds"], seconds)
        self.assertLess(found["seconds"], seconds + SLACK_SECONDS)
        return found

    def measured(self, case, run, result, events, dbm):
        """The same for a run that found its network at a level."""
        found = self.verdict(case, run, result, events, 7.0)
        value = found["measurements"][0]["value"]
        self.assertAlmostEqual(value, quality(dbm), delta=PERCENT)
        return found


class Lists(CaseTest):
    def test_name_the_access_points_that_hostapd_runs(self):
        seen = self.iw("networks", "doctor")
        for name, dbm in LEVELS.items():
            with self.subTest(name):
                point = seen[hostapd(name)["bssid[0]"]]
                self.assertEqual(point.megahertz, int(hostapd(name)["freq"]))
                self.assertAlmostEqual(point.dbm, dbm, delta=DBM)
        self.assertEqual(seen[hostapd("hidden")["bssid[0]"]].ssid, b"")

    def test_of_stations_are_those_of_iw(self):
        seen = self.iw("networks", "twin")
        block = self.blocks("networks", "twin", "WlanGetNetworkBssList")[-1]
        listed = radio_lists.access_points(block)
        self.assertEqual(set(listed), set(seen))
        self.assertGreaterEqual(len(listed), len(LEVELS) + 1)
        qualities = radio_lists.qualities(block)
        for bssid, point in seen.items():
            with self.subTest(bssid):
                entry = listed[bssid]
                self.assertEqual(
                    (entry.ssid, entry.megahertz, entry.beacon_interval, entry.capability),
                    (point.ssid, point.megahertz, point.beacon_interval, point.capability))
                self.assertAlmostEqual(entry.dbm, point.dbm, delta=DBM)
                self.assertEqual(qualities[bssid], quality(entry.dbm))

    def test_of_networks_are_those_of_iw_with_their_security(self):
        seen = self.iw("networks", "doctor").values()
        listed = {network.ssid: network for network in self.last_networks("networks", "doctor")}
        self.assertEqual(set(listed), {point.ssid for point in seen})
        for ssid, (authentication, cipher) in NETWORKS.items():
            with self.subTest(ssid):
                network = listed[ssid]
                points = [point for point in seen if point.ssid == ssid]
                self.assertEqual((network.authentication, network.cipher),
                                 (authentication, cipher))
                self.assertEqual(network.bssids, len(points))
                self.assertAlmostEqual(network.quality, max(quality(p.dbm) for p in points),
                                       delta=PERCENT)
                for point in points:
                    self.assertEqual((point.authentication, point.cipher),
                                     (SUITES[authentication], CIPHERS[cipher]))
                    self.assertEqual(network.secured, point.capability & PRIVACY != 0)
                self.assertFalse(network.connected)
        self.assertIn(b"", listed, "the hidden network")

    def test_follow_a_signal_that_moves(self):
        """Between the end of another scanner's scan and the next change."""
        capture = RESULTS / "changes" / "absent.jsonl"
        head = json.loads(capture.read_text(encoding="utf-8").splitlines()[0])
        start = datetime.datetime.fromisoformat(head["started"]).timestamp()
        lists = [(start + call["at"] / 1000, bytes.fromhex(call["output"]["bytes"]))
                 for call in radio_lists.calls(capture, "WlanGetAvailableNetworkList")]
        changes = [line.split() for line in text_of("changes", "levels").splitlines()]
        self.assertEqual(len(changes), 8)
        for (_, _, dbm), (seen, _, same), following in zip(
                changes[0::2], changes[1::2], [*changes[2::2], [changes[-1][0]]]):
            self.assertEqual(dbm, same)
            until = float(following[0]) if following[0] != seen else float(seen) + 1
            found = [{network.ssid: network.quality for network in radio_lists.networks(block)}
                     for at, block in lists if float(seen) < at < until]
            with self.subTest(dbm):
                self.assertTrue(found)
                for networks in found:
                    self.assertAlmostEqual(networks[b"Changing"], quality(int(dbm)),
                                           delta=PERCENT)


    def test_lose_an_access_point_that_dies(self):
        blocks = self.blocks("changes", "absent", "WlanGetAvailableNetworkList")
        names = [{network.ssid for network in radio_lists.networks(block)} for block in blocks]
        self.assertLessEqual({ENDING, b"Open"}, names[0])
        self.assertIn(b"Open", names[-1])
        self.assertNotIn(ENDING, names[-1])


class Verdicts(CaseTest):
    def test_follow_a_signal_that_a_script_moves(self):
        weak = ["FAILING_SIGNAL_STRENGTH_DETECTED"]
        self.measured("verdicts", "pass", "PASS", [], -56)
        warned = self.measured("verdicts", "warn", "WARN", weak, -74)
        failed = self.measured("verdicts", "fail", "FAIL", weak, -86)
        self.measured("verdicts", "again", "PASS", [], -53)
        self.assertEqual([run["events"][0]["severity"] for run in (warned, failed)],
                         ["warning", "error"])
        self.assertEqual(warned["events"][0]["variables"]["SSIDName"], "Moving")

    def test_count_the_stronger_of_two_access_points(self):
        self.measured("networks", "twin", "PASS", [], -62)

    def test_take_a_name_that_no_text_has(self):
        found = self.measured("hostile-name", "hostile", "PASS", [], -68)
        self.assertNotIn("\x1b", self.said("hostile-name", "hostile"))
        self.assertEqual(found["parameters"]["SSID"].encode("latin-1"), HOSTILE)

    def test_do_not_find_absent_and_hidden_names(self):
        for case, run in (("changes", "absent"), ("hidden", "hidden")):
            with self.subTest(run):
                self.verdict(case, run, "FAIL", ["ACCESS_POINT_NOT_FOUND"], 44.0)

    def test_keep_the_last_level_of_an_access_point_that_dies(self):
        self.measured("killed", "killed", "PASS", [], -58)

    def test_find_an_access_point_that_is_switched_on_while_they_search(self):
        found = self.verdict("appears", "appears", "PASS", [], 20.0)
        self.assertAlmostEqual(found["measurements"][0]["value"], quality(-58), delta=PERCENT)

    def test_take_the_scan_of_another_program_for_theirs(self):
        self.measured("other-scanner", "beside", "PASS", [], -55)
        scans = radio_lists.calls(RESULTS / "other-scanner" / "beside.jsonl", "WlanScan")
        self.assertEqual([scan["result"] for scan in scans], [0])

    def test_need_the_radio(self):
        self.verdict("radio-off", "off", "CANNOTRUN", [RADIO_OFF], 0.0)
        self.assertIn("rfkill", self.said("radio-off", "doctor-off"))
        self.measured("radio-off", "on", "PASS", [], -55)
        # No list shows it when it was switched off between a list and the question for its state.
        switched = self.verdict("radio-switched-off", "switched", "CANNOTRUN", None, 14.0)
        self.assertIn([event["key"] for event in switched["events"]], ([RADIO_OFF], []))
        self.verdict("interface-down", "down", "CANNOTRUN", [RADIO_OFF], 0.0)
        self.assertIn("ip link set", self.said("interface-down", "doctor"))

    def test_take_a_fresh_list_of_the_kernel_where_they_may_not_scan(self):
        found = self.verdict("unprivileged", "fresh", "PASS", [], 0.0)
        self.assertAlmostEqual(found["measurements"][0]["value"], quality(-55), delta=PERCENT)
        self.verdict("unprivileged", "old", "FAIL",
                     ["NO_ACCESS_POINT_FOUND", "ACCESS_POINT_NOT_FOUND"], 30.0)
        for run in ("old", "doctor"):
            self.assertIn("CAP_NET_ADMIN", self.said("unprivileged", run))

    def test_measure_while_the_adapter_is_connected(self):
        for case, ssid, dbm in (("associated-wpa2", b"Protected", -65),
                                ("associated-wpa3", b"Safe", -70)):
            with self.subTest(case):
                self.assertIn("Connected to", text_of(case, "connected.link"))
                self.measured(case, "connected", "PASS", [], dbm)
                first, *others = self.last_networks(case, "connected")
                self.assertEqual((first.ssid, first.connected), (ssid, True))
                self.assertFalse(any(network.connected for network in others))

    def test_end_when_the_adapter_is_unplugged(self):
        self.verdict("adapter-gone", "gone", "CANNOTRUN", [], 7.0)
        self.assertIn("no wireless adapter", self.said("adapter-gone", "doctor"))
        for run in ("no-interface", "no-interface-run"):
            self.assertEqual(text_of("adapter-gone", f"{run}.exit"), "3\n")
            self.assertIn("nl80211", self.said("adapter-gone", run))


class Levels(CaseTest):
    """What mrlrsignal measures."""

    def level(self, case, run, result, events):
        """The one result of a run, and the points of its first series."""
        report = json.loads(text_of(case, f"{run}.json"))
        [found] = report["results"]
        self.assertEqual(found["result"], result, self.said(case, run))
        self.assertEqual([event["key"] for event in found["events"]], events,
                         self.said(case, run))
        self.assertEqual(int(text_of(case, f"{run}.exit")), VALUES[result])
        return found, found["series"][0]["points"] if "series" in found else []

    def test_are_rated_on_both_sides_of_each_limit(self):
        for dbm, result, events in ((-75, "FAIL", ["LEVEL_BELOW_FAILING"]),
                                    (-71, "WARN", ["LEVEL_TOO_CLOSE"]),
                                    (-65, "WARN", ["LEVEL_BELOW_WARNING"]),
                                    (-59, "WARN", ["LEVEL_TOO_CLOSE"]), (-55, "PASS", [])):
            with self.subTest(dbm):
                found, points = self.level("levels", f"at{dbm}", result, events)
                self.assertAlmostEqual(found["measurements"][0]["value"], dbm, delta=DBM)
                # A level that does not scatter is sure after 11, but within a guard band.
                self.assertEqual(len(points), 15 if events == ["LEVEL_TOO_CLOSE"] else 11)
                for point in points:
                    self.assertEqual((point["attributes"]["Source"], point["attributes"]["MHz"]),
                                     ("scan", 2472))

    def test_have_steps_and_drifts_found(self):
        found, points = self.level("levels", "step", "WARN", ["SPREAD_TOO_LARGE"])
        self.assertEqual({point["value"] for point in points}, {-50, -58})
        self.assertEqual(len(points), 60)
        found, points = self.level("levels", "drift", "WARN", ["DRIFT_TOO_LARGE"])
        drift = [figure["value"] for figure in found["measurements"][0]["figures"]
                 if figure["name"] == "Drift"]
        self.assertAlmostEqual(drift[0], points[-1]["value"] - points[0]["value"], delta=4)

    def test_of_an_access_point_that_dies_end_with_it(self):
        """The kernel lists it on, with its last level."""
        found, points = self.level("dying", "dying", "WARN", ["LEVEL_TOO_CLOSE"])
        died = float(text_of("dying", "died").split()[0])
        start = datetime.datetime.fromisoformat(found["started"]).timestamp()
        self.assertGreaterEqual(len(points), 5)
        self.assertLess(start + points[-1]["seconds"], died + 0.5)
        self.assertGreater(found["seconds"], 14, "it waited for more")
        self.level("dying", "dead", "CANNOTRUN", ["NO_LEVEL_ONLY_OLD"])
        self.assertIn(hostapd("dying")["bssid[0]"], self.iw("dying", "dead"))

    def test_of_the_connection_come_without_a_scan(self):
        found, points = self.level("associated-wpa2", "level", "PASS", [])
        self.assertAlmostEqual(found["measurements"][0]["value"], -65, delta=DBM)
        self.assertEqual({point["attributes"]["Source"] for point in points}, {"connection"})
        self.assertLess(points[-1]["seconds"], 2.5, "11 readings, five a second")

    def test_are_followed_live_within_a_second(self):
        records = [json.loads(line) for line in text_of("levels", "watch.out").splitlines()]
        readings = [(datetime.datetime.fromisoformat(record["time"]).timestamp(), record["dbm"])
                    for record in records]
        self.assertEqual({record["source"] for record in records}, {"scan"})
        moves = [(float(at), int(dbm)) for at, _, dbm in
                 map(str.split, text_of("levels", "moves").splitlines())]
        self.assertEqual([dbm for _, dbm in moves], [-70, -48, -60])
        for (at, dbm), (following, _) in zip(moves, [*moves[1:], (moves[-1][0] + 3, 0)]):
            with self.subTest(dbm):
                later = [level for time, level in readings if at + 1 < time < following]
                self.assertGreater(len(later), 4)
                for level in later:
                    self.assertAlmostEqual(level, dbm, delta=DBM)

    def test_of_all_networks_are_those_of_iw(self):
        seen = self.iw("networks", "air")
        listed = {record["bssid"]: record for record in
                  map(json.loads, text_of("networks", "air.out").splitlines())}
        self.assertGreaterEqual(set(seen), set(listed))
        for name, dbm in LEVELS.items():
            with self.subTest(name):
                record = listed[hostapd(name)["bssid[0]"]]
                self.assertAlmostEqual(record["dbm"], dbm, delta=DBM)
                self.assertEqual(record["mhz"], int(hostapd(name)["freq"]))
                self.assertEqual(bytes.fromhex(record["nameHex"]), seen[record["bssid"]].ssid)

    def test_of_chains_are_none_of_this_driver(self):
        for case, event in (("associated-wpa2", "NO_CHAINS_OF_CONNECTION"),
                            ("levels", "NO_CHAINS_OF_SCAN")):
            with self.subTest(case):
                self.level(case, "chains", "CANNOTRUN", [event])


class Captures(CaseTest):
    def test_of_every_run_replay_to_the_same_on_this_machine(self):
        captures = [path for path in sorted(RESULTS.glob("*/*.jsonl"))
                    if path.with_suffix(".json").exists()]
        self.assertGreater(len(captures), 15)
        for capture in captures:
            with self.subTest(capture.relative_to(RESULTS)), \
                    tempfile.TemporaryDirectory() as folder:
                again = pathlib.Path(folder) / "again.json"
                run = subprocess.run(
                    [LINUX / "dist" / "mrlrantenna", "replay", capture, "--json", again],
                    capture_output=True, text=True, check=False, timeout=60)
                self.assertEqual(f"{run.returncode}\n",
                                 text_of(capture.parent.name, f"{capture.stem}.exit"), run)
                self.assertEqual(without_advice(again),
                                 without_advice(capture.with_suffix(".json")))


class Table(CaseTest):
    """The functions themselves, by the checks of what the program assumes of them."""

    def test_keeps_what_the_program_assumes(self):
        for case in ("contract", "associated-wpa2"):
            with self.subTest(case):
                self.assertRegex(text_of(case, "contract.out"), r"\n\d\d held, 0 broken, ")
                self.assertEqual(text_of(case, "contract.exit"), "0\n")

    def test_describes_the_connection_as_iw_does(self):
        link = text_of("associated-wpa2", "contract.link")
        answers = {step["arguments"]["opcode"]: bytes.fromhex(step["output"]["bytes"])
                   for step in (json.loads(line).get("captured", {}) for line in
                                text_of("associated-wpa2", "contract.jsonl").splitlines())
                   if step.get("call") == "WlanQueryInterface" and step["result"] == 0}
        dbm = int(re.search(r"signal: (-\d+) dBm", link).group(1))
        self.assertAlmostEqual(struct.unpack("<i", answers[RSSI])[0], dbm, delta=DBM)
        self.assertEqual(5 * struct.unpack("<I", answers[CHANNEL])[0] + 2407,
                         int(re.search(r"freq: (\d+)", link).group(1)))
        percent, *rates = ASSOCIATION_END.unpack(answers[CONNECTION][CONNECTION_RATES:][:12])
        self.assertAlmostEqual(percent, quality(dbm), delta=PERCENT)
        self.assertEqual([rate / 1000 for rate in rates],
                         [float(rate) for rate in re.findall(r"[rt]x bitrate: (\S+) MBit", link)])
        self.assertEqual(struct.unpack("<iiii", answers[CONNECTION][-16:]),
                         (1, 0, RSNA_PSK, CCMP))


class Pace(CaseTest):
    """What a live display needs; on a processor that is emulated."""

    def setUp(self):
        self.figures = json.loads(text_of("pace", "pace.json"))

    def test_of_scans_of_one_channel_is_five_a_second_or_more(self):
        channel = self.figures["channel"]
        self.assertEqual((channel["result"], channel["scans"]), (0, 10))
        self.assertGreaterEqual(channel["scans"] / channel["seconds"], 5)

    def test_of_an_idle_client_is_none(self):
        # Its own clocks are what remains.
        self.assertLess(self.figures["idle"]["processorSeconds"], 0.01)


if __name__ == "__main__":
    unittest.main()
