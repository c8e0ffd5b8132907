# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A scale that comes, goes, falls silent or talks nonsense."""

import harness
from emulated_scale import HOLD_RELEASED, POWER_OFF
from harness import POLL_INTERVAL
from waiting import wait_until

CONNECTED = "Scale connected"
NOT_CONNECTED = "Scale not connected"
SILENCE = "The scale does not answer"
NOT_PRESENT = ", the scale does not answer"
NO_SCALE_ON_PANEL = "no scale connected"


class PluggingTest(harness.DeviceTest):
    def test_a_scale_that_is_there_at_the_start_is_found(self):
        program = self.start("--weight", "1234")
        program.wait_for_status(CONNECTED)
        program.wait_for_reading("1234 grams")

    def test_a_scale_comes_and_goes_and_comes_again(self):
        program = self.start("--unplugged", "--weight", "1234")
        program.wait_for_status(NOT_CONNECTED)
        self.assertFalse(program.log.since(0, "readData$"))

        program.scale.tell("plug")
        program.wait_for_status(CONNECTED)
        program.wait_for_reading("1234 grams")
        self.assertTrue(program.window.widget("unitLBl").is_showing)

        self.assert_is_lost(program, lambda: program.scale.tell("unplug"))

        program.scale.tell_all("weight 567", "plug")
        program.wait_for_status(CONNECTED)
        program.wait_for_reading("567 grams")

    def test_any_device_that_goes_counts_as_the_scale(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("plug mouse")
        program.wait_for_polls()
        self.assertEqual(program.window.status, CONNECTED)

        self.assert_is_lost(program, lambda: program.scale.tell("unplug mouse"))
        self.assertEqual(program.scale.state()["plugged"], "yes")

    def assert_is_lost(self, program, action):
        mark = program.log.mark()
        action()
        program.wait_for_status(NOT_CONNECTED)
        program.wait_for_reading(NO_SCALE_ON_PANEL)
        self.assertEqual(program.window.export, "")
        self.assertFalse(program.window.widget("unitLBl").is_showing)
        self.assertFalse(program.window.widget("lbUnitlbl").is_showing)
        # The timer finds out at its next tick and stops.
        self.assertTrue(program.scale.stays_without_reports(3 * POLL_INTERVAL))
        after_removal = program.log.since(mark)
        removal = after_removal.index("postalscale: hid_device_removal_callback")
        ticks = [line for line in after_removal[removal:] if line.endswith("readData")]
        self.assertLessEqual(len(ticks), 1)

    def test_the_scale_s_maker_s_other_device_passes_for_a_scale_that_does_not_answer(self):
        program = self.start("--unplugged")
        mark = program.log.mark()
        program.scale.tell("plug stranger")
        program.wait_for_status(CONNECTED)
        for line in ("go forward$", "our device$", r"Unable to read command\(\)$",
                     r"Unable to read\(\)$", "LCD off$"):
            program.log.wait_for(line, mark, count=2 if "read" in line else 1)
        program.wait_for_reading("off")

        # What was never opened cannot be lost.
        program.scale.tell("unplug stranger")
        program.log.wait_for("DeviceRemoved$", mark)
        program.wait_for_polls()
        self.assertEqual(program.window.status, CONNECTED)



class FaultTest(harness.DeviceTest):
    def test_the_window_waits_for_a_silent_scale_and_goes_on_with_its_next_report(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        self.fall_silent(program)
        program.scale.tell_all("weight 567", "silence off", "burst 1")
        program.wait_for_reading("567 grams")
        self.assertEqual(program.window.status, CONNECTED)

    def test_a_silent_scale_that_is_unplugged_is_reported_as_gone(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        self.fall_silent(program)
        program.scale.tell("unplug")
        program.wait_for_status(NOT_CONNECTED)
        program.wait_for_reading(NO_SCALE_ON_PANEL)

    def fall_silent(self, program):
        program.scale.tell("silence on")
        wait_until(lambda: program.scale.stays_without_reports(3 * POLL_INTERVAL),
                   "the program held in its read, without further polls")

    def test_the_window_is_alive_while_the_scale_is_silent(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("silence on")
        wait_until(lambda: program.window.says(SILENCE), "the silence noticed")
        self.assertEqual(program.window.status, CONNECTED)
        self.assertEqual(program.window.reading, "1234 grams" + NOT_PRESENT)
        wait_until(lambda: program.window.says("s old"), "the reading's age")

        program.scale.tell("clear-reports")
        program.window.click("holdButton")
        self.assertFalse(program.scale.wait_for_command(0).command & HOLD_RELEASED)
        program.window.click("holdButton")
        self.assertTrue(program.scale.wait_for_command(1).command & HOLD_RELEASED)
        program.window.click("rg1")
        program.scale.wait_for_command(2)

        program.scale.tell_all("weight 567", "silence off")
        program.wait_for_reading("20.0 ounces")
        self.assertFalse(program.window.says(SILENCE))
        self.assertEqual(program.scale.tell("open-handles"), "1")
        self.assert_one_poll_per_interval(program)

    def test_one_answer_that_is_lost_is_asked_for_again(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        for weight in (200, 300):
            with self.subTest(weight=weight):
                program.scale.tell_all("lose 1", f"weight {weight}")
                program.wait_for_reading(f"{weight} grams")
        self.assertFalse(program.window.says(SILENCE))
        self.assert_one_poll_per_interval(program)

    def test_a_silent_scale_is_asked_every_two_seconds(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("silence on")
        wait_until(lambda: program.window.says(SILENCE), "the silence noticed")
        program.scale.tell("clear-reports")
        program.scale.wait_for_reports(3)
        times = [report.seconds for report in program.scale.polls()]
        self.assertAlmostEqual(times[2] - times[0], 2 * 2.0, delta=0.6, msg=times)

    def assert_one_poll_per_interval(self, program):
        program.scale.tell("clear-reports")
        program.scale.wait_for_reports(7)
        times = [report.seconds for report in program.scale.polls()]
        self.assertAlmostEqual(times[6] - times[0], 6 * POLL_INTERVAL, delta=0.6, msg=times)

    def test_nonsense_from_the_scale_is_survived(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("garbage on")
        # A further timer for each, to see more of it in the same time.
        program.scale.tell_all("attach-again", "attach-again", "attach-again")
        program.wait_for_polls(40)
        self.assertEqual(program.window.status, CONNECTED)
        # The nonsense may have spoken of another type of scale: a fresh one says what it is.
        program.scale.tell_all("garbage off", "unplug")
        program.wait_for_status(NOT_CONNECTED)
        program.scale.tell("plug")
        program.wait_for_status(CONNECTED)
        self.choose_grams(program)
        program.wait_for_reading("1234 grams")

    def choose_grams(self, program):
        """Whatever unit the nonsense has left."""
        program.wait_for_polls()
        program.window.click("rg5")

    def test_a_poll_that_fails_is_said_and_the_next_one_goes_on(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        mark = program.log.mark()
        program.scale.tell_all("fail-read on", "fail-send on")
        program.log.wait_for(r"Unable to read command\(\)$", mark)
        program.log.wait_for(r"Unable to read\(\)$", mark)
        program.wait_for_reading("off")
        program.scale.tell_all("fail-read off", "fail-send off")
        program.wait_for_reading("1234 grams")


class QuittingTest(harness.DeviceTest):
    # The emulator would end with the program; what the scale heard last is asked for after that.
    OUTLIVED = ("sh", "-c", '"$@"; echo "status $?" >&2; exec sleep infinity', "sh")

    def test_a_scale_that_is_on_is_switched_off(self):
        program = self.start("--weight", "1234", wrapper=self.OUTLIVED)
        program.wait_for_reading("1234 grams")
        last = self.last_report_after_quitting(program)
        self.assertTrue(last.is_command)
        self.assertTrue(last.command & POWER_OFF)
        self.assertEqual(program.scale.state()["power"], "off")

    def test_a_scale_that_is_off_is_left_alone(self):
        program = self.start("--weight", "1234", wrapper=self.OUTLIVED)
        program.wait_for_reading("1234 grams")
        program.window.click("powerButton")
        program.wait_for_reading("off")
        program.wait_for_polls()
        program.scale.tell("clear-reports")
        program.wait_for_polls()
        self.assertTrue(self.last_report_after_quitting(program).is_poll)
        self.assertFalse(program.scale.commands())

    def last_report_after_quitting(self, program):
        program.window.close()
        program.log.wait_for("^status 0$")
        return program.scale.reports()[-1]

    def start(self, *arguments, **options):
        program = harness.Program(self.session, arguments=arguments, **options)
        self._programs.append(program)
        self.addCleanup(program.kill)
        return program


if __name__ == "__main__":
    harness.main()
