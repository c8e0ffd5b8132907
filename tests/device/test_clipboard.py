# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The weight, pasted by another program."""

import harness
from option_test import OptionTest
from unit_rows import GRAMS, OUNCES
from waiting import wait_until


class ClipboardTest(OptionTest):
    def test_pasted_weights_follow_the_pan(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click(GRAMS)
        self.copy_elsewhere("something else")
        self.click_option(program, 300)
        for grams, text in ((567, "0.567"), (1000, "1"), (1234, "1.234")):
            program.scale.tell(f"weight {grams}")
            self.wait_for_clipboard(text)
            self.assertEqual(program.window.export, text)

        program.window.click(OUNCES)
        program.wait_for_reading("43.5 ounces")
        # In pounds, whichever of the pounds' and ounces' units is shown.
        self.wait_for_clipboard("2.72")
        self.click_option(program, 200)
        self.wait_for_clipboard("3")

        # What is copied elsewhere lasts until the next reading.
        other = self.offer("something else")
        wait_until(lambda: other.poll() is not None, "the loss of what was copied elsewhere")
        self.wait_for_clipboard("3")

        program.scale.tell("unplug")
        program.wait_for_status("Scale not connected")
        # A poll between the plug and the news of it reads nothing, which is a weight of 0.
        self.assertIn(self.clipboard(), ("3", "0"))
        program.scale.tell("plug")
        program.wait_for_reading("43.5 ounces")
        self.click_option(program, 300)
        self.copy_elsewhere("something else")
        program.wait_for_polls(3)
        self.assertEqual(self.clipboard(), "something else")

    def test_a_steady_weight_stays_as_it_lies_there(self):
        """Written anew, the clipboard has nobody's text for an instant, and a paste finds nothing."""
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click(GRAMS)
        self.click_option(program, 300)
        self.wait_for_clipboard("1.234")
        written = self.time_of_writing()
        program.wait_for_polls(4)
        self.assertEqual(self.time_of_writing(), written)
        program.scale.tell("weight 567")
        self.wait_for_clipboard("0.567")
        self.assertNotEqual(self.time_of_writing(), written)

    def time_of_writing(self):
        """As its owner tells it, in the X server's milliseconds."""
        return self.session.output_of("xclip", "-selection", "clipboard", "-o", "-t", "TIMESTAMP")


if __name__ == "__main__":
    harness.main()
