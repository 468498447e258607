"""A C++ source as tokens, brackets and statements: as much of the language as mutants need.

Comments, preprocessor lines and white space are no tokens. The tree is laid out by clang-format, and
some questions are answered by it: a comparison's `<` has white space on both sides, a template's
has not.
"""
import dataclasses
import re

_TOKEN = re.compile(r"""
    (?P<blank>\s+)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<text>(?:u8|[uUL])?R"(?P<fence>[^(\s\\]*)\(.*?\)(?P=fence)"|(?:u8|[uUL])?"(?:\\.|[^"\\\n])*")
  | (?P<character>(?:u8|[uUL])?'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?[0-9](?:[eEpP][+-]|'?[0-9A-Za-z_.])*)
  | (?P<word>[A-Za-z_][A-Za-z0-9_]*)
  | (?P<mark><=>|->\*|<<=|>>=|\.\.\.|::|->|<<|>>|<=|>=|==|!=|&&|\|\||\+\+|--|[-+*/%&|^]=|.)
""", re.VERBOSE | re.DOTALL)
_DIRECTIVE = re.compile(r"[ \t]*#(?:[^\\\n]|\\.)*", re.DOTALL)

_PAIRS = {"(": ")", "{": "}", "[": "]"}
_JUMPS = ("return", "break", "continue", "throw", "goto")
_NO_TYPES = ("return", "throw", "delete", "new", "goto", "else", "case", "co_return", "operator")


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str  # word, number, text, character or mark
    text: str
    start: int
    end: int


def tokens_of(text):
    tokens = []
    position = 0
    at_line_start = True
    while position < len(text):
        if at_line_start and (directive := _DIRECTIVE.match(text, position)):
            position = directive.end()
            continue
        match = _TOKEN.match(text, position)
        kind = match.lastgroup if match.lastgroup != "fence" else "text"
        if kind == "blank":
            at_line_start = "\n" in match.group()
        elif kind != "comment":
            at_line_start = False
            tokens.append(Token(kind, match.group(), match.start(), match.end()))
        position = match.end()
    return tokens


@dataclasses.dataclass
class Statement:
    kind: str  # expression, declaration, jump, label, compound
    first: int  # indices of tokens; `end` is the one behind its last
    end: int
    name: str = ""  # of what a declaration declares


@dataclasses.dataclass
class Block:
    """Statements in a row, between braces."""
    opening: int
    closing: int
    owner: str  # what the braces belong to: function, lambda, if, for, while, do, switch, try, block
    statements: list


class Source:
    def __init__(self, text):
        self.text = text
        self.tokens = tokens_of(text)
        self.partner = self._match_brackets()
        self.blocks = []
        self.conditions = []  # (first, end) of tokens
        self.loop_heads = []  # (first, end): what a for introduces
        self.functions = []  # (first, opening, closing, whether no other source sees it)
        self._scope(0, len(self.tokens), False)
        self._lambdas()

    def is_(self, index, *texts):
        return 0 <= index < len(self.tokens) and self.tokens[index].text in texts

    def slice(self, first, end):
        """The text of the tokens from `first` to before `end`."""
        return self.text[self.tokens[first].start:self.tokens[end - 1].end]

    def words(self, first, end):
        return {token.text for token in self.tokens[first:end] if token.kind == "word"}

    def function_at(self, index):
        """The innermost entry of `functions` around a token, or None."""
        around = [f for f in self.functions if f[1] < index < f[2]]
        return max(around, key=lambda f: f[1], default=None)

    def _match_brackets(self):
        partner, open_ones = {}, []
        for index, token in enumerate(self.tokens):
            if token.kind != "mark":
                continue
            if token.text in _PAIRS:
                open_ones.append(index)
            elif token.text in _PAIRS.values():
                opening = open_ones.pop()
                if _PAIRS[self.tokens[opening].text] != token.text:
                    raise ValueError(f"brackets do not match at character {token.start}")
                partner[opening], partner[index] = index, opening
        if open_ones:
            raise ValueError(f"a bracket is not closed, character {self.tokens[open_ones[-1]].start}")
        return partner

    def _scope(self, index, end, hidden):
        """Declarations from `index` to before `end`, of a namespace or a class."""
        first = index
        while index < end:
            token = self.tokens[index]
            if token.text in ("(", "["):
                index = self.partner[index]
            elif token.text == ";":
                first = index + 1
            elif token.text == "{":
                closing = self.partner[index]
                head = [t.text for t in self.tokens[first:index]]
                if "namespace" in head:
                    self._scope(index + 1, closing, hidden or head[-1] == "namespace")
                    first = closing + 1
                elif "extern" in head and "(" not in head:
                    self._scope(index + 1, closing, hidden)
                    first = closing + 1
                elif self._opens_function(first, index):
                    self.functions.append((first, index, closing, hidden))
                    self._block(index, "function")
                    first = closing + 1
                elif "(" not in head and {"class", "struct", "union"} & set(head):
                    self._scope(index + 1, closing, hidden)
                index = closing
            index += 1

    def _opens_function(self, first, opening):
        head = self.tokens[first:opening]
        if not head or head[-1].text in ("=", ",", "(", ":"):
            return False
        depth_free, index = [], first
        while index < opening:
            depth_free.append(index)
            index = self.partner[index] + 1 if self.tokens[index].text in _PAIRS else index + 1
        texts = [self.tokens[i].text for i in depth_free]
        if "(" not in texts or ("=" in texts and "operator" not in texts):
            return False
        # `: m_name{...}` initialises a member; the body comes behind the last of these.
        return not (":" in texts[texts.index("("):] and self.tokens[opening - 1].kind == "word")

    def _lambdas(self):
        for index, token in enumerate(self.tokens):
            if token.text != "[" or self.is_(index + 1, "[") or self.is_(index - 1, "["):
                continue
            before = self.tokens[index - 1] if index else None
            if before and (before.text in (")", "]") or before.kind == "word" and
                           before.text not in ("return", "case")):
                continue
            behind = self.partner[index] + 1
            if self.is_(behind, "("):
                behind = self.partner[behind] + 1
            while behind < len(self.tokens) and (self.tokens[behind].kind == "word" or
                                                 self.is_(behind, "->", "::", "*", "&", "<", ">")):
                behind += 1
            if self.is_(behind, "{"):
                self.functions.append((index, behind, self.partner[behind], True))
                self._block(behind, "lambda")

    def _block(self, opening, owner):
        closing = self.partner[opening]
        block = Block(opening, closing, owner, [])
        self.blocks.append(block)
        index = opening + 1
        while index < closing:
            statement = self._statement(index)
            block.statements.append(statement)
            index = statement.end

    def _statement(self, index):
        first = index
        text = self.tokens[index].text
        if text == "{":
            self._block(index, "block")
            return Statement("compound", first, self.partner[index] + 1)
        if text in ("if", "while", "for", "switch"):
            return Statement("compound", first, self._controlled(index))
        if text == "do":
            index = self._body(index + 1, "do") + 1
            self.conditions.append((index + 1, self.partner[index]))
            return Statement("compound", first, self.partner[index] + 2)
        if text == "try":
            index = self._body(index + 1, "try")
            while self.is_(index, "catch"):
                index = self._body(self.partner[index + 1] + 1, "try")
            return Statement("compound", first, index)
        if text in ("case", "default"):
            while not self.is_(index, ":"):
                index += 1
            return Statement("label", first, index + 1)
        end = self._to(index, ";") + 1
        if text in _JUMPS:
            return Statement("jump", first, end)
        name = self._declared(first, end)
        return Statement("declaration" if name is not None else "expression", first, end, name or "")

    def _controlled(self, index):
        keyword = self.tokens[index].text
        opening = index + 1
        if self.is_(opening, "constexpr"):
            opening += 1
        closing = self.partner[opening]
        parts, part = [], opening + 1
        while part <= closing:
            end = min(self._to(part, ";"), closing)
            parts.append((part, end))
            part = end + 1
        if keyword == "for":
            self.loop_heads.append((opening + 1, closing))
            if len(parts) >= 2 and parts[1][0] < parts[1][1]:
                self.conditions.append(parts[1])
        elif keyword != "switch" and not self.is_(index + 1, "constexpr"):
            self.conditions.append(parts[-1])
        end = self._body(closing + 1, keyword)
        if keyword == "if" and self.is_(end, "else"):
            end = self._body(end + 1, "if")
        return end

    def _body(self, index, owner):
        if self.is_(index, "{"):
            self._block(index, owner)
            return self.partner[index] + 1
        return self._statement(index).end

    def _to(self, index, mark):
        while index < len(self.tokens) and not self.is_(index, mark):
            if self.tokens[index].text in _PAIRS:
                index = self.partner[index]
            elif self.tokens[index].text in _PAIRS.values():
                return index  # the brackets around end before
            index += 1
        return index

    def _declared(self, first, end):
        """The name that a statement declares; "" for a declaration without one; None for none."""
        if self.is_(first, "using", "static_assert", "struct", "class", "enum", "typedef"):
            return ""
        index = first
        while self.is_(index, "const", "static", "constexpr", "constinit", "unsigned", "auto"):
            index += 1
        if index > first and self.is_(index, "&", "*"):
            index += 1
        if index == first or not self.is_(index + 1, "=", ";", "(", "{", "["):
            if not (index < end and self.tokens[index].kind == "word") or \
                    self.is_(index, *_NO_TYPES):
                return None
            index += 1
            while self.is_(index, "::", "<") or self.is_(index - 1, "::"):
                if self.is_(index, "<"):
                    index = self._behind_template(index)
                else:
                    index += 1
            while self.is_(index, "*", "&", "const"):
                index += 1
        if index < end and self.tokens[index].kind == "word" and \
                self.is_(index + 1, "=", ";", "(", "{", "["):
            return self.tokens[index].text
        return None

    def _behind_template(self, index):
        depth = 0
        while index < len(self.tokens):
            text = self.tokens[index].text
            depth += (text == "<") - (text == ">") - 2 * (text == ">>")
            index += 1
            if depth <= 0 or text in (";", "{"):
                break
        return index
