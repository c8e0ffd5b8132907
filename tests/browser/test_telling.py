# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the page is told of the weight, and what the program is told of the page."""

import json
import urllib.parse

from browser_harness import SLOW_START, BrowserTest
from program_stand_in import ProgramStandIn
from waiting import wait_until

UPS = "https://www.ups.com"
BOX = "document.getElementsByName('weight')[0].value"
OTHER_BOX = "document.getElementsByName('weight1')[0].value"
SCRIPTS = "(window.wrappedJSObject ?? window)"  # of the page's own
READINGS = 15  # 6 s of a steady weight

# Language of the page, number, what the page makes of it, and whether that is the number.
SHOWN = (
    ("en", 1, "1,000", False),
    ("en", 1, "1.000", True),
    ("en", 2.205, "2,205", False),
    ("en", 2.2, "2,2", True),
    ("en", 0.205, "0,205", True),
    ("en", 1234, "1,234", True),
    ("en", 1234, "1,234.000", True),
    ("en", 1.234, "1,234.000", False),
    ("en", 1234567, "1,234,567 lb", True),
    ("en", 1234.5, "1.234,5", True),
    ("en", 1234, "12,34", False),
    ("en", 12.34, "1,2,34", False),
    ("de", 1, "1.000", False),
    ("de", 1, "1,000", True),
    ("de", 2.205, "2,205 kg", True),
    ("de", 2.205, "2.205 kg", True),  # as it was written
    ("de", 1234.5, "1.234,500", True),
    ("", 1, "1,000", False),
    ("no language", 1, "1,000", False),
)


class TellingTest(BrowserTest):
    def setUp(self):
        self.stand_in = ProgramStandIn(self.session)
        self.addCleanup(self.stand_in.close)

    def open(self, path):
        self.stand_in.open(self.page, UPS + path, "www.ups.com")

    def weigh(self, number, readings=1):
        """As UPS gets it: first in whole pounds. Returns the last answer."""
        for _ in range(readings):
            fields = self.stand_in.fill(f"{BOX}={int(number)}", f"{BOX}={number}")
        return fields

    def events(self):
        """Type, field and text of each, in order."""
        return json.loads(self.page.evaluate("document.documentElement.dataset.events || '[]'"))

    def events_of(self, field):
        return [each for each in self.events() if each[1] == field]

    def text_of(self, element):
        return self.page.evaluate(f"document.getElementById('{element}')?.textContent")


class EventsTest(TellingTest):
    def test_one_pair_for_a_weight(self):
        self.open("/events")
        expected = []
        for number in (2.205, 3.5, 2.205):
            self.weigh(number, READINGS)
            expected += [["input", "weight", str(number)], ["change", "weight", str(number)]]
            self.assertEqual(self.events(), expected)

    def test_they_come_after_the_run(self):
        self.open("/events")
        self.stand_in.fill(f"{BOX}=2", f"{OTHER_BOX}=3", f"{BOX}=4")
        self.assertEqual(self.events(), [
            ["input", "weight", "4"], ["change", "weight", "4"],
            ["input", "weight1", "3"], ["change", "weight1", "3"]])

    def test_only_for_fields_with_news(self):
        self.open("/events")
        self.stand_in.fill(f"{BOX}=2", f"{OTHER_BOX}=3")
        before = len(self.events())
        self.stand_in.fill(f"{BOX}=2", f"{OTHER_BOX}=4")
        self.assertEqual(self.events()[before:], [["input", "weight1", "4"],
                                                  ["change", "weight1", "4"]])

    def test_a_page_that_keeps_its_own_record(self):
        self.open("/framework")
        self.weigh(2.205, READINGS)
        self.assertEqual(self.text_of("known"), "2.205")
        self.assertEqual(self.text_of("changes"), "*")

    def test_the_switch_for_pages_that_do_too_much(self):
        self.set_quiet(True)
        self.addCleanup(self.set_quiet, False)
        self.open("/framework")
        self.assertEqual(self.weigh(2.205), (1, 0))
        self.assertEqual(self.text_of("known"), "nothing")
        self.assertEqual(self.values(self.page, ["weight"]), {"weight": "2.205"})

    def test_a_page_that_comes_back_by_itself(self):
        for path in ("/postback", "/reloading", "/resetting"):
            with self.subTest(path):
                self.open(path)
                self.expect_to_be_told_once_of_each_weight(path)

    def expect_to_be_told_once_of_each_weight(self, path):
        opened = self.site.loads(path)
        for times, number in ((1, 2.205), (2, 3.5)):
            self.weigh(number)
            wait_until(lambda: self.site.loads(path) > opened + times - 1, "the page back",
                       SLOW_START)
            # What comes back is empty, is filled, and stays.
            for _ in range(READINGS):
                self.stand_in.wait_for_page("www.ups.com")
                self.weigh(number)
            self.assertEqual(self.site.loads(path), opened + times)
            self.assertEqual(self.values(self.page, ["weight"]), {"weight": str(number)})

    def test_a_page_that_is_opened_anew_is_told_anew(self):
        self.open("/events")
        self.weigh(2.205)
        self.open("/events")
        self.weigh(2.205)
        self.assertEqual(len(self.events()), 2)

    def test_a_page_that_makes_its_field_anew(self):
        self.open("/remade")
        # The number went with the former field, and is put into the one that stands there.
        self.assertEqual(self.weigh(2.205), (1, 1))
        self.assertEqual(self.weigh(2.205, READINGS), (1, 0))
        self.assertEqual(self.text_of("made"), "*")
        # Not by itself: the person goes on to the next parcel, which weighs the same.
        self.page.click("next")
        wait_until(lambda: self.text_of("made") == "**", "the next form")
        self.weigh(2.205, READINGS)
        self.assertEqual(self.text_of("made"), "***")

    def test_fields_that_are_made_anew_while_the_page_is_told(self):
        """The first field's events do it; those of the second go to the one that stands there."""
        told = [[kind, name, text] for name, text in (("weight", "2"), ("weight1", "3"))
                for kind in ("input", "change")]
        for query, readings in (("?keep", 1), ("", 2)):
            with self.subTest(query):
                self.open("/remade-pair" + query)
                for _ in range(readings):
                    self.stand_in.fill(f"{BOX}=2", f"{OTHER_BOX}=3")
                self.assertEqual(self.events(), told)
                # Nothing is told of an empty field, nor twice.
                for _ in range(READINGS):
                    self.assertEqual(self.stand_in.fill(f"{BOX}=2", f"{OTHER_BOX}=3"), (2, 0))
                self.assertEqual(self.events(), told)

    def test_a_page_that_repaints_its_field_while_the_person_types_elsewhere(self):
        self.open("/repainting?title=repainting")
        self.weigh(2.205)
        self.assertEqual(self.values(self.page, ["weight"]), {"weight": "2.21"})
        self.bring_to_front("repainting")
        self.page.click("note")
        for typed in range(1, READINGS + 1):
            self.session.output_of("xdotool", "key", "x")
            wait_until(lambda: self.values(self.page, ["note"]) == {"note": typed * "x"},
                       "the key in the page")
            self.weigh(2.205)
        pair = [["input", "weight", "2.205"], ["change", "weight", "2.21"]]
        self.assertEqual(self.events_of("weight"), pair)
        # One that was emptied since the last deed is told of it.
        for times, text in ((2, ""), (3, "7")):
            self.page.evaluate(f"void (document.getElementsByName('weight')[0].value = '{text}')")
            self.page.click("note")
            self.weigh(2.205)
            self.assertEqual(self.events_of("weight"), times * pair)

    def test_a_click_in_the_page_that_came_back(self):
        """It may be the next parcel's, even if nothing was filled before it."""
        self.open("/postback")
        opened = self.site.loads("/postback")
        self.weigh(2.205)
        wait_until(lambda: self.site.loads("/postback") == opened + 1, "the page back", SLOW_START)
        self.stand_in.wait_for_page("www.ups.com")
        self.page.evaluate("void (document.body.id = 'body')")
        self.page.click("body")
        self.weigh(2.205)
        wait_until(lambda: self.site.loads("/postback") == opened + 2, "the page told anew",
                   SLOW_START)


class OtherNumbersTest(TellingTest):
    def test_fields_that_make_another_number_of_it(self):
        for path in ("/masked", "/list", "/slider", "/late"):
            with self.subTest(path):
                self.open(path)
                self.assertEqual(self.weigh(2.205), (1, 1))
                self.assertEqual(self.weigh(2.205), (1, 1))
                self.assertEqual(self.weigh(3), (1, 0))

    def test_a_field_that_adds_its_unit(self):
        self.open("/unit")
        self.assertEqual(self.weigh(2.205), (1, 0))
        self.assertEqual(self.values(self.page, ["weight"]), {"weight": "2.205 lb"})

    def test_a_field_with_a_decimal_comma(self):
        self.open("/comma?lang=de")
        self.assertEqual(self.weigh(2.205), (1, 0))
        self.assertEqual(self.values(self.page, ["weight"]), {"weight": "2,205"})

    def test_a_field_that_shows_more_than_one_number(self):
        for path in ("/two-numbers", "/thousandfold"):
            with self.subTest(path):
                self.open(path)
                self.assertEqual(self.weigh(2), (1, 1))

    def test_texts_of_a_number(self):
        languages, _, texts, _ = zip(*SHOWN, strict=True)
        self.open("/shows?" + urllib.parse.urlencode({"lang": languages, "text": texts}, doseq=True))
        for place, (language, number, text, holds) in enumerate(SHOWN):
            with self.subTest(language=language, number=number, text=text):
                box = f"document.getElementsByName('weight{place or ''}')[0].value"
                self.assertEqual(self.stand_in.fill(f"{box}={number}"), (1, 0 if holds else 1))
                self.assertEqual(self.page.evaluate(box), text)

    def test_a_field_for_numbers_has_points_in_every_language(self):
        self.open("/shows?lang=de&type=number&text=1.000")
        self.assertEqual(self.weigh(1), (1, 0))


class OutlinesTest(BrowserTest):
    def fill(self, *names):
        """Returns the number of outlines, once they are there."""
        self.page.go("about:blank")
        self.page.go(UPS + "/outlines")
        self.page.evaluate(f"void {SCRIPTS}.fill({json.dumps(names)[1:-1]})")
        wait_until(lambda: self.outlines() is not None, "the badge")
        return self.outlines()

    def outlines(self):
        return self.page.evaluate(f"{SCRIPTS}.outlines()")

    def test_fields_that_are_not_seen_get_none(self):
        self.assertEqual(self.fill("weight", *(f"weight{place}" for place in range(1, 6))), 1)
        self.assertEqual(self.fill("weight1"), 0)

    def test_they_go_when_the_page_is_moved(self):
        self.assertEqual(self.fill("weight"), 1)
        self.page.evaluate("void scrollTo(0, 100)")
        wait_until(lambda: self.outlines() == 0, "no outline")


class BadgeTest(TellingTest):
    BADGE = "document.querySelector('postal-scale-badge')"

    def test_it_comes_with_news_and_goes(self):
        self.open("/events")
        before = self.page.evaluate("document.body.outerHTML")
        self.weigh(2.205)
        self.assertTrue(self.page.evaluate(f"{self.BADGE} !== null"))
        self.assertEqual(self.page.evaluate("document.body.outerHTML"), before)
        wait_until(lambda: self.page.evaluate(f"{self.BADGE} === null"), "the badge gone",
                   SLOW_START)
        self.weigh(2.205)
        self.assertTrue(self.page.evaluate(f"{self.BADGE} === null"))
        self.assertEqual(self.page.evaluate("document.documentElement.outerHTML.includes('postal-scale')"),
                         False)
