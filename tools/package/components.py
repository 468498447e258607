"""The third-party code in the executables: one table, compared with the records of the build.

A library that the build uses and the table does not know stops the packaging, so that no program
is handed out without its licences.
"""
import fnmatch
import json
import pathlib
import re
import subprocess

FOLDER = pathlib.Path(__file__).resolve().parent
LICENCES = FOLDER / "licences"


class PackagingError(Exception):
    """The package cannot be made; the text names what is wrong and what to do about it."""


def table():
    """The table of components, as written."""
    return json.loads((FOLDER / "components.json").read_text(encoding="utf-8"))["components"]


def header_only_folders(cmake_text):
    """{header folder: Debian package} of every header-only library that the build declares."""
    calls = re.findall(r"^mrlr_(?:patched_)?header_only\(\s*\S+\s+(\S+)\s+([^\s)]+)", cmake_text,
                       re.MULTILINE)
    return dict(calls)


def linked_members(map_text):
    """Every `archive(member)` of the system's that the linker map says was taken in."""
    # The list at the map's beginning: a line for each member, then one indented, its referrer.
    taken = map_text.split("\n\n", 2)[1] if map_text.startswith("Archive member") else ""
    return sorted({line for line in taken.splitlines() if re.match(r"/.*\.a\(.*\)$", line)})


def header_only(components, cmake_text):
    """The components of the table that the build uses as header-only libraries."""
    by_headers = {entry["headers"]: entry for entry in components if "headers" in entry}
    for folder, package in header_only_folders(cmake_text).items():
        entry = by_headers.get(folder)
        if entry is None or entry["package"] != package:
            raise PackagingError(
                f"cmake/HeaderOnlyLibraries.cmake uses {folder} of {package}, which "
                "tools/package/components.json does not have: add it there, with its licence")
    folders = header_only_folders(cmake_text)
    return [entry for entry in components if entry.get("headers") in folders]


def used(components, cmake_text, map_text):
    """The components of the table that are in an executable, in the table's order."""
    found = {entry["name"] for entry in header_only(components, cmake_text)}
    members = linked_members(map_text)
    if not members:
        raise PackagingError("the linker's map names no library: build the executables again")
    for member in members:
        entry = next((entry for entry in components
                      if any(fnmatch.fnmatchcase(member, pattern)
                             for pattern in entry.get("linked", ()))), None)
        if entry is None:
            raise PackagingError(
                f"{member} is linked into the executable, and tools/package/components.json does "
                "not say whose it is: add it there, with its licence")
        found.add(entry["name"])
    return [entry for entry in components if entry["name"] in found]


def notice(component):
    """The text of a component's licence."""
    path = LICENCES / component["notice"]
    if not path.is_file():
        raise PackagingError(f"the licence of {component['name']} is missing: write {path}")
    return path.read_text(encoding="utf-8")


def debian_versions(packages):
    """{package: (version, architecture)} as installed."""
    query = subprocess.run(
        ["dpkg-query", "-W", "-f", "${Package}\t${Version}\t${Architecture}\n", *sorted(packages)],
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False, text=True)
    versions = {}
    for line in query.stdout.splitlines():
        name, version, architecture = line.split("\t")
        versions[name] = version, architecture
    for package in sorted(packages):
        if not versions.get(package, ("",))[0]:
            raise PackagingError(
                f"the version of Debian's {package} is unknown: install the package")
    return versions
