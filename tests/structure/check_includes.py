#!/usr/bin/env python3
"""Checks every #include of the product against the dependencies of the architecture.

    mrl  <-  nativewifi  <-  capture  <-  networkadapters  <-  module
    mrl  <-  tesk5       <-  networkadapters
    mrl  <-  libmfc  <-  libUikit   <-  module's Win32 half
    mrl, nativewifi, capture  <-  radiosim, contract
    mrl  <-  dialogprobe
    mrl, nativewifi  <-  radiovm
    statistics  <-  readings  <-  curves
    inside tesk5:  model <- texts <- devices <- run <- reports, console <- commandline
                   reports <- history <- commandline

A component may include every component to its left. Win32 and third-party headers are allowed in
certain files only. Prints `file:line: message` for each offence.
"""

import pathlib
import re
import sys

import tree_check

FOLDERS = ("common", "modules", "tools")
# Resource scripts are left out: they include only Win32 headers and link nothing.
SUFFIXES = (".h", ".hpp", ".inl", ".c", ".cc", ".cpp")

MODULE = "modules/src/windows/diag/mrlrantenna"
SIGNAL = "modules/src/diag/mrlrsignal"
MODULE_WIN32 = re.compile(
    re.escape(MODULE) + r"/(mrlrantennaDlg|DiversityTest|MRLrAntennaApp|PostedRefresh|TabletPc)[^/]*$")
# Makes the application object between the others, in the one file that fixes their order.
MODULE_OBJECTS = f"{MODULE}/ModuleObjects.cpp"

# Component: its folder, and the parts of it that others may include, as include roots.
COMPONENTS = {
    "mrl": ("common/src/libcommon",
            ("common/src/libcommon/mrlbase", "common/src/libcommon/mrlarray")),
    "nativewifi": ("common/src/libnativewifi", ("common/src/libnativewifi",)),
    "capture": ("common/src/libcapture", ("common/src/libcapture",)),
    "tesk5": ("common/src/libtesk5", ("common/src/libtesk5", "common/src/libtesk5/src")),
    "networkadapters": ("common/src/libnetworkadapters", ("common/src/libnetworkadapters",)),
    "libmfc": ("common/src/libmfc", ("common/src/libmfc",)),
    "libUikit": ("common/src/libuikit", ("common/src/libuikit",)),
    "radiosim": ("tools/radiosim", ("tools/radiosim",)),
    "contract": ("tools/contract", ("tools/contract",)),
    "dialogprobe": ("tools/dialogprobe", ("tools/dialogprobe",)),
    "radiovm": ("tools/radiovm", ("tools/radiovm",)),
    "curves": ("tools/curves", ("tools/curves",)),
    "module": ("modules", (MODULE,)),
    "module's Win32 half": (MODULE, (MODULE,)),
    "statistics": (f"{SIGNAL}/statistics", (SIGNAL,)),
    "readings": (f"{SIGNAL}/readings", (SIGNAL,)),
    "gauge": (f"{SIGNAL}/gauge", (SIGNAL,)),
    "tolerance": (f"{SIGNAL}/tolerance", (SIGNAL,)),
    "calibration": (f"{SIGNAL}/calibration", (SIGNAL,)),
}

# What each component may include besides its own headers.
ARROWS = {
    "mrl": set(),
    "nativewifi": {"mrl"},
    "capture": {"mrl", "nativewifi"},
    "tesk5": {"mrl"},
    "networkadapters": {"mrl", "nativewifi", "capture", "tesk5"},
    "libmfc": {"mrl"},
    "libUikit": {"mrl", "libmfc"},
    "radiosim": {"mrl", "nativewifi", "capture"},
    "contract": {"mrl", "nativewifi", "capture"},
    "dialogprobe": {"mrl"},
    "radiovm": {"mrl", "nativewifi"},
    "curves": {"mrl", "nativewifi", "statistics", "readings"},
    "module": {"mrl", "nativewifi", "tesk5", "networkadapters", "statistics", "readings", "gauge",
               "tolerance", "calibration"},
    "module's Win32 half": {"mrl", "nativewifi", "tesk5", "networkadapters", "module", "libmfc",
                            "libUikit"},
    "statistics": set(),
    "readings": {"mrl", "nativewifi", "statistics"},
    "gauge": {"statistics"},
    "tolerance": {"statistics"},
    "calibration": {"statistics"},
}

# The rooms of the framework, and what each may include besides its own headers. A public header
# belongs to the room with its source; one without a source belongs to the model.
FRAMEWORK = "common/src/libtesk5"
ROOMS = {
    "model": set(),
    "texts": {"model"},
    "devices": {"model", "texts"},
    "run": {"model", "texts", "devices"},
    "reports": {"model", "texts", "devices", "run"},
    "console": {"model", "texts", "devices", "run"},
    "history": {"model", "texts", "run", "reports"},
    "commandline": {"model", "texts", "devices", "run", "reports", "console", "history"},
}

# The same of the module of levels; its own folder is the program.
SIGNAL_ROOMS = {
    "records": set(),
    "tables": set(),
    "options": set(),
    "levels": set(),
    "networks": {"levels", "records"},
    "watch": {"levels", "records"},
    "study": {"levels", "options", "tables"},
    "limits": {"levels", "options", "tables", "study"},
    "calibrate": {"levels", "options"},
    "program": {"levels", "records", "networks", "watch", "study", "limits", "calibrate"},
}

# Headers recognised by name, so that a dependency is found before the header exists.
NAMES = (
    (re.compile(r"mrl/"), "mrl"),
    (re.compile(r"nativewifi/"), "nativewifi"),
    (re.compile(r"capture/"), "capture"),
    (re.compile(r"tesk5/"), "tesk5"),
    (re.compile(r"networkadapters/"), "networkadapters"),
    (re.compile(r"(libmfc/|afx\w*\.h$)"), "libmfc"),
    (re.compile(r"(libUikit|libuikit)/"), "libUikit"),
    (re.compile(r"radiosim/"), "radiosim"),
    (re.compile(r"contract/"), "contract"),
    (re.compile(r"statistics/"), "statistics"),
    (re.compile(r"readings/"), "readings"),
    (re.compile(r"gauge/"), "gauge"),
    (re.compile(r"tolerance/"), "tolerance"),
    (re.compile(r"calibration/"), "calibration"),
)

WIN32_HEADERS = re.compile(
    r"(windows|windowsx|windef|winbase|winnt|wingdi|winuser|wincon|winreg|winerror|winver"
    r"|commctrl|commdlg|richedit|uxtheme|dwmapi|shellapi|shlobj|shlwapi|prsht"
    r"|ole2|oleauto|olectl|ocidl|objbase|objidl|combaseapi|unknwn|wincodec|gdiplus"
    r"|wlanapi|wlantypes|windot11|l2cmn|winsock|winsock2|ws2tcpip|ws2def|iphlpapi|iptypes|netioapi"
    r"|rpc|rpcdce|rpcndr|psapi|tlhelp32|dbghelp|setupapi|cfgmgr32|devguid|initguid|dbt)\.h$",
    re.IGNORECASE)

WIN32_PLACES = re.compile(
    r"(common/src/libmfc/.*|common/src/libuikit/.*"
    r"|common/src/libnativewifi/nativewifi/WlanTypes\.h|common/src/lib(nativewifi|networkadapters)/src/[^/]*Win32\.cpp"
    # A console needs UTF-16 from the system itself; only the system knows what a name leads to, its
    # own path and the languages, its DLLs and its arguments.
    r"|common/src/libcommon/mrlbase/src/"
    r"(OutputStream|(Files|ProcessArguments|StandardInput|System|SystemLibrary)Win32)\.cpp"
    # Console events; what the system and the firmware say of the PC.
    r"|common/src/libtesk5/src/run/(InterruptWatch|PcIdentity)Win32\.cpp"
    # The console's keys, screen and sound; a file that one process at a time may open.
    r"|modules/src/diag/mrlrsignal/(study/FileLock|watch/(Beeper|Terminal))Win32\.cpp"
    r"|tools/radiosim/dll/.*|tools/dialogprobe/.*)$")

# Headers, what they are called, and the places that may include them.
THIRD_PARTY = (
    (re.compile(r"utf8cpp/"), "utf8cpp",
     re.compile(r"common/src/libcommon/mrlbase/src/Unicode\.cpp$")),
    (re.compile(r"nlohmann/"), "nlohmann",
     re.compile(r"common/src/libcommon/mrlbase/mrl/Json\.h$")),
    (re.compile(r"kainjow/"), "kainjow",
     re.compile(r"common/src/libtesk5/src/reports/Template\.cpp$")),
    (re.compile(r"toml\+\+/"), "toml++",
     re.compile(r"common/src/libtesk5/src/commandline/ConfigFile\.cpp$")),
    (re.compile(r"netlink/"), "libnl",
     re.compile(r"common/src/libnativewifi/src/linux/NetlinkSocket\.cpp$")),
    (re.compile(r"CLI/"), "CLI",
     re.compile(r"(common/src/libtesk5/src|tools/(radiosim|contract))/")),
    (re.compile(r"alsa/"), "ALSA",
     re.compile(r"modules/src/diag/mrlrsignal/watch/BeeperLinux\.cpp$")),
    (re.compile(r"(gtest|gmock|support|fuzzer)/"), "test code", None),
)

INCLUDE = re.compile(
    r'^[ \t]*#[ \t]*include[ \t]*(?:<([^>\n]+)>|"([^"\n]+)"|([^\n]*))', re.MULTILINE)
# String literals come first: comment marks inside them do not begin a comment.
TEXT_OR_COMMENT = re.compile(r'"(?:\\.|[^"\\\n])*"|/\*.*?\*/|//[^\n]*', re.DOTALL)


def without_comments(text):
    """`text` with its comments gone and its lines where they were."""
    def kept(found):
        piece = found.group()
        return piece if piece.startswith('"') else "\n" * piece.count("\n")
    return TEXT_OR_COMMENT.sub(kept, text)


def includes(text):
    """Line number, header as written (None when it is a macro) and whether it is in quotes."""
    text = without_comments(text)
    for found in INCLUDE.finditer(text):
        line = text.count("\n", 0, found.start()) + 1
        yield line, found.group(1) or found.group(2), found.group(2) is not None


def component_of(path):
    """The component that the file `path` (below the root, with slashes) belongs to, or None."""
    if MODULE_WIN32.match(path) or path == MODULE_OBJECTS:
        return "module's Win32 half"
    # The innermost folder: the module's libraries lie inside the module.
    names = [name for name, (folder, _) in COMPONENTS.items()
             if name != "module's Win32 half" and path.startswith(folder + "/")]
    return max(names, key=lambda name: len(COMPONENTS[name][0]), default=None)


def room_of(root, path):
    """The room of the framework's file `path`, or None for one that lies in none."""
    inside = path.removeprefix(f"{FRAMEWORK}/").split("/")
    if inside[0] == "src":
        return inside[1] if len(inside) > 2 and inside[1] in ROOMS else None
    sources = (root / FRAMEWORK / "src").glob(f"*/{pathlib.PurePath(path).stem}.cpp")
    return next((source.parent.name for source in sources), "model")


def signal_offence(path, target_path, header):
    """What is wrong with one file of the module of levels including another, or None."""
    def room_of_signal(file):
        inside = file.removeprefix(f"{SIGNAL}/").split("/")
        return inside[0] if len(inside) > 1 else "program"
    room, target = room_of_signal(path), room_of_signal(target_path)
    if room not in SIGNAL_ROOMS:
        return f"{path} lies in no room of mrlrsignal"
    if target != room and target not in SIGNAL_ROOMS[room]:
        return f"mrlrsignal's {room} must not include its {target} ({header})"
    return None


def room_offence(root, path, target_path, header):
    """What is wrong with one file of the framework including another, or None."""
    room, target = room_of(root, path), room_of(root, target_path)
    if room is None or target is None:
        return f"{path if room is None else target_path} lies in no room of tesk5"
    if path.startswith(f"{FRAMEWORK}/tesk5/") and target_path.startswith(f"{FRAMEWORK}/src/"):
        return f"{header} is private, and this header is public"
    if target != room and target not in ROOMS[room]:
        return f"tesk5's {room} must not include its {target} ({header})"
    return None


def target_of(root, source, component, header, quoted):
    """Where `header` leads: a component and, when the file exists, its path below the root."""
    places = [source.parent] if quoted else []
    places += [root / folder for folder in COMPONENTS[component][1]]
    places += [root / folder for _, roots in COMPONENTS.values() for folder in roots]
    for place in places:
        candidate = (place / header).resolve()
        if candidate.is_file() and candidate.is_relative_to(root):
            path = candidate.relative_to(root).as_posix()
            return component_of(path), path
    for pattern, name in NAMES:
        if pattern.match(header):
            return name, None
    return None, None


def offence(root, source, header, quoted):
    """What is wrong with `source` including `header`, or None."""
    path = source.relative_to(root).as_posix()
    component = component_of(path)
    if component is None:
        return "lies in no component of the house"
    if header is None:
        return "an #include of a macro cannot be checked"
    target, target_path = target_of(root, source, component, header, quoted)
    if target is not None:
        if target == component:
            if target == "tesk5" and target_path:
                return room_offence(root, path, target_path, header)
            if path.startswith(f"{SIGNAL}/") and target == "module" and target_path:
                return signal_offence(path, target_path, header)
            return None
        if target not in ARROWS[component]:
            return f"{component} must not include {target} ({header})"
        if target_path and any(target_path.startswith(f"{r}/src/") for r in COMPONENTS[target][1]):
            return f"{header} is private to {target}"
        return None
    if target_path is not None:
        return f"{header} lies in no component of the house"
    if WIN32_HEADERS.match(header):
        if WIN32_PLACES.match(path) or MODULE_WIN32.match(path):
            return None
        return f"{header} is for the Win32 parts of the house"
    for pattern, name, places in THIRD_PARTY:
        if pattern.match(header) and not (places and places.match(path)):
            return f"{name} has no place here ({header})"
    return None


def sources(root):
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in SUFFIXES and path.is_file():
                yield path


def check(root):
    """Every offence below `root`, as lines to print."""
    root = root.resolve()
    offences = []
    for source in sources(root):
        text = source.read_text(encoding="utf-8", errors="replace")
        for line, header, quoted in includes(text):
            message = offence(root, source, header, quoted)
            if message is not None:
                offences.append(f"{source.relative_to(root).as_posix()}:{line}: {message}")
    return offences


def main(arguments=None):
    return tree_check.run(__doc__, check, arguments, lambda root: (
        None if any((root / folder).is_dir() for folder in FOLDERS)
        else f"none of {', '.join(FOLDERS)} is there"))


if __name__ == "__main__":
    sys.exit(main())
