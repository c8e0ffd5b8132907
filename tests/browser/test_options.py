# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The extension's options page: a site is added by an address of it, and the browser's own question."""

import json

from browser_harness import SLOW_START, BrowserTest, Surroundings
from waiting import wait_until

NO_ADDRESS = ("That is not the address of a page. Open the page, and copy what stands in the "
              "browser’s address bar.")

# It has a frame with the name that scripts of extensions use.
TAKEN = "https://www.shop.example/taken-frame"


class OptionsTest(BrowserTest):
    def setUp(self):
        self.options = self.options_page()

    def add(self, text):
        self.options.evaluate(
            f"void (document.getElementById('site').value = {json.dumps(text)})")
        self.options.click("addSite")

    def text(self, selector):
        return self.options.evaluate(f"document.querySelector('{selector}').textContent")

    def expect_answer(self, text, left=""):
        wait_until(lambda: self.text("#answer") == text,
                   lambda: f"{text!r}; it says {self.text('#answer')!r}")
        self.assertEqual(self.options.evaluate("document.getElementById('site').value"), left)

    def test_what_is_no_address(self):
        for text in ("hello", "about:addons", "https://", "https://*.example.com/",
                     "mailto:parcels@example.com", "file:///etc/hosts", "two words.example",
                     "a..b"):
            with self.subTest(text):
                self.add(text)
                self.expect_answer(NO_ADDRESS, left=text)

    def test_what_is_not_encrypted(self):
        self.add("http://ship.example.com/")
        self.expect_answer("That page is not encrypted. The weight goes to https pages only.",
                           left="http://ship.example.com/")

    def test_nothing(self):
        self.add("  ")
        self.expect_answer("Paste the address of a page first.", left="  ")

    def test_what_is_served_already(self):
        for text in ("https://www.UPS.com/ship?from=here#there", "fedex.com", "tools.usps.com/go"):
            with self.subTest(text):
                self.add(text)
                site = text.removeprefix("https://").split("/")[0].lower()
                self.expect_answer(f"The weight goes to {site} already.")

    def test_the_help_is_there(self):
        self.options.click("help")
        wait_until(lambda: self.text("h1") == "Help", "the help")


class AddedSiteTest(BrowserTest):
    def test_a_pasted_address_is_added_filled_and_removed(self):
        options = self.options_page()

        def sites():
            return options.evaluate("[...document.querySelectorAll('#sites li')]"
                                    ".map((item) => item.firstChild.textContent)")

        options.evaluate("void (document.getElementById('site').value"
                         " = ' https://www.shop.example/ups?from=here#there')")
        self.browser.click_and_allow(options, "addSite")
        wait_until(lambda: sites() == ["www.shop.example"], "the site in the list", SLOW_START)
        self.assertEqual(options.evaluate("document.getElementById('site').value"), "")

        # Not before: browsers ask in the window in front only.
        self.start_weighing()
        self.program.scale.tell("weight 1000")
        self.program.wait_for_polls(3)
        form = self.new_page("https://www.shop.example/ups", "tab")
        self.wait_for_values(form, {"packageBean.weight": "2"})
        form.close()
        options.close()

        self.wait_for_the_early_script()
        self.expect_a_page_with_a_taken_name_filled()
        if self.browser.name == "chromium":  # the other one keeps nothing of what it is lent
            self.browser.close()
            Surroundings.shared.restart_browser()
            self.wait_for_the_early_script()
            self.expect_a_page_with_a_taken_name_filled()

        options = self.options_page()
        wait_until(lambda: sites() == ["www.shop.example"], "the site in the list", SLOW_START)
        options.evaluate("document.querySelector('#sites button').click()")
        wait_until(lambda: sites() == [], "the site gone", SLOW_START)
        if self.browser.name == "chromium":
            wait_until(lambda: options.evaluate("chrome.scripting.getRegisteredContentScripts()")
                       == [], "the early script gone", SLOW_START)
        form = self.new_page("https://www.shop.example/ups", "tab")
        self.program.wait_for_polls(3)
        self.assertEqual(self.values(form, ["packageBean.weight"]), {"packageBean.weight": ""})

    def wait_for_the_early_script(self):
        """Chromium hands a new one to its pages some time after it has answered that it is there; a page
        that comes before and takes the name has to be loaded anew."""
        page = self.new_page("about:blank", "tab")

        def is_filled():
            page.go("about:blank")
            page.go(TAKEN)
            self.program.wait_for_polls(3)
            return self.values(page, ["weight"]) == {"weight": "2.205"}

        wait_until(is_filled, "the early script", SLOW_START)
        page.close()

    def expect_a_page_with_a_taken_name_filled(self):
        """It is entered when it comes to the front, and has the name by then."""
        front = self.new_page("https://www.shop.example/empty", "tab")
        self.page.go(TAKEN)
        front.close()
        self.wait_for_values(self.page, {"weight": "2.205"})
        self.page.go("about:blank")
