# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""With two browsers attached, the weight goes to the one that had the focus last."""

from browser_harness import ALL_CARRIERS, BrowserTest, main, start_browser
from harness import Program

UPS = "https://www.ups.com/ups"
POUNDS = "packageBean.weight"


class TwoBrowsersTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.other_browser = start_browser(cls.session, cls.site, "firefox")
        cls.addClassCleanup(cls.other_browser.close)

    def setUp(self):
        self.program = Program(self.session, settings=ALL_CARRIERS)
        self.addCleanup(self.program.kill)

    def test_the_focus_decides(self):
        pages = {"one": self.page, "other": self.other_browser.first_page()}
        for title, page in pages.items():
            page.go(f"{UPS}?title={title}")
        for pounds, title in enumerate(("one", "other", "one"), 1):
            self.bring_to_front(title)
            self.program.scale.tell(f"weight {pounds * 454}")
            self.wait_for_values(pages[title], {POUNDS: str(pounds)})
            behind = next(page for name, page in pages.items() if name != title)
            self.assertNotEqual(self.values(behind, [POUNDS]), {POUNDS: str(pounds)})


if __name__ == "__main__":
    main()
