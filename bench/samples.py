# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What a figure was in each of its runs."""

import dataclasses
import statistics


@dataclasses.dataclass(frozen=True)
class Samples:
    values: list

    @property
    def median(self):
        return statistics.median(self.values)

    @property
    def spread(self):
        """Of the middle eight tenths. One value, which a count is, has none."""
        if len(self.values) == 1:
            return self.values * 2
        tenths = statistics.quantiles(self.values, n=10)
        return tenths[0], tenths[-1]

    def over(self, floor):
        """Run by run, so that what the machine did meanwhile tells on both."""
        return Samples([own / other for own, other in zip(self.values, floor.values)])


@dataclasses.dataclass(frozen=True)
class Figure:
    name: str
    goal: float
    unit: str
    samples: Samples
    note: str = ""

    @property
    def is_met(self):
        return self.goal is None or self.samples.median <= self.goal

    def row(self):
        low, high = self.samples.spread
        goal = "" if self.goal is None else f"≤ {self.goal:g} {self.unit}".rstrip()
        verdict = "" if self.goal is None else "met" if self.is_met else "**missed**"
        return (f"| {self.name} | {goal} | {_text(self.samples.median)} {self.unit} "
                f"| {_text(low)} … {_text(high)} | {len(self.samples.values)} | {verdict} "
                f"| {self.note} |")


def _text(number):
    return f"{number:.3g}" if abs(number) < 1000 else f"{number:,.0f}"
