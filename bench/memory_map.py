# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the memory of programs is made of, mapping by mapping: KiB of PSS, medians of their starts."""

import collections
import os
import pathlib
import re
import statistics

_HEAD = re.compile(r"[0-9a-f]+-[0-9a-f]+ \S+ \S+ \S+ \S+ *(.*)")
SMALLEST = 16  # KiB of difference: what has less is summed up as the others


def of_process(process_id):
    """KiB of PSS by mapping; those of one file are one."""
    process = pathlib.Path(f"/proc/{process_id}")
    own = os.readlink(process / "exe")
    sizes = collections.Counter()
    for line in (process / "smaps").read_text(encoding="utf-8").splitlines():
        if head := _HEAD.fullmatch(line):
            name = _name(head[1], own)
        elif line.startswith("Pss:"):
            sizes[name] += int(line.split()[1])
    return sizes


def _name(path, own):
    if path == own:
        return "the program's own file"
    return {"": "apart from the heap", "[heap]": "heap"}.get(path, pathlib.PurePath(path).name)


class MemoryMap:
    def __init__(self, floor, starts):
        """@param starts by program, what of_process() told of each"""
        self._floor = floor
        self._starts = starts
        names = set().union(*(sizes for each in starts.values() for sizes in each))
        self._medians = {program: {name: statistics.median(sizes[name] for sizes in each)
                                   for name in names}
                         for program, each in starts.items()}

    def table(self):
        floor = self._medians[self._floor]
        above = {program: {name: own - floor[name] for name, own in medians.items()}
                 for program, medians in self._medians.items()}
        largest = {name: max((each[name] for each in above.values()), key=abs) for name in floor}
        shown = sorted((name for name in floor if abs(largest[name]) >= SMALLEST),
                       key=largest.get, reverse=True)
        others = [name for name in floor if name not in shown]
        count = len(self._starts[self._floor])
        return "\n".join([
            f"| memory by mapping, KiB of PSS, medians of {count} starts each | {self._floor} | "
            + " | ".join(f"{program} | above" for program in self._ours()) + " |",
            "|---|" + "---|" * (1 + 2 * len(self._ours())),
            *(self._row(name, [name]) for name in shown),
            self._row(f"{len(others)} others, each less than {SMALLEST} above or below", others),
            self._row("sum of the medians above", floor),
            self._totals()])

    def _ours(self):
        return [program for program in self._starts if program != self._floor]

    def _row(self, title, names):
        return _cells(title, self._floor, {
            program: sum(medians[name] for name in names)
            for program, medians in self._medians.items()})

    def _totals(self):
        return _cells("median of the starts' own sums", self._floor, {
            program: statistics.median(sum(sizes.values()) for sizes in each)
            for program, each in self._starts.items()})


def _cells(title, floor, sizes):
    others = (f"{own:,.0f} | {own - sizes[floor]:+,.0f}"
              for program, own in sizes.items() if program != floor)
    return f"| {title} | {sizes[floor]:,.0f} | " + " | ".join(others) + " |"
