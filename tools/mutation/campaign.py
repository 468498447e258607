"""Tries many mutants, keeps what came of each, and says it in a table."""
import collections
import concurrent.futures
import hashlib
import json
import random
import threading

RESULTS = ("noticed", "survived", "unviable")


def chosen(mutants, sample, seed):
    """A share of the mutants at random, in the order of their places."""
    if sample is None or sample >= len(mutants):
        return list(mutants)
    return [mutants[i] for i in sorted(random.Random(seed).sample(range(len(mutants)), sample))]


def digest(text):
    return hashlib.sha256(text.encode()).hexdigest()[:16]


class Results:
    """What came of mutants, one JSON object a line in a file that is only added to.

    A result holds as long as its file does. That a mutant survived holds for the test programs
    that it survived alone: others may notice it.
    """

    def __init__(self, path):
        self._path = path
        self._known = {}
        self._lock = threading.Lock()
        path.parent.mkdir(parents=True, exist_ok=True)
        if path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                try:
                    entry = json.loads(line)
                    self._known[entry["file"], entry["text"], entry["mutant"]] = entry
                except (ValueError, KeyError):
                    pass  # the last line of a run that was stopped in the middle of it

    def find(self, mutant, text, programs):
        entry = self._known.get((mutant.file, digest(text), mutant.name))
        if entry and (entry["result"] != "survived" or entry["programs"] == programs):
            return entry
        return None

    def add(self, mutant, text, programs, verdict):
        entry = {"file": mutant.file, "text": digest(text), "mutant": mutant.name,
                 "result": verdict.result, "by": verdict.by, "programs": programs}
        with self._lock:
            self._known[entry["file"], entry["text"], entry["mutant"]] = entry
            with open(self._path, "a", encoding="utf-8") as file:
                # A line of its own, whatever was left behind by a run that was killed.
                file.write(("" if self._ends_line() else "\n") + json.dumps(entry) + "\n")
        return entry

    def _ends_line(self):
        data = self._path.read_bytes() if self._path.exists() else b""
        return not data or data.endswith(b"\n")

    def all(self):
        return list(self._known.values())


def run(mutants, texts, results, lab, jobs, progress):
    """Tries those mutants of which nothing is known yet; returns a list of (mutant, entry)."""
    entries = [results.find(m, texts[m.file], lab.signature(m.file)) for m in mutants]
    for entry in results.all():
        if entry["result"] == "noticed":
            lab.remember(entry["file"], entry["by"])

    def attempt(position):
        mutant = mutants[position]
        text = texts[mutant.file]
        verdict = lab.try_mutant(mutant, text)
        entries[position] = results.add(mutant, text, lab.signature(mutant.file), verdict)
        return position

    open_ones = [position for position, entry in enumerate(entries) if entry is None]
    pool = concurrent.futures.ThreadPoolExecutor(jobs)
    try:
        tried = [pool.submit(attempt, position) for position in open_ones]
        for count, future in enumerate(concurrent.futures.as_completed(tried), 1):
            position = future.result()
            progress(count, len(tried), mutants[position], entries[position])
    except BaseException:
        lab.stop()
        raise
    finally:
        pool.shutdown(cancel_futures=True)
    return list(zip(mutants, entries))


def share(counts):
    """What part of the viable mutants was noticed, in percent; None without any."""
    viable = counts["noticed"] + counts["survived"]
    return 100.0 * counts["noticed"] / viable if viable else None


def markdown(outcomes, texts, what):
    """The table by file and the survivors, as the pages of docs/ have them."""
    by_file = collections.defaultdict(collections.Counter)
    for mutant, entry in outcomes:
        by_file[mutant.file][entry["result"]] += 1
    lines = [what, "", "| source | mutants | noticed | survived | unviable | noticed of the viable |",
             "| --- | --- | --- | --- | --- | --- |"]
    for file in sorted(by_file):
        lines.append(_row(f"`{file.rsplit('/', 1)[-1]}`", by_file[file]))
    lines.append(_row("all", sum(by_file.values(), collections.Counter())))
    survivors = [mutant for mutant, entry in outcomes if entry["result"] == "survived"]
    if survivors:
        lines += ["", "Survivors:"]
    for mutant in survivors:
        text = texts[mutant.file]
        name = mutant.file.rsplit("/", 1)[-1]
        lines += ["", f"`{name}`, line {mutant.line(text)}: {mutant.kind}", "", "```diff",
                  mutant.diff(text), "```"]
    return "\n".join(lines) + "\n"


def _row(name, counts):
    part = share(counts)
    cells = [name, str(sum(counts.values())), *(str(counts[result]) for result in RESULTS),
             "-" if part is None else f"{part:.0f} %"]
    return "| " + " | ".join(cells) + " |"
