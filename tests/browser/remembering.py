# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What tests of remembered fields have in common."""

from test_any_field import AnyFieldTest
from waiting import wait_until
from weight_stand_in import TEXTS

SITE = "www.shop.example"
HEAVIER = {"lb": "4.409", "oz": "70.55", "kg": "2", "g": "2000", "lb oz": "4 7"}
LIGHTER = {"lb": "1.102", "oz": "17.64", "kg": "0.5", "g": "500", "lb oz": "1 2"}
ALIKE = "Another field here looks the same, so neither can be remembered"
NO_MORE = "This field follows the scale no more"


class RememberingTest(AnyFieldTest):
    def setUp(self):
        self.forget_all()
        self.program_end.weigh(TEXTS)

    def forget_all(self):
        options = self.options_page()
        wait_until(lambda: options.evaluate(
            "!document.getElementById('fields').hasAttribute('aria-busy')"), "the list")
        options.evaluate("document.querySelectorAll('#fields button').forEach((each) => each.click())")
        wait_until(lambda: options.evaluate(
            "!document.getElementById('noFields').hidden"
            " && document.querySelectorAll('#fields button').length === 0"), "nothing remembered")
        options.close()
        self.hands.note_given_back()

    def remembered(self):
        options = self.options_page()
        wait_until(lambda: options.evaluate("document.querySelector('#fields li') !== null"),
                   "the list")
        found = options.evaluate("[...document.querySelectorAll('#fields li span')]"
                                 ".map((each) => each.textContent)")
        options.close()
        return found

    def remember(self, element):
        self.hands.always(self.page, element, SITE)
        self.program_end.wait_until_followed()

    def weigh(self, texts, element, expected):
        self.program_end.weigh(texts)
        self.wait_for_value(element, expected)

    def is_allowed(self, site=SITE):
        return self.call_permissions("contains", site)

    def call_permissions(self, method, site=SITE):
        options = self.options_page()
        result = options.evaluate(f"(globalThis.browser ?? chrome).permissions.{method}("
                                  f"{{origins: ['https://{site}/*']}})")
        options.close()
        return result

    def pass_readings(self, texts, count=3):
        """Each of them has reached the browser; all but the last one surely the page."""
        self.program_end.weigh(texts)
        said = self.program_end.said
        before = len(said)
        wait_until(lambda: sum("weight" in each and each["weight"]["texts"] == texts
                               for each in said[before:]) > count, "the readings")
