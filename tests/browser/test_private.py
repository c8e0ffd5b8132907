# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Private windows are served where the user has allowed it, and are else out of the extension's
sight: what is behind them may go on being filled, they never are."""

from browser_harness import BrowserTest, Surroundings
from waiting import wait_until

PAGE = "https://www.ups.com/ups"
FIELD = "packageBean.weight"


class PrivateTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.start_weighing()

    def put_on_the_pan(self, grams):
        self.program.scale.tell(f"weight {grams}")
        self.program.wait_for_polls(3)

    def open_both(self):
        self.page.go(PAGE + "?title=ordinary")
        self.put_on_the_pan(1000)
        self.wait_for_values(self.page, {FIELD: "2"})
        # The keys that open a private window go to the window in front.
        self.bring_to_front("ordinary")
        wait_until(lambda: "ordinary" in self.session.output_of(
            "xdotool", "getactivewindow", "getwindowname"), "the browser in front")
        private = self.browser.new_private_page(PAGE + "?title=private")
        self.addCleanup(private.close)
        return private

    def expect_notice(self, start):
        options = self.options_page()
        wait_until(lambda: options.evaluate("document.getElementById('private').textContent")
                   .startswith(start), f"{start!r} on the options page")
        options.close()

    def test_1_not_allowed(self):
        self.expect_notice("The weight does not go to private windows.")
        private = self.open_both()
        self.put_on_the_pan(2000)
        self.bring_to_front("ordinary")
        self.wait_for_values(self.page, {FIELD: "4"})
        self.assertEqual(self.values(private, [FIELD]), {FIELD: ""})

    def test_2_allowed(self):
        Surroundings.shared.browser = self.browser.allow_private_windows()
        Surroundings.shared.page = self.browser.first_page()
        self.expect_notice("The weight goes to private windows as well.")
        private = self.open_both()
        self.wait_for_values(private, {FIELD: "2"})
        self.put_on_the_pan(2000)
        self.wait_for_values(private, {FIELD: "4"})
        self.assertEqual(self.values(self.page, [FIELD]), {FIELD: "2"})
