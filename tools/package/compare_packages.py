#!/usr/bin/env python3
"""Compares two packages byte for byte: compare_packages.py FIRST SECOND

Ends with 0 when they are equal; otherwise with 1, having named every entry that differs.
"""
import io
import pathlib
import subprocess
import sys
import tarfile
import zipfile


def _files_of_tar(package, part, folder):
    """{name: content} of a part of a Debian package."""
    stream = subprocess.run(["dpkg-deb", part, str(package)], stdout=subprocess.PIPE,
                            check=True).stdout
    with tarfile.open(fileobj=io.BytesIO(stream)) as archive:
        return {folder + entry.name.removeprefix("./"): archive.extractfile(entry).read()
                for entry in archive if entry.isfile()}


def _files(package):
    """{name: content} of a package."""
    if package.suffix == ".deb":
        return {**_files_of_tar(package, "--ctrl-tarfile", "DEBIAN/"),
                **_files_of_tar(package, "--fsys-tarfile", "")}
    with zipfile.ZipFile(package) as archive:
        return {name: archive.read(name) for name in archive.namelist()}


def differences(first, second):
    """A line for everything that differs between two packages; none when they are equal."""
    names = [] if first.name == second.name else [f"names: {first.name}, {second.name}"]
    if first.read_bytes() == second.read_bytes():
        return names
    lines = []
    ones, others = _files(first), _files(second)
    for name in sorted(set(ones) ^ set(others)):
        lines.append(f"{name}: only in the {'first' if name in ones else 'second'}")
    for name in sorted(set(ones) & set(others)):
        left, right = ones[name], others[name]
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
