# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Remembered fields where something comes in between: another field like it, a field that is gone for a
while, what the person types, a site that is withdrawn, the extension's worker that ends."""

import json

from browser_harness import SLOW_START
from hands import ALWAYS_ITEM, FRAME, INSIDE_FRAME
from remembering import HEAVIER, LIGHTER, NO_MORE, SITE, RememberingTest
from test_any_field import ONE_PAIR, SHOP, field
from waiting import wait_until
from weight_stand_in import TEXTS

INPUT = "document.querySelector('input')"
NO_UNIT = "Not remembered: neither the field nor the scale says a unit for it"
OWN_SITE = "own.shop.example"  # of one test, as a browser asks for each once


class OtherFieldTest(RememberingTest):
    def show_route(self, name):
        self.page.evaluate(f"void (location.hash = '#/{name}')")
        wait_until(lambda: self.page.evaluate("document.querySelector('h1').textContent")
                   == f"#/{name}", "the other route")

    def test_routes_behind_the_hash(self):
        self.page.go(f"{SHOP}/routes#/parcel")
        self.remember(INPUT)
        self.weigh(HEAVIER, INPUT, "2")
        self.show_route("letter")
        self.pass_readings(LIGHTER)
        self.assertEqual(self.page.evaluate(f"{INPUT}.value"), "")
        self.show_route("parcel")
        self.wait_for_value(INPUT, "0.5")

    def test_a_route_with_the_same_name(self):
        self.page.go(f"{SHOP}/routes#/named")
        self.remember(INPUT)
        self.weigh(HEAVIER, INPUT, "2")
        self.show_route("named-anew")
        self.weigh(LIGHTER, INPUT, "0.5")

    def test_two_frames(self):
        self.page.go(f"{SHOP}/twins")
        self.hands.focus_frame(self.page)
        self.hands.always(self.page, FRAME, SITE, INSIDE_FRAME)
        badge = "document.querySelector('iframe').contentDocument"
        wait_until(lambda: self.page.evaluate(
            f"{badge}.querySelector('postal-scale-badge') !== null"), "the reason")
        self.hands.note_given_back()
        self.assertFalse(self.is_allowed())
        self.page.go(f"{SHOP}/framed")
        self.hands.focus_frame(self.page)
        self.hands.always(self.page, FRAME, SITE, INSIDE_FRAME)
        self.program_end.weigh(HEAVIER)
        self.wait_for_framed("2")
        self.page.go(f"{SHOP}/twins?visit=2")
        self.pass_readings(LIGHTER)
        self.assertEqual(self.events(), {})
        self.assertEqual(self.remembered(), [
            "Framed weight (kg) on www.shop.example, in kilograms: another field there looks the "
            "same by now, so neither gets the weight"])
        self.page.evaluate("document.querySelectorAll('iframe')[1].remove()")
        self.wait_for_framed("0.5")

    def test_labels_that_have_become_others(self):
        self.page.go(f"{SHOP}/reworded")
        for element, text in ((INPUT, "1"), (field("value"), "2.205")):
            self.remember(element)
            self.wait_for_value(element, text)
        self.page.go(f"{SHOP}/reworded?version=2")
        self.pass_readings(HEAVIER)
        self.assertEqual(self.events(), {})
        missing = "was not found when its page was last open: it may have become another one"
        wait_until(lambda: self.remembered() == [
            f"{label} on {SITE}, in {unit}: {missing}"
            for label, unit in (("Weight (kg)", "kilograms"), ("Mass of the box", "pounds"))],
            lambda: f"what is missing; the list says {self.remembered()}")

    def test_a_field_that_is_closed_by_now(self):
        label = "Weight (kg) on www.shop.example, in kilograms"
        self.page.go(f"{SHOP}/veiled")
        self.remember(field("veiled"))
        for version in (2, 3, 4):
            with self.subTest(version=version):
                self.page.go(f"{SHOP}/veiled?version={version}")
                wait_until(lambda: self.remembered() == [
                    f"{label}: it is hidden or cannot be changed there"],
                    lambda: f"the reason; the list says {self.remembered()}")
                self.page.go(f"{SHOP}/veiled?after={version}")
                wait_until(lambda: self.remembered() == [label], "no reason")

    def test_the_persons_own_text(self):
        """No part of it is kept."""
        self.page.go(f"{SHOP}/letters")
        for name in ("area", "editable", "labelled"):
            self.remember(field(name))
        options = self.options_page()
        kept = options.evaluate("(globalThis.browser ?? chrome).storage.local.get(null)"
                                ".then((all) => JSON.stringify(all))")
        self.assertEqual(len(json.loads(kept)["recipes"]), 3)
        self.assertNotIn("ann", kept.lower())

    def test_a_label_that_becomes_another_in_place(self):
        self.page.go(f"{SHOP}/reworded")
        self.remember(field("value"))
        self.weigh(HEAVIER, field("value"), "4.409")
        self.page.evaluate(f"void ({field('value')}.labels[0].firstChild.data = 'Price')")
        self.pass_readings(LIGHTER)
        self.assertEqual(self.page.evaluate(f"{field('value')}.value"), "4.409")

    def test_the_cursor_goes_on_while_the_browser_asks(self):
        self.page.go(f"https://{OWN_SITE}/any/two")
        self.hands.focus(self.page, field("first"))
        self.browser.act_and_allow(
            lambda: self.hands.choose(self.page, field("first"), ALWAYS_ITEM),
            before_allowing=lambda: self.page.evaluate(f"{field('second')}.focus()"))
        self.program_end.wait_until_followed()
        self.weigh(HEAVIER, field("first"), "2")
        self.assertEqual(self.page.evaluate(f"{field('second')}.value"), "")
        self.assertEqual(self.remembered(), [f"First (kg) on {OWN_SITE}, in kilograms"])


class InBetweenTest(RememberingTest):
    def setUp(self):
        super().setUp()
        self.addCleanup(setattr, self.program_end, "is_resting", False)

    def fill(self):
        self.page.go(f"{SHOP}/shop")
        self.remember(field("shipWeight"))
        self.weigh(HEAVIER, field("shipWeight"), "2")

    def test_what_was_typed_stays(self):
        """A reading counts once, also where the page builds itself on."""
        self.fill()
        self.program_end.is_resting = True
        self.hands.focus(self.page, field("shipWeight"))
        self.hands.press("End")
        self.hands.press("7")
        self.wait_for_value(field("shipWeight"), "27")
        self.page.evaluate("void document.body.append(document.createElement('p'))")
        self.page.evaluate("new Promise((resolve) => setTimeout(resolve, 700))")
        self.assertEqual(self.page.evaluate(f"{field('shipWeight')}.value"), "27")
        self.program_end.is_resting = False
        self.weigh(LIGHTER, field("shipWeight"), "0.5")

    def test_what_was_put_there_is_no_news(self):
        self.page.go(f"{SHOP}/shop")
        self.put_by_key(field("shipWeight"), "1")
        self.remember(field("shipWeight"))
        self.pass_readings(TEXTS)
        self.assertEqual(self.events(), {"shipWeight": ONE_PAIR})
        self.weigh(HEAVIER, field("shipWeight"), "2")
        self.assertEqual(self.events(), {"shipWeight": 2 * ONE_PAIR})

    def test_a_field_that_is_hidden_for_a_while(self):
        self.fill()
        self.page.evaluate("void (document.forms[0].style.display = 'none')")
        self.pass_readings(LIGHTER)
        self.assertEqual(self.page.evaluate(f"{field('shipWeight')}.value"), "2")
        self.page.evaluate("void (document.forms[0].style.display = '')")
        self.wait_for_value(field("shipWeight"), "0.5")
        self.assertEqual(self.events(), {"shipWeight": 2 * ONE_PAIR})

    def test_forgotten_and_remembered_again(self):
        """In one page, which makes its field anew then."""
        self.page.go(f"{SHOP}/single")
        self.remember(field("appWeight"))
        self.hands.choose(self.page, field("appWeight"), ALWAYS_ITEM)
        self.wait_for_badge(NO_MORE)
        self.hands.note_given_back()
        self.remember(field("appWeight"))
        self.weigh(HEAVIER, field("appWeight"), "2")
        for view in ("toOrders", "toParcel"):
            self.hands.click(self.page, f"document.getElementById('{view}')")
            wait_until(lambda: self.page.evaluate(
                f"({field('appWeight')} === undefined) === {json.dumps(view == 'toOrders')}"), view)
        self.weigh(LIGHTER, field("appWeight"), "0.5")

    def test_the_next_parcel_of_the_same_weight(self):
        """In a frame, which does not see that the form around it was sent."""
        self.addCleanup(self.program_end.answer.pop, "parcel", None)
        for page, site in {"next": SITE, "next-other": "www.market.example"}.items():
            with self.subTest(page):
                self.program_end.answer["parcel"] = 1
                self.program_end.weigh(HEAVIER)
                self.page.go(f"{SHOP}/{page}")
                self.hands.focus_frame(self.page)
                self.hands.always(self.page, FRAME, site, INSIDE_FRAME)
                self.wait_for_framed("2")
                self.pass_readings(HEAVIER)
                self.hands.click(self.page, "document.getElementById('next')")
                self.pass_readings(HEAVIER)
                self.assertEqual(self.events(), {"framedWeight": ONE_PAIR})
                self.program_end.answer["parcel"] = 2
                wait_until(lambda: self.events() == {"framedWeight": 2 * ONE_PAIR},
                           "the weight of the next parcel", SLOW_START)
                # It is there already, and no news.
                self.program_end.answer["parcel"] = 3
                self.pass_readings(HEAVIER)
                self.assertEqual(self.events(), {"framedWeight": 2 * ONE_PAIR})

    def test_the_worker_ends(self):
        if self.browser.name == "firefox":
            self.skipTest("its background page does not end")
        self.fill()
        self.browser.end_worker()
        self.weigh(LIGHTER, field("shipWeight"), "0.5")
        self.browser.end_worker()
        self.hands.focus(self.page, field("zip"))
        self.hands.press_put_key()
        self.wait_for_value(field("zip"), "1.102")


class SiteTest(RememberingTest):
    def test_a_site_that_was_withdrawn(self):
        self.page.go(f"{SHOP}/shop")
        self.remember(field("shipWeight"))
        self.assertTrue(self.call_permissions("remove"))
        self.hands.note_given_back()
        self.page.go(f"{SHOP}/shop?visit=2")
        self.hands.always(self.page, field("shipWeight"), SITE)
        self.weigh(HEAVIER, field("shipWeight"), "2")
        self.assertEqual(self.remembered(), ["Weight in kg on www.shop.example, in kilograms"])

    def test_a_unit_that_no_field_has(self):
        self.addCleanup(self.program_end.answer.update, unit="lb")
        self.addCleanup(self.program_end.answer_now)
        for what in ("unknown", "not answered"):
            with self.subTest(what):
                self.page.go(f"{SHOP}/similar-later?visit={what[0]}")
                self.program_end.answer.update(unit="ct")
                self.program_end.is_slow = what == "not answered"
                self.hands.always(self.page, field("gross"), SITE)
                self.wait_for_badge(NO_UNIT)
                self.hands.note_given_back()
                self.assertFalse(self.is_allowed())

    def test_a_site_is_known_as_soon_as_it_is_allowed(self):
        """As one that was asked for a field alone: the extension may end before the field is kept."""
        site = f"known.{SITE}"
        self.addCleanup(setattr, self.program_end, "is_slow", False)
        self.page.go(f"https://{site}/any/similar-later")
        self.program_end.is_slow = True
        self.hands.always(self.page, field("gross"), site)
        self.program_end.wait_until_asked()
        options = self.options_page()
        self.assertEqual(options.evaluate(
            "(globalThis.browser ?? chrome).storage.local.get('fieldSites')"), {"fieldSites": [site]})
        options.close()
        if self.browser.name == "chromium":
            self.browser.end_worker()
        self.program_end.is_slow = False
        self.page.go(f"https://{site}/any/similar-later?visit=2")
        self.put_by_key(field("gross"), "2.205")
        self.assertNotIn(site, str(self.program_end.heard))

    def test_a_site_that_is_refused(self):
        site = "refused.shop.example"
        self.page.go(f"https://{site}/any/shop")
        self.hands.focus(self.page, field("shipWeight"))
        self.browser.act_and_refuse(
            lambda: self.hands.choose(self.page, field("shipWeight"), ALWAYS_ITEM))
        wait_until(lambda: self.badge() ==
                   f"Postal Scale: Not remembered: the browser was told not to allow {site}",
                   lambda: f"the reason; it says {self.badge()!r}", SLOW_START)
        self.assertFalse(self.is_allowed(site))
        options = self.options_page()
        wait_until(lambda: options.evaluate("!document.getElementById('noFields').hidden"),
                   "nothing remembered")
