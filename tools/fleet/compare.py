"""Whether an archive has what stations have recorded, each line once."""
import collections
import json

SHOWN = 5


def recorded_lines(paths):
    """The whole lines of records; the last one may be cut off."""
    for path in paths:
        with open(path, "rb") as record:
            for line in record:
                if line.endswith(b"\n"):
                    yield line[:-1].decode("ascii")


def key_of(line):
    content = json.loads(line)
    return content["runIdentifier"], content["sequence"]


def differences(recorded, archived):
    """What is wrong, as sentences.

    recorded: lines; archived: run, sequence and line, in any order.
    """
    lines = {}
    for line in recorded:
        lines.setdefault(key_of(line), []).append(hash(line))
    found = collections.defaultdict(list)
    for run, sequence, line in archived:
        expected = lines.get((run, sequence))
        if expected is None:
            found["not in a record, or twice in the archive"].append((run, sequence))
        elif hash(line) not in expected:
            found["different from the record"].append((run, sequence))
        lines.pop((run, sequence), None)
    found["missing in the archive"] = list(lines)
    return [f"{len(keys)} lines are {what}: " +
            ", ".join(f"{run} {sequence}" for run, sequence in keys[:SHOWN])
            for what, keys in found.items() if keys]


def differences_of_runs(recorded, archived):
    """What is wrong with the finished runs; archived: run, exit value, lines that it has, number of
    measurements."""
    runs = collections.defaultdict(lambda: [None, None, 0])
    for line in recorded:
        if line.startswith('{"type":"runEnded"'):
            content = json.loads(line)
            runs[content["runIdentifier"]][:2] = content["exit"], content["sequence"]
        elif line.startswith('{"type":"measurement"'):
            runs[json.loads(line)["runIdentifier"]][2] += 1
    expected = {(run, *what) for run, what in runs.items() if what[0] is not None}
    archived = [tuple(row) for row in archived]
    wrong = expected.symmetric_difference(archived)
    if len(archived) != len(expected) or wrong:
        return [f"{len(expected)} runs were finished, the archive has {len(archived)}; different: "
                + ", ".join(map(str, sorted(wrong)[:SHOWN]))]
    return []
