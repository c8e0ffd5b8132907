# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The real program's weight in fields of any page: whatever carriers and unit are chosen."""

import contextlib
import itertools
import threading

from browser_harness import SLOW_START, BrowserTest, Surroundings
from hands import Hands
from test_any_field import SHOP, field
from waiting import wait_until

SITE = "www.shop.example"
_SHAKE = 0.2  # seconds; half of the time between two polls
SETTLED_ONLY = "[General]\nlastSelectedValue=7\nsettledOnly=true\n"


class RealWeightTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.hands = Hands(Surroundings.shared.session, Surroundings.shared.browser)
        cls.start_program(settings=SETTLED_ONLY)
        cls.program.wait_for_polls()

    def weigh(self, grams):
        """And wait until it has settled."""
        self.program.scale.tell(f"weight {grams}")
        self.program.wait_for_polls(5)

    def value(self):
        return self.page.evaluate(f"{field('shipWeight')}.value")

    def wait_for_value(self, expected):
        wait_until(lambda: self.value() == expected,
                   lambda: f"{expected!r}; it holds {self.value()!r}", SLOW_START)

    def show(self, version=1):
        self.page.go(f"{SHOP}/shop?version={version}")
        self.bring_to_front("shop")

    def badge(self):
        return self.browser.text_in_closed_root(self.page, "postal-scale-badge")


class AnyWeightTest(RealWeightTest):
    def test_1_at_the_cursor(self):
        self.show()
        self.weigh(1000)
        self.hands.focus(self.page, field("shipWeight"))
        self.hands.press_put_key()
        self.wait_for_value("1")
        self.weigh(0)
        self.assertEqual(self.value(), "1")

    def test_2_from_now_on(self):
        self.show()
        self.hands.always(self.page, field("shipWeight"), SITE)
        # A settled weight leaves once: the field must be ready for it.
        wait_until(lambda: "from now on" in (self.badge() or ""), "the field remembered", SLOW_START)
        self.weigh(1500)
        self.wait_for_value("1.5")
        self.weigh(0)
        self.assertEqual(self.value(), "1.5")  # only what has settled leaves, and zero does not
        self.weigh(2500)
        self.wait_for_value("2.5")
        self.show(version=2)
        self.weigh(0)
        self.assertEqual(self.value(), "")
        self.weigh(700)
        self.wait_for_value("0.7")


class NoWeightTest(RealWeightTest):
    def expect(self, words):
        self.show()
        self.hands.focus(self.page, field("shipWeight"))
        self.hands.press_put_key()
        wait_until(lambda: self.badge() == f"Postal Scale: {words}",
                   lambda: f"{words!r}; it says {self.badge()!r}", SLOW_START)
        self.assertEqual(self.value(), "")

    @contextlib.contextmanager
    def shaken(self):
        """A pan that never rests."""
        ended = threading.Event()

        def shake():
            for grams in itertools.count(1000):
                self.program.scale.tell(f"weight {grams}")
                if ended.wait(_SHAKE):
                    return

        thread = threading.Thread(target=shake)
        thread.start()
        try:
            self.program.wait_for_polls(5)
            yield
        finally:
            ended.set()
            thread.join()

    def test_1_what_is_on_the_pan(self):
        with self.shaken():
            self.expect("The weight is still moving")
        for grams, words in ((10000, "The scale shows no weight"), (0, "Nothing is on the pan")):
            self.weigh(grams)
            self.expect(words)

    def press_hold(self, *, is_held):
        """By its key: the browser's window may lie on the button."""
        self.program.window.press("ctrl+h")
        wait_until(lambda: self.program.window.reading.endswith("on hold") == is_held, "Hold", SLOW_START)

    def test_2_hold(self):
        self.weigh(1000)
        self.press_hold(is_held=True)
        self.expect("The weight is held: end Hold first")
        self.press_hold(is_held=False)

    def test_3_no_scale(self):
        self.program.scale.tell("unplug")
        self.program.wait_for_reading("no scale connected")
        self.expect("No scale is connected")

    def test_4_no_program(self):
        self.program.kill()
        self.expect("Postal Scale is not running")
