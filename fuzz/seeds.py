#!/usr/bin/env python3
"""Prints the folders with the inputs that a fuzzer starts from: fuzz/seeds.py NAME."""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# Files of the tree that serve as inputs too.
SHIPPED = {
    "scenario": ("tools/radiosim/scenarios",),
    "text_file": ("resources/tesk5/texts", "resources/networkadapters/texts",
                  "resources/mrlrantenna/texts"),
}


def seed_folders(name):
    """The corpus, the regressions and the files of the tree, as far as they exist."""
    folders = [f"fuzz/corpus/{name}", f"fuzz/regressions/{name}", *SHIPPED.get(name, ())]
    return [ROOT / folder for folder in folders if (ROOT / folder).is_dir()]


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    print(*seed_folders(sys.argv[1]), sep="\n")
