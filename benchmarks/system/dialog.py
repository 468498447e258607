"""Figures of the dialog, on real windows under Wine.

The idle minute is measured on the shipped executable, from outside. The click is measured inside,
by bench_dialog_click.exe on a virtual clock: from outside, a click contains 350 ms of pauses, whose
scheduling varies by more than the time to be measured.
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests" / "system"))
from display import Display, Prefix, stop  # noqa: E402  (the path must be there first)
from program import EXECUTABLE, environment  # noqa: E402

PROBE = ROOT / "build" / "windows" / "dialogprobe" / "dialogprobe.exe"
CLICKS = ROOT / "build" / "windows" / "benchmarks" / "bin" / "bench_dialog_click.exe"
TITLE = "Signal Strength Test"

OPEN_SECONDS = 90
# What is made on first use has been made after two ticks of the timer and their refreshes.
WARM_UP_SECONDS = 30
IDLE_SECONDS = 90
QUICK_IDLE_SECONDS = 30
CLICK_ROUNDS = 400
QUICK_CLICK_ROUNDS = 60


def usual_room():
    """Ten networks, connected to one of them, in the list's middle."""
    networks = [{"ssid": f"Network {i}", "profile": "Home" if i == 4 else "", "signal": {
        "walk": {"start": 50, "min": 20, "max": 90, "step": 3, "intervalMs": 1000, "seed": i + 1}}}
        for i in range(10)]
    return {"interfaces": [{"connection": {"ssid": "Network 4"}, "accessPoints": networks}]}


def processor_seconds(process):
    """Processor time of a process with all its threads, user's and system's."""
    # After the name, which is in parentheses and may contain any character: state, then numbers.
    fields = (pathlib.Path("/proc") / str(process.pid) / "stat").read_text("ascii") \
        .rpartition(")")[2].split()
    user, system = fields[11:13]
    return (int(user) + int(system)) / os.sysconf("SC_CLK_TCK")


def idle(seconds):
    """Processor time of the open dialog for a minute without input."""
    display = Display()
    prefix = Prefix()
    try:
        with tempfile.TemporaryDirectory() as folder:
            scenario = pathlib.Path(folder) / "room.json"
            scenario.write_text(json.dumps(usual_room()), encoding="utf-8")
            env = environment(scenario, WINEPREFIX=str(prefix.path), DISPLAY=display.name)
            program = subprocess.Popen(
                ["wine", str(EXECUTABLE), "run", "DiversityTest", "--language", "en"], cwd=folder,
                env=env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL)
            try:
                # Ends when the dialog is there: it gets no command.
                subprocess.run(["wine", str(PROBE), "--title", TITLE, "--wait",
                                str(OPEN_SECONDS * 1000)], env=env, check=True,
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, timeout=2 * OPEN_SECONDS)
                time.sleep(WARM_UP_SECONDS)
                begin, before = time.monotonic(), processor_seconds(program)
                time.sleep(seconds)
                spent, lasted = processor_seconds(program) - before, time.monotonic() - begin
                if program.poll() is not None:
                    raise RuntimeError("the dialog did not stay open")
                return spent * 60 / lasted
            finally:
                stop(program)
    finally:
        prefix.close()
        display.close()


def click(rounds):
    """Median time from a click to the new details, in milliseconds."""
    # In the folder of the product: its texts and pictures are found there.
    output = subprocess.run(["wine", str(CLICKS), str(rounds)], cwd=EXECUTABLE.parent,
                            env=environment(), check=True, stdin=subprocess.DEVNULL,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    return json.loads(output)["medianMs"]


def figures(quick, keys):
    """The figures among `keys` that are taken here; `quick` takes them roughly."""
    taken = {}
    if "dialog_idle" in keys:
        taken["dialog_idle"] = {"figure": idle(QUICK_IDLE_SECONDS if quick else IDLE_SECONDS)}
    if "dialog_click" in keys:
        taken["dialog_click"] = {"figure": click(QUICK_CLICK_ROUNDS if quick else CLICK_ROUNDS)}
    return taken
