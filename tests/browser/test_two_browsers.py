# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""With two browsers attached, the weight goes to the one that had the focus last."""

from browser_harness import ALL_CARRIERS, BrowserTest, Surroundings

UPS = "https://www.ups.com/ups"
POUNDS = "packageBean.weight"


class TwoBrowsersTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        other_browser = Surroundings.shared.start_browser("firefox")
        cls.addClassCleanup(other_browser.close)
        cls.pages = {"one": Surroundings.shared.page, "other": other_browser.first_page()}

    def setUp(self):
        self.start_program(settings=ALL_CARRIERS)
        self.addCleanup(self.program.kill)
        for title, page in self.pages.items():
            page.go("about:blank")
            page.go(f"{UPS}?title={title}")

    def weigh_in_turns(self):
        for pounds, title in enumerate(("one", "other", "one"), 1):
            self.bring_to_front(title)
            # By then the program knows of it.
            self.wait_for_values(self.pages[title], {POUNDS: str(pounds - 1)})
            self.program.scale.tell(f"weight {pounds * 454}")
            self.wait_for_values(self.pages[title], {POUNDS: str(pounds)})
            behind = next(page for name, page in self.pages.items() if name != title)
            self.assertNotEqual(self.values(behind, [POUNDS]), {POUNDS: str(pounds)})

    def test_the_focus_decides(self):
        self.weigh_in_turns()

    def test_the_focus_decides_after_clicks_into_the_pages(self):
        """Chromium then tells nothing of another program's window between two of its own."""
        for title, page in self.pages.items():
            self.bring_to_front(title)
            page.evaluate("void (document.body.id = 'body')")
            page.click("body")
        self.weigh_in_turns()
