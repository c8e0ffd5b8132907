# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Nothing is read, written or said as long as the person does not ask for the weight."""

import any_pages
from test_any_field import SHOP, AnyFieldTest, field

BROWSED = [f"{SHOP}/{name}" for name in any_pages.NAMES] + [
    f"https://www.shop.example/frameworks/{name}" for name in ("react", "angular", "vue")]

_FIRST = """document.querySelector("input:not([readonly]):not([type=date]), [contenteditable]")"""


class UntouchedTest(AnyFieldTest):
    def test_twenty_pages_with_fields(self):
        self.assertGreaterEqual(len(BROWSED), 20)
        said = len(self.program_end.said)
        for url in BROWSED:
            self.page.go(url)
            if self.page.evaluate(f"{_FIRST} !== null"):
                self.hands.focus(self.page, _FIRST)
                self.hands.press("7")
            self.assertIsNone(self.badge())
        self.assertTrue(self.program_end.is_quiet(1))
        # When a window had the focus, and that no page in front is one that may be known.
        kinds = [next(iter(message)) for message in self.program_end.heard]
        self.assertEqual(set(kinds) - {"hello", "focused"}, {"current"})
        self.assertEqual([message for message in self.program_end.heard if "current" in message],
                         [{"current": None}])
        self.assertEqual(len(self.program_end.said), said)

    def test_what_asking_says(self):
        """Its whole conversation: that the weight is wanted."""
        self.page.go(f"{SHOP}/shop")
        heard = len(self.program_end.heard)
        self.put_by_key(field("shipWeight"), "1")
        self.assertTrue(self.program_end.is_quiet(1))
        self.assertEqual([message for message in self.program_end.heard[heard:]
                          if "focused" not in message], [{"weight": "once"}])
        self.page.go(f"{SHOP}/shop?visit=2")
        self.assertTrue(self.program_end.is_quiet(1))
        self.assertEqual(self.page.evaluate(f"{field('shipWeight')}.value"), "")
        self.assertEqual(self.events(), {})
