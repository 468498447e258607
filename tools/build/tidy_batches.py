#!/usr/bin/env python3
"""Writes the batches in which clang-tidy reads sources of a build.

    tools/build/tidy_batches.py BUILD FOLDER FILE...

The batches are those of the build in the folder BUILD, less the files that are not named. FOLDER
gets them, their compile commands and those of each file by itself, and two lists of names: `batches`,
and `sources`, the files that the build compiles.
"""
import json
import pathlib
import re
import shlex
import sys


def without_files(command):
    """The words of a compile command but for what it reads and writes."""
    words = shlex.split(command)
    for option in ("-o", "-c", "-MT", "-MF"):
        if option in words:
            at = words.index(option)
            del words[at:at + 2]
    return words


def sources_of(entry):
    """What a compile command compiles: the sources of a batch, or one."""
    file = pathlib.Path(entry["file"])
    if file.parent.name == "Unity":
        return re.findall(r'^#include "(.*)"$', file.read_text(encoding="utf-8"), re.MULTILINE)
    return [str(file)]


def main(build, folder, *files):
    folder = pathlib.Path(folder).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    names = {str(pathlib.Path(file).resolve()): file for file in files}
    commands, batches, found = [], [], []

    def add(directory, words, file):
        commands.append({"directory": directory, "file": file, "arguments": [*words, "-c", file]})

    entries = json.loads((pathlib.Path(build) / "compile_commands.json").read_text(encoding="utf-8"))
    for entry in entries:
        # The first command of each: some sources are part of several targets.
        sources = [source for source in sources_of(entry) if source in names]
        if not sources:
            continue
        found += [names.pop(source) for source in sources]
        words = without_files(entry["command"])
        batch = folder / f"batch{len(batches)}.cpp"
        batch.write_text("".join(
            f'#include "{source}" // NOLINT(bugprone-suspicious-include)\n' for source in sources),
            encoding="utf-8")
        batches.append(str(batch))
        for file in (*sources, str(batch)):
            add(entry["directory"], words, file)
    (folder / "compile_commands.json").write_text(json.dumps(commands), encoding="utf-8")
    for name, lines in (("batches", batches), ("sources", found)):
        (folder / name).write_text("".join(line + "\n" for line in lines), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
