# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""C++ taken apart as far as mutations need it: tokens, and named constants that belong together."""

import dataclasses
import re

PATTERN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\\n|\\.)*)
      | (?P<text>(?:u8|[uUL])?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"
              |(?:u8|[uUL])?"(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)*')
      | (?P<number>0[xX][0-9a-fA-F']+[a-zA-Z_]*|(?:\d[\d']*)?\.?\d+(?:[eE][+-]?\d+)?[a-zA-Z_]*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<operator><=>|<<=|>>=|->\*|::|\+\+|--|->|&&|\|\||==|!=|<=|>=|<<|>>|\+=|-=|\*=|/=|%=|&=
              |\|=|\^=|[-+*/%&|^~!<>=?:;,.(){}\[\]])
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)
CLOSING = {"(": ")", "[": "]", "{": "}"}


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


def tokens_of(source):
    tokens = []
    for match in PATTERN.finditer(source):
        kind = match.lastgroup if match.lastgroup != "mark" else "text"
        if kind not in ("comment", "directive"):
            tokens.append(Token(kind, match.group(), match.start(), match.end()))
    return tokens


def closing(tokens, opening):
    """The index of the bracket that closes the one at an index."""
    depth = 0
    for index in range(opening, len(tokens)):
        if tokens[index].text in CLOSING:
            depth += 1
        elif tokens[index].text in CLOSING.values():
            depth -= 1
            if depth == 0:
                return index
    return len(tokens) - 1


def constant_groups(sources):
    """Lists of names that may be taken for one another, by enumeration or namespace; under "" those
    of neither."""
    groups = {}
    for source in sources:
        text = "".join(" " if match.lastgroup == "comment" else match.group()
                       for match in re.finditer(PATTERN.pattern + r"|(?P<rest>.)", source,
                                                PATTERN.flags))
        for name, members in re.findall(r"enum class (\w+)[^{;]*\{([^}]*)\}", text):
            add_group(groups, name, re.findall(r"(\w+)\s*(?:=[^,]*)?(?:,|$)", members.strip()))
        inside = re.compile(r"namespace (\w+) \{((?:\s*inline constexpr [^;]*;)+)\s*\}")
        for name, members in inside.findall(text):
            add_group(groups, name, re.findall(r"(\w+) =", members))
        by_type = {}
        for kind, name in re.findall(r"constexpr ([\w:]+) (\w+) =", inside.sub("", text)):
            by_type.setdefault(kind, []).append(name)
        for names in by_type.values():
            add_group(groups, "", names)
    return groups


def add_group(groups, name, members):
    if len(members) > 1:
        groups.setdefault(name, []).append(members)
