"""Boots the machine, runs cases in it and brings their results back, within a time limit."""
import dataclasses
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import time

from image import ImageError, ROOT, image

SCENES = pathlib.Path(__file__).resolve().parent / "scenes"
QEMU = "qemu-system-x86_64"
# One processor, emulated: KVM is often missing, and with more emulated processors tools hung. The
# machine's time is the number of its instructions, and passes at once while it has nothing to do: a
# busy host changes no result, and pauses cost no time. A panic ends QEMU instead of starting again.
COMMAND = (QEMU, "-accel", "tcg", "-smp", "1", "-m", "768", "-cpu", "qemu64,+rdrand",
           "-icount", "shift=1,sleep=off", "-rtc", "clock=vm",
           "-nodefaults", "-no-user-config", "-display", "none", "-no-reboot")
# Without the periodic tick the time would jump far ahead while the machine waits for a file of the
# host.
KERNEL_COMMAND_LINE = "console=ttyS0 quiet nohz=off panic=-1 oops=panic random.trust_cpu=on"
# How `timeout` ends when it kills, itself included.
KILLED = (-signal.SIGKILL, 128 + signal.SIGKILL)
LAST_LINE = "radiovm: the end"


class MachineError(Exception):
    """Why the cases did not run to their end, and what to do about it; one line."""


@dataclasses.dataclass
class Case:
    """One case as the machine reports it; without an end it was running when the machine ended."""
    name: str
    begun: float  # seconds since the machine's start
    ended: float | None = None
    exit: int | None = None


@dataclasses.dataclass
class Results:
    """What came back: a folder with one folder for each case, and the cases."""
    folder: pathlib.Path
    cases: list[Case]
    seconds: float


def known_cases():
    """What each case does, by its name."""
    return {path.name: path.read_text(encoding="utf-8").splitlines()[0].removeprefix("# ")
            for path in sorted((SCENES / "cases").iterdir())}


def _cases(folder):
    """The cases that began, in their order."""
    cases = []
    for begun in folder.glob("*/begun"):
        case = Case(begun.parent.name, float(begun.read_text(encoding="utf-8") or 0))
        ended = begun.parent / "ended"
        if ended.exists():
            seconds, code = ended.read_text(encoding="utf-8").split()
            case.ended, case.exit = float(seconds), int(code)
        cases.append(case)
    return sorted(cases, key=lambda case: (case.begun, case.name))


def _share(files, names):
    """Fills a folder that the machine sees as /host."""
    share = pathlib.Path(tempfile.mkdtemp(prefix="radiovm-"))
    share.chmod(0o755) # a case runs without privileges
    shutil.copytree(SCENES, share / "scenes")
    (share / "files").mkdir()
    for source in files:
        if source.is_dir():
            shutil.copytree(source, share / "files", dirs_exist_ok=True)
        else:
            shutil.copy(source, share / "files")
    (share / "results").mkdir()
    (share / "cases").write_text(" ".join(names), encoding="utf-8")
    return share


def _boot(folder, share, console, limit):
    """Runs QEMU to its end; returns whether it ended by itself."""
    if shutil.which(QEMU) is None:
        raise MachineError(f"{QEMU} is missing: install the package qemu-system-x86")
    # The limit holds when this process is ended too.
    command = ["timeout", "--foreground", "--signal=KILL", str(limit), *COMMAND,
               "-kernel", str(folder / "kernel"), "-initrd", str(folder / "initrd"),
               "-append", KERNEL_COMMAND_LINE, "-serial", f"file:{console}", "-virtfs",
               f"local,path={share},mount_tag=host,security_model=none,id=host"]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          check=False)
    if done.returncode in KILLED:
        return False
    if done.returncode != 0:
        reason = (done.stderr.strip().splitlines() or [f"exit value {done.returncode}"])[-1]
        raise MachineError(f"{QEMU} failed ({reason}): install the package qemu-system-x86 of "
                           "Debian 12, and look whether 1 GiB of memory is free")
    return True


def _complaint(cases, console, ended, limit):
    """The line that says what went wrong; None when all cases came to their end."""
    text = console.read_text(encoding="utf-8", errors="replace") if console.exists() else ""
    running = [case.name for case in cases if case.ended is None]
    during = f" during {', '.join(running)}" if running else ""
    panic = re.search(r"Kernel panic - not syncing: (.*)", text)
    if panic:
        return f"the machine's kernel panicked{during} ({panic.group(1).strip()}): see {console}"
    if not ended:
        return (f"the machine did not end within {limit:.0f} s{during or ' while it started'}: "
                f"see {console}, or give it more time")
    if LAST_LINE not in text:
        return f"the machine ended before its cases{during}: see {console}"
    if running:
        return f"{running[0]} did not come to its end: see {console}"
    said = re.search(r"^radiovm: (?!the end)(.*)$", text, re.MULTILINE)
    return f"{said.group(1).strip()}: see {console}" if said else None


def run(results, files=(), names=(), limit=300.0):
    """Boots the machine and runs the named cases, or all.

    `results`: the folder that gets what the cases leave, and `console`; it is emptied before.
    `files`: files, and folders whose contents, the cases find in /files.
    `limit`: seconds after which the machine is ended, whatever it does.
    Failure: ImageError, MachineError; what has come back until then is in `results`.
    """
    start = time.monotonic()
    folder = image()
    results = pathlib.Path(results)
    shutil.rmtree(results, ignore_errors=True)
    results.mkdir(parents=True)
    console = results / "console"
    share = _share([pathlib.Path(path) for path in files], names)
    try:
        ended = _boot(folder, share, console, limit)
        shutil.copytree(share / "results", results, dirs_exist_ok=True, symlinks=True)
    finally:
        shutil.rmtree(share, ignore_errors=True)
    cases = _cases(results)
    complaint = _complaint(cases, console, ended, limit)
    if complaint:
        raise MachineError(complaint)
    return Results(results, cases, time.monotonic() - start)


__all__ = ["Case", "ImageError", "MachineError", "ROOT", "Results", "run"]
