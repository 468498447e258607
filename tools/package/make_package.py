#!/usr/bin/env python3
"""Packs a built tree into the zip for Windows: make_package.py BUILD_FOLDER OUTPUT_FOLDER

The zip depends on nothing but the commit, the built files and the installed Debian packages: entries
are sorted, carry the commit's time and fixed permissions. All of them are in one folder with the
zip's name: some unpackers put them where the zip is.
"""
import collections
import datetime
import hashlib
import io
import os
import pathlib
import subprocess
import sys
import zipfile

import components
import pages
import sbom
from components import PackagingError

ROOT = pathlib.Path(__file__).resolve().parents[2]
# The programs, the first of which names the package.
PROGRAMS = ("mrlrantenna", "mrlrsignal")
BILL = "mrlrantenna.cdx.json"
# The parts of resources/ that every program has, beside the one of its name.
SHARED_RESOURCES = ("networkadapters", "tesk5")
# Shipped as they are, in the same places as in the source tree: the pages name these places.
SHIPPED_FOLDERS = ("docs/images", "docs/schemas", "examples")
SHIPPED_FILES = ("tests/structure/check_texts.py", "tests/structure/tree_check.py")
# The earliest time that a zip can hold, for a tree without a commit.
ZIP_EPOCH = datetime.datetime(1980, 1, 1, tzinfo=datetime.timezone.utc)
WRONG_USAGE = 64

# commit: its hash, None when unknown; modified: the tree is not exactly that commit; time: in UTC.
Origin = collections.namedtuple("Origin", "commit modified time")


def _git(root, *arguments):
    # No optional locks: another Git command may be running in the same tree.
    run = subprocess.run(["git", "-C", str(root), *arguments], stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, check=False,
                         env=dict(os.environ, GIT_OPTIONAL_LOCKS="0", LC_ALL="C"))
    if run.returncode != 0:
        raise PackagingError("Git does not tell the commit: "
                             + run.stderr.decode("utf-8", "replace").strip().replace("\n", "; "))
    return run.stdout.decode("utf-8", "replace")


def origin(root):
    """Which commit the tree at `root` is, and whether it is exactly that."""
    if not (root / ".git").exists():
        return Origin(None, True, ZIP_EPOCH)
    commit, seconds = _git(root, "log", "-1", "--no-show-signature", "--format=%H %ct").split()
    # An ignored file in a folder that is shipped would be shipped as well.
    changes = (_git(root, "status", "--porcelain", "--untracked-files=normal")
               + _git(root, "status", "--porcelain", "--ignored", "--", "resources",
                      *SHIPPED_FOLDERS))
    time = datetime.datetime.fromtimestamp(int(seconds), datetime.timezone.utc)
    return Origin(commit, bool(changes), time)


def executable(program):
    """The name of a program's file."""
    return f"{program}.k5x"


def version(dist):
    """The product's version, which all programs have in common: (name, build)."""
    versions = {version_of(dist / executable(program)) for program in PROGRAMS}
    if len(versions) > 1:
        raise PackagingError(f"the programs in {dist} are not of one version: build again")
    return versions.pop()


def version_of(program):
    """The version in a program's own version resource: (name, build)."""
    key = "ProductVersion\0".encode("utf-16-le")
    image = program.read_bytes()
    begin = image.find(key)
    if begin >= 0:
        begin += len(key)
        # Padding may lie between a name and its value.
        text = image[begin:begin + 128].decode("utf-16-le", "replace").lstrip("\0").split("\0")[0]
        number, separator, build = text.partition(" build ")
        if separator and number.replace(".", "").isdigit() and build.isalnum():
            return number, build
    raise PackagingError(f"{program} has no version such as \"6.5 build 000000001\": "
                         f"see {program.stem}.rc")


def with_windows_line_ends(text):
    """The bytes of a text for Windows, UTF-8."""
    return text.replace("\r\n", "\n").replace("\n", "\r\n").encode("utf-8")


def start_script(program):
    """The bytes of the script that starts the program from its folder."""
    template = (components.FOLDER / "start.cmd").read_text(encoding="ascii")
    return with_windows_line_ends(template.replace("{program}", program))


def files_below(folder):
    """{name in the tree: content} of every file in a folder of the source tree."""
    return {path.relative_to(ROOT).as_posix(): path.read_bytes()
            for path in (ROOT / folder).rglob("*") if path.is_file()}


def _built_files(dist):
    """{name: content} of the built tree, which has to be the executables and their resources."""
    for program in PROGRAMS:
        if not (dist / executable(program)).is_file():
            raise PackagingError(f"{dist / executable(program)} is missing: build the target "
                                 f"{program} first")
    files = {path.relative_to(dist).as_posix(): path.read_bytes()
             for path in dist.rglob("*") if path.is_file()}
    resources = {name: content for part in (*PROGRAMS, *SHARED_RESOURCES)
                 for name, content in files_below(f"resources/{part}").items()}
    executables = set(map(executable, PROGRAMS))
    shipped = {name: content for name, content in files.items() if name not in executables}
    different = sorted(name for name in shipped.keys() | resources.keys()
                       if shipped.get(name) != resources.get(name))
    if different:
        raise PackagingError(f"{dist} does not have the resources of the source tree: "
                             f"{different[0]} differs; build again")
    return files


def origin_line(made_of):
    """Which commit a package is of, as a sentence."""
    if made_of.commit is None:
        return "From a source tree without its history; not a release."
    line = f"From commit {made_of.commit[:12]} of {made_of.time:%Y-%m-%d}"
    return line + (", with changes that are not committed; not a release." if made_of.modified
                   else ".")


def _components(build):
    """The third-party components in any of the programs, in the table's order."""
    table = components.table()
    cmake_text = (ROOT / "cmake" / "HeaderOnlyLibraries.cmake").read_text(encoding="utf-8")
    found = set()
    for program in PROGRAMS:
        map_file = build / f"{program}.map"
        if not map_file.is_file():
            raise PackagingError(f"{map_file} is missing: build the target {program} again")
        map_text = map_file.read_text(encoding="utf-8", errors="replace")
        found |= {entry["name"] for entry in components.used(table, cmake_text, map_text)}
    return [entry for entry in table if entry["name"] in found]


def contents(build, made_of):
    """(name of the package, {name in its folder: content})."""
    dist = build / "dist"
    files = _built_files(dist)
    for folder in SHIPPED_FOLDERS:
        files.update(files_below(folder))
    for name in SHIPPED_FILES:
        files[name] = (ROOT / name).read_bytes()
    pages.add({name: (ROOT / "docs" / f"{name}.md").read_text(encoding="utf-8")
               for name in pages.PAGES}, files)
    number, build_number = version(dist)
    full_version = f"{number}.{build_number}"

    in_programs = _components(build)
    for component in in_programs:
        files[f"licences/{component['notice']}"] = with_windows_line_ends(
            components.notice(component))
    for program in PROGRAMS:
        files[f"{program}.cmd"] = start_script(program)
    files["LICENSE.txt"] = with_windows_line_ends((ROOT / "LICENSE").read_text(encoding="utf-8"))
    title = f"{number} build {build_number}"
    readme = (components.FOLDER / "README.txt").read_text(encoding="utf-8")
    files["README.txt"] = with_windows_line_ends(readme.format(
        version=title, underline="=" * len(f"mrlrantenna {title}"), origin=origin_line(made_of)))

    versions = components.debian_versions(
        {component["package"] for component in in_programs} | set(sbom.BUILD_TOOLS))
    files[BILL] = sbom.make(full_version, made_of, in_programs, versions, files)
    suffix = "-modified" if made_of.modified else ""
    return f"mrlrantenna-{full_version}-win64{suffix}", files


def packed(folder, files, time):
    """The zip's bytes: `files` in one folder."""
    stream = io.BytesIO()
    with zipfile.ZipFile(stream, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name in sorted(files):
            entry = zipfile.ZipInfo(f"{folder}/{name}", max(time, ZIP_EPOCH).timetuple()[:6])
            entry.create_system = 3  # Unix, for the permissions; Windows ignores them
            program = name in map(executable, PROGRAMS)
            entry.external_attr = (0o100755 if program else 0o100644) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, files[name])
    return stream.getvalue()


def make(output, contents_of):
    """Writes the zip of what `contents_of(origin)` gives into `output`; returns the exit value."""
    try:
        made_of = origin(ROOT)
        name, files = contents_of(made_of)
    except PackagingError as error:
        print(f"package: {error}.", file=sys.stderr)
        return WRONG_USAGE
    data = packed(name, files, made_of.time)
    output.mkdir(parents=True, exist_ok=True)
    package = output / f"{name}.zip"
    unfinished = output / f"{name}.zip.tmp"
    unfinished.write_bytes(data)
    unfinished.replace(package)
    if made_of.modified:
        print("package: the tree is not exactly a commit, and the package says so; "
              "commit first for one to hand out.", file=sys.stderr)
    print(f"{package}: {len(files)} files, {len(data)} bytes, "
          f"SHA-256 {hashlib.sha256(data).hexdigest()}")
    return 0


def main(arguments):
    if len(arguments) != 2:
        print("usage: make_package.py BUILD_FOLDER OUTPUT_FOLDER", file=sys.stderr)
        return WRONG_USAGE
    build, output = (pathlib.Path(argument) for argument in arguments)
    return make(output, lambda made_of: contents(build, made_of))


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
