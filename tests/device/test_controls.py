# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Power, tare and hold, and a unit that is clicked at an awkward moment."""

import harness
from emulated_scale import HOLD_RELEASED, POWER_OFF, TARE_RELEASED, UNIT_BITS
from unit_rows import (GRAMS, KILOGRAMS, OUNCES, PACKED_DECIMAL_UNIT_BITS, POUNDS,
                       POUNDS_OUNCES_FRACTION)


class TareTest(harness.DeviceTest):
    def test_a_tare_wakes_a_scale_that_is_off(self):
        program = self.start("--weight", "500")
        program.wait_for_reading("500 grams")
        program.window.click("powerButton")
        program.scale.wait_for_state(power="off")
        # The power-off request rides on one more poll; after that it is gone.
        program.wait_for_polls(2)
        self.assertEqual(program.window.reading, "off")
        program.scale.tell("clear-reports")
        program.window.click("tareButton")

        tare, release = (program.scale.wait_for_command(index) for index in (0, 1))
        self.assertFalse(tare.command & (TARE_RELEASED | POWER_OFF), tare)
        self.assertTrue(release.command & TARE_RELEASED, release)
        # A command without the power-off request is all that the power button would have sent.
        program.scale.wait_for_state(power="on", tare="released", tare_weight="500")
        self.assertEqual(program.settled_reading(), "0 grams")



class HoldTest(harness.DeviceTest):
    def test_hold_outlasts_the_plug(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click("holdButton")
        program.scale.wait_for_state(hold="pressed")
        program.wait_for_reading("1234 grams, on hold")
        program.scale.tell("weight 500")
        self.assertEqual(program.settled_reading(), "1234 grams, on hold")

        program.scale.tell("unplug")
        program.wait_for_reading("no scale connected")
        program.scale.tell("plug")
        # The command byte still asks for it, of a scale that has nothing else to hold.
        program.wait_for_reading("500 grams, on hold")
        program.scale.wait_for_state(hold="pressed")

        program.scale.tell("clear-reports")
        program.window.click("holdButton")
        self.assertTrue(program.scale.wait_for_command(0).command & HOLD_RELEASED)
        program.wait_for_reading("500 grams")
        program.scale.tell("weight 600")
        program.wait_for_reading("600 grams")
        program.scale.wait_for_state(hold="released")


class PowerTest(harness.DeviceTest):
    def test_power_on_starts_a_packed_decimal_scale_in_pounds_and_fraction(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click(OUNCES)
        program.wait_for_reading("43.5 ounces")
        on = self.switch_off_and_on(program)
        self.assertEqual(on.command & UNIT_BITS, PACKED_DECIMAL_UNIT_BITS[POUNDS_OUNCES_FRACTION])
        self.assertTrue(program.window.widget(POUNDS_OUNCES_FRACTION).is_checked)
        self.assertEqual(program.settled_reading(), "2 pounds 11 1/2 ounces")

    def test_power_on_goes_back_to_kilograms_that_were_chosen(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.choose_model("KV-C100")
        program.wait_for_reading("2 pounds 11 1/2 ounces")
        program.window.click(KILOGRAMS)
        program.wait_for_reading("1.234 kilograms")
        self.switch_off_and_on(program)
        # The mark moves to the unit that was asked for; the next poll asks for the chosen one.
        self.assertTrue(program.window.widget(POUNDS_OUNCES_FRACTION).is_checked)
        program.wait_for_reading("1.234 kilograms")
        self.assertEqual(program.settled_reading(), "1.234 kilograms")

    def test_power_on_marks_kilograms_for_a_binary_scale_and_leaves_its_unit(self):
        program = self.start("--type", "1", "--weight", "1234")
        program.wait_for_reading("1.2 kilograms")
        program.window.choose_model("KV-C300")
        for row, reading in ((KILOGRAMS, "1.2 kilograms"), (POUNDS, "2.7 pounds")):
            program.window.click(row)
            program.wait_for_reading(reading)
            on = self.switch_off_and_on(program)
            self.assertEqual(on.command & UNIT_BITS, 0b110 << 3, "pounds")
            self.assertTrue(program.window.widget(KILOGRAMS).is_checked)
            program.wait_for_reading(reading)
            self.assertEqual(program.settled_reading(), reading)

    def switch_off_and_on(self, program):
        """Returns the command that switched it on."""
        program.scale.tell("clear-reports")
        program.window.click("powerButton")
        off = program.scale.wait_for_command(0)
        self.assertTrue(off.command & POWER_OFF)
        following, later = program.scale.wait_for_polls_after(off, 2)
        self.assertTrue(following.command & POWER_OFF, "on one more poll")
        self.assertFalse(later.command & POWER_OFF)
        program.wait_for_reading("off")
        self.assertFalse(program.window.widget("unitLBl").is_showing)
        self.assertEqual(program.scale.state()["power"], "off")

        program.window.click("powerButton")
        on = program.scale.wait_for_command(1)
        self.assertFalse(on.command & POWER_OFF)
        program.scale.wait_for_state(power="on")
        program.wait_for_polls(2)
        self.assertTrue(program.window.widget("unitLBl").is_showing)
        return on


class NoScaleTest(harness.DeviceTest):
    def test_a_unit_that_is_clicked_moves_the_mark_and_sends_nothing(self):
        program = self.start("--unplugged", "--weight", "1234")
        program.window.click(GRAMS)
        program.log.wait_for("Done radioSelection")
        self.assertTrue(program.window.widget(GRAMS).is_checked)
        program.window.click(OUNCES)
        program.log.wait_for("Done radioSelection", count=2)
        self.assertTrue(program.window.widget(OUNCES).is_checked)
        self.assertFalse(program.log.since(0, "selectedTag|Unable to read|buf"))

        # Nor has it been kept for later.
        program.scale.tell("plug")
        program.wait_for_reading("1234 grams")
        self.assertFalse(program.scale.commands())
        self.assertTrue(program.window.widget(OUNCES).is_checked)

    def test_the_buttons_do_nothing(self):
        program = self.start("--unplugged", "--weight", "1234")
        for button in ("powerButton", "tareButton", "holdButton"):
            program.window.click(button)
        program.log.wait_for("HOLD Action$")
        self.assertFalse(program.log.since(0, "set_device|Current Status|Unable to read|buf"))
        program.scale.tell("plug")
        program.wait_for_reading("1234 grams")
        self.assertFalse(program.scale.commands())


if __name__ == "__main__":
    harness.main()
