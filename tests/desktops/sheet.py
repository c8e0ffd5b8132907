# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Pictures of the window on a desktop, at several scales, in one sheet; to be looked at.

    run-in-root ROOT PROGRAMS DESKTOP --sheet     puts sheet-DESKTOP.png into ROOT/var/tmp
    run-in-root ROOT PROGRAMS DESKTOP --screens   screens-DESKTOP.png: the screen has the scales
"""

import os
import subprocess
import sys

import harness
import nobody
from desktops import chosen_desktop
from test_desktop import DesktopProgram

SCALES = ("1", "1.25", "1.5", "1.75", "2")
SCREEN_SCALES = (1, 1.25, 1.5, 2)


class SheetProgram(DesktopProgram):
    scale_factor = "1"

    def _start(self, socket, arguments, environment, command):
        super()._start(socket, arguments, environment | {"QT_SCALE_FACTOR": self.scale_factor},
                       command)


def pictures(desktop):
    for scale in SCALES:
        SheetProgram.scale_factor = scale
        program = SheetProgram(desktop, arguments=("--weight", "1234"))
        try:
            program.wait_for_reading("1234 grams")
            for form in ("off", "on"):
                desktop.output_of(harness.binaries() / "postal-scale", "--compact", form)
                program.wait_for_polls()
                file = desktop.folder / f"{scale}-{form}.png"
                desktop.take_picture(file)
                yield str(file)
        finally:
            program.kill()


def pictures_of_screens(desktop):
    for scale in SCREEN_SCALES:
        desktop.set_scale(scale)
        program = DesktopProgram(desktop, arguments=("--weight", "1234"))
        try:
            program.wait_for_reading("1234 grams")
            program.wait_for_polls()
            file = desktop.folder / f"screen-{scale}.png"
            desktop.take_picture(file)
            print(f"{scale}: {program.window.extents}", flush=True)
            yield str(file)
        finally:
            program.kill()


def main(sheet, takes=pictures):
    if os.getuid() == 0:
        nobody.become_nobody()
    desktop = chosen_desktop()()
    try:
        shown = ("-tile", "2x", "-geometry", "1000x500+8+8") if takes is pictures else (
            "-tile", "1x", "-geometry", "+8+8")
        subprocess.run(["montage", *takes(desktop), *shown, sheet], check=True)
    finally:
        desktop.close()


if __name__ == "__main__":
    main(sys.argv[1], pictures_of_screens if "--screens" in sys.argv else pictures)
