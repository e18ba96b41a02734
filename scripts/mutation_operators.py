# SPDX-License-Identifier: GPL-3.0-or-later
"""Mutation operators for C++ source text, modelled on a programmer's mistakes: a different operator or constant, a
bound off by one, a similar member, a deleted statement, a condition that is always true or false.

Works on tokens and relies on the project's formatting: binary operators have spaces on both sides; template brackets,
pointers and references do not. It is left to the compiler to reject invalid mutants."""

import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^\#[^\n]*)
  | (?P<string>"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|(?:\d[\d']*(?:\.\d*)?|\.\d+)(?:[eE][+-]?\d+)?)[uUlLfF]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<sign>->|\+\+|--|<<=|>>=|<=>|<=|>=|==|!=|&&|\|\||\+=|-=|\*=|/=|%=|&=|\|=|\^=|<<|>>|::|.)
""", re.VERBOSE | re.MULTILINE | re.DOTALL)

BINARY = {
    "<": ("<=",), "<=": ("<",), ">": (">=",), ">=": (">",), "==": ("!=",), "!=": ("==",),
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",), "&&": ("||",), "||": ("&&",),
    "&": ("|",), "|": ("&",), "^": ("|",), "<<": (">>",), ">>": ("<<",), "+=": ("-=",), "-=": ("+=",),
    "*=": ("/=",), "/=": ("*=",), "&=": ("|=",), "|=": ("&=",),
}
OPPOSITE = {"<": ">=", "<=": ">", ">": "<=", ">=": "<"}  # not applied where the whole condition is negated anyway
WORDS = {"true": "false", "false": "true"}
CALLS = {"min": "max", "max": "min", "ceil": "floor", "floor": "ceil", "front": "back", "back": "front",
         "checkedAdd": "checkedSubtract", "checkedSubtract": "checkedAdd", "push_back": "push_front"}
MEMBERS = {"width": "height", "height": "width", "x": "y", "y": "x", "row": "column", "column": "row"}
SIZES = {"size": "pixelSize", "pixelSize": "size"}
FLOAT_STEP = 0.05  # of the constant
# The first tokens of statements that are not expressions: declarations, or statements with their own mutants.
NO_EXPRESSION = {"return", "break", "continue", "using", "static", "const", "constexpr", "auto", "if", "else", "for",
                 "while", "do", "switch", "case", "default", "class", "struct", "enum", "namespace", "template", "try",
                 "catch", "public", "private", "protected", "explicit", "virtual", "friend", "typedef", "throw",
                 "static_assert", "extern", "inline", "unsigned", "int", "bool", "double", "float", "char"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclass(frozen=True)
class Mutant:
    """A single change: replaces [start, end) of the text."""
    start: int
    end: int
    replacement: str
    line: int
    before: str  # the affected lines, joined into one
    after: str

    @property
    def growth(self):
        return len(self.replacement) - (self.end - self.start)

    def applied_to(self, text):
        return text[:self.start] + self.replacement + text[self.end:]


def tokens_of(text):
    tokens = []
    for match in TOKEN.finditer(text):
        if match.lastgroup not in ("comment", "directive") and not match.group().isspace():
            tokens.append(Token(match.lastgroup, match.group(), match.start(), match.end()))
    return tokens


def mutants_of(text):
    """All distinct mutants of a file's text, in order."""
    tokens = tokens_of(text)
    found = {}
    for start, end, replacement in [*token_changes(text, tokens), *condition_changes(tokens),
                                    *statement_changes(tokens), *rounding_changes(text, tokens)]:
        mutant = described(text, start, end, replacement)
        found.setdefault((start, end, replacement), mutant)
    return sorted(found.values(), key=lambda mutant: (mutant.start, mutant.end, mutant.replacement))


def described(text, start, end, replacement):
    first = text.rfind("\n", 0, start) + 1
    last = text.find("\n", end)
    last = len(text) if last < 0 else last
    line = text.count("\n", 0, start) + 1
    return Mutant(start, end, replacement, line, one_line(text[first:last]),
                  one_line(text[first:start] + replacement + text[end:last]))


def one_line(text):
    return " ".join(text.split())


def other_numbers(text):
    """The replacements for a number."""
    if text.startswith(("'", '"')):
        return []
    digits, suffix = re.fullmatch(r"(0[xX][0-9a-fA-F']+|[\d.eE+'-]+?)([uUlLfF]*)", text).groups()
    plain = digits.replace("'", "")
    if not plain.lower().startswith("0x") and re.search(r"[.eE]", plain):
        value = float(plain)
        return [f"{value * factor!r}{suffix}" for factor in (1 + FLOAT_STEP, 1 - FLOAT_STEP)] if value else ["1.0"]
    if re.fullmatch(r"0\d+", plain):
        return [f"0{int(plain, 8) + step:o}{suffix}" for step in (1, -1)]
    value = int(plain, 0)
    as_text = hex if plain.lower().startswith("0x") else str
    return [as_text(value + step) + suffix for step in ((1, -1) if value else (1,))]


def conditions(tokens):
    """The indices of the first and last tokens in the parentheses of each `if` and `while`."""
    for i, token in enumerate(tokens[:-1]):
        if token.text in ("if", "while") and tokens[i + 1].text == "(":
            yield token.text, i + 2, closing(tokens, i + 1) - 1


def with_all(text, mutants):
    """The text with all these mutants, given by number, which must be inside of function bodies. Repeats a body for
    each of its mutants, and the variable `mutantNumber` selects one. Compiler errors name the file mutant_NUMBER."""
    for first, last in reversed(function_bodies(text)):
        inside = {number: mutant for number, mutant in mutants.items() if first < mutant.start and mutant.end <= last}
        if not inside:
            continue
        cases = [f'case {number}:\n#line 1 "mutant_{number}"\n{mutant.applied_to(text)[first:last + 1 + mutant.growth]}'
                 "\nbreak;\n" for number, mutant in inside.items()]
        text = (f"{text[:first]}{{ switch (mutantNumber) {{\n{''.join(cases)}default:\n{text[first:last + 1]}"
                f"\n}} }}{text[last + 1:]}")
    return text


def token_changes(text, tokens):
    """Replaces operators and constants, and names by similar ones."""
    turned = {i for _, first, last in conditions(tokens) for i in range(first, last + 1)}
    for i, token in enumerate(tokens):
        before = tokens[i - 1].text if i else ""
        after = tokens[i + 1] if i + 1 < len(tokens) else None
        if after is None:
            continue
        spaced = text[token.start - 1].isspace() and text[token.end].isspace()
        if token.kind == "sign" and spaced:
            for other in BINARY.get(token.text, ()):
                yield token.start, token.end, other
            if token.text in OPPOSITE and i not in turned:
                yield token.start, token.end, OPPOSITE[token.text]
        elif token.kind == "sign" and token.text in ("!", "-") and not text[token.end].isspace():
            yield token.start, token.end, ""
        elif token.text in ("++", "--"):
            yield token.start, token.end, "--" if token.text == "++" else "++"
        elif token.text == "?":
            yield token.start, token.end, "|| true ?"
            yield token.start, token.end, "&& false ?"
        elif token.kind == "number":
            for other in other_numbers(token.text):
                yield token.start, token.end, other
        elif token.text in WORDS:
            yield token.start, token.end, WORDS[token.text]
        elif token.text in CALLS and after.text in ("(", "<"):
            yield token.start, token.end, CALLS[token.text]
        elif token.text in MEMBERS and before in (".", "->"):
            yield token.start, token.end, MEMBERS[token.text]
        elif token.text in SIZES and text[token.end:].startswith(("().width", "().height")):
            yield token.start, token.end, SIZES[token.text]


def closing(tokens, opening):
    """The index of the closing bracket for the one at `opening`."""
    pairs = {"(": ")", "{": "}", "[": "]"}
    depth = 0
    for i in range(opening, len(tokens)):
        if tokens[i].text in pairs and tokens[i].kind == "sign":
            depth += 1
        elif tokens[i].text in pairs.values() and tokens[i].kind == "sign":
            depth -= 1
            if depth == 0:
                return i
    return len(tokens) - 1


def condition_changes(tokens):
    """Makes conditions always true or false, and loops never entered."""
    for keyword, first, last in conditions(tokens):
        inner = tokens[first:last + 1]
        semicolons = [part for part in inner if part.text == ";"]
        for value in ("true", "false") if keyword == "if" else ("false",):
            if semicolons:
                yield semicolons[0].end, inner[-1].end, f" {value}"
            elif any(part.text == "=" for part in inner):
                yield inner[-1].end, inner[-1].end, f"; {value}"
            else:
                yield inner[0].start, inner[-1].end, value


def opens_a_block(tokens, brace, is_within_block):
    """Whether the brace at this index encloses statements."""
    if brace == 0:
        return False
    before = tokens[brace - 1].text
    begin = brace
    depth = 0
    while begin > 0:
        text = tokens[begin - 1].text
        if text in (")", "]"):
            depth += 1
        elif text in ("(", "["):
            if depth == 0:
                break
            depth -= 1
        elif depth == 0 and text in (";", "{", "}"):
            break
        begin -= 1
    head = [token.text for token in tokens[begin:brace]]
    if head[:1] == ["template"] and ">" in head:
        head = head[head.index(">") + 1:]
    if any(word in head[:3] for word in ("class", "struct", "enum", "namespace", "union")):
        return False
    if before in (")", "const", "override", "noexcept", "else", "try", "do", "]"):
        return True
    if "->" in head and ")" in head:  # a lambda or function with a trailing return type
        return True
    return before in (";", "{", "}") and is_within_block


def function_bodies(text):
    """The positions of the braces of functions that are not constexpr: (opening, closing), outermost only."""
    tokens = tokens_of(text)
    bodies = []
    i = 0
    while i < len(tokens):
        if tokens[i].text == "{" and opens_a_block(tokens, i, False):
            last = closing(tokens, i)
            head = text[max(text.rfind(mark, 0, tokens[i].start) for mark in ("\n\n", ";\n", "}\n", "{\n")):
                        tokens[i].start]
            if "constexpr" not in head and "static_assert" not in head:
                bodies.append((tokens[i].start, tokens[last].start))
            i = last
        i += 1
    return bodies


def statement_changes(tokens):
    """Deletes expression statements."""
    blocks = []  # for each open brace: whether it encloses statements
    for i, token in enumerate(tokens):
        if token.text == "{":
            blocks.append(opens_a_block(tokens, i, bool(blocks) and blocks[-1]))
            if blocks[-1]:
                yield from statements_between(tokens, i + 1, closing(tokens, i))
        elif token.text == "}" and blocks:
            blocks.pop()


def statements_between(tokens, first, last):
    """The expression statements directly in a block, without those in nested blocks."""
    i = first
    behind_if = False  # deleting that statement is the same as the condition that is always false
    while i < last:
        text = tokens[i].text
        behind_if, is_behind_if = text == "if", behind_if
        if text in ("if", "for", "while", "switch", "catch"):
            if tokens[i + 1].text == "constexpr":
                i += 1
            i = closing(tokens, i + 1) + 1
            continue
        if text in ("else", "do", "try"):
            i += 1
            continue
        if text == "{":
            i = closing(tokens, i) + 1
            continue
        if text in ("case", "default"):
            while tokens[i].text != ":":
                i += 1
            i += 1
            continue
        end = i
        while end < last and tokens[end].text != ";":
            end = closing(tokens, end) + 1 if tokens[end].text in ("(", "{", "[") else end + 1
        if not is_behind_if and i < end < last and is_expression(tokens[i:end]):
            yield tokens[i].start, tokens[end].start, ""
        i = end + 1


def is_expression(tokens):
    if tokens[0].text in NO_EXPRESSION:
        return False
    for token, after in zip(tokens, tokens[1:]):
        if token.text in ("=", "(", ".", "->", "[", "{"):
            return True
        if after.kind == "word" and token.text in (">", "&", "*") or token.kind == after.kind == "word":
            return token is tokens[0] and token.kind == "sign"  # `*x = 1` is one, `T x` and `T& x` are not
    return True


def rounding_changes(text, tokens):
    """Replaces truncation by rounding down."""
    for i, token in enumerate(tokens[:-1]):
        if token.text != "truncateToInt64" or tokens[i + 1].text != "(":
            continue
        end = i + 2
        while tokens[end].text != ",":
            end = closing(tokens, end) + 1 if tokens[end].text in ("(", "{", "[") else end + 1
        argument = text[tokens[i + 2].start:tokens[end].start]
        yield tokens[i + 2].start, tokens[end].start, f"std::floor({argument})"
