# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Size and place of the window under a window manager that follows its hints."""

import harness
from waiting import wait_until

DESIGNED = (900, 424)


class WindowTest(harness.DeviceTest):
    def test_proportion_is_kept(self):
        program = self.start("--unplugged")
        for asked in ((1200, 424), (1000, 900), (850, 700), (1210, 500)):
            with self.subTest(asked):
                before = self.size(program)
                self.session.output_of("xdotool", "windowsize", program.window.id,
                                       *map(str, asked))
                wait_until(lambda: self.size(program) != before, "another size")
                width, height = self.size(program)
                self.assertLessEqual(abs(height - width * DESIGNED[1] / DESIGNED[0]), 1)

    def test_smallest_window_comes_in_one_step(self):
        program = self.start("--weight", "1234")
        sizes = []
        for asked in ("100", "1270", "100"):
            before = self.size(program)
            self.session.output_of("xdotool", "windowsize", program.window.id, asked, asked)
            wait_until(lambda: self.size(program) != before, "another size")
            sizes.append(self.size(program))
        self.assertEqual(sizes[0], sizes[2])
        self.assertLess(sizes[0], DESIGNED)
        program.wait_for_reading("1234 grams")

    def test_size_and_place_come_back(self):
        first = self.start("--unplugged")
        size, place = (1000, 471), (120, 90)
        self.session.output_of("xdotool", "windowsize", first.window.id, *map(str, size))
        wait_until(lambda: self.size(first) == size, "the size asked for")
        before = self.place(first)
        self.session.output_of("xdotool", "windowmove", first.window.id, *map(str, place))
        wait_until(lambda: self.place(first) != before, "another place")
        place = self.place(first)
        self.assertEqual(first.stop(), 0)
        again = self.start("--unplugged", settings_folder=first.settings_folder)
        wait_until(lambda: (self.size(again), self.place(again)) == (size, place),
                   lambda: f"{size} at {place}; it is {self.size(again)} at {self.place(again)}")

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
