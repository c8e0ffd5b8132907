# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the option box keeps between runs."""

import harness
from option_test import OptionTest
from unit_rows import GRAMS
from waiting import wait_until


class SavedOptionTest(OptionTest):
    # saved tags; boxes that are on then, and saved again; last option; whether the option box is
    # open, which it is after an odd number of restored boxes
    CASES = (
        ((), set(), "none", False),
        ((100,), {100}, "On Top", True),
        ((200, 500), {200, 500}, "UPS", False),
        ((300,), {300}, "Clipboard", True),
        # The carrier takes the clipboard's mark, not its effect.
        ((300, 400), {400}, "USPS", False),
        ((100, 200, 300, 400, 500, 600), {100, 200, 400, 500, 600}, "UPS", False),
        # No box has this one.
        ((700,), set(), "none", True),
    )

    def test_saved_boxes_come_back(self):
        for tags, marks, last, open_after in self.CASES:
            with self.subTest(saved=tags):
                self.copy_elsewhere("something else")
                keys = "".join(f"{tag}=selected\n" for tag in tags)
                program = self.start("--weight", "1234", settings="[defaultValue]\n" + keys)
                program.wait_for_reading("1234 grams")
                self.wait_out_box_delay(program)
                self.wait_for_box(program, showing=open_after)
                self.assertEqual(self.checked(program), marks)
                self.assertEqual(self.saved(program), marks)
                self.assertEqual(program.window.last_option, last)
                program.window.click(GRAMS)
                # Rounding is restored before there is a scale link that could be told.
                wait_until(lambda: program.window.export == "1.234", "the weight for export")
                self.wait_for_clipboard("1.234" if 300 in tags else "something else")
                self.assertEqual(program.stop(), 0)

    def test_what_was_clicked_comes_back(self):
        first = self.start("--unplugged")
        for tag in (100, 300):
            self.click_option(first, tag)
        self.assertEqual(first.stop(), 0)
        again = self.start("--weight", "1234", settings_folder=first.settings_folder)
        again.wait_for_reading("1234 grams")
        self.assertEqual(self.checked(again), {100, 300})
        again.window.click(GRAMS)
        self.wait_for_clipboard("1.234")


if __name__ == "__main__":
    harness.main()
