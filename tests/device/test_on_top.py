# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""On Top, as the window manager and the screen have it."""

import re
import subprocess

import harness
from waiting import wait_until

RED = (255, 0, 0)


class OnTopTest(harness.DeviceTest):
    def test_the_box_keeps_the_window_above_the_active_one_until_it_is_cleared(self):
        program = self.start("--weight", "1234")
        other = self.cover_panel_of(program)
        self.assert_covered(program, other)

        self.click_box(program)
        self.activate(other)
        self.assert_above(program, other)

        self.click_box(program)
        self.activate(other)
        self.assert_covered(program, other)

    def test_so_does_the_menu_item(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        other = self.cover_panel_of(program)
        program.window.choose_option_from_menu("mnuOnTop")
        self.activate(other)
        self.assert_above(program, other)
        self.assertFalse(program.window.widget("checkOnTop").is_checked)

        program.window.choose_option_from_menu("mnuOnTop")
        self.activate(other)
        self.assert_covered(program, other)

    def test_a_saved_box_does_so_from_the_start(self):
        program = self.start(settings="[defaultValue]\n100=selected\n")
        other = self.cover_panel_of(program)
        self.assert_above(program, other)

    def click_box(self, program):
        program.window.click("optionsToggle")
        program.window.click("checkOnTop")
        wait_until(lambda: not program.window.shows_option_box,
                   "the options closed again")

    def cover_panel_of(self, program):
        """With a red window over the panel alone, so that the controls can be clicked."""
        # A picture that is larger than its window would bring a second one, to move it about in.
        viewer = self.session.spawn(["display", "-size", "400x80", "xc:red"],
                                    stderr=subprocess.DEVNULL)
        self.addCleanup(harness.end, viewer)
        (other,) = wait_until(self.other_windows, "the other window")
        panel = program.window.panel_extents
        place = f"0,{panel.x},{panel.y},{panel.width},{panel.height // 2}"
        self.session.output_of("wmctrl", "-i", "-r", other, "-e", place)
        self.activate(other)
        return other

    def other_windows(self):
        windows = self.session.managed_windows()
        windows.pop("postal-scale")
        return next(iter(windows.values()), None)

    def activate(self, window):
        self.session.output_of("wmctrl", "-i", "-a", window)
        wait_until(lambda: self.property_of_root("_NET_ACTIVE_WINDOW") == [int(window, 16)],
                   "the other window active")

    def assert_above(self, program, other):
        self.assert_stacked(below=other, above=program.window.id)
        wait_until(lambda: self.pixel(program) != RED, "the panel to be seen")

    def assert_covered(self, program, other):
        self.assert_stacked(below=program.window.id, above=other)
        wait_until(lambda: self.pixel(program) == RED, "the other window over the panel")

    def assert_stacked(self, below, above):
        order = [int(below, 16), int(above, 16)]
        wait_until(lambda: self.property_of_root("_NET_CLIENT_LIST_STACKING") == order,
                   lambda: f"{above} above {below}")

    def property_of_root(self, name):
        text = self.session.output_of("xprop", "-root", name)
        return [int(number, 16) for number in re.findall("0x[0-9a-f]+", text)]

    def pixel(self, program):
        """Of the screen, in the middle of the covered half of the panel."""
        panel = program.window.panel_extents
        area = f"1x1+{panel.x + panel.width // 2}+{panel.y + panel.height // 4}"
        text = self.session.output_of("import", "-window", "root", "-crop", area, "-depth", "8",
                                      "txt:-")
        return tuple(int(value) for value in re.search(r"\((\d+),(\d+),(\d+)", text).groups())


if __name__ == "__main__":
    harness.main()
