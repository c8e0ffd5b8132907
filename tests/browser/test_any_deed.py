# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the person's deed is meant for: the field of that moment, in its frame, whatever comes until
the program has answered; and in which form it takes the weight."""

from browser_harness import SLOW_START
from hands import INSIDE_FRAME, PUT_ITEM
from test_any_field import ONE_PAIR, SHOP, AnyFieldTest, field
from waiting import wait_until
from weight_stand_in import TEXTS

FIRST_FRAME, SECOND_FRAME = (f"document.querySelectorAll('iframe')[{number}]" for number in (0, 1))
# 227 g
HALF_A_POUND = {"lb": "0.5", "oz": "8.01", "kg": "0.227", "g": "227", "lb oz": "0 9",
                "exact": {"lb": "0.500449", "oz": "8.007189", "kg": "0.227", "g": "227"}}
# 907.4 g
TWO_POUNDS = {"lb": "2", "oz": "32.01", "kg": "0.907", "g": "907.4", "lb oz": "2 1",
              "exact": {"lb": "2.000475", "oz": "32.007593", "kg": "0.9074", "g": "907.4"}}
FOREIGN = ("This part of the page belongs to another site: right-click into the field and choose "
           "“Always put the weight here”")

# Of 2.205 lb and 1000 g.
NUMBERS = {"exponent": "2.205", "begun": "2.55", "valued": "2.25", "any": "2.205", "free": "2.205",
           "grouped": "2.205", "both": "2.205", "comma": "2,205", "groups": "3", "own": "2,205",
           "two": "2,21", "whole": "3", "unheld": "2.205", "shown": "1,000"}


def framed_field(frame):
    return f"{frame}.contentDocument.getElementsByName('framedWeight')[0]"


class DeedTest(AnyFieldTest):
    def setUp(self):
        self.addCleanup(self.program_end.answer_now)

    def ask_slowly(self):
        self.program_end.is_slow = True
        self.hands.press_put_key()
        self.program_end.wait_until_asked()

    def value(self, element):
        return self.page.evaluate(f"{element}.value")

    def test_the_cursor_goes_on_meanwhile(self):
        self.page.go(f"{SHOP}/two")
        self.hands.focus(self.page, field("first"))
        self.ask_slowly()
        self.hands.press("Tab")
        wait_until(lambda: self.page.evaluate(f"document.activeElement === {field('second')}"),
                   "the cursor in the next field")
        self.program_end.answer_now()
        self.wait_for_value(field("first"), "1")
        self.assertEqual(self.value(field("second")), "")

    def test_the_page_becomes_another_meanwhile(self):
        self.page.go(f"{SHOP}/two")
        self.hands.focus(self.page, field("first"))
        self.ask_slowly()
        self.page.go(f"{SHOP}/two?visit=2")
        self.program_end.answer_now()
        words = "This page has become another one: try again"
        if self.browser.name == "firefox":  # which lets no extension into the next page of a tab
            wait_until(lambda: self.browser.toolbar_words() == f"Postal Scale: {words}", words)
        else:
            self.wait_for_badge(words)
        self.assertEqual(self.value(field("first")), "")

    def toolbar(self, options):
        """Of all tabs: what the button says when the pointer is on it, and its badge."""
        return options.evaluate("""(async (api) => {
            const toolbar = api.action ?? api.browserAction;
            const tabs = await api.tabs.query({});
            return Promise.all(tabs.flatMap(({id: tabId}) => [toolbar.getTitle({tabId}),
                                                              toolbar.getBadgeText({tabId})]));
        })(globalThis.browser ?? chrome)""")

    def test_a_page_that_no_extension_may_enter(self):
        options = self.options_page()
        usual = self.toolbar(options)
        closed = {"chromium": "chrome://version/", "firefox": "about:license"}[self.browser.name]
        self.new_page(closed, "tab")
        self.hands.press_put_key()
        wait_until(lambda: {"!", "Postal Scale: The browser lets no extension into this page"}
                   <= set(self.toolbar(options)), "the reason on the toolbar")
        wait_until(lambda: set(self.toolbar(options)) == set(usual), "the toolbar as it was")

    def test_the_cursor_leaves_a_text_meanwhile(self):
        self.page.go(f"{SHOP}/area")
        self.hands.focus(self.page, "document.getElementById('text')")
        self.ask_slowly()
        self.page.evaluate("void document.activeElement.blur()")
        self.program_end.answer_now()
        self.wait_for_badge("The cursor has left the text: click there again")
        self.assertEqual(self.events(), {})

    def test_a_menu_without_the_cursor(self):
        """The page keeps the cursor where it is."""
        self.page.go(f"{SHOP}/kept-cursor")
        if self.browser.name == "chromium":  # which does not tell of which field a menu is
            self.put_by_key(field("first"), "1")
        self.hands.focus(self.page, field("first"))
        before = self.value(field("first"))
        self.hands.choose(self.page, field("second"), PUT_ITEM)
        self.wait_for_value(field("second"), "1")
        self.assertTrue(self.page.evaluate(f"document.activeElement === {field('first')}"))
        self.assertEqual(self.value(field("first")), before)

    def test_two_frames(self):
        self.page.go(f"{SHOP}/twins")
        first, second = framed_field(FIRST_FRAME), framed_field(SECOND_FRAME)
        self.hands.focus_frame(self.page, FIRST_FRAME)
        self.hands.choose(self.page, SECOND_FRAME, PUT_ITEM, INSIDE_FRAME)
        self.wait_for_value(second, "1")
        self.assertEqual(self.value(first), "")
        self.hands.focus_frame(self.page, FIRST_FRAME)
        self.hands.press_put_key()
        self.wait_for_value(first, "1")
        self.assertEqual(self.value(second), "1")

    def test_a_frame_that_only_had_the_cursor(self):
        self.page.go(f"{SHOP}/unlike-twins")
        self.hands.focus_frame(self.page, FIRST_FRAME)
        self.hands.focus_frame(self.page, SECOND_FRAME)
        self.hands.press_put_key()
        if self.browser.name == "firefox":  # which lets an extension into the whole of a tab
            wait_until(lambda: self.page.evaluate("document.documentElement.dataset.framed") == "1",
                       "the weight in the frame", SLOW_START)
        else:
            self.wait_for_badge(FOREIGN)
        self.assertEqual(self.value(framed_field(FIRST_FRAME)), "")

    def test_the_toolbar(self):
        self.addCleanup(self.hands.widen, self.page, 700)
        self.hands.widen(self.page, 1100)
        self.page.go(f"{SHOP}/shop")
        self.hands.focus(self.page, field("shipWeight"))
        self.hands.press_toolbar_button(self.page)
        self.wait_for_value(field("shipWeight"), "1")
        self.page.go(f"{SHOP}/framed")
        self.hands.focus_frame(self.page)
        self.hands.press_toolbar_button(self.page)
        self.wait_for_framed("1")

    def test_numbers(self):
        self.page.go(f"{SHOP}/numbers")
        for name, text in NUMBERS.items():
            with self.subTest(name):
                self.put_by_key(field(name), text)
                # Outside of a form that is held back, fractions are what a page without steps takes.
                self.assertTrue(name in ("free", "unheld") or
                                self.page.evaluate(f"{field(name)}.checkValidity()"))
        self.wait_for_badge("1000 g")

    def test_the_page_changes_its_unit_meanwhile(self):
        """The same deed right after is a new one then."""
        self.page.go(f"{SHOP}/units")
        for unit, text in {"LBS": "2.205", "KGS": "1"}.items():
            self.page.evaluate(f"void (document.querySelector('select').value = '{unit}')")
            self.put_by_key(field("listed"), text)

    def test_one_of_two_fields_goes_meanwhile(self):
        self.page.go(f"{SHOP}/pair")
        self.put_by_key(field("pounds"), "2")
        self.page.evaluate(f"{field('ounces')}.remove()")
        self.put_by_key(field("pounds"), "2.205")

    def test_rounded_once(self):
        """What lies just above a step counts for the next one, though the text is on the step."""
        self.addCleanup(self.program_end.weigh, TEXTS)
        for texts, expected in (
                (HALF_A_POUND, {"step": "0.6", "pattern": "0.6", "whole": "9", "digits": "9",
                                "fine": "0.5", "money": "0.51"}),
                (TWO_POUNDS, {"step": "2.1", "pattern": "2.1", "whole": "33", "digits": "33",
                              "fine": "2", "money": "2.01"})):
            self.program_end.weigh(texts)
            self.page.go(f"{SHOP}/tenths?of={texts['g']}")
            for name, text in expected.items():
                with self.subTest(name, of=texts["g"]):
                    self.put_by_key(field(name), text)

    def test_a_pair_in_a_row_of_fields(self):
        self.page.go(f"{SHOP}/rows")
        for row in range(1, 8):
            for half in "ab":
                with self.subTest(row=row, half=half):
                    self.page.evaluate("document.querySelectorAll('input').forEach("
                                       "(each) => { each.value = ''; })")
                    self.put_by_key(field(f"{half}{row}"), "2" if half == "a" else "4")
                    self.assertEqual(self.page.evaluate(
                        "Object.fromEntries([...document.querySelectorAll('input')]"
                        ".filter(({value}) => value !== '').map(({name, value}) => [name, value]))"),
                        {f"a{row}": "2", f"b{row}": "4"})

    def test_a_pair_in_two_shadow_trees(self):
        self.page.go(f"{SHOP}/apart")
        for row in (1, 2, 3):
            for half in "ab":
                with self.subTest(row=row, half=half):
                    self.page.evaluate("Object.values(boxed).forEach((each) => { each.value = ''; })")
                    self.put_by_key(f"boxed.{half}{row}", "2" if half == "a" else "4")
                    self.assertEqual([self.value(f"boxed.{each}{row}") for each in "ab"], ["2", "4"])

    def test_both_halves_stand_there_at_once(self):
        for page, total in {"total": " 36 36", "record": '{"a":"2","b":"4"}'}.items():
            with self.subTest(page):
                self.page.go(f"{SHOP}/{page}")
                self.hands.focus(self.page, field("a"))
                self.hands.press_put_key()
                self.wait_for_badge("2 lb 4 oz")
                self.assertEqual([self.value(field(each)) for each in "ab"], ["2", "4"])
                self.assertEqual(self.page.evaluate("document.getElementById('total').textContent"),
                                 total)
                self.assertEqual(self.events(), {"a": ONE_PAIR, "b": ONE_PAIR})

    def test_a_page_that_makes_its_field_anew(self):
        self.page.go(f"{SHOP}/anew")
        self.hands.focus(self.page, field("anew"))
        self.hands.press_put_key()
        self.wait_for_badge("The page has made this field anew: see whether the weight is in it")

    def test_free_text_that_is_not_taken(self):
        for page, words in {"limits": "The weight does not fit into this text",
                            "unwilling": "The page did not take the weight"}.items():
            with self.subTest(page):
                self.page.go(f"{SHOP}/{page}")
                self.hands.focus(self.page, "document.getElementById('text')")
                self.hands.press("End")
                self.hands.press_put_key()
                self.wait_for_badge(words)
                self.assertEqual(self.text(), "Weight:")

    def test_free_text_in_place_of_the_same(self):
        self.page.go(f"{SHOP}/area")
        text = "document.getElementById('text')"
        self.page.evaluate(f"void ({text}.value = '2.205 lb')")
        self.hands.focus(self.page, text)
        self.page.evaluate(f"{text}.select()")
        self.hands.press_put_key()
        self.wait_for_badge("2.205 lb")
        self.assertEqual(self.text(), "2.205 lb")

    def test_free_text_that_goes_on(self):
        self.page.go(f"{SHOP}/completed")
        self.hands.focus(self.page, "document.getElementById('text')")
        self.hands.press("End")
        self.put_into_text("Weight:2.205 lb net")
        self.hands.press_put_key()
        self.wait_for_badge("The text has changed: put the cursor where the weight is to stand, and "
                            "wait a moment")
        self.assertEqual(self.text(), "Weight:2.205 lb net")
