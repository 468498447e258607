"""The lines that a station's program writes with --events, without a program: runs of the level
test, with levels that make a line of stations worth looking at."""
import datetime
import hashlib
import json
import secrets
import time

WARNING, FAILING = -57, -62
READINGS = 5
LINES = 6 + READINGS  # of a run
PROPERTIES = {"wlanAPISupported": "true"}
# What is wrong with some stations: an offset in dB, and a drift in dB a day.
BENT_LEAD = {"station-0003": (-2.5, 0.0)}
WORN_CONNECTOR = {"station-0004": (0.0, -0.08)}
CONDITIONS = BENT_LEAD | WORN_CONNECTOR
BAD_UNITS = 0.03
BAD_UNIT_DECIBEL = -14
REPAIRED = 0.6


def identifier(seconds):
    """A UUID of version 7: milliseconds, then random bits."""
    value = int(seconds * 1000) << 80 | 0x7 << 76 | secrets.randbits(12) << 64
    text = f"{value | 0b10 << 62 | secrets.randbits(62):032x}"
    return "-".join((text[:8], text[8:12], text[12:16], text[16:20], text[20:]))


def time_text(seconds):
    moment = datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc)
    return moment.isoformat(timespec="milliseconds").replace("+00:00", "Z")


def limits_in_force(share):
    """The limits after this share of all runs: the second half has a new version."""
    version = "2" if share < 0.5 else "3"
    digest = hashlib.sha256(f"bench {version}".encode()).hexdigest()
    return [{"name": "bench", "version": version, "sha256": digest, "source": "file"}]


class Bench:
    """A station's bench: its units, one after another, and their levels."""

    def __init__(self, station, random):
        self._station = station
        self._random = random
        self._number = 0
        self._failed = None  # the unit that is tried again

    def _next_unit(self):
        if self._failed:
            unit, self._failed = self._failed, None
            bad = self._random.random() > REPAIRED
            return unit, bad, False
        self._number += 1
        unit = f"{self._station[-4:]}-{secrets.token_hex(3)}-{self._number:04}"
        return unit, self._random.random() < BAD_UNITS, True

    def run(self, share, days_ago):
        """The lines of one run, each made when it is asked for, as a program makes them.

        share: of the station's runs that are done; days_ago: how far its clock is behind.
        """
        def line(kind, **members):
            now = time.time() - days_ago * 86400
            nonlocal sequence
            sequence += 1
            return json.dumps({"type": kind, "sequence": sequence, "time": time_text(now),
                               "runIdentifier": run, **members}, separators=(",", ":")).encode()

        unit, bad, first = self._next_unit()
        offset, drift = CONDITIONS.get(self._station, (0.0, 0.0))
        middle = -52 + offset - drift * days_ago + self._random.gauss(0, 1.2)
        middle += BAD_UNIT_DECIBEL if bad else 0
        started = time.time() - days_ago * 86400
        run = identifier(started)
        sequence = 0
        device = {"name": "Simulated Wireless-AC Adapter", "properties": PROPERTIES}
        parameters = {"SSID": "Lab", "WarningLevel": WARNING, "FailingLevel": FAILING}
        bounds = [{"name": "WarningLevel", "value": WARNING, "severity": "warning",
                   "kept": "atLeast"},
                  {"name": "FailingLevel", "value": FAILING, "severity": "error",
                   "kept": "atLeast"}]
        yield line("runStarted", protocol=1,
                   module={"name": "mrlrsignal", "version": "6.5", "build": "000000001"},
                   tags={"serial": unit, "station": self._station, "operator": "simulated"},
                   pc={"name": self._station.upper(), "system": "simulated"},
                   limits=limits_in_force(share), planned=1, withoutDevice=[])
        yield line("testStarted", run=1, test="SignalLevelTest", interactive=False, device=device,
                   parameters=parameters)
        series = {"name": "Level", "unit": "dBm", "limits": bounds}
        yield line("series", run=1, series={**series, "median": None})
        levels = sorted(round(middle + self._random.gauss(0, 0.4), 1) for _ in range(READINGS))
        for number, level in enumerate(levels):
            yield line("point", run=1, series="Level",
                       point={"seconds": 0.1 * number, "value": level, "attributes": {}})
        median = levels[READINGS // 2]
        broken = ("FailingLevel" if median < FAILING else
                  "WarningLevel" if median < WARNING else None)
        value = {"FailingLevel": 2, "WarningLevel": 1, None: 0}[broken]
        measurement = {"name": "Level", "value": median, "decimals": 1, "unit": "dBm",
                       "lowest": -110, "highest": -10, "limits": bounds, "brokenLimit": broken}
        yield line("measurement", run=1, measurement=measurement)
        seconds = time.time() - days_ago * 86400 - started
        yield line("testEnded", run=1, called=True, failure="",
                   result={"test": "SignalLevelTest", "device": device,
                           "result": ("PASS", "WARN", "FAIL")[value], "value": value,
                           "started": time_text(started), "seconds": round(seconds, 3),
                           "parameters": parameters, "events": [], "measurements": [measurement],
                           "surveys": [], "advice": []})
        yield line("runEnded", exit=value, started=time_text(started),
                   ended=time_text(started + seconds), leftOut=0)
        if value == 2 and first:
            self._failed = unit
