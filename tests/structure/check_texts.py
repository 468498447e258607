#!/usr/bin/env python3
"""Compares the texts of each language with the English ones, in every resources/*/texts.

A translation has every key and no other, every placeholder and no other, an access key where the
English text has one, and no access key twice in a file. Prints `file: message` for each offence.
"""

import collections
import json
import re
import sys

import tree_check

ENGLISH = "en.json"
# A language as its file is named: de, zh-Hans, pt-BR.
TAG = re.compile(r"[a-z]{2,3}(-[A-Z][a-z]{3})?(-([A-Z]{2}|\d{3}))?$")
PLACEHOLDER = re.compile(r"\{[A-Za-z_]\w*\}")
# The letter after an ampersand; two ampersands stand for one that is shown.
ACCESS_KEY = re.compile(r"&&|&(\S)")


class Unusable(Exception):
    """A file that is no list of texts."""


def without_twins(pairs):
    twins = [key for key, count in collections.Counter(key for key, _ in pairs).items() if count > 1]
    if twins:
        raise Unusable(f"twice: {', '.join(twins)}")
    return dict(pairs)


def read(path):
    """The texts of a file by key."""
    try:
        texts = json.loads(path.read_bytes().decode("utf-8"), object_pairs_hook=without_twins)
    except ValueError as error:
        raise Unusable(f"no JSON in UTF-8: {error}") from None
    if not isinstance(texts, dict) or not all(isinstance(text, str) for text in texts.values()):
        raise Unusable("no flat object of keys and texts")
    return texts


def access_keys(text):
    return [match[1].upper() for match in ACCESS_KEY.finditer(text) if match[1]]


def ends(text):
    """The white space around a text."""
    return text[:len(text) - len(text.lstrip())], text[len(text.rstrip()):]


def named(kind, names):
    return [f"{kind}: {', '.join(sorted(names))}"] if names else []


def compared(key, english, text):
    """What is wrong with the translation of one text."""
    wanted, found = (set(PLACEHOLDER.findall(candidate)) for candidate in (english, text))
    offences = named("missing", wanted - found) + named("superfluous", found - wanted)
    if english.strip() and not text.strip():
        offences.append("empty")
    if ends(text) != ends(english):
        offences.append("white space at its ends differs")
    count = len(access_keys(text))
    if count != len(access_keys(english)):
        offences.append(f"has {count} access keys")
    return [f"{key}: {offence}" for offence in offences]


def twice(texts):
    """Access keys that stand for more than one text."""
    users = collections.defaultdict(list)
    for key, text in texts.items():
        for letter in access_keys(text):
            users[letter].append(key)
    return [f"access key {letter} is that of {' and '.join(keys)}"
            for letter, keys in users.items() if len(keys) > 1]


def compared_files(english, texts):
    offences = named("missing", english.keys() - texts.keys())
    offences += named("superfluous", texts.keys() - english.keys())
    for key in english:
        if key in texts:
            offences += compared(key, english[key], texts[key])
    return offences + twice(texts)


def offences_of(folder):
    """Every offence in one folder, as (file, message)."""
    if not (folder / ENGLISH).is_file():
        yield folder / ENGLISH, "is missing"
        return
    try:
        english = read(folder / ENGLISH)
    except Unusable as problem:
        yield folder / ENGLISH, str(problem)
        return
    for path in sorted(folder.iterdir()):
        if path.suffix != ".json" or not TAG.match(path.stem):
            yield path, "is not named after a language"
            continue
        try:
            for message in compared_files(english, read(path)):
                yield path, message
        except Unusable as problem:
            yield path, str(problem)


def languages_missing(folders):
    """Languages that only another folder has: a program needs the texts of all folders."""
    languages = {folder: {path.name for path in folder.glob("*.json")} for folder in folders}
    everywhere = set().union(*languages.values())
    for folder, found in languages.items():
        for name in sorted(everywhere - found - {ENGLISH}):
            yield folder / name, "is missing, and another folder has it"


def check(root):
    """Every offence below `root`, as lines to print."""
    root = root.resolve()
    folders = sorted(folder for folder in root.glob("resources/*/texts") if folder.is_dir())
    found = [offence for folder in folders for offence in offences_of(folder)]
    found += languages_missing(folders) if folders else []
    return [f"{path.relative_to(root).as_posix()}: {message}" for path, message in found]


def main(arguments=None):
    return tree_check.run(__doc__, check, arguments, lambda root: (
        None if (root / "resources").is_dir() else "no folder resources is there"))


if __name__ == "__main__":
    sys.exit(main())
