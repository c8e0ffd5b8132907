# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""With two browsers attached, the weight goes to the one that had the focus last."""

from browser_harness import ALL_CARRIERS, BrowserTest, Surroundings

UPS = "https://www.ups.com/ups"
POUNDS = "packageBean.weight"


class TwoBrowsersTest(BrowserTest):
    def test_the_focus_decides(self):
        self.start_program(settings=ALL_CARRIERS)
        other_browser = Surroundings.shared.start_browser("firefox")
        self.addCleanup(other_browser.close)
        pages = {"one": self.page, "other": other_browser.first_page()}
        for title, page in pages.items():
            page.go(f"{UPS}?title={title}")
        for pounds, title in enumerate(("one", "other", "one"), 1):
            self.bring_to_front(title)
            # By then the program knows of it.
            self.wait_for_values(pages[title], {POUNDS: str(pounds - 1)})
            self.program.scale.tell(f"weight {pounds * 454}")
            self.wait_for_values(pages[title], {POUNDS: str(pounds)})
            behind = next(page for name, page in pages.items() if name != title)
            self.assertNotEqual(self.values(behind, [POUNDS]), {POUNDS: str(pounds)})
