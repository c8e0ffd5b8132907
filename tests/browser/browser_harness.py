# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The real program on the emulated scale beside a real browser.

POSTAL_SCALE_BIN names the folder with the built programs, POSTAL_SCALE_BROWSER the browser.
"""

import contextlib
import json
import os
import pathlib
import subprocess
import sys
import unittest

import harness
from carrier_site import CarrierSite
from chromium import Chromium
from firefox import Firefox
from harness import Program, problems
from session import Session
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
    """With the host registered as a user would, who keeps the settings elsewhere."""
    home = session.new_folder(name)
    environment = session.environment | {
        "HOME": str(home), "XDG_CONFIG_HOME": str(home / "settings")}
    subprocess.run([REGISTER, harness.binaries() / "postal-scale-browser-host"], check=True,
                   env=environment, stdout=subprocess.DEVNULL)
    return BROWSERS[name](session, site, build_folder(), home)


class Surroundings:
    """A desktop, the carriers' sites and a browser. It takes seconds to make them, so that all
    tests have them in common."""

    shared = None

    def __init__(self):
        self._cleanup = contextlib.ExitStack()
        with contextlib.ExitStack() as undo:
            undo.callback(self.close)
            self.session = Session()
            self._cleanup.callback(self.session.close)
            self.site = CarrierSite(self.session.new_folder("site"))
            self._cleanup.callback(self.site.close)
            self.browser = self.start_browser(os.environ["POSTAL_SCALE_BROWSER"])
            self._cleanup.callback(lambda: self.browser.close())
            self.page = self.browser.first_page()
            undo.pop_all()

    @classmethod
    @contextlib.contextmanager
    def for_all_tests(cls):
        cls.shared = cls()
        try:
            yield
        finally:
            cls.shared.close()

    def close(self):
        self._cleanup.close()

    def start_browser(self, name):
        return start_browser(self.session, self.site, name)

    def restart_browser(self):
        """After it was killed."""
        self.browser = self.browser.restarted()
        self.page = self.browser.first_page()


class BrowserTest(unittest.TestCase):
    """What is in common stays as it is from one test to the next, the page included."""

    session = property(lambda self: Surroundings.shared.session)
    site = property(lambda self: Surroundings.shared.site)
    browser = property(lambda self: Surroundings.shared.browser)
    page = property(lambda self: Surroundings.shared.page)

    program = None

    @classmethod
    def setUpClass(cls):
        Surroundings.shared.page.go("about:blank")

    @classmethod
    def start_program(cls, **options):
        """One for all tests of the class, or until it is killed."""
        cls.program = Program(Surroundings.shared.session, **options)
        cls.addClassCleanup(cls.program.kill)

    @classmethod
    def start_weighing(cls, settings=KV_C300 + ALL_CARRIERS):
        """In decimal pounds."""
        cls.start_program(settings=settings)
        cls.program.wait_for_polls()
        cls.program.window.click("rg4")

    def run(self, result=None):
        before = problems(result)
        super().run(result)
        if problems(result) > before and self.program:
            print(f"--- log of {self.id()}\n{self.program.log.tail()}", file=sys.stderr)

    def new_page(self, url, kind):
        page = self.browser.new_page(url, kind)
        self.addCleanup(page.close)
        return page

    def options_page(self):
        options = self.browser.options_page()
        self.addCleanup(options.close)
        return options

    def set_quiet(self, wanted):
        """In the extension's options. It counts some time soon."""
        options = self.options_page()
        options.evaluate("""void ((box) => {
            box.checked = %s;
            box.dispatchEvent(new Event("change"));
        })(document.getElementById("quiet"))""" % json.dumps(wanted))
        options.close()

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
        wait_until(lambda: title in self.window_in_front(), f"{title} in front")

    def window_in_front(self):
        """Its title; none while the focus goes from one to the other."""
        return subprocess.run(["xdotool", "getactivewindow", "getwindowname"], check=False, text=True,
                              env=self.session.environment, capture_output=True).stdout

    def close_alert(self, title):
        """Of the page with this title, as a person would."""
        self.bring_to_front(title)
        self.session.output_of("xdotool", "key", "Return")

    def wait_for_indicator(self, program, text):
        wait_until(lambda: program.window.says(text), f"{text!r} in the window", SLOW_START)
