"""The program's help pages as data: what the man page and the shell's completion are made of."""
import collections
import os
import re
import subprocess

from components import PackagingError

# argument: what follows the option, "" for a switch; text, example: for people.
Option = collections.namedtuple("Option", "name argument text example")
# usage: the command line behind the program's name; options: those that it takes.
Command = collections.namedtuple("Command", "name usage text examples options")
# groups: (heading, options); values: (value and word, text); closing: the last paragraph.
Overview = collections.namedtuple("Overview", "purpose commands groups values_heading values closing")

ENTRY = re.compile(r"  (\S+(?: \S+)*)(?:  +(\S.*))?$")
EXAMPLE = "example: "
# A command's options may be in brackets, as the default command's name is.
USAGE = re.compile(r"  \S+ (\[?([a-z]+)\]?.*)$")


def _page(program, arguments):
    """A help page in English."""
    run = subprocess.run([str(program), *arguments, "--help"], stdout=subprocess.PIPE, check=False,
                         env=dict(os.environ, LC_ALL="C.UTF-8"))
    if run.returncode != 0:
        raise PackagingError(f"{program} shows no help page: it ended with {run.returncode}")
    return run.stdout.decode("utf-8")


def _paragraphs(page):
    """The lines of each paragraph."""
    return [paragraph.split("\n") for paragraph in page.strip("\n").split("\n\n")]


def _joined(lines):
    return " ".join(line.strip() for line in lines)


def _entries(lines):
    """(head, texts) of lines with a head each and texts behind it or below; an example is a text of
    its own."""
    entries = []
    for line in lines:
        head = ENTRY.match(line)
        if head:
            entries.append((head[1], [head[2]] if head[2] else []))
            continue
        texts = entries[-1][1]
        if line.strip().startswith(EXAMPLE) or not texts:
            texts.append(line.strip())
        else:
            texts[-1] += " " + line.strip()
    return entries


def _options(lines):
    for head, texts in _entries(lines):
        name, _, argument = head.partition(" ")
        example = texts[1].removeprefix(EXAMPLE) if len(texts) > 1 else ""
        yield Option(name, argument, texts[0], example)


def _is_group(paragraph):
    return not paragraph[0].startswith(" ") and len(paragraph) > 1 and \
        paragraph[1].startswith("  --")


def command(name, page):
    """The page of one command."""
    paragraphs = _paragraphs(page)
    usage = USAGE.match(paragraphs[0][0])
    if not usage or usage[2] != name:
        raise PackagingError(f"the help page of {name} does not begin with how to type it")
    examples = next(lines[1:] for lines in paragraphs if lines[1:2] and lines[1].startswith("  ")
                    and not lines[1].startswith("  --"))
    options = [option for lines in paragraphs if _is_group(lines) for option in _options(lines[1:])]
    return Command(name, usage[1], _joined(paragraphs[1]),
                   [example.strip() for example in examples], options)


def overview(page):
    """The page without a command; its commands are names."""
    paragraphs = _paragraphs(page)
    commands = [USAGE.match(lines[0])[2] for lines in paragraphs if USAGE.match(lines[0])]
    groups = [(lines[0].rstrip(":"), list(_options(lines[1:])))
              for lines in paragraphs if _is_group(lines)]
    values = next(lines for lines in paragraphs
                  if lines[1:2] and re.match(r"  \d", lines[1]))
    if not commands or not groups:
        raise PackagingError("the help page names no command or no option")
    # What a value stands for is in columns: "  1   WARN              a test warns".
    rows = [(re.sub(r"\s+", " ", head), texts[0]) for head, texts in _values(values[1:])]
    return Overview(_joined(paragraphs[0]), commands, groups, values[0].rstrip(":"), rows,
                    _joined(paragraphs[-1]))


def _values(lines):
    """(value and word, [text]) of the exit values."""
    entries = []
    for line in lines:
        head = re.match(r"  (\d+(?:   ?[A-Z]+)?)  +(\S.*)$", line)
        if head:
            entries.append((head[1], [head[2]]))
        else:
            entries[-1][1][0] += " " + line.strip()
    return entries


def read(program):
    """(the overview, its commands) of a program."""
    whole = overview(_page(program, []))
    return whole, [command(name, _page(program, [name])) for name in whole.commands]
