#!/usr/bin/env python3
"""Packs the built programs into the package for Debian: make_deb.py BUILD_FOLDER OUTPUT_FOLDER

The package depends on nothing but the commit, the built files and the installed Debian packages:
its files carry the commit's time and fixed permissions, and belong to root.
"""
import gzip
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import completion
import components
import help_pages
import make_package
import man_page
import pages
from components import FOLDER, PackagingError
from make_package import ROOT, WRONG_USAGE

# What each program does, in some words.
SUMMARIES = {"mrlrantenna": "test wireless cards and their antennas",
             "mrlrsignal": "measure levels of wireless networks in dBm"}
PAPERS = "usr/share/doc/mrlrantenna"
CONTROL = FOLDER / "debian"
# Maintainer scripts, which dpkg starts.
SCRIPTS = ("config", "postinst", "postrm")


def place_of(program):
    """Where a program is in the package."""
    return f"usr/bin/{program}"


def texts_of(program):
    """Where a program's texts are in the package."""
    return f"usr/share/{program}"


def version(dist):
    """The product's version, which all programs have in common: (number, build)."""
    versions = {version_of(dist / program) for program in SUMMARIES}
    if len(versions) > 1:
        raise PackagingError(f"the programs in {dist} are not of one version: build again")
    return versions.pop()


def version_of(program):
    """The version that a program says: (number, build)."""
    said = _said(program, "--version")
    found = re.fullmatch(rf"{program.name} (\d+\.\d+) \(build (\d+)\)\n", said)
    if not found:
        raise PackagingError(f"{program} does not say its version: {said!r}")
    return found[1], found[2]


def _said(program, *arguments):
    """What the program writes, in English."""
    if not program.is_file():
        raise PackagingError(f"{program} is missing: build the preset linux first")
    return subprocess.run([str(program), *arguments], stdout=subprocess.PIPE, check=False,
                          env=dict(os.environ, LC_ALL="C.UTF-8")).stdout.decode("utf-8")


def _compressed(content):
    return gzip.compress(content, 9, mtime=0)


def _completion(program, overview, commands, languages):
    """The completion knows the names of tests and parameters, as `list` has them."""
    listed = _said(program, "list").split("\n\n")[0].split("\n")
    tests = [line.split()[0] for line in listed if re.match(r"  \S", line)]
    parameters = [line.split()[1] for line in listed if re.match(r"    parameter:", line)]
    return completion.make(program.name, overview, commands, tests, parameters, languages)


def _copyright(licence, in_programs):
    """The licences of the programs and of what is compiled into them."""
    text = "mrlrantenna\n\n" + licence
    for component in in_programs:
        text += (f"\n{'-' * 70}\nThe programs contain {component['name']}, from Debian's package "
                 f"{component['package']}, licence {component['licence']}:\n\n"
                 + components.notice(component))
    return text.encode("utf-8")


def _changelog(full_version, made_of):
    return (f"mrlrantenna ({full_version}) unstable; urgency=medium\n\n"
            f"  * {make_package.origin_line(made_of)}\n\n"
            f" -- {_field('Maintainer')}  {made_of.time:%a, %d %b %Y %H:%M:%S +0000}\n"
            ).encode("utf-8")


def _field(name):
    """A field of the template of the package's description."""
    template = (CONTROL / "control").read_text(encoding="utf-8")
    return re.search(rf"^{name}: (.*)$", template, re.MULTILINE)[1]


def _texts(program):
    """{place in the package: content} of a program's texts in each language."""
    return {f"{texts_of(program)}/{name.removeprefix('resources/')}": content
            for part in (program, *make_package.SHARED_RESOURCES)
            for name, content in make_package.files_below(f"resources/{part}/texts").items()}


def _rights(program, texts):
    """What doctor says in English of a missing capability, as of the installed program."""
    english = json.loads(texts[f"{texts_of(program)}/networkadapters/texts/en.json"])
    return english["DOCTOR_CAPABILITY_MISSING"].format(Program=f"/{place_of(program)}")


def _documents():
    """The pages, with what they link to, in one folder of documents."""
    files = {}
    for folder in make_package.SHIPPED_FOLDERS:
        files.update(make_package.files_below(folder))
    for name in make_package.SHIPPED_FILES:
        files[name] = (ROOT / name).read_bytes()
    pages.add({name: (ROOT / "docs" / f"{name}.md").read_text(encoding="utf-8")
               for name in pages.PAGES}, files)
    return {f"{PAPERS}/{name}": content for name, content in files.items()}


def contents(build, made_of):
    """(version of the package, {place in it: content})."""
    number, build_number = version(build / "dist")
    full_version = f"{number}.{build_number}" + ("+modified" if made_of.modified else "")
    in_programs = components.header_only(
        components.table(),
        (ROOT / "cmake" / "HeaderOnlyLibraries.cmake").read_text(encoding="utf-8"))
    files = {
        **_documents(),
        f"{PAPERS}/copyright": _copyright((ROOT / "LICENSE").read_text(encoding="utf-8"),
                                          in_programs),
        f"{PAPERS}/changelog.gz": _compressed(_changelog(full_version, made_of)),
    }
    for name, summary in SUMMARIES.items():
        program = build / "dist" / name
        overview, commands = help_pages.read(program)
        texts = _texts(name)
        languages = sorted({pathlib.PurePath(place).stem for place in texts})
        files.update(texts)
        files[place_of(name)] = program.read_bytes()
        files[f"usr/share/man/man1/{name}.1.gz"] = _compressed(man_page.make(
            name, summary, overview, commands, f"{number} build {build_number}",
            f"{made_of.time:%Y-%m-%d}", _rights(name, texts)))
        files[f"usr/share/bash-completion/completions/{name}"] = _completion(
            program, overview, commands, languages)
    return full_version, files


def dependencies(programs):
    """What the programs' libraries are in, with the versions that they need."""
    with tempfile.TemporaryDirectory() as folder:
        # The tool reads a source package's description, of which it needs the name alone.
        description = pathlib.Path(folder) / "debian" / "control"
        description.parent.mkdir()
        description.write_text("Source: mrlrantenna\n\nPackage: mrlrantenna\nArchitecture: any\n",
                               encoding="ascii")
        run = subprocess.run(["dpkg-shlibdeps", "-O", *(str(program.resolve()) for program in programs)], cwd=folder,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    found = re.match(r"shlibs:Depends=(.+)\n", run.stdout.decode("utf-8"))
    if run.returncode != 0 or not found:
        raise PackagingError("dpkg-shlibdeps does not name the libraries' packages: "
                             + run.stderr.decode("utf-8", "replace").strip().replace("\n", "; "))
    return found[1]


def _write(path, content, mode, seconds):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)
    path.chmod(mode)
    os.utime(path, (seconds, seconds))


def pack(full_version, files, depends, time, package):
    """Writes the package of {place: content} to the path `package`."""
    seconds = int(time.timestamp())
    size = sum(-(-len(content) // 1024) for content in files.values())
    control = (CONTROL / "control").read_text(encoding="utf-8").format(
        version=full_version, depends=depends, size=size)
    sums = "".join(f"{hashlib.md5(files[name]).hexdigest()}  {name}\n" for name in sorted(files))
    executables = set(map(place_of, SUMMARIES))
    with tempfile.TemporaryDirectory() as folder:
        stage = pathlib.Path(folder) / "stage"
        for name, content in files.items():
            _write(stage / name, content, 0o755 if name in executables else 0o644,
                   seconds)
        for name, content in (("control", control.encode("utf-8")),
                              ("md5sums", sums.encode("ascii")),
                              *((path.name, path.read_bytes()) for path in CONTROL.iterdir()
                                if path.name != "control")):
            _write(stage / "DEBIAN" / name, content, 0o755 if name in SCRIPTS else 0o644, seconds)
        for path in (stage, *stage.rglob("*")):
            if path.is_dir():
                path.chmod(0o755)
                os.utime(path, (seconds, seconds))
        run = subprocess.run(
            ["dpkg-deb", "--root-owner-group", "--uniform-compression", "-Zxz",
             "--threads-max=1", "--build",
             str(stage), str(package)],
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False,
            env=dict(os.environ, SOURCE_DATE_EPOCH=str(seconds)))
    if run.returncode != 0:
        raise PackagingError("dpkg-deb does not make the package: "
                             + run.stderr.decode("utf-8", "replace").strip().replace("\n", "; "))


def main(arguments):
    if len(arguments) != 2:
        print("usage: make_deb.py BUILD_FOLDER OUTPUT_FOLDER", file=sys.stderr)
        return WRONG_USAGE
    build, output = (pathlib.Path(argument) for argument in arguments)
    try:
        made_of = make_package.origin(ROOT)
        full_version, files = contents(build, made_of)
        output.mkdir(parents=True, exist_ok=True)
        package = output / f"mrlrantenna_{full_version}_amd64.deb"
        unfinished = output / f"{package.name}.tmp"
        programs = [build / "dist" / program for program in SUMMARIES]
        pack(full_version, files, dependencies(programs), made_of.time, unfinished)
    except PackagingError as error:
        print(f"package: {error}.", file=sys.stderr)
        return WRONG_USAGE
    unfinished.replace(package)
    data = package.read_bytes()
    print(f"{package}: {len(files)} files, {len(data)} bytes, "
          f"SHA-256 {hashlib.sha256(data).hexdigest()}")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
