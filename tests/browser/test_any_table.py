# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What comes of each kind of page and field, in each browser: the table in browser/README.md is made of
this and compared with it."""

import json
import pathlib

from any_kinds import kinds
from browser_harness import SLOW_START
from hands import ALWAYS_ITEM, FRAME, INSIDE_FRAME
from remembering import HEAVIER, LIGHTER, RememberingTest
from waiting import wait_until

README = pathlib.Path(__file__).parents[2] / "browser" / "README.md"
HEADER = "| Page | at the cursor | remembered | next visit | next version |"

YES, REFUSED, NOTHING, UNTRIED = "yes", "refused", "nothing", ""

# In the page, or in a frame of its site; what it says cannot be seen there.
_BADGE = """[document, ...[...document.querySelectorAll("iframe")].map((frame) => frame.contentDocument)]
    .some((each) => each?.querySelector("postal-scale-badge"))"""


def written_table():
    """By the name of the kind: four cells."""
    lines = README.read_text(encoding="utf-8").split(HEADER + "\n", 1)[1].splitlines()
    rows = [line for line in lines[1:lines.index("")]]
    cells = [[cell.strip() for cell in row.strip("|").split("|")] for row in rows]
    return {name: columns for name, *columns in cells}


class TableTest(RememberingTest):
    def kinds(self):
        return kinds(self.site.port)

    def show(self, kind, **query):
        self.page.go(kind.address(**query))
        ready = f"{FRAME} !== null" if kind.is_framed else f"{kind.element} instanceof HTMLElement"
        wait_until(lambda: self.page.evaluate(ready), "the field")

    def holds(self, kind, texts):
        """The page too, if it has a framework."""
        if self.page.evaluate(kind.shown) != texts:
            return False
        known = json.loads(self.page.evaluate("document.documentElement.dataset.known || '{}'"))
        return not kind.is_knowing or next(iter(known.values()), [""])[-1] == texts

    def has_badge(self):
        return self.page.evaluate(_BADGE) or self.badge() is not None

    def at_the_cursor(self, kind):
        self.show(kind)
        before = self.page.evaluate(kind.shown)
        if kind.is_framed:
            self.hands.focus_frame(self.page)
        else:
            self.hands.focus(self.page, kind.element)
        if kind.texts[0].startswith("Weight:"):
            self.hands.press("End")
        self.hands.press_put_key()
        wait_until(lambda: self.holds(kind, kind.texts[0]) or self.has_badge(),
                   "the weight, or a reason", SLOW_START)
        if self.holds(kind, kind.texts[0]):
            return YES
        self.assertEqual(self.page.evaluate(kind.shown), before)
        return REFUSED

    def choose_always(self, kind):
        """@returns whether the field is remembered now"""
        element, inside = (FRAME, INSIDE_FRAME) if kind.is_framed else (kind.element, ("null", "null"))
        if kind.is_framed:
            self.hands.focus_frame(self.page)
        if kind.address().startswith("https:") and kind.page != "/any/unaddressed":
            self.hands.always(self.page, element, kind.site, inside)
        else:  # of which no browser asks
            self.hands.choose(self.page, element, ALWAYS_ITEM, inside)
        wait_until(lambda: self.has_badge() or self.program_end.is_followed(), "an answer", SLOW_START)
        return self.count_remembered() > 0

    def count_remembered(self):
        options = self.options_page()
        count = options.evaluate("(globalThis.browser ?? chrome).storage.local.get({recipes: []})"
                                 ".then(({recipes}) => recipes.length)")
        options.close()
        return count

    def remembered_at(self, kind):
        if not kind.has_item:
            return UNTRIED
        self.show(kind)
        if not self.choose_always(kind):
            self.hands.note_given_back()
            return REFUSED
        self.program_end.wait_until_followed()
        self.program_end.weigh(HEAVIER)
        self.wait_until_held(kind, kind.texts[1])
        return YES

    def wait_until_held(self, kind, texts):
        wait_until(lambda: self.holds(kind, texts),
                   lambda: f"{texts!r}; it is {self.page.evaluate(kind.shown)!r}", SLOW_START)

    def visited(self, kind, written, texts, readings, **query):
        """@param written what is to come of it: a weight may take a while, its absence has no end"""
        self.show(kind, **query)
        if written == YES:
            self.program_end.weigh(readings)
            self.wait_until_held(kind, texts)
            return YES
        self.pass_readings(readings)
        value = self.page.evaluate(kind.shown)
        (listed,) = self.remembered()
        self.assertIn(": ", listed)  # and why there is nothing
        return YES if value else NOTHING

    def row_of(self, kind, written):
        self.setUp()
        cells = [self.at_the_cursor(kind), self.remembered_at(kind)]
        if kind.before:
            self.assertEqual((cells[1], self.remembered_at(kind.before)), (REFUSED, YES))
        elif cells[1] != YES:
            return [*cells, UNTRIED, UNTRIED]
        return [*cells, self.visited(kind, written[2], kind.texts[2], LIGHTER, visit=2),
                self.visited(kind, written[3], kind.texts[1], HEAVIER, version=2)]

    def test_the_table(self):
        written = written_table()
        self.assertEqual(list(written), list(self.kinds()))
        name = self.browser.name
        for title, kind in self.kinds().items():
            with self.subTest(title):
                found = self.row_of(kind, written[title])
                print(f"| {title} | {' | '.join(found)} |", flush=True)
                expected = [{"Firefox": YES if name == "firefox" else REFUSED}.get(cell, cell)
                            for cell in written[title]]
                self.assertEqual(found, expected)
