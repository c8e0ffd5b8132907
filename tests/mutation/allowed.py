# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The list of mutants that are equivalent to the program, each with its reason."""

import dataclasses
import pathlib

LIST = pathlib.Path(__file__).with_name("equivalent.txt")


@dataclasses.dataclass
class Entry:
    path: str
    before: str
    after: str
    reason: str

    def matches(self, mutant):
        return (self.path, self.before, self.after) == (mutant.path, mutant.before, mutant.after)

    def __str__(self):
        return f"{self.path}: {self.before} => {self.after}"


def read_entries():
    entries = []
    path = before = after = None
    for line in LIST.read_text().splitlines():
        mark, rest = line[:2], line[2:]
        if not line or line.startswith("#"):
            continue
        if mark == "- ":
            before = rest
        elif mark == "+ ":
            after = rest
        elif mark == "= ":
            if not (path and before and after and rest):
                raise SystemExit(f"{LIST.name}: not in order: {line}")
            entries.append(Entry(path, before, after, rest))
            after = None
        elif mark == "  ":
            entries[-1].reason += " " + rest.strip()
        else:
            path, before, after = line, None, None
    return entries
