#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Pictures of the window in every guise, to be looked at: sheet.py FOLDER

every-guise.png: scale factors, sizes, themes and brandings side by side, brought to one size.
every-guise-close.png: a part of each, pixel for pixel.
"""

import contextlib
import json
import pathlib
import sys

import harness
from waiting import wait_until

# Shortcuts of the unit rows: what accessibility says of places does not know of scale factors.
OUNCES, POUNDS_OUNCES_TENTHS, POUNDS_OUNCES_FRACTION, GRAMS = "ctrl+1", "ctrl+2", "ctrl+3", "ctrl+5"
OPTIONS = "alt+o"

MODELS = ["KV-A100", "KV-A200", "KV-B100", "KV-B200", "KV-B300", "KV-C100", "KV-C200", "KV-C300",
          "KV-C400"]
DARK = {"QT_QPA_PLATFORMTHEME": "gtk3", "GTK_THEME": "Adwaita:dark"}

CLOSE_WIDTH, CLOSE_HEIGHT = 600, 240

# Title, environment, USPS branding, width in pixels (None: as designed), unit, reading.
GUISES = [
    ("1x", {}, True, None, GRAMS, "1234 grams"),
    ("1x plain", {}, False, None, OUNCES, "43.5 ounces"),
    ("1.5x", {"QT_SCALE_FACTOR": "1.5"}, True, None, POUNDS_OUNCES_TENTHS,
     "2 pounds 11.5 ounces"),
    ("2x plain", {"QT_SCALE_FACTOR": "2"}, False, None, POUNDS_OUNCES_FRACTION,
     "2 pounds 11 1/2 ounces"),
    ("small", {}, True, 500, POUNDS_OUNCES_FRACTION, "2 pounds 11 1/2 ounces"),
    ("large", {}, False, 1800, GRAMS, "1234 grams"),
    ("dark", DARK, True, None, OUNCES, "43.5 ounces"),
    ("dark plain", DARK, False, None, POUNDS_OUNCES_TENTHS, "2 pounds 11.5 ounces"),
]


def folder_with_branding(session, usps):
    folder = session.new_folder("config")
    (folder / "postal-scale").mkdir()
    (folder / "postal-scale" / "Info.json").write_text(json.dumps({
        "appNameDisplay": "Postal Scale", "isUSPS": "YES" if usps else "NO",
        "KayForUSPS": MODELS, "KeyForNonUSPS": MODELS}), encoding="utf-8")
    return folder


class ScaledProgram(harness.Program):
    def _agree(self, accessible, window_id):
        return True


def press(session, window, key):
    session.output_of("xdotool", "windowfocus", "--sync", window.id, "key", key)


def resize(session, window, width):
    """The window keeps its proportion, whatever height is asked for."""
    def size():
        return session.output_of("xdotool", "getwindowgeometry", window.id)

    before = size()
    session.output_of("xdotool", "windowsize", window.id, str(width), "400")
    wait_until(lambda: size() != before, "another size")


def take(session, guise, file):
    title, environment, usps, width, unit, reading = guise
    program = ScaledProgram(session, arguments=("--weight", "1234"), environment=environment,
                              settings_folder=folder_with_branding(session, usps))
    try:
        program.wait_for_reading("1234 grams")
        if width is not None:
            resize(session, program.window, width)
        press(session, program.window, unit)
        program.wait_for_reading(reading)
        press(session, program.window, OPTIONS)
        program.wait_for_polls(2)
        session.output_of("xdotool", "mousemove", "0", "0")
        session.output_of("import", "-window", program.window.id, str(file))
        program.stop()
    finally:
        program.kill()
    return ["-label", title, str(file)]


def close_up(session, shot):
    """Digits, unit words and unit rows, whatever the size of the window."""
    width, height = map(int, session.output_of("identify", "-format", "%w %h", shot).split())
    return f"{shot}[{CLOSE_WIDTH}x{CLOSE_HEIGHT}+{width - CLOSE_WIDTH}+{height // 6}]"


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1]).resolve()
    with contextlib.closing(harness.Session(screen="2600x1600x24")) as session:
        shots = session.new_folder("shots")
        parts = [part for number, guise in enumerate(GUISES)
                 for part in take(session, guise, shots / f"{number}.png")]
        session.output_of("montage", *parts, "-tile", "2x", "-geometry", "900x520+12+12", "-depth", "8",
                          str(folder / "every-guise.png"))
        close = [close_up(session, part) if part.endswith(".png") else part for part in parts]
        session.output_of("montage", *close, "-tile", "2x", "-geometry", "+12+12",
                          str(folder / "every-guise-close.png"))


if __name__ == "__main__":
    main()
