"""Starts of Windows programs that Wine ends before their first instruction.

Wine 8 does so about once in 10,000 starts, with an empty program too: the exit value is 1, once it
was 127 with an assertion of the dynamic loader. Such a start says nothing about the program, so it
is repeated, once, and counted; tests/run_tests.py prints the number and fails when it is high.
"""
import os
import pathlib

# The exit values of such a start. The module uses 1 too (WARN), so other signs must be present.
EXIT_VALUES = (1, 127)
# More repeats than this in one run of all tests are a fault of another kind.
MOST_REPEATS = 3
# Names the file in which repeats are noted, a line each, by every process of a run of the tests.
NOTES = "MRLR_WINE_REPEATS"
LOADER_ASSERTION = b"Inconsistency detected by ld.so"


def never_began(exit_value, output, traces=()):
    """Whether a program provably did not begin: it ended as Wine ends one, nothing was written by
    it (what the dynamic loader writes before it is not the program's), and none of the files
    `traces`, which a program that begins makes, has content."""
    if exit_value not in EXIT_VALUES or any(
            pathlib.Path(path).exists() and pathlib.Path(path).stat().st_size for path in traces):
        return False
    return not output or (exit_value == 127 and output.startswith(LOADER_ASSERTION))


def note_repeat(what):
    """Notes that the start of `what` is being repeated."""
    notes = os.environ.get(NOTES)
    if notes:
        with open(notes, "a", encoding="utf-8") as file:
            file.write(f"{what}\n")


def repeats(notes):
    """What was repeated, as noted in the file `notes`."""
    path = pathlib.Path(notes)
    return path.read_text(encoding="utf-8").splitlines() if path.exists() else []


def with_one_repeat(what, start):
    """Calls `start`, which returns a result and whether the program never began; if so, once more.
    Returns the last result."""
    result, failed = start()
    if failed:
        note_repeat(what)
        result, _ = start()
    return result
