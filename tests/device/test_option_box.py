# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The box of six options, and the menu beside it."""

import time

import harness
from option_test import BOXES, OptionTest
from waiting import wait_until

BOX_DELAY = 0.4
"""Seconds until the option box answers to a click in it."""


class OptionBoxTest(OptionTest):
    def test_the_button_opens_and_closes_it(self):
        program = self.start("--unplugged")
        self.wait_for_box(program, showing=False)
        for showing in (True, False, True):
            program.window.click("optionsToggle")
            self.wait_for_box(program, showing=showing)

    def test_a_click_in_it_closes_it_after_a_moment(self):
        program = self.start("--weight", "1234")
        program.window.click("optionsToggle")
        self.wait_for_box(program, showing=True)
        clicked = time.monotonic()
        program.window.click(BOXES[200])
        program.log.wait_for("checkBoxAction_WithTag:200$")
        self.wait_for_box(program, showing=False)
        self.assertGreaterEqual(time.monotonic() - clicked, BOX_DELAY)
        self.wait_out_box_delay(program)
        self.wait_for_box(program, showing=False)

    def test_two_clicks_at_once_leave_it_open(self):
        program = self.start("--weight", "1234")
        program.window.click("optionsToggle")
        self.wait_for_box(program, showing=True)
        program.window.click_twice(BOXES[500], BOXES[600])
        program.log.wait_for("checkBoxAction_WithTag:600$")
        self.wait_out_box_delay(program)
        self.wait_for_box(program, showing=True)
        self.assertEqual(self.checked(program), {500, 600})

    def test_clipboard_and_carriers_take_each_other_s_marks(self):
        program = self.start("--unplugged")
        for tag, marks, last in ((400, {400}, "USPS"), (500, {400, 500}, "UPS"),
                                 (600, {400, 500, 600}, "UPS"), (300, {300}, "Clipboard"),
                                 (200, {200, 300}, "Round to"), (600, {200, 600}, "Round to"),
                                 (200, {600}, "Round to")):
            with self.subTest(tag=tag):
                self.click_option(program, tag)
                self.assertEqual(self.checked(program), marks)
                self.assertEqual(self.saved(program), marks)
                self.assertEqual(program.window.last_option, last)

    def test_the_menu_leads_a_life_of_its_own(self):
        program = self.start("--unplugged")
        program.window.choose_option_from_menu("mnuSendToUSPS")
        program.log.wait_for("Device Not Connected/Detected!!!$")
        self.assertFalse(program.window.option_menu_item("mnuSendToUSPS").is_checked)

        program.scale.tell("plug")
        program.wait_for_status("Scale connected")
        program.window.choose_option_from_menu("mnuSendToFEDX")
        item = program.window.option_menu_item("mnuSendToFEDX")
        wait_until(lambda: item.is_checked, "the item's mark")
        self.assertEqual(program.window.last_option, "FEDX")
        self.assertFalse(self.checked(program))
        self.assertFalse(self.saved(program))


if __name__ == "__main__":
    harness.main()
