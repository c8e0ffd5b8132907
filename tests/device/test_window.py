# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Size and place of the window under a window manager that follows its hints."""

import re

import harness
from event_watch import EventWatch
from waiting import wait_until

DESIGNED = (900, 424)
LARGE = (1270, 598)
LAST = (1000, 471)
TOO_SMALL = (100, 100)

# Between two sizes: from before the program knows of the first to after it has laid itself out.
MOMENTS_MS = range(0, 50, 2)


class WindowTest(harness.DeviceTest):
    def test_proportion_is_kept(self):
        program = self.start("--unplugged")
        for asked in ((1200, 424), (1000, 900), (850, 700), (1210, 500)):
            with self.subTest(asked):
                watch = EventWatch(self.session, "-id", program.window.id)
                self.addCleanup(watch.close)
                self.ask(program, asked)
                wait_until(watch.sizes, "another size")
                self.assert_proportion(watch.sizes())
                wait_until(lambda: self.size(program) == watch.sizes()[-1], "it known")

    def test_smallest_window_comes_in_one_step(self):
        program = self.start("--weight", "1234")
        watch = EventWatch(self.session, "-id", program.window.id)
        self.addCleanup(watch.close)
        self.ask(program, TOO_SMALL)
        for moment in MOMENTS_MS:
            self.ask(program, LARGE, TOO_SMALL, milliseconds_between=moment)
            wait_until(lambda: self.size(program) != LARGE, "a smaller window")
        # What the program still does about the latest size, it has done by then; and the window
        # manager does one thing after the other.
        program.wait_for_polls(2)
        self.ask(program, LAST)
        wait_until(lambda: watch.sizes()[-1:] == [LAST], lambda: f"{LAST}, not {watch.sizes()}")

        smallest = watch.sizes()[0]
        self.assertLess(smallest, DESIGNED)
        self.assertEqual(set(watch.sizes()), {smallest, LARGE, LAST}, watch.sizes())
        self.assertEqual(watch.sizes()[-2:], [smallest, LAST])
        program.wait_for_reading("1234 grams")

    def ask(self, program, *sizes, milliseconds_between=0):
        """The window manager, as a drag does at each of its places."""
        steps = []
        for size in sizes:
            steps += ["sleep", str(milliseconds_between / 1000),
                      "windowsize", program.window.id, *map(str, size)]
        self.session.output_of("xdotool", *steps[2:])

    def test_size_and_place_come_back(self):
        first = self.start("--unplugged")
        size, place = (1000, 471), (120, 90)
        self.ask(first, size)
        wait_until(lambda: self.size(first) == size, "the size asked for")
        # Where it is then, the window manager's frame decides too.
        self.session.output_of("xdotool", "windowmove", "--sync", first.window.id,
                               *map(str, place))
        wait_until(lambda: self.place(first) == self.place_on_screen(first), "the place known")
        place = self.place(first)
        self.assertEqual(first.stop(), 0)
        again = self.start("--unplugged", settings_folder=first.settings_folder)
        wait_until(lambda: (self.size(again), self.place(again)) == (size, place),
                   lambda: f"{size} at {place}; it is {self.size(again)} at {self.place(again)}")

    def assert_proportion(self, sizes):
        for width, height in sizes:
            self.assertLessEqual(abs(height - width * DESIGNED[1] / DESIGNED[0]), 1, sizes)

    def place_on_screen(self, program):
        """As the X server has it."""
        facts = self.session.output_of("xwininfo", "-id", program.window.id)
        return tuple(int(re.search(rf"Absolute upper-left {axis}: +(-?\d+)", facts).group(1))
                     for axis in "XY")

    @staticmethod
    def size(program):
        """As the program knows it."""
        extents = program.window.extents
        return extents.width, extents.height

    @staticmethod
    def place(program):
        extents = program.window.extents
        return extents.x, extents.y


if __name__ == "__main__":
    harness.main()
