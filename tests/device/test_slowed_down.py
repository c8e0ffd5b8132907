# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What takes a certain time, of a program whose clock goes slower than a busy machine delays it."""

import harness
from emulated_scale import TARE_RELEASED, UNIT_BITS, UNIT_SETTLED
from harness import SLOWED_DOWN, SLOWNESS
from unit_rows import OUNCES, PACKED_DECIMAL_UNIT_BITS

TARE_DURATION = 2.0 * SLOWNESS
"""Seconds, of a program that is slowed down."""

SLOWED_INTERVAL = harness.POLL_INTERVAL * SLOWNESS
"""Seconds between two of its polls."""


class TareTest(harness.DeviceTest):
    def test_two_tares_within_two_seconds_are_released_one_after_the_other(self):
        program = self.start("--weight", "500", wrapper=SLOWED_DOWN)
        program.wait_for_reading("500 grams")
        program.scale.tell("clear-reports")
        program.window.click("tareButton")
        # Not for the panel: that would use up much of the two seconds.
        program.scale.wait_for_state(tare="pressed", tare_weight="500")
        program.scale.tell("weight 700")
        program.window.click("tareButton")

        first, second = (program.scale.wait_for_command(index) for index in (0, 1))
        self.assertLess(second.seconds - first.seconds, TARE_DURATION)
        releases = [program.scale.wait_for_command(index) for index in (2, 3)]
        for tare, release in zip((first, second), releases):
            self.assertFalse(tare.command & TARE_RELEASED, tare)
            self.assertTrue(release.command & TARE_RELEASED, release)
            self.assert_lasts_as_long_as_a_tare(program, tare, release)
        self.assert_polls_carry_the_tare_until(program, first, releases[0])

        # The button was still down at the second press: the scale has tared once.
        program.scale.wait_for_state(tare="released", tare_weight="500", net="200")
        self.assertEqual(program.settled_reading(), "200 grams")
        program.scale.tell("weight 0")
        program.wait_for_reading("minus 500 grams")
        self.assertEqual(len(program.scale.commands()), 4)

    def test_a_unit_can_be_changed_while_a_tare_is_pending(self):
        program = self.start("--weight", "500", wrapper=SLOWED_DOWN)
        program.wait_for_reading("500 grams")
        program.scale.tell("clear-reports")
        program.window.click("tareButton")
        program.scale.wait_for_command(0)
        program.window.click(OUNCES)

        tare, unit, release = (program.scale.wait_for_command(index) for index in (0, 1, 2))
        bits = PACKED_DECIMAL_UNIT_BITS[OUNCES]
        self.assertLess(unit.seconds - tare.seconds, TARE_DURATION)
        self.assertEqual(unit.command & (UNIT_BITS | UNIT_SETTLED | TARE_RELEASED), bits, unit)
        self.assertEqual(release.command & (UNIT_BITS | TARE_RELEASED), bits | TARE_RELEASED,
                         release)
        program.scale.wait_for_state(tare="released", tare_weight="500", unit="ounces")
        self.assertEqual(program.settled_reading(), "0.0 ounces")
        program.scale.tell("weight 1734")
        program.wait_for_reading("43.5 ounces")
    def assert_lasts_as_long_as_a_tare(self, program, tare, release):
        self.assertGreater(release.seconds - tare.seconds, TARE_DURATION - 0.1)
        # By the program's own ticks: a busy machine delays them as it delays the release.
        between = [poll for poll in program.scale.polls()
                   if tare.seconds < poll.seconds < release.seconds]
        self.assertLessEqual(len(between), TARE_DURATION / SLOWED_INTERVAL + 1, between)

    def assert_polls_carry_the_tare_until(self, program, tare, release):
        polls = [poll for poll in program.scale.polls() if poll.seconds > tare.seconds]
        during = [poll for poll in polls if poll.seconds < release.seconds]
        self.assertGreaterEqual(len(during), TARE_DURATION / SLOWED_INTERVAL - 2)
        self.assertFalse(any(poll.command & TARE_RELEASED for poll in during), during)
        later = polls[len(during):]
        self.assertTrue(all(poll.command & TARE_RELEASED for poll in later), later)


class AnnouncedTwiceTest(harness.DeviceTest):
    def test_a_scale_that_is_announced_twice_is_read_twice_as_often(self):
        program = self.start("--unplugged", "--weight", "1234", wrapper=SLOWED_DOWN)
        program.scale.tell("plug")
        self.assert_polls_per_interval(program, 1)
        program.scale.tell("attach-again")
        program.log.wait_for("our device$", count=2)
        self.assert_polls_per_interval(program, 2)
        self.assertEqual(program.window.reading, "1234 grams")

    def assert_polls_per_interval(self, program, expected):
        program.scale.tell("clear-reports")
        program.scale.wait_for_reports(7 * expected)
        times = [report.seconds for report in program.scale.polls()]
        # A busy machine delays single polls, by far less than the slowed program's 1.6 s; half as
        # many or twice as many would be 4.8 s off.
        self.assertAlmostEqual(times[6 * expected] - times[0], 6 * SLOWED_INTERVAL, delta=1.5 * SLOWED_INTERVAL,
                               msg=times)


if __name__ == "__main__":
    harness.main()
