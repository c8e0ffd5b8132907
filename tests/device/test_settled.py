# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Settled weights, as a person sees and pastes them."""

import harness
from option_test import OptionTest
from unit_rows import GRAMS, OUNCES
from waiting import wait_until

SETTLED_ONLY = "[General]\nsettledOnly=true\n[defaultValue]\n300=selected\n"


class SettledTest(OptionTest):
    def says(self, program, words):
        wait_until(lambda: program.window.says(words), lambda: f"{words!r} in the window")

    def weigh(self, program, grams):
        """Until it has settled and left."""
        program.scale.tell(f"weight {grams}")
        program.wait_for_polls(5)

    def test_one_parcel_one_weight(self):
        program = self.start("--weight", "0", settings=SETTLED_ONLY)
        program.wait_for_reading("0 grams")
        program.window.click(GRAMS)
        for grams, text in ((1234, "1.234"), (567, "0.567")):
            self.copy_elsewhere("something else")
            self.weigh(program, grams)
            self.wait_for_clipboard(text)
            self.says(program, f"has left as {text} kg: clipboard")
            self.weigh(program, 0)
            self.assertEqual(self.clipboard(), text)
            self.assertEqual(program.window.export, "0")
            # What is copied elsewhere is safe until the next parcel.
            self.copy_elsewhere("something else")
            program.wait_for_polls(4)
            self.assertEqual(self.clipboard(), "something else")

    def test_another_unit_with_the_parcel_on_the_pan(self):
        program = self.start("--weight", "1234", settings=SETTLED_ONLY)
        program.wait_for_reading("1234 grams")
        self.says(program, "does not leave: choose a unit")
        program.window.click(GRAMS)
        self.wait_for_clipboard("1.234")
        program.window.click(OUNCES)
        self.wait_for_clipboard("2.72")

    def test_the_first_minutes_are_told(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        self.says(program, "Settled since ")
        self.says(program, "leaves as 0: choose a unit")
        self.says(program, "Export, lb")
        program.window.press("ctrl+1")
        self.says(program, "leaves as 2.72 lb")
        program.window.click("tareButton")
        program.wait_for_reading("0.0 ounces")
        program.scale.wait_for_state(tare="released")
        program.scale.tell("weight 0")
        self.says(program, "Below zero: press Tare")
        program.window.click("holdButton")
        self.says(program, " s old")

    def test_recent_weights(self):
        program = self.start("--weight", "1234", settings=SETTLED_ONLY)
        program.wait_for_reading("1234 grams")
        program.window.click(GRAMS)
        self.wait_for_clipboard("1.234")
        self.weigh(program, 567)
        self.wait_for_clipboard("0.567")

        def recent():
            return program.window.widget("recentMenu").names()

        # The newest first; before a unit was chosen, the weight was of the panel.
        wait_until(lambda: len(recent()) >= 2, "two recent weights")
        self.assertRegex(recent()[0], r"^0\.567 kg at \d\d:\d\d:\d\d: clipboard$")
        self.assertRegex(recent()[1], r"^1\.234 kg at \d\d:\d\d:\d\d: clipboard$")
        program.window.click("fileMenu")
        program.window.click("recentMenu")
        program.window.click_widget(program.window.menu_item("recentMenu", recent()[1]))
        self.wait_for_clipboard("1.234")
        self.assertNotIn("0.567", "\n".join(program.settings_lines()))

    def test_box_and_item_are_one(self):
        program = self.start("--unplugged")
        program.window.click("optionsToggle")
        program.window.click("checkSettledOnly")
        wait_until(lambda: program.window.option_menu_item("mnuSettledOnly").is_checked,
                   "the menu item checked")
        self.assertTrue(program.window.shows_option_box)
        self.assertIn("settledOnly=true", program.settings_lines())
        program.window.choose_option_from_menu("mnuSettledOnly")
        wait_until(lambda: not program.window.widget("checkSettledOnly").is_checked,
                   "the box unchecked")
        wait_until(lambda: "settledOnly=false" in program.settings_lines(), "the change saved")

    def test_about_says_what_it_is_not_for(self):
        program = self.start("--unplugged")
        program.window.choose_from_menu("helpMenu", "About")

        def says_so():
            return any("Not for trade" in each.name
                       for window in self.session.accessibility.showing_windows()
                       for each in window.descendants())

        wait_until(says_so, "the box about the program")
        self.session.output_of("xdotool", "key", "Escape")
        wait_until(lambda: not says_so(), "the box closed")


if __name__ == "__main__":
    harness.main()
