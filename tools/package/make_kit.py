#!/usr/bin/env python3
"""Packs the kit for a real PC: make_kit.py BUILD_FOLDER CHECKED_BUILD_FOLDER OUTPUT_FOLDER

The kit has the package, the program `contract` and the test programs of the checked build. It is
packed as the package is, and depends on nothing else either.
"""
import pathlib
import sys

import make_package
from make_package import ROOT, WRONG_USAGE, PackagingError

KIT = ROOT / "tools" / "contract" / "kit"
PROGRAMS = ("test_mrl", "test_libmfc", "test_libuikit", "test_mrlrantenna",
            "test_mrlrantenna_dialog")
# What the test programs look for beside their own folder.
BESIDE = ("helpers", "shipped")
TEST_LIBRARY_LICENCE = pathlib.Path("/usr/share/doc/googletest/copyright")


def _built(path):
    if not path.is_file():
        raise PackagingError(f"{path} is missing: build it first")
    return path.read_bytes()


def contents(build, checked, made_of):
    """(name of the kit, {name in its folder: content})."""
    name, package = make_package.contents(build, made_of)
    files = {f"mrlrantenna/{entry}": content for entry, content in package.items()}
    files["contract.exe"] = _built(build / "contract" / "contract.exe")
    for program in PROGRAMS:
        files[f"tests/bin/{program}.exe"] = _built(checked / "tests" / "bin" / f"{program}.exe")
    for folder in BESIDE:
        for path in (checked / "tests" / folder).rglob("*"):
            if path.is_file():
                files[path.relative_to(checked).as_posix()] = path.read_bytes()
    number, build_number = make_package.version(build / "dist")
    title = f"{number} build {build_number}"
    values = {"version": title,
              "underline": "=" * len(f"The kit for a real PC: mrlrantenna {title}"),
              "origin": make_package.origin_line(made_of),
              "programs": " ".join(PROGRAMS),
              "reports": " ".join(f"{program}.json" for program in PROGRAMS)}
    for template in ("README.txt", "run-all.cmd"):
        text = (KIT / template).read_text(encoding="ascii")
        files[template] = make_package.with_windows_line_ends(text.format(**values))
    files["licences/googletest.txt"] = make_package.with_windows_line_ends(
        TEST_LIBRARY_LICENCE.read_text(encoding="utf-8"))
    return name.replace("mrlrantenna-", "mrlrantenna-contract-", 1), files


def main(arguments):
    if len(arguments) != 3:
        print("usage: make_kit.py BUILD_FOLDER CHECKED_BUILD_FOLDER OUTPUT_FOLDER",
              file=sys.stderr)
        return WRONG_USAGE
    build, checked, output = (pathlib.Path(argument) for argument in arguments)
    return make_package.make(output, lambda made_of: contents(build, checked, made_of))


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
