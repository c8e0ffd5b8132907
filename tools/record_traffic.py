# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Records the program on the emulated scales: the files of tests/traffic, made anew.

record_traffic.py FOLDER
"""

import pathlib
import sys

from harness import Program
from session import Session
from unit_rows import POUNDS_OUNCES_FRACTION


def record(session, file, scale_type, readings, reading_in_pounds):
    program = Program(session, arguments=("--unplugged", "--type", scale_type),
                      program_arguments=("--record", file))
    program.scale.tell("plug")
    for command, reading in readings:
        program.scale.tell(command)
        program.wait_for_reading(reading)
    program.scale.tell("fail-read on")
    program.log.wait_for("Unable to read\\(\\)$", program.log.mark())
    program.scale.tell("fail-read off")
    program.wait_for_polls()
    program.window.click(POUNDS_OUNCES_FRACTION)
    program.scale.tell("weight 1000")
    program.wait_for_reading(reading_in_pounds)
    program.scale.tell_all("plug mouse", "unplug")
    program.wait_for_status("Scale not connected")
    program.scale.tell("plug")
    program.wait_for_status("Scale connected")
    program.wait_for_polls(3)
    if program.stop() != 0:
        raise AssertionError("the program failed")


def main():
    folder = pathlib.Path(sys.argv[1])
    session = Session()
    try:
        record(session, folder / "packed-decimal-scale.txt", "0", (
            ("weight 1234", "1234 grams"), ("weight 12", "12 grams"), ("weight 20000", "overload"),
            ("weight 9999", "9999 grams"), ("weight 0", "0 grams")), "2 pounds 3 1/4 ounces")
        record(session, folder / "binary-scale.txt", "1", (
            ("weight 1234", "1.2 kilograms"), ("weight 34000", "34.0 kilograms"),
            ("weight 50000", "overload"), ("weight 454", "0.5 kilograms")), "1.0 kilograms")
    finally:
        session.close()


if __name__ == "__main__":
    main()
