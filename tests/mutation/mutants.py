# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The mistakes that are put into a source file, one at a time.

The sources are clang-formatted, which tells binary operators (blanks on both sides) from templates,
pointers and signs. What the compiler refuses is sorted out later, so a rule here may be generous.
"""

import dataclasses
import re

from tokens import closing, tokens_of

COMPARISONS = {
    "==": ["!="],
    "!=": ["=="],
    "<": ["<=", ">="],
    "<=": ["<", ">"],
    ">": [">=", "<="],
    ">=": [">", "<"],
}
EXCHANGES = {
    "&&": ["||"],
    "||": ["&&"],
    "+": ["-"],
    "-": ["+"],
    "*": ["/"],
    "/": ["*"],
    "%": ["/"],
    "&": ["|"],
    "|": ["&"],
    "<<": [">>"],
    ">>": ["<<"],
}
ASSIGNMENTS = {"+=": "-=", "-=": "+=", "*=": "/=", "/=": "*="}
STEPS = {"++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true", "float": "double", "double": "float"}
KEPT_STATEMENTS = {
    "return", "using", "namespace", "class", "struct", "enum", "template", "typedef", "public",
    "private", "protected", "static_assert", "constexpr", "static", "friend",
}
# A shorter line, like "return;", is told apart by the one before.
TELLING_LENGTH = 28
NOT_CALLED = {"if", "for", "while", "switch", "return", "sizeof", "catch", "noexcept", "alignas"}


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str
    line: int
    ordinal: int
    kind: str
    start: int
    end: int
    text: str
    before: str  # the lines that it touches, blanks made one
    after: str

    @property
    def name(self):
        return f"{self.path}:{self.line}:{self.ordinal}"

    def applied_to(self, source):
        lost = source[self.start : self.end].count("\n") - self.text.count("\n")
        # Lines keep their numbers.
        return source[: self.start] + self.text + "\n" * lost + source[self.end :]


def mutants_of(path, source, groups):
    """All of a file, in the order of the file."""
    finder = Finder(source, groups)
    finder.find()
    mutants = []
    ordinals = {}
    for start, end, kind, text in sorted(set(finder.found)):
        line = source.count("\n", 0, start) + 1
        ordinals[line] = ordinals.get(line, 0) + 1
        first = source.rfind("\n", 0, start) + 1
        last = source.find("\n", end)
        if len(source[first:last].strip()) < TELLING_LENGTH:
            first = source.rfind("\n", 0, first - 1) + 1
        before = " ".join(source[first:last].split())
        after = " ".join((source[first:start] + text + source[end:last]).split())
        if before != after:
            mutants.append(
                Mutant(path, line, ordinals[line], kind, start, end, text, before, after)
            )
    return mutants


class Finder:
    def __init__(self, source, groups):
        self.source = source
        self.groups = groups
        self.tokens = tokens_of(source)
        self.found = []
        self.in_use = {
            name
            for kind, name in re.findall(r"using (enum|namespace) ([\w:]+);", source)
            for name in [name.split("::")[-1]]
            if name in groups
        } | {""}

    def find(self):
        for index, token in enumerate(self.tokens):
            if token.kind == "operator":
                self.find_operator(index, token)
            elif token.kind == "number":
                if not self.is_array_size(index):
                    self.find_number(token)
            elif token.kind == "name":
                self.find_name(index, token)
        self.find_statements()

    def add(self, kind, start, end, text):
        self.found.append((start, end, kind, text))

    def replace(self, kind, token, text):
        self.add(kind, token.start, token.end, text)

    def is_binary(self, token):
        return self.source[token.start - 1].isspace() and self.source[token.end].isspace()

    def find_operator(self, index, token):
        if self.is_binary(token):
            for other in COMPARISONS.get(token.text, []):
                self.replace("comparison", token, other)
            for other in EXCHANGES.get(token.text, []):
                self.replace("operator", token, other)
            if token.text in ASSIGNMENTS:
                self.replace("operator", token, ASSIGNMENTS[token.text])
            if token.text == "?":
                self.negate_choice(index, token)
        elif token.text in STEPS:
            self.replace("operator", token, STEPS[token.text])
        elif token.text in ("!", "~"):
            self.replace("negation", token, "")
        elif token.text == "-" and not self.source[token.end].isspace():
            self.replace("negation", token, "")

    def is_array_size(self, index):
        """One more would change nothing, one less does not compile."""
        return self.text(index - 1) == "," and self.text(index + 1) == ">"

    def negate_choice(self, index, question):
        """The whole condition, back to where its expression begins."""
        depth = 0
        first = index
        while first > 0:
            text = self.tokens[first - 1].text
            if text in (")", "]", "}"):
                depth += 1
            elif text in ("(", "[", "{"):
                if depth == 0:
                    break
                depth -= 1
            elif depth == 0 and text in (",", ";", "return", "=", ":", "?", "+", "<<"):
                break
            first -= 1
        start = self.tokens[first].start
        condition = self.source[start : question.start].rstrip()
        self.add("condition", start, start + len(condition), f"!({condition})")

    def find_number(self, token):
        match = re.fullmatch(r"(0[xX][0-9a-fA-F]+|\d+)([a-zA-Z_]*)", token.text)
        if match:
            digits, suffix = match.groups()
            value = int(digits, 0)
            for other in (value + 1, value - 1):
                if other >= 0:
                    written = f"0x{other:X}" if digits.startswith("0x") else str(other)
                    self.replace("constant", token, written + suffix)
            return
        match = re.fullmatch(r"(\d*)\.(\d+)([fF]?)", token.text)
        if match:
            whole, decimals, suffix = match.groups()
            value = int(whole + decimals)
            for other in (value + 1, value - 1):
                written = str(other).rjust(len(decimals) + 1, "0")
                self.replace(
                    "constant",
                    token,
                    f"{written[: -len(decimals)]}.{written[-len(decimals) :]}{suffix}",
                )

    def find_name(self, index, token):
        if token.text in WORDS:
            kind = "truth" if token.text in ("true", "false") else "precision"
            self.replace(kind, token, WORDS[token.text])
        self.find_constant(index, token)
        if token.text in ("if", "while") and self.text(index + 1) == "(":
            end = closing(self.tokens, index + 1)
            opening = self.tokens[index + 1]
            condition = self.source[opening.end : self.tokens[end].start]
            self.add("condition", opening.end, self.tokens[end].start, f"!({condition})")
        elif token.text not in NOT_CALLED and self.text(index + 1) == "(":
            self.swap_arguments(index + 1)

    def text(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def find_constant(self, index, token):
        before = self.text(index - 1)
        if before in (".", "->") or self.text(index + 1) in ("::", "("):
            return
        qualifier = self.text(index - 2) if before == "::" else None
        names = [qualifier] if qualifier else sorted(self.in_use)
        for name in names:
            for members in self.groups.get(name, []):
                if token.text in members:
                    other = members[(members.index(token.text) + 1) % len(members)]
                    self.replace("named constant", token, other)
                    return

    def swap_arguments(self, opening):
        end = closing(self.tokens, opening)
        parts = []
        depth = 0
        first = opening + 1
        for index in range(opening + 1, end + 1):
            text = self.text(index)
            if index == end or (text == "," and depth == 0):
                if first < index:
                    parts.append((self.tokens[first].start, self.tokens[index - 1].end))
                first = index + 1
            elif text in ("(", "[", "{"):
                depth += 1
            elif text in (")", "]", "}"):
                depth -= 1
        for one, other in zip(parts, parts[1:]):
            left = self.source[one[0] : one[1]]
            right = self.source[other[0] : other[1]]
            between = self.source[one[1] : other[0]]
            self.add("arguments", one[0], other[1], right + between + left)

    def find_statements(self):
        for index, token in enumerate(self.tokens):
            if token.text in ("{", "}", ";"):
                self.remove_statement(index + 1)
            elif token.text in ("if", "for", "while") and self.text(index + 1) == "(":
                self.remove_statement(closing(self.tokens, index + 1) + 1)
            elif token.text in ("else", "do"):
                self.remove_statement(index + 1)
            elif token.text in ("case", "default"):
                while self.text(index) not in (":", ""):
                    index += 1
                self.remove_statement(index + 1)

    def remove_statement(self, first):
        if first >= len(self.tokens) or self.tokens[first].kind != "name":
            if self.text(first) not in ("++", "--", "*"):
                return
        word = self.text(first)
        if word == "return" and self.text(first + 1) != ";":
            return
        if word in KEPT_STATEMENTS - {"return"} or word in ("if", "for", "while", "switch", "else"):
            return
        index = first
        while self.text(index) not in (";", "}", ""):
            if self.text(index) in ("(", "[", "{"):
                index = closing(self.tokens, index)
            index += 1
        if self.text(index) == ";" and index > first:
            self.add("removed", self.tokens[first].start, self.tokens[index].end, ";")
