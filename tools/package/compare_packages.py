#!/usr/bin/env python3
"""Compares two packages byte for byte: compare_packages.py FIRST SECOND

Ends with 0 when they are equal; otherwise with 1, having named every entry that differs.
"""
import pathlib
import sys
import zipfile


def differences(first, second):
    """A line for everything that differs between two packages; none when they are equal."""
    names = [] if first.name == second.name else [f"names: {first.name}, {second.name}"]
    if first.read_bytes() == second.read_bytes():
        return names
    lines = []
    with zipfile.ZipFile(first) as one, zipfile.ZipFile(second) as other:
        ones, others = one.namelist(), other.namelist()
        for name in sorted(set(ones) ^ set(others)):
            lines.append(f"{name}: only in the {'first' if name in ones else 'second'}")
        for name in sorted(set(ones) & set(others)):
            left, right = one.read(name), other.read(name)
            if left != right:
                at = next((index for index, pair in enumerate(zip(left, right))
                           if pair[0] != pair[1]), min(len(left), len(right)))
                lines.append(f"{name}: {len(left)} and {len(right)} bytes, "
                             f"first difference at {at:#x}")
    return names + (lines or ["the same files, packed differently"])


def main(arguments):
    if len(arguments) != 2:
        print("usage: compare_packages.py FIRST SECOND", file=sys.stderr)
        return 64
    first, second = (pathlib.Path(argument) for argument in arguments)
    lines = differences(first, second)
    for line in lines:
        print(f"not reproducible: {line}", file=sys.stderr)
    if lines:
        print(f"compare {first} and {second}", file=sys.stderr)
        return 1
    print(f"reproducible: two builds made the same {first.name}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
