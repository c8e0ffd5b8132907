# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The real program's weight in fields of any page: whatever carriers and unit are chosen."""

from browser_harness import SLOW_START, BrowserTest, Surroundings
from hands import Hands
from test_any_field import SHOP, field
from waiting import wait_until

SITE = "www.shop.example"
SETTLED_ONLY = "[General]\nlastSelectedValue=7\nsettledOnly=true\n"


class AnyWeightTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.hands = Hands(Surroundings.shared.session, Surroundings.shared.browser)
        cls.start_program(settings=SETTLED_ONLY)
        cls.program.wait_for_polls()

    def weigh(self, grams):
        """And wait until it has settled."""
        self.program.scale.tell(f"weight {grams}")
        self.program.wait_for_polls(5)

    def value(self):
        return self.page.evaluate(f"{field('shipWeight')}.value")

    def wait_for_value(self, expected):
        wait_until(lambda: self.value() == expected,
                   lambda: f"{expected!r}; it holds {self.value()!r}", SLOW_START)

    def show(self, version=1):
        self.page.go(f"{SHOP}/shop?version={version}")
        self.bring_to_front("shop")

    def test_1_at_the_cursor(self):
        self.show()
        self.weigh(1000)
        self.hands.focus(self.page, field("shipWeight"))
        self.hands.press_put_key()
        self.wait_for_value("1")
        self.weigh(0)
        self.assertEqual(self.value(), "1")

    def test_2_from_now_on(self):
        self.show()
        self.hands.always(self.page, field("shipWeight"), SITE)
        # A settled weight leaves once: the field must be ready for it.
        wait_until(lambda: "from now on" in (self.browser.text_in_closed_root(
            self.page, "postal-scale-badge") or ""), "the field remembered", SLOW_START)
        self.weigh(1500)
        self.wait_for_value("1.5")
        self.weigh(0)
        self.assertEqual(self.value(), "1.5")  # only what has settled leaves, and zero does not
        self.weigh(2500)
        self.wait_for_value("2.5")
        self.show(version=2)
        self.weigh(0)
        self.assertEqual(self.value(), "")
        self.weigh(700)
        self.wait_for_value("0.7")
