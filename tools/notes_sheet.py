#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Pictures of every text beside the panel, to be looked at: POSTAL_SCALE_BIN=... notes_sheet.py FOLDER

notes.png: each text, in both brandings and both themes.
"""

import contextlib
import pathlib
import sys

import harness
import sheet
from waiting import wait_until

PAN_OFF = -1
"""Grams, for the emulated scale: its pan is lifted off."""

GUISES = {"USPS": ({}, True), "plain": ({}, False), "dark": (sheet.DARK, True),
          "dark plain": (sheet.DARK, False)}

CLIPBOARD, USPS, UPS, FEDEX = 300, 400, 500, 600


class Photographer:
    def __init__(self, session, program, shots, guise):
        self._session = session
        self._program = program
        self._shots = shots
        self._guise = guise
        self.parts = []

    def take(self, words):
        """Once the window says them."""
        wait_until(lambda: self._program.window.says(words), f"{words!r} in the window")
        self._program.wait_for_polls(2)
        self.take_now(words)

    def take_at_once(self, words):
        """What may be gone after two polls."""
        wait_until(lambda: self._program.window.says(words), f"{words!r} in the window")
        self.take_now(words)

    def take_now(self, title):
        """With what has opened over the window."""
        self._session.output_of("xdotool", "mousemove", "0", "0")
        file = self._shots / f"{self._guise}-{len(self.parts)}.png"
        place = self._program.window.extents
        self._session.output_of("import", "-window", "root", "-crop",
                                f"{place.width}x{place.height}+{place.x}+{place.y}", "+repage",
                                str(file))
        self.parts += ["-label", f"{self._guise}: {title}", str(file)]


def settings(on, destinations):
    chosen = "".join(f"{each}=selected\n" for each in destinations)
    return f"[General]\nsettledOnly={str(on).lower()}\n[defaultValue]\n{chosen}"


def start(session, guise, *, on, load, destinations=(CLIPBOARD,), wrapper=()):
    environment, usps = GUISES[guise]
    folder = sheet.folder_with_branding(session, usps)
    (folder / "postal-scale" / "postal-scale.ini").write_text(
        settings(on, destinations), encoding="utf-8")
    return harness.Program(session, arguments=("--weight", str(load)), environment=environment,
                           settings_folder=folder, wrapper=wrapper)


def take_every_reading(session, guise, shots):
    program = start(session, guise, on=False, load=1234)
    photographer = Photographer(session, program, shots, guise)
    try:
        photographer.take("leaves as 0: choose a unit")
        program.window.press("ctrl+1")
        photographer.take("leaves as 2.72 lb")
        program.window.click("holdButton")
        photographer.take(" s old")
        program.window.click("holdButton")
        program.window.click("tareButton")
        program.wait_for_reading("0.0 ounces")
        photographer.take("At zero")
        program.scale.wait_for_state(tare="released")
        program.scale.tell("weight 0")
        photographer.take("Below zero: press Tare")
        program.scale.tell("fail-read on")
        photographer.take("No reading")
        program.scale.tell("fail-read off")
        program.scale.tell(f"weight {PAN_OFF}")
        photographer.take("Pan lifted")
        program.scale.tell("silence on")
        photographer.take_at_once("The scale does not answer")
    finally:
        program.kill()
    return photographer.parts


def take_settled_weights(session, guise, shots):
    program = start(session, guise, on=True, load=0)
    photographer = Photographer(session, program, shots, guise + " settled")
    try:
        program.wait_for_reading("0 grams")
        program.window.press("ctrl+5")
        photographer.take("leaves when a weight has settled")
        program.window.press("alt+o")
        program.scale.tell("weight 1234")
        photographer.take("has left as 1.234 kg: clipboard")
        program.scale.tell("weight 567")
        photographer.take("has left as 0.567 kg: clipboard")
        program.window.click("fileMenu")
        program.window.click("recentMenu")
        photographer.take_now("Recent weights")
        program.window.press("Escape")
        program.window.press("Escape")
        program.window.choose_from_menu("helpMenu", "About")
        program.wait_for_polls(2)
        photographer.take_now("About")
    finally:
        program.kill()
    return photographer.parts


def take_carriers(session, guise, shots):
    program = start(session, guise, on=False, load=1234, destinations=(USPS, UPS, FEDEX))
    photographer = Photographer(session, program, shots, guise + " carriers")
    try:
        program.wait_for_reading("1234 grams")
        program.window.press("ctrl+5")
        photographer.take("a FedEx field: ")
        program.window.press("ctrl+1")
        photographer.take("some UPS fields: ")
    finally:
        program.kill()
    return photographer.parts


def take_what_waits(session, guise, shots):
    """Slowly, since a weight settles within three polls."""
    program = start(session, guise, on=True, load=0, destinations=(USPS,),
                    wrapper=harness.SLOWED_DOWN)
    photographer = Photographer(session, program, shots, guise + " waiting")
    try:
        program.wait_for_reading("0 grams")
        program.scale.tell("weight 1234")
        photographer.take_at_once("Settling")
        program.window.press("ctrl+1")
        photographer.take_at_once(", when it has settled")
        photographer.take("nothing has taken it")
    finally:
        program.kill()
    return photographer.parts


def take_what_does_not_leave(session, guise, shots):
    program = start(session, guise, on=True, load=1234)
    photographer = Photographer(session, program, shots, guise + " unchosen")
    try:
        photographer.take("does not leave: choose a unit")
    finally:
        program.kill()
    return photographer.parts


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1]).resolve()
    with contextlib.closing(harness.Session()) as session:
        shots = session.new_folder("shots")
        parts = []
        for guise in GUISES:
            for take in (take_every_reading, take_settled_weights, take_carriers,
                         take_what_waits, take_what_does_not_leave):
                parts += take(session, guise, shots)
        session.output_of("montage", *parts, "-tile", "4x", "-geometry", "440x250+4+4",
                          "-dither", "None", "-colors", "128", f"PNG8:{folder}/notes.png")


if __name__ == "__main__":
    main()
