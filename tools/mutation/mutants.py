"""What can be changed in a source, one place at a time."""
import dataclasses
import difflib
import hashlib
import re

from mutation.source import Source

_TURNED = {"<": ">", ">": "<", "<=": ">=", ">=": "<=", "==": "!=", "!=": "=="}
_SHIFTED = {"<": "<=", ">": ">=", "<=": "<", ">=": ">"}
_OPPOSITES = {"true": "false", "false": "true", "TRUE": "FALSE", "FALSE": "TRUE"}
_OTHER_SIGN = {
    "Uint32": "Int32", "Int32": "Uint32", "DWORD": "LONG", "ULONG": "LONG", "LONG": "ULONG",
    "uint32_t": "int32_t", "int32_t": "uint32_t", "uint64_t": "int64_t", "int64_t": "uint64_t",
    "size_t": "ptrdiff_t", "int": "unsigned int", "UINT": "INT",
}
_NO_CALLS = ("if", "while", "for", "switch", "catch", "return", "sizeof", "alignof", "decltype",
             "noexcept", "static_assert", "throw", "defined")
# Small and positive: no sign shows.
_LINE_NUMBER = re.compile(r"^line$|Line$")
# What gives the same for its arguments in another order.
_SYMMETRIC = ("min", "max", "sameGuid")
_NUMBER = re.compile(r"(?P<digits>0[xX][0-9A-Fa-f']+|[0-9']+(?P<fraction>\.[0-9]*)?)(?P<suffix>\w*)")
_ESCAPE = r"\\(?:x[0-9A-Fa-f]+|u[0-9A-Fa-f]{4}|U[0-9A-Fa-f]{8}|[0-7]{1,3}|.)|%[-+ #0-9.*]*[hljzt]*\w"


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str  # path in the tree
    kind: str
    start: int  # what is replaced, in characters of the file
    end: int
    replacement: str

    @property
    def name(self):
        """Tells it from the file's other mutants."""
        digest = hashlib.sha256(self.replacement.encode()).hexdigest()[:8]
        return f"{self.kind} at {self.start} to {self.end}, {digest}"

    def applied(self, text):
        return text[:self.start] + self.replacement + text[self.end:]

    def line(self, text):
        return text.count("\n", 0, self.start) + 1

    def diff(self, text):
        """The change as a unified diff with one line around it."""
        lines = difflib.unified_diff(
            text.splitlines(), self.applied(text).splitlines(), f"a/{self.file}", f"b/{self.file}",
            n=1, lineterm="")
        return "\n".join(lines)


def mutants_of(file, text):
    """All mutants of a source in the order of their places; none that changes the text of another
    one in the same way."""
    finder = _Finder(file, Source(text))
    found = {(m.start, m.end, m.replacement): m for m in reversed(finder.all())}
    return sorted(found.values(), key=lambda m: (m.start, m.end, m.kind, m.replacement))


class _Finder:
    def __init__(self, file, source):
        self.file = file
        self.source = source
        self.tokens = source.tokens
        self.skipped = self._skipped()
        self.found = []

    def all(self):
        for index in range(len(self.tokens)):
            if index not in self.skipped:
                self._token(index)
        for first, end in self.source.conditions:
            self._condition(first, end)
        for block in self.source.blocks:
            self._statements(block)
        self._message_map()
        return self.found

    def _add(self, kind, first, end, replacement):
        self.found.append(Mutant(self.file, kind, self.tokens[first].start,
                                 self.tokens[end - 1].end, replacement))

    def _skipped(self):
        """Tokens that say nothing at run time."""
        skipped = set()
        for index, token in enumerate(self.tokens):
            if token.text == "static_assert":
                skipped.update(range(index, self.source.partner[index + 1] + 1))
            elif token.text == "extern" and index + 1 < len(self.tokens) and \
                    self.tokens[index + 1].kind == "text":
                skipped.add(index + 1)
        return skipped

    def _spaced(self, index):
        """Whether white space stands on both sides."""
        token, text = self.tokens[index], self.source.text
        return text[token.start - 1:token.start].isspace() and text[token.end:token.end + 1].isspace()

    def _token(self, index):
        token = self.tokens[index]
        if token.kind == "text":
            self._text(index)
        elif token.kind == "character":
            self._add("constant altered", index, index + 1, "'x'" if token.text != "'x'" else "'y'")
        elif token.kind == "number":
            self._number(index)
        elif token.text in _OPPOSITES:
            self._add("constant altered", index, index + 1, _OPPOSITES[token.text])
        elif token.text in _OTHER_SIGN or token.text == "unsigned":
            self._sign(index)
        elif token.text in _TURNED and self._spaced(index) and not self._is_operator_name(index):
            self._add("comparison turned", index, index + 1, _TURNED[token.text])
            if token.text in _SHIFTED:
                self._add("comparison shifted", index, index + 1, _SHIFTED[token.text])
        elif token.text in ("&&", "||") and self._spaced(index):
            self._add("condition negated", index, index + 1, "||" if token.text == "&&" else "&&")
        elif token.text == "!" and not any(first == index for first, _ in self.source.conditions):
            self._add("condition negated", index, index + 1, "")
        elif token.text == "?":
            self._choice(index)
        elif token.text in ("(", "{"):
            self._arguments(index)

    def _is_operator_name(self, index):
        return self.source.is_(index - 1, "operator")

    def _text(self, index):
        # Of texts that the compiler joins, one.
        if index and self.tokens[index - 1].kind == "text":
            return
        text = self.tokens[index].text
        opening = text.index('"') + 1
        if "R" in text[:opening]:
            opening = text.index("(") + 1
            closing = text.rindex(")")
        else:
            closing = len(text) - 1
        inner = text[opening:closing]
        plain = re.sub(_ESCAPE, lambda match: "\0" * len(match.group()), inner)
        letter = re.search("[A-Za-z]", plain)
        if letter:
            other = "x" if letter.group() not in "xX" else "y"
            at = letter.start()
            inner = inner[:at] + other + inner[at + 1:]
        else:
            inner += "x"
        self._add("text altered", index, index + 1, text[:opening] + inner + text[closing:])

    def _number(self, index):
        match = _NUMBER.fullmatch(self.tokens[index].text)
        if not match:
            return
        digits = match["digits"].replace("'", "")
        if match["fraction"] is not None:
            other = str(float(digits) + 1)
        else:
            other = str(int(digits, 0 if digits.startswith(("0x", "0X")) else 10) + 1)
        self._add("constant altered", index, index + 1, other + match["suffix"])

    def _sign(self, index):
        first, end = index, index + 1
        if self.tokens[index].text == "unsigned":
            if not self.source.is_(index + 1, "int"):
                return
            end = index + 2
            other = "int"
        elif self.source.is_(index - 1, "unsigned"):
            return
        else:
            other = _OTHER_SIGN[self.tokens[index].text]
        if self.source.is_(end, "*", "&") or any(a <= index < b for a, b in self.source.loop_heads):
            return
        if _LINE_NUMBER.search(self.tokens[end].text):
            return
        start = index
        while self.source.is_(start - 1, "::") and start >= 2:
            start -= 2
        if self._is_cast(start) or self._begins_declaration(start) or self._is_parameter(start):
            self._add("sign changed", first, end, other)

    def _is_cast(self, start):
        return self.source.is_(start - 1, "<") and self.source.is_(start - 2, "static_cast")

    def _begins_declaration(self, start):
        while self.source.is_(start - 1, "const", "static", "constexpr"):
            start -= 1
        return any(statement.kind == "declaration" and statement.first == start
                   for block in self.source.blocks for statement in block.statements)

    def _is_parameter(self, start):
        """Of a function that no other source can declare otherwise."""
        before = start - 1
        while self.source.is_(before, "const"):
            before -= 1
        return self.source.is_(before, "(", ",") and any(
            hidden and first < start < opening for first, opening, _, hidden in self.source.functions)

    def _choice(self, index):
        """The arms of `condition ? a : b`, exchanged."""
        colon = self._end_of_arm(index + 1, nested=True)
        end = self._end_of_arm(colon + 1, nested=False)
        if self.source.is_(colon, ":"):
            first = self.source.slice(index + 1, colon)
            second = self.source.slice(colon + 1, end)
            self._add("condition negated", index + 1, end, f"{second} : {first}")

    def _end_of_arm(self, index, nested):
        depth = 0
        while index < len(self.tokens):
            text = self.tokens[index].text
            if text in ("(", "{", "["):
                index = self.source.partner[index]
            elif text in (")", "}", "]", ";", ","):
                break
            elif text == "?":
                depth += 1
            elif text == ":":
                if depth == 0:
                    break
                depth -= 1
            index += 1
        return index

    def _arguments(self, opening):
        source = self.source
        if source.function_at(opening) is None or any(b.opening == opening for b in source.blocks):
            return
        before = self.tokens[opening - 1]
        if before.text in _NO_CALLS + _SYMMETRIC or before.text in ("]", "constexpr") or \
                (source.is_(opening, "(") and before.kind != "word" and before.text != ">"):
            return
        arguments = self._split(opening)
        for (first, middle), (second, end) in zip(arguments, arguments[1:]):
            one, other = source.slice(first, middle), source.slice(second, end)
            kinds = {self._literal(first, middle), self._literal(second, end)}
            if one == other or "function" in kinds or kinds == {"text", "number"}:
                continue
            between = source.text[self.tokens[middle - 1].end:self.tokens[second].start]
            self._add("arguments exchanged", first, end, other + between + one)

    def _split(self, opening):
        parts, first, index = [], opening + 1, opening + 1
        closing = self.source.partner[opening]
        while index <= closing:
            if self.source.is_(index, "(", "{", "["):
                index = self.source.partner[index]
            elif index == closing or self.source.is_(index, ","):
                if first < index:
                    parts.append((first, index))
                first = index + 1
            index += 1
        return parts

    def _literal(self, first, end):
        if self.source.is_(first, "[", "."):
            return "function"  # a lambda, or a field with its name
        return self.tokens[first].kind if end - first == 1 else "other"

    def _condition(self, first, end):
        if first >= end:
            return
        texts = [token.text for token in self.tokens[first:end]]
        if self._declares(first, end):
            return
        alone = not {"&&", "||", "?"} & set(texts)
        if alone and sum(text in ("==", "!=") for text in texts) == 1 and "(" not in texts:
            return  # the same as its comparison turned
        self._add("condition negated", first, end, f"!({self.source.slice(first, end)})")

    def _declares(self, first, end):
        """`if (const auto reason = ...)`: what it declares cannot stand in brackets."""
        return any(token.text == "=" for token in self.tokens[first:end]) and \
            self.source.is_(first, "const", "auto")

    def _statements(self, block):
        statements = block.statements
        for position, statement in enumerate(statements):
            if self._is_reservation(statement):
                continue
            is_last = position + 1 == len(statements)
            if self._is_removable(block, statement, is_last):
                self._add("statement removed", statement.first, statement.end, ";")
            if not is_last and self._are_exchangeable(block, statement, statements[position + 1]):
                self._exchange(statement, statements[position + 1])

    def _is_reservation(self, statement):
        """Of memory, for speed alone."""
        return any(self.source.is_(index, "reserve")
                   for index in range(statement.first, statement.end)) and \
            statement.kind == "expression"

    def _is_removable(self, block, statement, is_last):
        if statement.kind == "jump":
            # The last one of a function gives its result; the others' absence would change nothing.
            return not (is_last and (block.owner in ("function", "lambda") or
                                     block.owner == "switch" and self._is_break(statement)))
        if statement.kind == "declaration":
            used = self.source.words(statement.end, block.closing) if statement.end < block.closing \
                else set()
            return statement.name != "" and statement.name not in used
        return statement.kind == "expression" and statement.end - statement.first > 1

    def _is_break(self, statement):
        return self.source.is_(statement.first, "break")

    def _exchange(self, first, second):
        one = self.source.slice(first.first, first.end)
        other = self.source.slice(second.first, second.end)
        between = self.source.text[self.tokens[first.end - 1].end:self.tokens[second.first].start]
        if one != other:
            self._add("statements exchanged", first.first, second.end, other + between + one)

    def _are_exchangeable(self, block, first, second):
        if {first.kind, second.kind} & {"jump", "label"} or self._is_reservation(second):
            return False  # what a jump makes unreachable is removed: a mutant of its own
        if any(s.kind == "declaration" and (s.name == "" or not self._calls(s)) for s in
               (first, second)):
            return False
        if first.kind == "declaration" and \
                first.name in self.source.words(second.first, second.end):
            return False
        return not (self._is_private_assignment(first, second) or
                    self._is_private_assignment(second, first))

    def _calls(self, statement):
        # A cast is no call, and a literal's macro neither.
        return any(self.source.is_(index, "(") and not self.source.is_(index - 1, ">", "MRL_TEXT")
                   for index in range(statement.first, statement.end))

    def _is_private_assignment(self, statement, neighbour):
        """Whether nothing of the neighbour can tell when this assignment is made."""
        if statement.kind != "expression" or self._calls(statement):
            return False
        assigned = self.tokens[statement.first]
        equals = self._find(statement, "=")
        if equals is None or assigned.kind != "word":
            return False
        words = self.source.words(statement.first, statement.end)
        if neighbour.kind == "expression" and not self._calls(neighbour):
            # Of `this`, too: neither can read or write what the other assigns.
            targets = {self.source.slice(s.first, e) for s, e in
                       ((statement, equals), (neighbour, self._find(neighbour, "="))) if e}
            return len(targets) == 2 and not any(
                target in self.source.slice(s.first, s.end)[len(own):]
                for target in targets
                for s, own in ((statement, self.source.slice(statement.first, equals)),
                               (neighbour, target)))
        read = self.source.words(equals, statement.end)
        return self._is_local(assigned.text, statement.first) and \
            not words & self.source.words(neighbour.first, neighbour.end) and \
            not any(word.startswith(("m_", "g_")) for word in read)

    def _find(self, statement, mark):
        for index in range(statement.first, statement.end):
            if self.source.is_(index, mark):
                return index
        return None

    def _is_local(self, name, index):
        function = self.source.function_at(index)
        if function is None:
            return False
        for block in self.source.blocks:
            if function[1] <= block.opening and block.closing <= function[2]:
                for statement in block.statements:
                    if statement.kind == "declaration" and statement.name == name:
                        head = self.source.slice(statement.first, statement.end).split(name)[0]
                        return "&" not in head and "static" not in head
        return False

    def _message_map(self):
        """The rows between BEGIN_MESSAGE_MAP and END_MESSAGE_MAP, each removed."""
        inside = False
        index = 0
        while index < len(self.tokens):
            if self.source.is_(index, "BEGIN_MESSAGE_MAP", "END_MESSAGE_MAP"):
                inside = self.source.is_(index, "BEGIN_MESSAGE_MAP")
                index = self.source.partner[index + 1]
            elif inside and self.source.is_(index + 1, "("):
                closing = self.source.partner[index + 1]
                self._add("statement removed", index, closing + 1, "")
                index = closing
            index += 1
