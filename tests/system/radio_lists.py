"""Lists of access points in one form: as `iw` prints them, and as captures hold them."""
import dataclasses
import json
import re
import struct

AVAILABLE_NETWORK = struct.Struct("<512sI32siIiII8iiIiiiII")
BSS_ENTRY = struct.Struct("<I32sI6s2xiiiIBxH4xQQH2xII252sII")
HEADS = {"WlanGetAvailableNetworkList": AVAILABLE_NETWORK, "WlanGetNetworkBssList": BSS_ENTRY}

# Numbers of the interface's authentication and cipher algorithms.
OPEN, WPA_PSK, RSNA_PSK, SAE, OWE = 1, 4, 7, 9, 10
NO_CIPHER, TKIP, CCMP = 0, 2, 4
CONNECTED = 1

PRIVACY = 0x10


@dataclasses.dataclass(frozen=True)
class AccessPoint:
    """What is compared of an access point."""
    bssid: str
    ssid: bytes
    megahertz: int
    dbm: float
    beacon_interval: int
    capability: int
    connected: bool = False
    seen_ms: int = 0  # since then; of iw only
    authentication: str = ""  # of iw only
    cipher: str = ""  # of iw only


@dataclasses.dataclass(frozen=True)
class Network:
    """An entry of the list of visible networks."""
    ssid: bytes
    bssids: int
    quality: int
    secured: bool
    authentication: int
    cipher: int
    connected: bool


def _ssid_bytes(shown):
    """The bytes of a name as iw prints it: \\xNN stands for what is not plain."""
    return re.sub(rb"\\x([0-9a-f]{2})", lambda code: bytes([int(code.group(1), 16)]),
                  shown.encode("latin-1"))


def _field(block, pattern, otherwise=""):
    found = re.search(pattern, block, re.MULTILINE)
    return found.group(1) if found else otherwise


def of_iw(text):
    """The access points of `iw dev ... scan dump`, by BSSID."""
    points = {}
    for block in re.split(r"^(?=BSS [0-9a-f:]{17}\()", text, flags=re.MULTILINE)[1:]:
        bssid = block[4:21]
        name = _ssid_bytes(_field(block, r"^\tSSID: (.*)$"))
        points[bssid] = AccessPoint(
            bssid=bssid, ssid=b"" if not name.strip(b"\0") else name,
            megahertz=int(float(_field(block, r"^\tfreq: (\S+)"))),
            dbm=float(_field(block, r"^\tsignal: (\S+) dBm")),
            beacon_interval=int(_field(block, r"^\tbeacon interval: (\d+) TUs")),
            capability=int(_field(block, r"^\tcapability: .*\(0x([0-9a-f]+)\)$"), 16),
            connected="-- associated" in block.splitlines()[0],
            seen_ms=int(_field(block, r"^\tlast seen: (\d+) ms ago")),
            authentication=_field(block, r"^\t\t \* Authentication suites: (.*)$"),
            cipher=_field(block, r"^\t\t \* Pairwise ciphers: (.*)$"))
    return points


def _items(block, form):
    count = struct.unpack_from("<I", block, 0 if form is AVAILABLE_NETWORK else 4)[0]
    return [form.unpack_from(block, 8 + i * form.size) for i in range(count)]


def networks(block):
    """The entries of a list of visible networks, from the bytes of its block."""
    return [Network(ssid=row[2][:row[1]], bssids=row[4], quality=row[17], secured=row[18] != 0,
                    authentication=row[19], cipher=row[20], connected=row[21] & CONNECTED != 0)
            for row in _items(block, AVAILABLE_NETWORK)]


def access_points(block):
    """The entries of a BSS list by BSSID, from the bytes of its block."""
    points = {}
    for row in _items(block, BSS_ENTRY):
        bssid = ":".join(f"{byte:02x}" for byte in row[3])
        points[bssid] = AccessPoint(bssid=bssid, ssid=row[1][:row[0]], megahertz=row[13] // 1000,
                                    dbm=row[6], beacon_interval=row[9], capability=row[12])
    return points


def qualities(block):
    """The link quality of each entry of a BSS list by BSSID."""
    return {":".join(f"{byte:02x}" for byte in row[3]): row[7]
            for row in _items(block, BSS_ENTRY)}


def calls(capture, function):
    """The steps of a capture that called `function`, in order."""
    steps = map(json.loads, capture.read_text(encoding="utf-8").splitlines())
    return [step for step in steps if step.get("call") == function]


def blocks(capture, function):
    """The blocks that the successful calls of `function` handed out, in order."""
    return [bytes.fromhex(step["output"]["bytes"]) for step in calls(capture, function)
            if step["result"] == 0 and step["output"].get("block")]


def quality(dbm):
    """The percentage that stands for a level."""
    return min(max(round(2 * (dbm + 100)), 0), 100)
