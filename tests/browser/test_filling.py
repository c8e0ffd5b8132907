# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A weight on the scale stands in the form of the page that the user looks at, and nowhere else."""

import subprocess

import carrier_pages as pages
import harness
from browser_harness import SLOW_START, BrowserTest
from waiting import wait_until

USPS = "https://www.usps.com"
UPS = "https://www.ups.com"
FEDEX = "https://www.fedex.com"

# 1000 g: 2 lb 4 oz, as ounces are rounded up; so 36 oz in all, or 2.25 lb. The decimal pounds are
# rounded to the nearest thousandth.
EXPORTED = "2.205"


class FillingTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.start_weighing()

    def setUp(self):
        self.put_on_the_pan(1000)

    def put_on_the_pan(self, grams):
        """And wait until it counts: what is opened then never sees the weight before."""
        if self.program.scale.state()["load"] != str(grams):
            self.program.scale.tell(f"weight {grams}")
            self.program.wait_for_polls(3)

    def expect(self, address, **boxes):
        """@param boxes rows as G02, second boxes as G02_2"""
        self.page.go(address)
        expected = {}
        for key, value in boxes.items():
            row, _, second = key.removeprefix("G").partition("_")
            name = pages.second_row_box(row) if second else pages.row_box(row)
            expected[name] = value
        self.wait_for_values(self.page, expected)

    def test_usps_pounds_and_ounces(self):
        self.page.go(USPS + "/usps-boxes")
        self.wait_for_values(self.page, dict.fromkeys(pages.USPS_POUND_BOXES, "2")
                             | dict.fromkeys(pages.USPS_OUNCE_BOXES, "4"))
        self.put_on_the_pan(3)
        self.wait_for_values(self.page, dict.fromkeys(pages.USPS_POUND_BOXES, "0")
                             | dict.fromkeys(pages.USPS_OUNCE_BOXES, "1"))

    def test_usps_empty_rows(self):
        self.expect(USPS + "/usps-rows", G02="2", G02_2="4", G05="2", G05_2="4", G08="2", G08_2="4",
                    G11="36", G14="")

    def test_usps_single_boxes(self):
        self.expect(USPS + "/usps-rows?single=02,05,08&without=11",
                    G02="36", G05="36", G08="36", G14="")

    def test_usps_chosen_units(self):
        self.expect(USPS + "/usps-rows?filled=02,05,08,11,14&filled_2=02,05,08"
                    "&ounces=02,11&pounds=05,14",
                    G02="36", G02_2="7", G05="2.25", G05_2="7", G08="7", G08_2="7", G11="36",
                    G14="2.25")

    def test_usps_chosen_units_yield_to_empty_boxes(self):
        self.expect(USPS + "/usps-rows?pounds=05,11&filled_2=05&filled=02",
                    G05_2="7", G02="7", G02_2="", G08="2", G08_2="4")
        # Filled by now, so that only the chosen unit counts.
        self.wait_for_values(self.page, {pages.row_box("05"): "2.25", pages.row_box("11"): "2.25"})

    def test_usps_label(self):
        pounds, ounces = pages.USPS_LABEL_BOXES
        self.page.go(USPS + "/usps-label")
        self.program.wait_for_polls(3)
        self.assertEqual(self.values(self.page, pages.USPS_LABEL_BOXES), {pounds: "", ounces: ""})
        self.page.go(USPS + "/usps-label?weigh")
        self.wait_for_values(self.page, {pounds: "2", ounces: "4"})

    def test_what_is_chosen_on_a_usps_page_is_logged(self):
        chosen = r": (?:Ounces|Pound|Enter Weight) is selected$"
        for path, lines in (
                ("/usps-rows?ounces=02,11&pounds=05,14",
                 ["Ounces is selected", "Pound is selected", "Ounces is selected",
                  "Pound is selected"]),
                ("/usps-label?weigh", ["Enter Weight is selected"])):
            with self.subTest(path):
                self.page.go("about:blank")
                self.wait_for_indicator(self.program, "waiting for a carrier page")
                start = self.program.log.mark()
                self.page.go(USPS + path)
                self.program.log.wait_for(chosen, start, 2 * len(lines), SLOW_START)
                logged = self.program.log.since(start, chosen)[:2 * len(lines)]
                self.assertEqual([line.split(": ")[-1] for line in logged], 2 * lines)

    def test_ups(self):
        self.page.go(UPS + "/ups")
        self.wait_for_values(self.page, dict.fromkeys(pages.UPS_POUND_FIELDS, "2")
                             | dict.fromkeys(pages.UPS_EXPORT_FIELDS, EXPORTED))

    def test_fedex(self):
        self.page.go(FEDEX + "/fedex")
        self.wait_for_values(self.page, {pages.FEDEX_POUNDS_FIELD: "2.204"}
                             | dict.fromkeys(pages.FEDEX_EXPORT_FIELDS, EXPORTED))

    def test_the_indicator(self):
        self.page.go(UPS + "/empty")
        self.wait_for_indicator(self.program, "UPS page open")
        self.page.go(USPS + "/usps-boxes")
        self.wait_for_indicator(self.program, "Filling USPS: 6 fields")
        self.page.go("about:blank")
        self.wait_for_indicator(self.program, "waiting for a carrier page")

    def test_the_options_page_names_the_program(self):
        version = subprocess.run([harness.binaries() / "postal-scale", "--version"], check=True,
                                 env=self.session.environment, capture_output=True,
                                 text=True).stdout.split()[-1]
        options = self.options_page()
        wait_until(lambda: options.evaluate("document.getElementById('link').textContent")
                   == f"Linked to Postal Scale {version}.", "the program's version", SLOW_START)

    def test_strict_pages(self):
        for policy in ("none", "types", "sandbox"):
            with self.subTest(policy):
                self.expect(f"{USPS}/usps-rows?policy={policy}&filled=05&pounds=14",
                            G02="2", G02_2="4", G05="7", G05_2="", G14="2.25")

    def test_first_field_of_a_name(self):
        self.page.go(UPS + "/twins")
        self.wait_for_values(self.page, {"weight": EXPORTED})
        self.assertEqual(self.page.evaluate("document.getElementsByName('weight')[1].value"), "")

    def test_elements_with_the_names_that_scripts_use(self):
        front = self.new_page(UPS + "/empty", "tab")
        self.page.go(UPS + "/taken-names")
        # A page behind is entered when it comes to the front: its elements are there by then.
        front.close()
        self.wait_for_values(self.page, {"weight": EXPORTED})

    def test_a_frame_with_the_name_that_scripts_use(self):
        front = self.new_page(UPS + "/empty", "tab")
        self.page.go(UPS + "/taken-frame")
        front.close()
        self.wait_for_values(self.page, {"weight": EXPORTED})

    def test_a_host_that_is_not_shown(self):
        self.page.go("https://a+b.ups.com/ups")
        self.wait_for_values(self.page, {"weight": EXPORTED})
        self.wait_for_indicator(self.program, "Filling the page: 26 fields")
        self.page.go(UPS + "/ups")
        self.wait_for_indicator(self.program, "Filling UPS: 26 fields")

    def test_a_field_that_shows_another_number(self):
        self.page.go(UPS + "/slider")
        self.wait_for_indicator(self.program, "UPS: 1 field shows another number")
        self.put_on_the_pan(0)
        self.wait_for_indicator(self.program, "Filling UPS: 1 field")

    def test_other_sites_stay_untouched(self):
        for address in ("https://www.shop.example/ups", "https://notups.com.shop.example/ups"):
            self.page.go(address)
            self.program.wait_for_polls(3)
            self.assertEqual(self.values(self.page, ["weight"]), {"weight": ""})

    def test_only_the_front_tab_is_written(self):
        self.page.go(UPS + "/ups?title=behind")
        front = self.new_page(UPS + "/ups?title=front", "tab")
        self.wait_for_values(front, {"weight": EXPORTED})
        behind = self.values(self.page, ["weight"])
        self.put_on_the_pan(2000)
        self.wait_for_values(front, {"packageBean.weight": "4"})
        self.assertEqual(self.values(self.page, ["weight"]), behind)

    def test_only_the_last_focused_window_is_written(self):
        self.page.go(UPS + "/ups?title=one")
        other = self.new_page(UPS + "/ups?title=other", "window")
        self.bring_to_front("one")
        # Not the weight that came before the other window: only this one says that the browser has
        # noticed the change.
        self.put_on_the_pan(2000)
        self.wait_for_values(self.page, {"packageBean.weight": "4"})
        kept = self.values(other, ["packageBean.weight"])
        self.put_on_the_pan(3000)
        self.wait_for_values(self.page, {"packageBean.weight": "6"})
        self.assertEqual(self.values(other, ["packageBean.weight"]), kept)
        self.bring_to_front("other")
        self.wait_for_values(other, {"packageBean.weight": "6"})
        self.put_on_the_pan(4000)
        self.wait_for_values(other, {"packageBean.weight": "8"})
        self.assertEqual(self.values(self.page, ["packageBean.weight"]),
                         {"packageBean.weight": "6"})
