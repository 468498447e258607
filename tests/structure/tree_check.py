"""The command line of a check of the source tree: its tree, its output and its exit value."""
import argparse
import pathlib


def run(description, check, arguments=None, refuse=lambda root: None):
    """Prints what `check(root)` finds; 1 when that is anything, else 0.

    `description`: of the check, its first line for people. `refuse(root)`: why that is no tree to be
    checked, if so.
    """
    parser = argparse.ArgumentParser(description=description.splitlines()[0])
    parser.add_argument("--root", metavar="DIR", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parents[2],
                        help="the top of the tree (default: the one this script is in)")
    root = parser.parse_args(arguments).root
    if reason := refuse(root):
        parser.error(f"{root}: {reason}")
    offences = check(root)
    for line in offences:
        print(line)
    return 1 if offences else 0
