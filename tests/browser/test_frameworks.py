# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The weight in forms that belong to a framework: what the framework knows of it, how often it is
told, and whether the program notices where the page makes another number of it."""

import json

import framework_pages as pages
from browser_harness import SLOW_START, BrowserTest
from waiting import wait_until

UPS = "https://www.ups.com"
FEDEX = "https://www.fedex.com"
EXPORTED = "2.205"  # of 1000 g
STEADY = 15  # polls, 6 s

# Masks with room for two decimals move the point, which the program cannot prevent; it says so.
OTHER_NUMBERS = {"imask-pattern": "220.5", "jquery-mask-two-decimals": "22.05"}
# What the page has come to know of the field. It hears of no key, because none was pressed.
KNOWN = OTHER_NUMBERS | {"jquery-keyup": None}

ONE_PAIR = ["input", "change"]


class FrameworksTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.start_weighing()
        cls.program.scale.tell("weight 1000")
        cls.program.wait_for_polls(3)

    def noted(self, what):
        return json.loads(self.page.evaluate(f"document.documentElement.dataset.{what} || '{{}}'"))

    def expect(self, fields):
        """@param fields by name of page"""
        self.wait_for_values(self.page, {field: EXPORTED for name, field in fields.items()
                                         if name not in OTHER_NUMBERS})
        known = {field: [KNOWN.get(name, EXPORTED)] for name, field in fields.items()
                 if KNOWN.get(name, EXPORTED) is not None}
        wait_until(lambda: self.noted("known") == known,
                   lambda: f"{known} known; it is {self.noted('known')}", SLOW_START)

    def events_by_field(self):
        events = {}
        for field, kind in self.noted("events"):
            events.setdefault(field, []).append(kind)
        return events

    def test_each_alone(self):
        for name in pages.SCRIPTS:
            with self.subTest(name):
                self.page.go(f"{UPS}/frameworks/{name}")
                self.expect({name: "weight"})
                self.wait_for_indicator(
                    self.program, "UPS: 1 field shows another number" if name in OTHER_NUMBERS
                    else "Filling UPS: 1 field")
                self.program.wait_for_polls(2)
                self.assertEqual(self.events_by_field(), {"weight": ONE_PAIR})
                self.expect({name: "weight"})

    def test_a_steady_weight_is_no_news(self):
        fields = dict(zip(pages.SCRIPTS, pages.FIELDS))
        self.page.go(f"{UPS}/frameworks/{','.join(fields)}")
        self.expect(fields)
        self.program.wait_for_polls(STEADY)
        self.assertEqual(self.events_by_field(), dict.fromkeys(fields.values(), ONE_PAIR))
        self.expect(fields)
        self.wait_for_indicator(self.program, f"UPS: {len(OTHER_NUMBERS)} fields show another number")

    def test_a_rate_page(self):
        self.page.go(f"{FEDEX}/rates")
        expected = {"perPackageWeight": EXPORTED, "psdData.mpsRowDataList[0].weight": "2.204",
                    "aryShipmentWeight[0]": EXPORTED}
        self.wait_for_values(self.page, expected)
        self.program.wait_for_polls(2)
        self.assertEqual(self.noted("known"), {name: [text] for name, text in expected.items()})
        self.assertEqual(self.events_by_field(), dict.fromkeys(expected, ONE_PAIR))
