# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Whatever the page or the browser does, the readings go on, and the weight comes back."""

import itertools
import json
import time

from browser_harness import ALL_CARRIERS, SLOW_START, BrowserTest, Surroundings
from harness import POLL_INTERVAL
from waiting import wait_until

UPS = "https://www.ups.com/ups"
POUNDS = "packageBean.weight"

# Each reading writes into this field once.
RECORDED = "shippingWeightInPounds"
RECORDING = f"https://www.usps.com/usps-boxes?record={RECORDED}"


class TroubleTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.start_program(settings=ALL_CARRIERS)

    def setUp(self):
        self.pounds = 1
        self.program.scale.tell("clear-reports")

    def tearDown(self):
        times = [poll.seconds for poll in self.program.scale.polls()]
        longest = max(later - earlier for earlier, later in itertools.pairwise(times))
        # A poll that is held up for as long as the page stays busy would be far later.
        self.assertLess(longest, 3 * POLL_INTERVAL, "seconds between two polls")

    def expect_next_weight(self, page=None):
        """A weight that the page has not seen yet arrives in it."""
        self.put_next_weight()
        self.wait_for_values(page or self.page, {POUNDS: str(self.pounds)})

    def put_next_weight(self):
        self.pounds += 1
        self.program.scale.tell(f"weight {self.pounds * 454}")

    def open_recording_page(self, title):
        """One that writes down what comes into it."""
        self.program.scale.tell(f"weight {self.pounds * 454}")
        self.program.wait_for_polls(3)
        self.page.go("about:blank")  # of a page that comes back by itself, no news are told
        self.page.go(f"{RECORDING}&title={title}")
        wait_until(self.written, "a weight written down", SLOW_START)

    def written(self):
        """Time and text of each weight that came into the page."""
        return json.loads(self.page.evaluate("document.documentElement.dataset.written || '[]'"))

    def put_weights_that_the_page_misses(self):
        for _ in range(3):
            self.put_next_weight()
            self.program.wait_for_polls(1)
        self.program.wait_for_polls(2)
        self.latest_since = time.time()

    def expect_one_late_weight_at_most(self):
        """From when the program had read the latest weight: what was on its way may still come."""
        latest = str(self.pounds)
        wait_until(lambda: latest in [text for _, text in self.written()],
                   lambda: f"{latest} written; it has {self.written()}", SLOW_START)
        late = [text for seconds, text in self.written()
                if seconds > self.latest_since and text != latest]
        self.assertLessEqual(len(late), 1, late)

    def test_alert(self):
        self.open_recording_page("alert")
        self.page.start("alert('Are you there?')")
        if self.browser.name == "firefox":  # whose pages answer behind an alert
            wait_until(self.browser.alert_is_open, "the alert")
        else:
            self.wait_for_indicator(self.program, "Page not answering")
        self.put_weights_that_the_page_misses()
        self.close_alert("alert")
        self.expect_one_late_weight_at_most()

    def test_busy_page(self):
        self.open_recording_page("busy")
        self.page.start("const end = Date.now() + 3000; while (Date.now() < end) {}")
        self.wait_for_indicator(self.program, "Page not answering")
        self.put_weights_that_the_page_misses()
        self.expect_one_late_weight_at_most()

    def test_slow_navigation(self):
        self.page.go(UPS)
        self.expect_next_weight()
        self.site.hold_slow_pages()
        self.addCleanup(self.site.answer_slow_pages)
        self.page.start(f"location.href = '{UPS}?slow'")
        self.assertTrue(self.site.wait_for_slow_page(SLOW_START))
        self.program.wait_for_polls(4)
        self.site.answer_slow_pages()
        self.page.wait_for_load(UPS + "?slow")
        self.expect_next_weight()

    def test_navigation_after_navigation(self):
        for number in range(20):
            self.page.go(f"{UPS}?number={number}")
        self.expect_next_weight()

    def test_back_and_forward(self):
        first, second = UPS + "?title=first", UPS + "?title=second"
        self.page.go(first)
        self.page.go(second)
        self.expect_next_weight()
        self.page.start("history.back()")
        self.page.wait_for_load(first)
        self.expect_next_weight()
        self.page.start("history.forward()")
        self.page.wait_for_load(second)
        self.expect_next_weight()

    def test_closed_window(self):
        self.page.go(UPS + "?title=first")
        other = self.browser.new_page(UPS + "?title=other", "window")
        self.bring_to_front("other")
        self.expect_next_weight(other)
        other.close()
        self.bring_to_front("first")
        self.expect_next_weight()

    def test_program_started_again(self):
        self.page.go(UPS)
        self.expect_next_weight()
        self.program.kill()
        self.start_program(settings=ALL_CARRIERS)
        self.expect_next_weight()

    def test_browser_killed_and_started_again(self):
        self.page.go(UPS)
        self.expect_next_weight()
        self.browser.kill()
        self.wait_for_indicator(self.program, "No browser linked")
        self.program.wait_for_polls(3)
        Surroundings.shared.restart_browser()
        self.page.go(UPS)
        self.expect_next_weight()
