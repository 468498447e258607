#!/usr/bin/env python3
"""Measures every figure and its floor and prints them as a table; see docs/performance.md.

A figure comes from a Google Benchmark program of the release build (benchmarks named KEY/figure and
KEY/floor), from a Windows program or from a Python file of benchmarks/system; each kind hands over
the same: {KEY: {"figure": number, "floor": number or none}}, in the unit of the goal.
"""
import argparse
import json
import pathlib
import re
import statistics
import subprocess
import sys

from goals import GOALS

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "benchmarks" / "system"))
import dialog  # noqa: E402  (the path must be there first)
import processes  # noqa: E402

PAGE = ROOT / "docs" / "performance.md"
BEGIN, END = "<!-- figures: ./bench --record -->", "<!-- end of figures -->"
IN_NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def native(program, quick, keys):
    """The figures of one Google Benchmark program: the median of runs whose order is shuffled, so
    that figure and floor meet the same disturbances."""
    names = "|".join(re.escape(key) for key in keys)
    command = [program, f"--benchmark_filter=^({names})/", "--benchmark_format=json",
               f"--benchmark_repetitions={3 if quick else 15}",
               f"--benchmark_min_time={0.02 if quick else 0.2}",
               "--benchmark_enable_random_interleaving=true"]
    output = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                            check=True).stdout
    runs = {}
    # A program that has none of these writes nothing.
    for run in json.loads(output)["benchmarks"] if output.strip() else ():
        if run["run_type"] != "iteration":
            continue
        key, side = run["run_name"].split("/")[:2]
        # A count is in "value".
        value = run.get("value")
        if value is None:
            value = run["real_time"] * IN_NANOSECONDS[run["time_unit"]]
        runs.setdefault(key, {}).setdefault(side, []).append((value, "value" in run))
    figures = {}
    for key, sides in runs.items():
        unit = next(goal.unit for goal in GOALS if goal.key == key)
        figures[key] = {
            side: statistics.median(value for value, _ in values) /
            (1 if values[0][1] else IN_NANOSECONDS[unit])
            for side, values in sides.items()}
    return figures


def number(value):
    """`value` with three significant digits, or as a whole number from 100 on."""
    if value == 0 or abs(value) >= 100:
        return f"{value:,.0f}"
    return f"{value:.{2 if abs(value) < 10 else 1}f}"


def row(goal, figure):
    """The cells of one line, and whether its goal is met."""
    value, floor = figure["figure"], figure.get("floor")
    shown = f"{number(value)} {goal.unit}"
    if goal.ratio:
        # 0 meets a floor of 0; any other figure exceeds it.
        ratio = value / floor if floor else (0 if value == 0 else float("inf"))
        return ((goal.what, shown, f"{goal.floor}: {number(floor)} {goal.unit}", f"{ratio:.2f}",
                 f"at most {goal.ratio:g}", "yes" if ratio <= goal.ratio else "NO"),
                ratio <= goal.ratio)
    met = value <= goal.limit
    return ((goal.what, shown, "", "", f"at most {goal.limit:g} {goal.unit}",
             "yes" if met else "NO"), met)


HEAD = ("what", "figure", "floor", "ratio", "goal", "met")


def as_page(rows):
    lines = ["| " + " | ".join(cells) + " |" for cells in (HEAD, ("---",) * len(HEAD), *rows)]
    return "\n".join(lines)


def as_text(cells):
    what, figure, floor, ratio, goal, met = cells
    lines = f"{what}\n    {figure}"
    if floor:
        lines += f", {ratio} times its floor ({floor})"
    return f"{lines}; {goal}: {'met' if met == 'yes' else 'MISSED'}"


def record(rows):
    text = PAGE.read_text(encoding="utf-8")
    before, _, rest = text.partition(BEGIN)
    _, _, after = rest.partition(END)
    PAGE.write_text(f"{before}{BEGIN}\n{as_page(rows)}\n{END}{after}", encoding="utf-8")


def main(arguments=None):
    parser = argparse.ArgumentParser(prog="bench", description="Takes every figure beside its floor.",
                                     epilog="Ends with 0 when every goal is met, 1 when one is missed.")
    parser.add_argument("keys", metavar="KEY", nargs="*", help="only these figures: " +
                        ", ".join(goal.key for goal in GOALS))
    parser.add_argument("--quick", action="store_true", help="fewer repetitions, rougher figures")
    parser.add_argument("--record", action="store_true",
                        help="put the table into docs/performance.md; takes all figures")
    options = parser.parse_args(arguments)
    known = {goal.key for goal in GOALS}
    for key in options.keys:
        if key not in known:
            parser.error(f'"{key}" is no figure; there are {", ".join(sorted(known))}')
    if options.record and (options.keys or options.quick):
        parser.error("--record takes every figure in full; leave the rest out")
    keys = options.keys or [goal.key for goal in GOALS]

    figures = {}
    for program in sorted((ROOT / "build" / "bench" / "benchmarks" / "bin").glob("bench_*")):
        figures.update(native(program, options.quick, keys))
    for measurer in (processes, dialog):
        figures.update(measurer.figures(options.quick, keys))

    rows, missed = [], 0
    for goal in GOALS:
        if goal.key not in figures:
            continue
        cells, met = row(goal, figures[goal.key])
        print(as_text(cells), flush=True)
        rows.append(cells)
        missed += not met
    if options.record:
        record(rows)
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
