# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""With "Settled weights only": a parcel that is weighed and lifted is what the server receives."""

import contextlib

import carrier_pages as pages
from browser_harness import ALL_CARRIERS, SLOW_START, BrowserTest
from waiting import wait_until

# The model with decimal pounds, which export with three decimals.
SETTLED_ONLY = "[General]\nlastSelectedValue=7\nsettledOnly=true\n"

# 1000 g and 3000 g in pounds and ounces, which are rounded up, and in decimal pounds.
PARCELS = {1000: ("2", "4", "2.205", "2.204"), 3000: ("6", "10", "6.614", "6.614")}


def usps_fields(grams):
    pounds, ounces, _, _ = PARCELS[grams]
    return (dict.fromkeys(pages.USPS_POUND_BOXES, pounds)
            | dict.fromkeys(pages.USPS_OUNCE_BOXES, ounces))


def ups_fields(grams):
    pounds, _, exported, _ = PARCELS[grams]
    return (dict.fromkeys(pages.UPS_POUND_FIELDS, pounds)
            | dict.fromkeys(pages.UPS_EXPORT_FIELDS, exported))


def fedex_fields(grams):
    _, _, exported, rounded = PARCELS[grams]
    return {pages.FEDEX_POUNDS_FIELD: rounded} | dict.fromkeys(pages.FEDEX_EXPORT_FIELDS, exported)


# Address, and what its fields hold of a weight. Emptied fields hold nothing.
CARRIERS = {
    "USPS": ("https://www.usps.com/usps-boxes", usps_fields),
    "UPS": ("https://www.ups.com/ups", ups_fields),
    "FedEx": ("https://www.fedex.com/fedex", fedex_fields),
}


class SettledTest(BrowserTest):
    settings = SETTLED_ONLY

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.start_weighing(cls.settings)
        cls.lift()

    @classmethod
    def put_on_the_pan(cls, grams):
        """And wait until it has settled, and all that comes of it has left."""
        cls.program.scale.tell(f"weight {grams}")
        cls.program.wait_for_polls(5)

    @classmethod
    def lift(cls):
        cls.put_on_the_pan(0)

    def submit(self, page):
        """As a person does once the fields are filled. Returns what the server receives."""
        page.evaluate("void document.getElementsByTagName('button')[0].click()")
        return self.site.next_submitted(SLOW_START)

    def recent_weights(self):
        return self.program.window.widget("recentMenu").names()


class SettledCarriersTest(SettledTest):
    settings = SETTLED_ONLY + ALL_CARRIERS

    def test_weigh_lift_submit(self):
        for carrier, (address, fields) in CARRIERS.items():
            with self.subTest(carrier):
                self.page.go(address + "?continue")
                self.wait_for_indicator(self.program, f"{carrier} page open")
                self.weigh_lift_and_submit(carrier, fields, 1000)
                # The page that came of it was opened with an empty pan.
                self.wait_for_empty_page(self.page, carrier, fields)
                self.weigh_lift_and_submit(carrier, fields, 3000)
                self.wait_for_empty_page(self.page, carrier, fields)
                self.assertFalse(self.site.has_more_submitted())

    def weigh_lift_and_submit(self, carrier, fields, grams):
        self.put_on_the_pan(grams)
        self.wait_for_values(self.page, fields(grams))
        latest = self.recent_weights()[0]
        self.lift()
        self.assertTrue(latest.endswith(f": {carrier} page"), latest)
        self.assertEqual(self.submit(self.page) | {pages.SUBMITTED: None},
                         fields(grams) | {pages.SUBMITTED: None})

    def wait_for_empty_page(self, page, carrier, fields):
        self.wait_for_indicator(self.program, f"{carrier} page open")
        self.program.wait_for_polls(3)
        empty = dict.fromkeys(fields(1000), "")
        wait_until(lambda: self.values(page, empty) == empty,
                   lambda: f"a new page, still empty; it has {self.values(page, empty)}")

    def test_a_page_opened_in_between(self):
        address, fields = CARRIERS["UPS"]
        self.page.go(address + "?title=first")
        self.wait_for_indicator(self.program, "UPS page open")
        self.put_on_the_pan(1000)
        self.wait_for_values(self.page, fields(1000))
        self.lift()
        other = self.new_page(address + "?title=other", "tab")
        self.wait_for_empty_page(other, "UPS", fields)
        self.put_on_the_pan(3000)
        self.wait_for_values(other, fields(3000))
        self.assertEqual(self.values(self.page, fields(1000)), fields(1000))
        self.lift()

    @contextlib.contextmanager
    def usps_page_that_does_not_answer(self):
        """It waits for its server, as its script wants it to: other than a busy one, it leaves the
        processor to the rest. It has missed 1000 g, and then 3000 g that stay."""
        self.page.go(CARRIERS["USPS"][0])
        self.wait_for_indicator(self.program, "USPS page open")
        with self.page.held_up(self.site):
            self.put_on_the_pan(1000)
            self.wait_for_indicator(self.program, "Page not answering")
            self.lift()
            self.put_on_the_pan(3000)
            yield

    def wait_for_missed_weight(self):
        self.wait_for_values(self.page, usps_fields(3000))
        wait_until(lambda: self.recent_weights()[0].endswith(": USPS page"),
                   lambda: f"the page noted; {self.recent_weights()}")

    def test_a_page_that_does_not_answer_while_weights_settle(self):
        """It gets the latest, whole, when it comes back, though nothing is weighed any more."""
        with self.usps_page_that_does_not_answer():
            self.lift()
            for weight in self.recent_weights()[:2]:
                self.assertTrue(weight.endswith("went nowhere"), weight)
        self.wait_for_missed_weight()
        # Its late answer was not taken for one of the weight that is meant by then.
        self.assertTrue(self.recent_weights()[1].endswith("went nowhere"), self.recent_weights())

    def toggle_ups(self):
        """As a screen reader does: the browser's window may be in front."""
        self.program.window.widget("checkUPS").act("Toggle")

    def test_a_carrier_that_is_switched_off_leaves_the_others_theirs(self):
        """What waits for the page of one that is still ticked reaches it."""
        with self.usps_page_that_does_not_answer():
            self.toggle_ups()
            self.addCleanup(self.toggle_ups)
            self.assertFalse(self.program.window.widget("checkUPS").is_checked)
            self.lift()
            self.assertTrue(self.recent_weights()[0].endswith("went nowhere"), self.recent_weights())
        self.wait_for_missed_weight()


class SettledClipboardTest(SettledTest):
    settings = SETTLED_ONLY + "[defaultValue]\n300=selected\n"

    def test_weigh_lift_paste_submit(self):
        for grams, (_, _, exported, _) in PARCELS.items():
            with self.subTest(grams):
                # No carrier's page: only the person writes into it.
                self.page.go("https://www.shop.example/twins?continue&title=shop")
                self.put_on_the_pan(grams)
                self.lift()
                self.page.evaluate("void document.getElementsByName('weight')[0].focus()")
                self.bring_to_front("shop")
                self.session.output_of("xdotool", "key", "ctrl+v")
                self.wait_for_values(self.page, {"weight": exported})
                self.assertEqual(self.submit(self.page)["weight"], exported)
                self.assertIn("clipboard", self.recent_weights()[0])
