#!/usr/bin/env python3
"""Compares the English texts of each part with the keys that its code names.

A key is a string literal in the code. A key without a text would be shown as it is; a text that no
literal names is unused. A literal that ends with an underscore names every key that begins with
it. Behind "@" a key may name the system for which its text stands in the place of the other one.
Prints `file: message` for each offence.
"""

import json
import re
import sys

import tree_check

# The folders of a part's code, by the folder of its resources.
CODE = {
    "tesk5": ("common/src/libtesk5",),
    "networkadapters": ("common/src/libnetworkadapters",),
    "mrlrantenna": ("modules/src/windows/diag/mrlrantenna", "common/src/libuikit"),
    "mrlrsignal": ("modules/src/diag/mrlrsignal",),
}
SYSTEMS = ("linux", "windows")
SUFFIXES = (".h", ".cpp", ".rc", ".html")
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
KEY = re.compile(r"[A-Z][A-Z0-9]*(?:_[A-Z0-9]+)+$")
BEGINNING = re.compile(r"[A-Z][A-Z0-9_]*_$")
# How templates of pages name their texts.
IN_PAGE = re.compile(r"\{\{\s*([A-Z][A-Z0-9_]*)\s*\}\}")
# Calls whose first argument is a key, whatever it looks like.
LOOKED_UP = re.compile(r'\b(?:message|Message|textOf|createLocalizedString|createEvent)\s*\(\s*"([^"]+)"')
COMMENT = re.compile(r"//[^\n]*")


def code_of(root, folders):
    for folder in folders:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in SUFFIXES:
                yield path, COMMENT.sub("", path.read_text(encoding="utf-8"))


def texts_of(root, part):
    """The English texts of a part: their file, and the keys as they are written."""
    path = root / "resources" / part / "texts" / "en.json"
    return path, set(json.loads(path.read_text(encoding="utf-8")))


def keys_of(root, part):
    """The keys that code can name."""
    path, written = texts_of(root, part)
    return path, {key for key in written if "@" not in key}


def check_systems(root, part):
    """Texts for one system that no system shows, as (file, message)."""
    path, written = texts_of(root, part)
    for key in sorted(written):
        base, separator, system = key.partition("@")
        if separator and (base not in written or system not in SYSTEMS):
            yield path, f"{key} stands for no text, or for no system of {', '.join(SYSTEMS)}"


def check_part(root, part, folders, known_elsewhere):
    """Every offence of one part, as (file, message)."""
    english, keys = keys_of(root, part)
    # A key of the framework begins with its area (INPUT_, LIST_), so every literal with such a
    # beginning is a key, in a table as well as in a call.
    areas = {key.split("_")[0] for key in keys if KEY.match(key)} if part == "tesk5" else set()
    named = set()
    for path, text in code_of(root, folders):
        literals = set((IN_PAGE if path.suffix == ".html" else LITERAL).findall(text))
        named |= literals
        wanted = set(LOOKED_UP.findall(text))
        wanted |= {name for name in literals if KEY.match(name) and name.split("_")[0] in areas}
        for key in sorted(wanted - keys - known_elsewhere):
            if not BEGINNING.match(key):
                yield path, f"there is no text of {key}"
    beginnings = tuple(name for name in named if BEGINNING.match(name))
    for key in sorted(keys - named):
        if not key.startswith(beginnings):
            yield english, f"no code names {key}"


def check(root):
    """Every offence below `root`, as lines to print."""
    root = root.resolve()
    parts = {part: folders for part, folders in CODE.items()
             if (root / "resources" / part / "texts" / "en.json").is_file()}
    lines = []
    for part, folders in parts.items():
        elsewhere = set().union(*(keys_of(root, other)[1] for other in parts if other != part))
        lines += [f"{path.relative_to(root).as_posix()}: {message}"
                  for path, message in (*check_part(root, part, folders, elsewhere),
                                        *check_systems(root, part))]
    return lines


def main(arguments=None):
    return tree_check.run(__doc__, check, arguments)


if __name__ == "__main__":
    sys.exit(main())
