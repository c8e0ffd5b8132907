# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the tests of the options have in common."""

import re

from clipboard import ClipboardTest
from waiting import wait_until

BOXES = {
    100: "checkOnTop",
    200: "checkRoundTo",
    300: "checkClipboard",
    400: "checkUSPS",
    500: "checkUPS",
    600: "checkFedex",
}


class OptionTest(ClipboardTest):
    environment = {}

    def start(self, *arguments, **options):
        return super().start(*arguments, environment=self.environment, **options)

    def wait_for_box(self, program, *, showing):
        wait_until(lambda: program.window.shows_option_box == showing,
                   "the option box " + ("open" if showing else "closed"))

    def wait_out_box_delay(self, program):
        """The box's timers are due before the third poll from now: they all run in one loop."""
        program.wait_for_polls(3)

    def click_option(self, program, tag):
        program.window.click("optionsToggle")
        program.window.click(BOXES[tag])
        self.wait_for_box(program, showing=False)

    def checked(self, program):
        return {tag for tag, box in BOXES.items() if program.window.widget(box).is_checked}

    def saved(self, program):
        lines = program.settings_lines()
        return {int(line.split("=")[0]) for line in lines if re.fullmatch(r"\d+=selected", line)}
