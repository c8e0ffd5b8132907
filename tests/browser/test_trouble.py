# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Whatever the page or the browser does, the readings go on, and the weight comes back."""

import itertools

from browser_harness import ALL_CARRIERS, SLOW_START, BrowserTest, Surroundings
from harness import POLL_INTERVAL
from waiting import wait_until

UPS = "https://www.ups.com/ups"
POUNDS = "packageBean.weight"


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

    def test_alert(self):
        self.page.go(UPS + "?title=alert")
        self.expect_next_weight()
        self.page.start("alert('Are you there?')")
        if self.browser.name == "firefox":  # whose pages answer behind an alert
            wait_until(self.browser.alert_is_open, "the alert")
        else:
            self.wait_for_indicator(self.program, "Page not answering")
        self.put_next_weight()
        self.program.wait_for_polls(5)
        self.close_alert("alert")
        self.expect_next_weight()

    def test_busy_page(self):
        self.page.go(UPS + "?title=busy")
        self.expect_next_weight()
        self.page.start("const end = Date.now() + 3000; while (Date.now() < end) {}")
        self.wait_for_indicator(self.program, "Page not answering")
        self.program.wait_for_polls(4)
        self.expect_next_weight()

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
