# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The weight in the field with the cursor, of any page: by the key, the menu and the toolbar."""

import json

from browser_harness import SLOW_START, BrowserTest, Surroundings
from hands import PUT_ITEM, Hands
from waiting import wait_until
from weight_stand_in import TEXTS, WeightStandIn

SHOP = "https://www.shop.example/any"
ONE_PAIR = ["input", "change"]
NEXT_UNIT_TIME = 3000  # ms; of the extension


def field(name):
    return f"document.getElementsByName('{name}')[0]"


class AnyFieldTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.hands = Hands(Surroundings.shared.session, Surroundings.shared.browser)
        cls.program_end = WeightStandIn(Surroundings.shared.session)
        cls.addClassCleanup(cls.program_end.close)

    def events(self):
        found = {}
        for name, kind in json.loads(self.page.evaluate(
                "document.documentElement.dataset.events || '[]'")):
            found.setdefault(name, []).append(kind)
        return found

    def wait_for_value(self, element, expected):
        wait_until(lambda: self.page.evaluate(f"{element}.value") == expected,
                   lambda: f"{expected!r} in {element}; it has "
                           f"{self.page.evaluate(f'{element}.value')!r}; in the corner {self.badge()!r}; "
                           f"heard {self.program_end.heard}", SLOW_START)

    def wait_for_badge(self, words):
        wait_until(lambda: self.badge() == f"Postal Scale: {words}",
                   lambda: f"{words!r} in the corner; it says {self.badge()!r}")

    def badge(self):
        return self.browser.text_in_closed_root(self.page, "postal-scale-badge")

    def wait_for_framed(self, expected):
        wait_until(lambda: self.page.evaluate("document.documentElement.dataset.framed") == expected,
                   f"{expected} in the frame", SLOW_START)

    def put_by_key(self, element, expected):
        self.hands.focus(self.page, element)
        self.hands.press_put_key()
        self.wait_for_value(element, expected)

    def text(self):
        return self.page.evaluate("((text) => text.value ?? text.textContent)"
                                  "(document.getElementById('text'))")

    def put_into_text(self, expected):
        self.hands.press_put_key()
        wait_until(lambda: self.text() == expected, lambda: f"{expected!r}; it has {self.text()!r}")


class CursorTest(AnyFieldTest):
    def test_the_menu(self):
        self.page.go(f"{SHOP}/shop")
        self.hands.choose(self.page, field("shipWeight"), PUT_ITEM)
        self.wait_for_value(field("shipWeight"), "1")
        self.wait_for_badge("1 kg")
        self.assertEqual(self.events(), {"shipWeight": ONE_PAIR})
        # The person has asked for it once.
        self.assertEqual(self.page.evaluate("document.documentElement.dataset.menus"), "trusted;")

    def test_what_the_field_says_of_its_unit(self):
        self.page.go(f"{SHOP}/units")
        for name, text in {"listed": "1", "suffixed": "35.27", "held": "1000", "plain": "2.205",
                           "ship_weight_lbs": "2.205"}.items():
            with self.subTest(name):
                self.put_by_key(field(name), text)
        self.page.go(f"{SHOP}/units")
        self.page.evaluate("void (document.querySelector('select').value = 'LBS')")
        self.put_by_key(field("listed"), "2.205")

    def test_words_that_look_like_units(self):
        self.page.go(f"{SHOP}/words")
        for name, text in {"example": "2.205", "gross": "1", "glued": "1",
                           "sized": "2.205", "limited": "1", "beside": "1", "inside": "1",
                           "behind": "1", "capped": "1", "ended": "1", "reaching": "1", "rowed": "1",
                           "followed": "1"}.items():
            with self.subTest(name):
                self.put_by_key(field(name), text)

    def test_units_in_front_of_their_fields(self):
        self.page.go(f"{SHOP}/table")
        self.put_by_key(field("pounds"), "2")
        self.wait_for_value(field("ounces"), "4")
        # The other half would keep what was there.
        self.hands.press_put_key()
        self.wait_for_badge("2 lb 4 oz")
        self.assertEqual(self.page.evaluate(f"{field('pounds')}.value"), "2")

    def put_in_turn(self, *texts):
        """The key again and again, in a page that has just come."""
        self.page.go(f"{SHOP}/shop")
        self.hands.focus(self.page, field("shipWeight"))
        for text in texts:
            self.hands.press_put_key()
            self.wait_for_value(field("shipWeight"), text)

    def test_the_next_unit(self):
        self.put_in_turn("1", "2.205", "35.27", "1000", "1")

    def test_the_first_unit_again_after_a_while(self):
        self.put_in_turn("1", "2.205")
        written = self.page.evaluate("performance.now()")
        wait_until(lambda: self.page.evaluate("performance.now()") > written + NEXT_UNIT_TIME,
                   "the time for the next unit gone")
        self.hands.press_put_key()
        self.wait_for_value(field("shipWeight"), "1")

    def test_fields_of_two_forms(self):
        """They are no pair."""
        for name, text in {"a": "2.205", "b": "35.27"}.items():
            self.page.go(f"{SHOP}/forms?for={name}")
            self.put_by_key(field(name), text)
            self.assertEqual(self.events(), {name: ONE_PAIR})

    def test_pounds_and_ounces(self):
        for name in ("pounds", "ounces"):
            self.page.go(f"{SHOP}/pair")
            self.hands.focus(self.page, field(name))
            self.hands.press_put_key()
            self.wait_for_value(field("pounds"), "2")
            self.wait_for_value(field("ounces"), "4")
            self.assertEqual(self.events(), {"pounds": ONE_PAIR, "ounces": ONE_PAIR})
            self.wait_for_badge("2 lb 4 oz")

    def test_what_fits(self):
        self.page.go(f"{SHOP}/number")
        self.put_by_key(field("stepped"), "2.3")
        self.assertTrue(self.page.evaluate(f"{field('stepped')}.checkValidity()"))
        self.hands.focus(self.page, field("small"))
        self.hands.press_put_key()
        self.wait_for_badge("This field takes 50 at most (g)")
        self.assertEqual(self.page.evaluate(f"{field('small')}.value"), "")
        self.page.go(f"{SHOP}/german")
        self.put_by_key(field("gewicht"), "2,205")
        self.put_by_key(field("kurz"), "2,21")

    def test_shadow_trees(self):
        for mode in ("open", "closed"):
            with self.subTest(mode):
                self.page.go(f"{SHOP}/{mode}")
                self.put_by_key("inner", "1")

    def test_frames(self):
        self.page.go(f"{SHOP}/framed")
        self.hands.focus_frame(self.page)
        self.hands.press_put_key()
        self.wait_for_framed("1")
        self.assertEqual(self.events(), {"framedWeight": ONE_PAIR})

    def test_a_frame_of_another_site(self):
        self.page.go(f"{SHOP}/framed-other")
        self.hands.focus_frame(self.page)
        self.hands.press_put_key()
        if self.browser.name == "firefox":  # which lets an extension into the whole of a tab
            self.wait_for_framed("1")
            return
        self.wait_for_badge("This part of the page belongs to another site: right-click into the "
                            "field and choose “Always put the weight here”")
        self.assertEqual(self.events(), {})

    def test_free_text(self):
        """The next unit comes in place of the one before."""
        for page in ("editable", "area"):
            with self.subTest(page):
                self.page.go(f"{SHOP}/{page}")
                self.hands.focus(self.page, "document.getElementById('text')")
                self.hands.press("End")
                for weight in ("2.205 lb", "35.27 oz", "1 kg"):
                    self.put_into_text(f"Weight:{weight}")
                self.assertEqual(self.events(), {"text": 3 * ["input"]})

    def test_what_is_never_written(self):
        self.page.go(f"{SHOP}/never")
        for name, words in {"card": "Passwords and cards are never written",
                            "number": "Passwords and cards are never written",
                            "fixed": "This field cannot be changed",
                            "date": "This field takes no number",
                            "mail": "This field takes no number",
                            "password": "Passwords and cards are never written"}.items():
            with self.subTest(name):
                self.hands.focus(self.page, field(name))
                self.hands.press_put_key()
                self.wait_for_badge(words)
                self.assertEqual(self.page.evaluate(f"{field(name)}.value"), "")
        self.assertEqual(self.events(), {})

    def test_why_there_is_no_weight(self):
        self.page.go(f"{SHOP}/shop")
        self.hands.focus(self.page, field("shipWeight"))
        self.addCleanup(self.program_end.answer.update, state="settled", texts=TEXTS)
        for state, words in {"moving": "The weight is still moving",
                             "no scale": "No scale is connected",
                             "empty": "Nothing is on the pan",
                             "below zero": "Below zero: empty the pan and press Tare",
                             "held": "The weight is held: end Hold first",
                             "silent": "The scale does not answer",
                             "unclear": "The scale shows no weight"}.items():
            with self.subTest(state):
                self.program_end.answer.update(state=state)
                self.hands.press_put_key()
                self.wait_for_badge(words)
        self.assertEqual(self.events(), {})
        self.assertEqual(self.page.evaluate(f"{field('shipWeight')}.value"), "")
