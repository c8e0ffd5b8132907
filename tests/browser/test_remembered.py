# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Fields that follow the scale from now on: at once, at the next visit, in the page's next version."""

import json

from hands import ALWAYS_ITEM, FRAME, INSIDE_FRAME
from remembering import ALIKE, HEAVIER, LIGHTER, SITE, RememberingTest
from test_any_field import ONE_PAIR, SHOP, field
from waiting import wait_until

OTHER_SITE = "www.market.example"


class RememberedTest(RememberingTest):
    def test_from_now_on(self):
        self.page.go(f"{SHOP}/shop")
        self.program_end.weigh(HEAVIER)
        self.remember(field("shipWeight"))
        self.wait_for_value(field("shipWeight"), "2")
        self.weigh(LIGHTER, field("shipWeight"), "0.5")
        self.assertEqual(self.events(), {"shipWeight": 2 * ONE_PAIR})
        self.page.go(f"{SHOP}/shop?visit=2")
        self.weigh(HEAVIER, field("shipWeight"), "2")
        self.page.go(f"{SHOP}/shop?version=2")
        self.weigh(LIGHTER, field("shipWeight"), "0.5")
        self.assertEqual(self.events(), {"shipWeight": ONE_PAIR})
        self.assertEqual(self.remembered(), ["Weight in kg on www.shop.example, in kilograms"])

    def test_pages_of_all_kinds(self):
        for page, element in {
                "open": "inner", "closed": "inner", "renamed": field("renamedWeight"),
                "late": field("lateWeight"), "number": field("stepped")}.items():
            with self.subTest(page):
                self.page.go(f"{SHOP}/{page}")
                wait_until(lambda: self.page.evaluate(f"{element} instanceof HTMLElement"),
                           "the field")
                self.remember(element)
                unit = "lb" if page == "number" else "kg"
                expected = {"lb": "4.5", "kg": "2"}[unit]
                self.weigh(HEAVIER, element, expected)
                self.page.go(f"{SHOP}/{page}?visit=2")
                self.program_end.weigh(LIGHTER)
                wait_until(lambda: self.page.evaluate(f"{element} instanceof HTMLElement"),
                           "the field")
                self.wait_for_value(element, {"lb": "1.2", "kg": "0.5"}[unit])

    def test_frameworks(self):
        names = {"React": "weight", "Angular": "weight1", "Vue": "weight2"}
        self.page.go("https://www.shop.example/frameworks/react,angular,vue")
        wait_until(lambda: self.page.evaluate(f"{field('weight2')} !== undefined"), "the fields")
        for name in names.values():
            self.remember(field(name))
        for visit, texts in {"": HEAVIER, "?visit=2": LIGHTER}.items():
            self.page.go(f"https://www.shop.example/frameworks/react,angular,vue{visit}")
            self.program_end.weigh(texts)
            for name in names.values():
                self.wait_for_value(field(name), texts["lb"])
            known = {name: [texts["lb"]] for name in names.values()}
            wait_until(lambda: json.loads(self.page.evaluate(
                "document.documentElement.dataset.known || '{}'")) == known, "the frameworks know")

    def test_a_page_that_is_one_application(self):
        self.page.go(f"{SHOP}/single")
        self.program_end.weigh(HEAVIER)
        self.remember(field("appWeight"))
        self.wait_for_value(field("appWeight"), "2")
        self.hands.click(self.page, "document.getElementById('toOrders')")
        wait_until(lambda: self.page.evaluate(f"{field('quantity')} !== undefined"), "the orders")
        self.program_end.weigh(LIGHTER)
        wait_until(lambda: self.program_end.said[-1]["weight"]["texts"] == LIGHTER, "the reading")
        self.hands.click(self.page, "document.getElementById('toParcel')")
        wait_until(lambda: self.page.evaluate(f"{field('appWeight')} !== undefined"), "the parcel")
        self.wait_for_value(field("appWeight"), "0.5")
        self.assertEqual(self.events(), {"appWeight": 2 * ONE_PAIR})

    def test_frames(self):
        for page, site in {"framed": SITE, "framed-other": OTHER_SITE}.items():
            with self.subTest(page):
                self.page.go(f"{SHOP}/{page}")
                self.hands.focus_frame(self.page)
                self.hands.always(self.page, FRAME, site, INSIDE_FRAME)
                self.program_end.weigh(HEAVIER)
                self.wait_for_framed("2")
                self.page.go(f"{SHOP}/{page}?visit=2")
                self.program_end.weigh(LIGHTER)
                self.wait_for_framed("0.5")
        self.assertEqual(self.remembered(), [
            "Framed weight (kg) on www.shop.example, in kilograms",
            "Framed weight (kg) on www.market.example, in kilograms"])

    def test_two_that_are_alike(self):
        self.page.go(f"{SHOP}/similar")
        self.hands.always(self.page, "document.querySelectorAll('input')[1]", SITE)
        self.wait_for_badge(ALIKE)
        self.hands.note_given_back()
        self.page.go(f"{SHOP}/similar-later")
        self.remember(field("gross"))
        self.weigh(HEAVIER, field("gross"), "4.409")
        self.page.go(f"{SHOP}/similar-later?version=2")
        self.program_end.weigh(LIGHTER)
        wait_until(lambda: self.remembered() == [
            "Gross on www.shop.example, in pounds: another field there looks the same by now, so "
            "neither gets the weight"], "the reason in the list")
        self.assertEqual(self.events(), {})

    def test_taking_it_back(self):
        self.page.go(f"{SHOP}/shop")
        self.remember(field("shipWeight"))
        self.hands.choose(self.page, field("shipWeight"), ALWAYS_ITEM)
        self.wait_for_badge("This field follows the scale no more")
        wait_until(lambda: self.program_end.wishes()[-1] == "stop", "nothing asked for any more")
        self.assertFalse(self.is_allowed())

    def test_the_unit_that_the_person_chose(self):
        self.page.go(f"{SHOP}/shop")
        self.hands.focus(self.page, field("shipWeight"))
        for text in ("1", "2.205"):
            self.hands.press_put_key()
            self.wait_for_value(field("shipWeight"), text)
        self.remember(field("shipWeight"))
        self.weigh(HEAVIER, field("shipWeight"), "4.409")
