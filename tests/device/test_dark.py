# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""GNOME's dark style, which the toolkit leaves to the program, on the screen."""

import subprocess

import harness
from portal import DARK, LIGHT, Portal
from waiting import wait_until

GNOME = {"XDG_CURRENT_DESKTOP": "GNOME"}


class DarkTest(harness.DeviceTest):
    def portal_that_says(self, scheme):
        portal = Portal(self.session, scheme)
        self.addCleanup(portal.close)
        return portal

    def brightness(self, program):
        """From 0 to 1, of the window's own ground: between the last button and the options."""
        hold = program.window.widget("holdButton").extents
        place = f"1x1+{hold.x + hold.width + 20}+{hold.y + 10}"
        text = subprocess.run(
            ["import", "-window", "root", "-crop", place, "-format", "%[fx:mean]", "info:"],
            env=self.session.environment, check=True, text=True, stdout=subprocess.PIPE).stdout
        return float(text)

    def wait_for_dark(self, program):
        wait_until(lambda: self.brightness(program) < 0.3, "a dark window")

    def wait_for_light(self, program):
        wait_until(lambda: self.brightness(program) > 0.7, "a light window")

    def test_it_follows_the_desktop_s_settings(self):
        portal = self.portal_that_says(DARK)
        program = self.start(environment=GNOME)
        self.wait_for_dark(program)
        portal.change(LIGHT)
        self.wait_for_light(program)
        portal.change(DARK)
        self.wait_for_dark(program)

    def test_on_other_desktops_the_toolkit_does(self):
        self.portal_that_says(DARK)
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        self.assertGreater(self.brightness(program), 0.7)

    def start_with_choice(self, choice):
        self.portal_that_says(DARK)
        program = self.start("--weight", "1234", environment=GNOME | choice)
        program.wait_for_reading("1234 grams")
        return program

    def test_a_style_of_the_person_s_own_choice_stays(self):
        program = self.start_with_choice({"QT_STYLE_OVERRIDE": "Fusion"})
        self.assertGreater(self.brightness(program), 0.7)

    def test_a_theme_of_the_person_s_own_choice_stays(self):
        program = self.start_with_choice({"QT_QPA_PLATFORMTHEME": "none"})
        self.assertGreater(self.brightness(program), 0.7)


if __name__ == "__main__":
    harness.main()
