"""Where a C++ source can be changed, and into what. Layout tells what a parser would have to: the
sources are formatted, so an operator between two values has a space on either side, and the brackets
of a template have none."""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""
      (?P<comment>//[^\n]*|/\*.*?\*/)
    | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
    | (?P<raw>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)")
    | (?P<string>"(?:\\.|[^"\\\n])*")
    | (?P<char>'(?:\\.|[^'\\\n])+')
    | (?P<number>\b(?:0[xX][0-9a-fA-F']+|\d[\d.']*(?:[eE][-+]?\d+)?)[uUlLfF]*)
    | (?P<word>[A-Za-z_]\w*)
    | (?P<operator><<=|>>=|->|\+\+|--|[-+*/%&|^<>=!]=|&&|\|\||<<|>>|::|[-+*/%&|^~!<>=?:;,.(){}\[\]])
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

BETWEEN_VALUES = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">"], "<=": ["<", ">="], ">": [">=", "<"],
    ">=": [">", "<="], "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"],
    "%": ["/"], "&": ["|"], "|": ["&"], "<<": [">>"], ">>": ["<<"], "+=": ["-="], "-=": ["+="],
}  # fmt: skip
WORDS = {
    "true": ["false"], "false": ["true"], "break": [""], "continue": [""],
    "kSuccess": ["kFailure"], "kFailure": ["kSuccess"],
    "LOG_ERROR": ["LOG_DEBUG"], "LOG_DEBUG": ["LOG_ERROR"], "LOG_INFO": ["LOG_ERROR"],
    "LOG_WARNING": ["LOG_INFO"],
}  # fmt: skip
NO_STATEMENT = set(
    "alignas auto case class const constexpr default delete do else enum explicit extern for friend "
    "goto if inline namespace new operator private protected public return sizeof static struct "
    "switch template throw try typedef typename union using virtual void while".split()
)


@dataclass(frozen=True)
class Change:
    file: str
    line: int
    start: int
    end: int
    text: str  # what stands there instead
    kind: str

    def applied_to(self, source):
        return source[: self.start] + self.text + source[self.end :]

    def shown(self, source):
        """The changed line, with what was there and what is."""
        before = source[source.rfind("\n", 0, self.start) + 1 : self.start]
        rest = source.find("\n", self.end)
        after = source[self.end : rest if rest >= 0 else len(source)]
        shown = f"{before}[-{source[self.start:self.end]}-]{{+{self.text}+}}{after}"
        return re.sub(r"\s+", " ", shown).strip()


@dataclass
class Token:
    kind: str
    text: str
    start: int
    end: int


def tokens_of(source):
    found = (Token(m.lastgroup, m.group(), m.start(), m.end()) for m in TOKEN.finditer(source))
    # The mark of a raw text is a group of its own, and the last that matched.
    found = [Token("raw", t.text, t.start, t.end) if t.kind == "mark" else t for t in found]
    return [t for t in found if t.kind not in ("comment", "directive")]


def closing(tokens, at):
    """The index of the bracket that closes the one at this index."""
    depth = 0
    for i in range(at, len(tokens)):
        if tokens[i].text in ("(", "{", "["):
            depth += 1
        elif tokens[i].text in (")", "}", "]"):
            depth -= 1
            if depth == 0:
                return i
    return len(tokens) - 1


def statement_end(tokens, at):
    """The semicolon of a call or an assignment that starts here; None when something else does."""
    if tokens[at].kind != "word" and tokens[at].text not in ("++", "--"):
        return None
    if tokens[at].text in NO_STATEMENT:
        return None
    i = at
    does_something = tokens[at].text in ("++", "--")
    while i < len(tokens) and tokens[i].text != ";":
        token = tokens[i]
        if token.text in ("{", "}", ")", "]", "default", "delete"):
            return None
        # Two words in a row declare something.
        if token.kind == "word" and i > at and tokens[i - 1].kind == "word" and not does_something:
            return None
        does_something |= token.text in ("(", "=", "+=", "-=", "|=", "&=", "++", "--")
        i = closing(tokens, i) + 1 if token.text in ("(", "[") else i + 1
        if token.text == "=" and i < len(tokens) and tokens[i].text == "{":
            i = closing(tokens, i) + 1
    return i if does_something and i < len(tokens) else None


def other_text(token):
    """A text with one letter or digit changed that is no part of an escape or a conversion."""
    plain = re.sub(r"\\(x[0-9a-fA-F]+|.)|%[-+ #0-9.*lhz]*[a-zA-Z%]", lambda m: "\0" * len(m[0]), token)
    first = token.find("(") if token.startswith("R") else 0
    places = [m.start() for m in re.finditer(r"[A-Za-z0-9]", plain) if m.start() > first]
    if not places:
        return None
    at = places[len(places) // 2]
    letter = token[at]
    other = {"z": "y", "Z": "Y", "9": "8"}.get(letter) or chr(ord(letter) + 1)
    return token[:at] + other + token[at + 1 :]


def other_numbers(text):
    match = re.fullmatch(r"(0[xX][0-9a-fA-F]+|[1-9]\d*|0)([uUlL]*)", text)
    if match is None:
        return []
    value = int(match[1], 0)
    # A limit of many is tested near it or not at all.
    changed = {value + 1, max(value - 1, 0), *((value * 2, value // 2) if value > 64 else ())} - {value}
    return [(hex(n) if text[:2].lower() == "0x" else str(n)) + match[2] for n in sorted(changed)]


def of_token(source, tokens, i):
    """Pairs of a kind and a text in place of the token."""
    token = tokens[i]
    spaced = source[token.start - 1 : token.start].isspace() and source[token.end :][:1].isspace()
    if token.kind == "operator":
        if spaced and i > 0 and tokens[i - 1].text != "operator":
            yield from (("operator", other) for other in BETWEEN_VALUES.get(token.text, []))
        if token.text == "!":
            yield "negation", ""
        if token.text in ("++", "--"):
            yield "step", "--" if token.text == "++" else "++"
    elif token.kind == "word":
        yield from (("word", other) for other in WORDS.get(token.text, []))
    elif token.kind == "number":
        yield from (("number", other) for other in other_numbers(token.text))
    elif token.kind in ("string", "raw"):
        other = other_text(token.text)
        if other is not None and not (i > 0 and tokens[i - 1].text == "extern"):
            yield "text", other


def lines_of_rows(source):
    """Neighbouring lines of a table, which can change places."""
    lines = source.splitlines(keepends=True)
    at = 0
    for line, following in zip(lines, lines[1:]):
        rows = [re.fullmatch(r'\s*(\{.*\}|".*"),\n', text) for text in (line, following)]
        if all(rows) and line.strip() != following.strip():
            yield at, at + len(line) + len(following), following + line
        at += len(line)


def changes_in(file, source):
    found = []

    def add(start, end, text, kind):
        found.append(Change(file, source.count("\n", 0, start) + 1, start, end, text, kind))

    tokens = tokens_of(source)
    for i, token in enumerate(tokens):
        for kind, text in of_token(source, tokens, i):
            add(token.start, token.end, text, kind)
        following = tokens[i + 1] if i + 1 < len(tokens) else None
        if following is None:
            continue
        if token.text in ("if", "while") and following.text == "(":
            end = tokens[closing(tokens, i + 1)]
            condition = source[following.start : end.end]
            add(following.start, end.end, f"(!{condition})", "condition")
        if token.text == "|" and re.fullmatch(r"[A-Z]+_\w+", following.text):
            add(token.start, following.end, "", "flag")
        if token.text in (";", "{", "}", ":"):
            end = statement_end(tokens, i + 1)
            if end is not None:
                add(following.start, tokens[end].start, "", "statement")
    for start, end, text in lines_of_rows(source):
        add(start, end, text, "rows")
    return found
