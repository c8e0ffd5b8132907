# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Scales of the class for points of sale, which send their weight by themselves."""

import harness
from clipboard import ClipboardTest
from unit_rows import GRAMS, KILOGRAMS, OUNCES, POUNDS_OUNCES_TENTHS
from waiting import wait_until

CONNECTED = "Scale connected"
NOT_CONNECTED = "Scale not connected"

# Report 3: status, unit, exponent, weight with its low byte first.
OUNCES_1_2 = "03040bff0c00"
OUNCES_35_4 = "03040bff6201"
GRAMS_1234 = "03040200d204"
CARATS_12 = "030404000c00"
OVER_LIMIT = "03060bff0000"
BELOW_ZERO = "03050bfffbff"
CALIBRATE = "03070bff0000"
OTHER_REPORT = "0401"

SETTLED_ONLY = "[General]\nsettledOnly=true\n[defaultValue]\n300=selected\n"

# Weight with 24 bits, exponent, unit and status in 4, 4 and 8.
ODD_OUNCES_123_45 = "093930001e08"


def in_motion(report):
    return "0303" + report[4:]


class ClassScaleTest(harness.DeviceTest):
    def start_with(self, *reports, device="class"):
        """The program with that scale alone, sending these."""
        program = self.start("--unplugged")
        program.scale.tell(f"say {device} {' '.join(reports)}")
        program.scale.tell(f"plug {device}")
        program.wait_for_status(CONNECTED)
        return program


class WeighingTest(ClassScaleTest):
    def test_number_and_unit_are_the_scale_s_own(self):
        program = self.start_with(GRAMS_1234)
        program.wait_for_reading("1234 grams")
        self.assertEqual(program.window.export, "1.234")
        program.scale.tell(f"say class {OUNCES_35_4}")
        program.wait_for_reading("35.4 ounces")
        self.assertEqual(program.window.export, "2.2125")
        program.window.click(POUNDS_OUNCES_TENTHS)
        program.wait_for_reading("2 pounds 3.4 ounces")
        program.window.click(OUNCES)
        program.wait_for_reading("35.4 ounces")
        self.assertFalse(program.window.widget(KILOGRAMS).is_enabled)

    def test_the_scale_names_itself_and_offers_what_it_has(self):
        program = self.start_with(OUNCES_1_2)
        program.wait_for_reading("1.2 ounces")
        self.assertEqual(program.window.title, "Postal Scale-Example Parcel Scale")
        self.assertTrue(program.window.widget("tareButton").is_enabled)
        self.assertFalse(program.window.widget("powerButton").is_enabled)
        width = program.window.model_box.extents.width
        program.scale.tell("unplug class")
        program.wait_for_status(NOT_CONNECTED)
        wait_until(lambda: program.window.widget("powerButton").is_enabled, "what others offer")
        self.assertEqual(program.window.title, "Postal Scale-KV-A100")
        # A name is longer than a model's, and has the room that it takes.
        self.assertLess(program.window.model_box.extents.width, width)

    def test_the_scale_says_whether_it_has_settled(self):
        program = self.start_with(in_motion(OUNCES_1_2))
        wait_until(lambda: program.window.says("Settling"), "the weight in motion")
        program.scale.tell(f"say class {OUNCES_1_2}")
        wait_until(lambda: program.window.says("Settled since"), "the weight at rest")
        program.scale.tell(f"say class {BELOW_ZERO}")
        program.wait_for_reading("minus 0.5 ounces")
        wait_until(lambda: program.window.says("Below zero: press Tare"), "the advice")

    def test_what_the_panel_has_no_room_for_is_said(self):
        program = self.start_with(GRAMS_1234)
        program.wait_for_reading("1234 grams")
        self.assertTrue(program.window.widget(GRAMS).is_checked)
        program.scale.tell(f"say class {CARATS_12}")
        program.wait_for_reading("12 carats")
        wait_until(lambda: not program.window.widget(GRAMS).is_checked, "no row for carats")
        self.assertTrue(program.window.says("The scale shows 12 carats"))
        program.scale.tell(f"say class {CALIBRATE}")
        program.wait_for_reading("the scale has to be calibrated")
        program.scale.tell(f"say class {OVER_LIMIT}")
        program.wait_for_reading("overload")
        wait_until(lambda: not program.window.says("calibrated"), "nothing more to be said")

    def test_reports_of_all_kinds(self):
        for report in ("00" + OUNCES_1_2, OUNCES_1_2 + "0000", OUNCES_1_2 + "00" * 122):
            with self.subTest(report=report):
                program = self.start_with(OTHER_REPORT, report)
                program.wait_for_reading("1.2 ounces")
                self.assertEqual(program.stop(), 0)

    def test_what_is_sent_first_may_be_of_another_time(self):
        program = self.start("--unplugged")
        program.scale.tell_all(f"say-first class {GRAMS_1234}", f"say class {OUNCES_1_2}",
                               "plug class")
        program.wait_for_reading("1.2 ounces")
        self.assertTrue(program.window.says("Settled since"))

    def test_one_that_sends_only_once_is_taken_at_its_word(self):
        program = self.start("--unplugged")
        program.scale.tell_all("interval class 0", f"say-first class {GRAMS_1234}", "plug class")
        program.wait_for_reading("1234 grams")
        wait_until(lambda: program.window.says("Settled since"), "its end")
        self.assertEqual(program.window.export, "1.234")

    def test_other_usages_and_another_order(self):
        program = self.start_with(ODD_OUNCES_123_45, device="odd")
        program.wait_for_reading("123.45 ounces")
        self.assertFalse(program.window.widget("tareButton").is_enabled)

    def test_zero(self):
        program = self.start_with(OUNCES_1_2)
        program.wait_for_reading("1.2 ounces")
        program.window.click("tareButton")
        program.wait_for_reading("0.0 ounces")
        self.assertEqual(program.scale.lines("written class"), ["0202"])

    def test_hold(self):
        program = self.start_with(OUNCES_1_2)
        program.wait_for_reading("1.2 ounces")
        program.window.click("holdButton")
        program.wait_for_reading("1.2 ounces, on hold")
        program.scale.tell(f"say class {GRAMS_1234}")
        mark = program.log.mark()
        program.log.wait_for("unit 2", mark, 2)
        self.assertEqual(program.window.reading, "1.2 ounces, on hold")
        program.window.click("holdButton")
        program.wait_for_reading("1234 grams")

    def test_released_from_hold_it_shows_what_was_sent_meanwhile(self):
        program = self.start_with(OUNCES_1_2)
        program.wait_for_reading("1.2 ounces")
        program.window.click("holdButton")
        program.wait_for_reading("1.2 ounces, on hold")
        mark = program.log.mark()
        program.scale.tell(f"say class {GRAMS_1234}")
        program.log.wait_for("unit 2", mark, 2)
        program.scale.tell("interval class 0")
        program.window.click("holdButton")
        program.wait_for_reading("1234 grams")

    def test_a_whole_number_of_five_digits_is_told_in_words(self):
        program = self.start_with("030402003930")
        program.wait_for_reading("12345 grams")
        self.assertTrue(program.window.says("The scale shows 12345 grams"))

    def test_words_without_their_sign_leave_as_such(self):
        program = self.start_with("03050200c7cf")
        program.wait_for_reading("minus 12345 grams")
        wait_until(lambda: program.window.says("without the minus sign"), "what leaves")

    def test_silence(self):
        program = self.start_with(OUNCES_1_2)
        program.wait_for_reading("1.2 ounces")
        program.scale.tell("interval class 0")
        wait_until(lambda: program.window.says("The scale sends nothing"), "a word on the silence")
        program.scale.tell("interval class 100")
        program.wait_for_reading("1.2 ounces")
        wait_until(lambda: not program.window.says("The scale sends nothing"), "its end")


class SettledOnlyTest(ClassScaleTest, ClipboardTest):
    """With "Settled weights only" and the clipboard."""

    def start_late(self, *commands):
        """The program, and a scale that is plugged in after these commands."""
        program = self.start("--unplugged", settings=SETTLED_ONLY)
        self.copy_elsewhere("something else")
        program.scale.tell_all(*commands, "plug class")
        program.wait_for_status(CONNECTED)
        return program

    def says(self, program, words):
        wait_until(lambda: program.window.says(words), lambda: f"{words!r} in the window")

    def leaves_once(self, program, text):
        self.wait_for_clipboard(text)
        self.says(program, f"has left as {text} ")
        self.copy_elsewhere("something else")
        program.wait_for_polls(5)
        self.assertEqual(self.clipboard(), "something else")

    def test_a_stale_report_then_motion_then_the_weight(self):
        program = self.start_late(f"say-first class {GRAMS_1234}",
                                  f"say class {in_motion(OUNCES_1_2)}")
        self.says(program, "Settling")
        program.wait_for_reading("1.2 ounces")
        program.wait_for_polls(5)
        self.assertEqual(self.clipboard(), "something else")
        program.scale.tell(f"say class {OUNCES_1_2}")
        self.leaves_once(program, "0.075")
        for report, text in ((in_motion(OUNCES_35_4), None), (OUNCES_35_4, "2.2125")):
            program.scale.tell(f"say class {report}")
            program.wait_for_reading("35.4 ounces")
            if text is not None:
                self.leaves_once(program, text)

    def test_the_only_report_leaves_once_it_is_confirmed(self):
        program = self.start_late("interval class 0", f"say-first class {GRAMS_1234}")
        program.wait_for_reading("1234 grams")
        self.leaves_once(program, "1.234")

    def test_of_a_slow_scale_the_weight_leaves_and_not_the_one_before(self):
        program = self.start_late("interval class 5000", f"say-first class {GRAMS_1234}",
                                  f"say class {OUNCES_1_2}")
        wait_until(lambda: program.window.reading.startswith("1234 grams"), "what is in doubt")
        wait_until(lambda: self.clipboard() != "something else", "a weight on the clipboard")
        self.assertEqual(self.clipboard(), "0.075")

    def test_what_was_weighed_before_does_not_leave(self):
        program = self.start_late(f"say-first class {GRAMS_1234}", f"say class {OUNCES_1_2}")
        self.leaves_once(program, "0.075")
        program.window.click("fileMenu")
        self.assertEqual(len(program.window.widget("recentMenu").names()), 1)
        self.session.output_of("xdotool", "key", "Escape")


class ComingAndGoingTest(ClassScaleTest):
    def test_plugs(self):
        program = self.start_with(OUNCES_1_2)
        for _ in range(10):
            program.wait_for_reading("1.2 ounces")
            program.scale.tell("unplug class")
            program.wait_for_status(NOT_CONNECTED)
            program.wait_for_reading("no scale connected")
            program.scale.tell("plug class")
            program.wait_for_status(CONNECTED)

    def test_the_described_scale_comes_first(self):
        program = self.start_with(OUNCES_1_2)
        for _ in range(3):
            program.wait_for_reading("1.2 ounces")
            program.scale.tell_all("weight 1234", "plug scale")
            program.wait_for_reading("1234 grams")
            self.assertEqual(program.window.title, "Postal Scale-KV-A100")
            # At its own rhythm: the other scale's timer has ended.
            first, last = self.polls(program, 11)
            self.assertGreater(last - first, 10 * harness.POLL_INTERVAL * 0.9)
            program.scale.tell("unplug scale")
        program.wait_for_reading("1.2 ounces")

    @staticmethod
    def polls(program, count):
        """The times of the first and the last of so many."""
        program.scale.tell("clear-reports")
        program.scale.wait_for_reports(count)
        times = [poll.seconds for poll in program.scale.polls()]
        return times[0], times[count - 1]

    def test_beside_the_described_scale_it_is_let_alone(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("plug class")
        program.wait_for_polls(3)
        self.assertEqual(program.window.reading, "1234 grams")
        self.assertEqual(program.window.title, "Postal Scale-KV-A100")

    def test_two_of_them(self):
        program = self.start_with(OUNCES_1_2)
        program.scale.tell_all(f"say class-two {GRAMS_1234}", "plug class-two")
        program.wait_for_reading("1.2 ounces")
        program.scale.tell("unplug class")
        program.wait_for_reading("1234 grams")
        self.assertEqual(program.window.title, "Postal Scale-Example Second Parcel Scale")
        program.scale.tell("unplug class-two")
        program.wait_for_status(NOT_CONNECTED)

    def test_other_devices_do_not_disturb_it(self):
        program = self.start_with(OUNCES_1_2)
        program.wait_for_reading("1.2 ounces")
        for device in ("mouse", "stranger"):
            program.scale.tell_all(f"plug {device}", f"unplug {device}")
        program.wait_for_polls(3)
        self.assertEqual(program.window.reading, "1.2 ounces")
        self.assertEqual(program.window.status, CONNECTED)


if __name__ == "__main__":
    harness.main()
