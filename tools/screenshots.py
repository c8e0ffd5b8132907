#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Writes pictures of the window in its typical states: screenshots.py FOLDER

Every picture is taken once the panel says the reading that it is meant to show.
"""

import contextlib
import pathlib
import sys

import harness
from unit_rows import (GRAMS, KILOGRAMS, OUNCES, POUNDS, POUNDS_OUNCES_FRACTION,
                       POUNDS_OUNCES_TENTHS)


class Camera:
    def __init__(self, session, program, folder):
        self._session = session
        self._program = program
        self._folder = folder

    def take(self, name, reading):
        self._program.wait_for_reading(reading)
        # One more poll, and everything that the first one changed has been painted.
        self._program.wait_for_polls(2)
        self.take_now(name)

    def take_now(self, name):
        # Nothing is to be highlighted under the pointer.
        self._session.output_of("xdotool", "mousemove", "0", "0")
        file = self._folder / f"{name}.png"
        self._session.output_of("import", "-window", self._program.window.id, str(file))
        print(file)


def take_all(session, folder):
    with running(session, "--unplugged") as program:
        program.wait_for_status("Scale not connected")
        Camera(session, program, folder).take_now("not-connected")
    with running(session, "--weight", "1234") as program:
        take_units_of_gram_scale(program, Camera(session, program, folder))
        take_states(program, Camera(session, program, folder))
    with running(session, "--capacity", "high", "--weight", "12340") as program:
        program.wait_for_reading("1234 grams")
        program.window.choose_model("KV-A200")
        program.window.click(KILOGRAMS)
        Camera(session, program, folder).take("kilograms-ten-gram-scale", "12.34 kilograms")
    with running(session, "--type", "1", "--weight", "1234") as program:
        program.wait_for_reading("1.2 kilograms")
        program.window.choose_model("KV-C300")
        program.window.click(KILOGRAMS)
        Camera(session, program, folder).take("kilograms-binary-scale", "1.2 kilograms")
        program.window.click(POUNDS)
        Camera(session, program, folder).take("pounds-binary-scale", "2.7 pounds")


def take_units_of_gram_scale(program, camera):
    program.wait_for_reading("1234 grams")
    program.window.click(GRAMS)
    camera.take("grams", "1234 grams")
    program.window.click(OUNCES)
    camera.take("ounces", "43.5 ounces")
    program.window.click(POUNDS_OUNCES_TENTHS)
    camera.take("pounds-and-ounces-tenths", "2 pounds 11.5 ounces")
    program.window.click(POUNDS_OUNCES_FRACTION)
    camera.take("pounds-and-ounces-fraction", "2 pounds 11 1/2 ounces")
    program.window.choose_model("KV-C100")
    program.window.click(KILOGRAMS)
    camera.take("kilograms-gram-scale", "1.234 kilograms")
    program.scale.tell("weight 1000")
    program.window.click(POUNDS)
    camera.take("pounds-gram-scale", "2.205 pounds")


def take_states(program, camera):
    program.window.choose_model("KV-A100")
    program.window.click(GRAMS)
    program.scale.tell("weight 500")
    program.wait_for_reading("500 grams")
    program.window.click("tareButton")
    program.wait_for_reading("0 grams")
    program.scale.wait_for_state(tare="released")
    program.scale.tell("weight 0")
    camera.take("negative", "minus 500 grams")
    program.scale.tell("weight 10000")
    camera.take("overload", "overload")
    program.scale.tell("weight 1734")
    program.wait_for_reading("1234 grams")
    program.window.click("holdButton")
    camera.take("hold", "1234 grams, on hold")


@contextlib.contextmanager
def running(session, *arguments):
    program = harness.Program(session, arguments=arguments)
    try:
        yield program
        if program.stop() != 0:
            raise RuntimeError("the program ended with a failure")
    finally:
        program.kill()


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    with contextlib.closing(harness.Session()) as session:
        take_all(session, folder)


if __name__ == "__main__":
    main()
