#!/usr/bin/env python3
"""Prints the folders with the inputs that a fuzzer starts from: fuzz/seeds.py NAME."""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# What the tree holds of a fuzzer's inputs anyway.
SHIPPED = {
    "scenario": ("tools/radiosim/scenarios",),
    "text_file": ("resources/tesk5/texts", "resources/mrlrantenna/texts"),
}


def seed_folders(name):
    """Corpus, regressions, and files of the tree, as far as they are there."""
    folders = [f"fuzz/corpus/{name}", f"fuzz/regressions/{name}", *SHIPPED.get(name, ())]
    return [ROOT / folder for folder in folders if (ROOT / folder).is_dir()]


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    print(*seed_folders(sys.argv[1]), sep="\n")
