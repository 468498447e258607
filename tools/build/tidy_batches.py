#!/usr/bin/env python3
"""Writes sources of a build into batches for clang-tidy, and prints the batches' names.

    tools/build/tidy_batches.py BUILD FOLDER FILE...

A batch includes the sources of one target, so that clang-tidy reads their headers once: they are
most of its work. Batches and their compile commands go to FOLDER. Files that the build in
BUILD does not compile are left out.
"""
import json
import pathlib
import shlex
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Few enough to keep both processors busy to the end.
SOURCES_OF_A_BATCH = 10


def entries_of(build):
    """The compile commands of the build by source: the first one of each."""
    found = {}
    for entry in json.loads((ROOT / build / "compile_commands.json").read_text()):
        found.setdefault(pathlib.Path(entry["file"]).resolve(), entry)
    return found


def without_files(command):
    """(target, words): the folder of the object, and the command but for source and object."""
    words = shlex.split(command)
    target = words[words.index("-o") + 1].partition(".dir/")[0]
    for option in ("-o", "-c", "-MT", "-MF"):
        if option in words:
            at = words.index(option)
            del words[at:at + 2]
    return target, tuple(words)


def batches_of(build, files):
    """(folder, command, sources) for each batch, in the order of the files."""
    entries = entries_of(build)
    groups = {}
    for file in files:
        source = pathlib.Path(file).resolve()
        if source in entries:
            entry = entries[source]
            key = (entry["directory"], *without_files(entry["command"]))
            groups.setdefault(key, []).append(source)
    for (folder, _, command), sources in groups.items():
        for begin in range(0, len(sources), SOURCES_OF_A_BATCH):
            yield folder, command, sources[begin:begin + SOURCES_OF_A_BATCH]


def main(build, folder, *files):
    folder = pathlib.Path(folder).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    commands = []
    for number, (directory, command, sources) in enumerate(batches_of(build, files)):
        batch = folder / f"batch{number}.cpp"
        batch.write_text("".join(
            f'#include "{source}" // NOLINT(bugprone-suspicious-include)\n' for source in sources))
        commands.append({"directory": directory, "file": str(batch),
                         "arguments": [*command, "-c", str(batch)]})
    (folder / "compile_commands.json").write_text(json.dumps(commands))
    print("\n".join(command["file"] for command in commands))


if __name__ == "__main__":
    main(*sys.argv[1:])
