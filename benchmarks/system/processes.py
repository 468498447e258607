"""Whole-process figures of the executable under Wine.

Figure and floor take turns in one run, and of each the lower quartile counts: what else goes on in
the machine only ever adds. Both are started by Wine's loader itself: Debian's `wine` is a shell
script in front of it, which would add the same to both.

Times are from the start of the process to its end. The executable's start ends at the first call of
the framework that the application object makes, DiagModule::setCmdLineArgs: first_call.exe is the
executable, linked so that this call ends the process.

Processor time is that of the process, user's and system's, and that of the Wine server in the
meantime: what Windows' kernel does for a process, and counts as its time, the server does here.

Memory is the private memory without mapped files, between the first scan and the end of a search
without a result. The simulator and its record of the calls are in both processes.
"""
import json
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests" / "system"))
import pe  # noqa: E402  (the path must be there first)

EXECUTABLE = ROOT / "build" / "windows" / "dist" / "mrlrantenna.k5x"
PROGRAMS = ROOT / "build" / "windows" / "benchmarks" / "bin"

# Where Debian has the loader.
LOADER = shutil.which("wine64", path="/usr/lib/wine") or shutil.which("wine")

LEAST_START = [PROGRAMS / "least_start.exe"]
FIRST_CALL = [PROGRAMS / "first_call.exe"]
LIST = [EXECUTABLE, "list"]
RUN = [EXECUTABLE, "run", "--set", "SSID=Lab", "--set", "WarningSignalStrength=40",
       "--set", "FailingSignalStrength=20"]
SEARCH = [EXECUTABLE, "run", "--set", "SSID=NowhereToBeSeen", "--set", "WarningSignalStrength=40"]
PASS, FAIL = 0, 2

PAUSES_OF_A_RUN_S = 7.0
# In the pause of the first scan, and in the last seconds of a search of 44 s.
FIRST_SCAN_S, LAST_POLLS_S = 3.0, 42.5


def same_calls(mode):
    return [PROGRAMS / "same_calls.exe", mode]


def server():
    """The process of the Wine server of this prefix."""
    prefix = f"WINEPREFIX={os.environ['WINEPREFIX']}".encode()
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if ((process / "comm").read_text().startswith("wineserver") and
                    prefix in (process / "environ").read_bytes().split(b"\0")):
                return process
        except OSError:
            pass  # it has ended, or belongs to another user
    raise RuntimeError("no Wine server runs for this prefix; ./bench starts one")


def processor_seconds(process):
    return int((process / "schedstat").read_text().split()[0]) / 1e9


def wait_until_quiet(wine_server):
    """Waits until the services that started with the server's first program are idle."""
    for _ in range(40):
        before = processor_seconds(wine_server)
        time.sleep(0.5)
        if processor_seconds(wine_server) - before < 0.001:
            return


class Cost:
    """The times of one process, in seconds."""

    def __init__(self, command, wine_server, exit_value=0, environment=None):
        with tempfile.TemporaryFile() as output:
            before = processor_seconds(wine_server)
            begin = time.perf_counter()
            process = subprocess.Popen([LOADER, *map(str, command)], stdin=subprocess.DEVNULL,
                                       stdout=output, stderr=output, env=environment)
            _, status, usage = os.wait4(process.pid, 0)
            self.wall = time.perf_counter() - begin
            process.returncode = os.waitstatus_to_exitcode(status)
            if process.returncode != exit_value:
                output.seek(0)
                raise RuntimeError(f"{command[0].name} ended with {process.returncode}: "
                                   f"{output.read().decode('utf-8', 'replace')}")
        time.sleep(0.02)  # the server clears up after the process
        self.processor = (usage.ru_utime + usage.ru_stime +
                          processor_seconds(wine_server) - before)


def in_turns(count, commands, wine_server):
    """`count` costs of each command, in turns."""
    costs = [[] for _ in commands]
    for _ in range(count):
        for command, taken in zip(commands, costs):
            taken.append(Cost(command, wine_server))
    return costs


def milliseconds(costs, what):
    taken = [1000 * getattr(cost, what) for cost in costs]
    return statistics.quantiles(taken)[0] if len(taken) > 1 else taken[0]


def imports(program):
    return set(pe.Image(program).imported_dlls())


def starts(quick, wine_server):
    if imports(LEAST_START[0]) != imports(EXECUTABLE):
        raise RuntimeError("least_start.exe does not import what the executable does: see its source")
    least, first_call, listed = in_turns(10 if quick else 60, (LEAST_START, FIRST_CALL, LIST),
                                         wine_server)
    floor = milliseconds(least, "wall")
    return {"start": {"figure": milliseconds(first_call, "wall"), "floor": floor},
            "list": {"figure": milliseconds(listed, "wall"), "floor": floor}}


def calls_of(command, folder, wine_server):
    """The functions of the simulator that a process calls, in their order."""
    trace = pathlib.Path(folder) / "calls.jsonl"
    Cost(command, wine_server, environment=dict(os.environ, RADIOSIM_TRACE=str(trace)))
    return [json.loads(line)["function"] for line in trace.read_text().splitlines()]


def runs(quick, wine_server):
    with tempfile.TemporaryDirectory() as folder:
        if (calls_of(RUN, folder, wine_server) !=
                calls_of(same_calls("run"), folder, wine_server)):
            raise RuntimeError("same_calls.exe does not call what a run calls: see its source")
    run, floor, start = in_turns(1 if quick else 7, (RUN, same_calls("run"), same_calls("start")),
                                 wine_server)
    return {"run_cpu": {"figure": milliseconds(run, "processor"),
                        "floor": milliseconds(floor, "processor")},
            "run_wall": {"figure": milliseconds(run, "wall"),
                         "floor": 1000 * PAUSES_OF_A_RUN_S + milliseconds(start, "wall")}}


def own_kilobytes(process):
    text = pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text()
    return int(re.search(r"^Anonymous: +(\d+) kB", text, re.MULTILINE)[1])


def memory():
    """The memory of both during a search. They run side by side, which does not affect memory."""
    processes, first = [], []
    begin = time.monotonic()
    for command in (SEARCH, same_calls("search")):
        processes.append(subprocess.Popen([LOADER, *map(str, command)], stdin=subprocess.DEVNULL,
                                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
    time.sleep(FIRST_SCAN_S)
    first = [own_kilobytes(process) for process in processes]
    time.sleep(max(0.0, begin + LAST_POLLS_S - time.monotonic()))
    gained = [own_kilobytes(process) - before for process, before in zip(processes, first)]
    if [process.wait() for process in processes] != [FAIL, 0]:
        raise RuntimeError("the search in vain did not end as one")
    return {"run_memory": {"figure": gained[0], "floor": gained[1]}}


def figures(quick, keys):
    """The figures among `keys` that are taken here; `quick` takes them roughly."""
    taken = {}
    if "size" in keys:
        taken["size"] = {"figure": EXECUTABLE.stat().st_size / 1e6}
    wine_server = server()
    wait_until_quiet(wine_server)
    if {"start", "list"} & set(keys):
        taken |= starts(quick, wine_server)
    if {"run_cpu", "run_wall"} & set(keys):
        taken |= runs(quick, wine_server)
    if "run_memory" in keys:
        taken |= memory()
    return {key: figure for key, figure in taken.items() if key in keys}
