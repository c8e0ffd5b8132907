# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Fields that follow the scale from now on: at once, at the next visit, in the page's next version."""

import json

from browser_harness import SLOW_START
from hands import ALWAYS_ITEM, INSIDE_FRAME, PUT_ITEM
from test_any_field import ONE_PAIR, SHOP, AnyFieldTest, field
from waiting import wait_until

FRAME = "document.querySelector('iframe')"
HEAVIER = {"lb": "4.409", "oz": "70.55", "kg": "2", "g": "2000", "lb oz": "4 7"}
LIGHTER = {"lb": "1.102", "oz": "17.64", "kg": "0.5", "g": "500", "lb oz": "1 2"}


class RememberedTest(AnyFieldTest):
    def setUp(self):
        self.forget_all()

    def forget_all(self):
        options = self.options_page()
        options.evaluate("document.querySelectorAll('#fields button').forEach((each) => each.click())")
        wait_until(lambda: options.evaluate(
            "!document.getElementById('noFields').hidden"
            " && document.querySelectorAll('#fields button').length === 0"), "nothing remembered")
        options.close()

    def remembered(self):
        options = self.options_page()
        wait_until(lambda: options.evaluate("document.querySelector('#fields li') !== null"),
                   "the list")
        found = options.evaluate("[...document.querySelectorAll('#fields li span')]"
                                 ".map((each) => each.textContent)")
        options.close()
        return found

    def remember(self, element, page=None):
        """The browser asks for the site."""
        page = page or self.page
        self.hands.choose_and_allow(page, element, ALWAYS_ITEM)
        self.wait_for_badge("This field follows the scale from now on")
        self.program_end.wait_until_followed()

    def push(self, texts, element, expected):
        self.program_end.wait_until_followed()
        self.program_end.push(texts)
        self.wait_for_value(element, expected)

    def test_from_now_on(self):
        self.page.go(f"{SHOP}/shop")
        self.remember(field("shipWeight"))
        self.push(HEAVIER, field("shipWeight"), "2")
        self.program_end.push(HEAVIER)
        self.push(LIGHTER, field("shipWeight"), "0.5")
        self.assertEqual(self.events(), {"shipWeight": 2 * ONE_PAIR})
        self.page.go(f"{SHOP}/shop?visit=2")
        self.push(HEAVIER, field("shipWeight"), "2")
        self.page.go(f"{SHOP}/shop?version=2")
        self.push(LIGHTER, field("shipWeight"), "0.5")
        self.assertEqual(self.events(), {"shipWeight": ONE_PAIR})
        self.assertEqual(self.remembered(), ["Weight in kg on www.shop.example, in kilograms"])
