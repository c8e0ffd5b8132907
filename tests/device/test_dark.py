# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""GNOME's dark style, which the toolkit leaves to the program, on the screen."""

import json
import subprocess

import harness
from accessibility import Extents
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
        return self.seen("%[fx:mean]", Extents(hold.x + hold.width + 20, hold.y + 10, 1, 1))

    def seen(self, what, place):
        """ImageMagick's number for a part of the screen."""
        part = f"{place.width}x{place.height}+{place.x}+{place.y}"
        text = subprocess.run(
            ["import", "-window", "root", "-crop", part, "+repage", "-format", what, "info:"],
            env=self.session.environment, check=True, text=True, stdout=subprocess.PIPE).stdout
        return float(text)

    @staticmethod
    def linear(part):
        """Luminance of a grey, as screens show it."""
        return part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4

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

    def test_text_is_legible_on_the_plain_grey(self):
        portal = self.portal_that_says(LIGHT)
        information = self.session.new_folder("information") / "information.json"
        information.write_text(json.dumps({
            "appNameDisplay": "Scale", "isUSPS": "NO", "KeyForNonUSPS": ["KV-A100"]}),
            encoding="utf-8")
        program = self.start("--weight", "1234", environment=GNOME,
                             program_arguments=("--info", str(information)))
        for scheme, wait in ((LIGHT, self.wait_for_light), (DARK, self.wait_for_dark)):
            portal.change(scheme)
            wait(program)
            label = program.window.label_that_says("Scale connected").extents
            self.assertGreaterEqual(self.contrast(label), 4.5, scheme)

    def contrast(self, place):
        """Between the text that stands there and what is behind it, as guidelines define it."""
        darkest, lightest, behind = (self.linear(self.seen(f"%[fx:{part}]", place))
                                     for part in ("minima", "maxima", "p{0,0}"))
        return max((lightest + 0.05) / (behind + 0.05), (behind + 0.05) / (darkest + 0.05))

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
