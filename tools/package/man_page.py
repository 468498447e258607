"""The man page of a program, made of its help pages."""


def _text(text):
    """A text as roff shows it as it is."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def _quoted(text):
    """A text as one argument of a macro."""
    return '"' + _text(text).replace('"', '\\(dq') + '"'


def _option(option):
    lines = [".TP"]
    lines.append(f".BI {_quoted(option.name + ' ')} {_quoted(option.argument)}" if option.argument
                 else f".B {_quoted(option.name)}")
    lines.append(_text(option.text))
    return lines


def _command(command):
    lines = [f".SS {_quoted(command.usage)}", _text(command.text), ".PP", ".nf", ".RS"]
    lines += [_text(example) for example in command.examples]
    return lines + [".RE", ".fi"]


def make(program, summary, overview, commands, version, date, rights):
    """The page's bytes. summary: what the program does, in some words; version: as people read it;
    date: of the commit; rights: what doctor says of those that the program lacks."""
    lines = [f".TH {program.upper()} 1 {_quoted(date)} {_quoted(f'{program} {version}')} "
             '"User Commands"',
             ".SH NAME", f"{program} \\- {_text(summary)}",
             ".SH SYNOPSIS"]
    for command in commands:
        lines += [f".B {program}\n{_text(command.usage)}", ".br"]
    lines[-1:] = [".SH DESCRIPTION", _text(overview.purpose), ".PP", _text(overview.closing),
                  ".SH COMMANDS"]
    for command in commands:
        lines += _command(command)
    lines.append(".SH OPTIONS")
    for heading, options in overview.groups:
        lines.append(f".SS {_quoted(heading)}")
        for option in options:
            lines += _option(option)
    lines += [".SH EXIT STATUS", _text(overview.values_heading) + "."]
    for value, text in overview.values:
        lines += [".TP", f".B {_quoted(value)}", _text(text)]
    lines += [".SH RIGHTS", _text(rights), ".SH FILES", ".TP", f".I /usr/share/{program}", "the texts of each language",
              ".TP", ".I /usr/share/doc/mrlrantenna",
              "pages on commands, reports, captures and stations, and examples",
              ".SH SEE ALSO", ".BR rfkill (8),", ".BR setcap (8),", ".BR capabilities (7)"]
    return ("\n".join(lines) + "\n").encode("utf-8")
