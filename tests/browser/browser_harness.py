# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The real program on the emulated scale beside a real browser.

POSTAL_SCALE_BIN names the folder with the built programs, POSTAL_SCALE_BROWSER the browser.
"""

import json
import os
import pathlib
import subprocess

import harness
from carrier_site import CarrierSite
from chromium import Chromium
from firefox import Firefox
from waiting import PATIENCE, wait_until

BROWSERS = {each.name: each for each in (Chromium, Firefox)}
REGISTER = pathlib.Path(__file__).parents[2] / "browser" / "register"

# What the window restores at its start.
ALL_CARRIERS = "[defaultValue]\n400=selected\n500=selected\n600=selected\n"

# The model with decimal pounds, which export with three decimals.
KV_C300 = "[General]\nlastSelectedValue=7\n"

SLOW_START = 3 * PATIENCE


def build_folder():
    return harness.binaries().parent


def start_browser(session, site, name):
    """With the host registered as a user would."""
    home = session.new_folder(name)
    environment = session.environment | {
        "HOME": str(home), "XDG_CONFIG_HOME": str(home / ".config")}
    subprocess.run([REGISTER, harness.binaries() / "postal-scale-browser-host"], check=True,
                   env=environment, stdout=subprocess.DEVNULL)
    return BROWSERS[name](session, site, build_folder(), home)


class BrowserTest(harness.DeviceTest):
    """One session, site and browser for all tests of a class."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.site = CarrierSite(cls.session.new_folder("site"))
        cls.addClassCleanup(cls.site.close)
        cls.browser = start_browser(cls.session, cls.site, os.environ["POSTAL_SCALE_BROWSER"])
        cls.addClassCleanup(lambda: cls.browser.close())
        cls.page = cls.browser.first_page()

    def new_page(self, url, kind):
        page = self.browser.new_page(url, kind)
        self.addCleanup(page.close)
        return page

    def wait_for_values(self, page, expected):
        wait_until(lambda: self.values(page, expected) == expected,
                   lambda: f"{expected} in the page; it has {self.values(page, expected)}",
                   SLOW_START)

    @staticmethod
    def values(page, names):
        """Of the first field of each name."""
        return page.evaluate(
            "Object.fromEntries(" + json.dumps(list(names))
            + ".map((name) => [name, document.getElementsByName(name)[0]?.value]))")

    def bring_to_front(self, title):
        """As a click on the window would."""
        self.session.output_of("wmctrl", "-a", title)

    def wait_for_indicator(self, program, text):
        wait_until(lambda: program.window.says(text), f"{text!r} in the window", SLOW_START)


main = harness.main
