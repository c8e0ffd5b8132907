#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A demonstration for a machine without a display: demo.py PICTURE

Puts weights on the emulated pan, prints what the panel and the export label say, and leaves a
picture of the window behind.
"""

import contextlib
import pathlib
import sys

import harness
from unit_rows import GRAMS, POUNDS_OUNCES_FRACTION

# Grams on the pan, and what the panel is to say of them.
WEIGHTS = [(0, "0 grams"), (12, "12 grams"), (250, "250 grams"), (1234, "1234 grams"),
           (9999, "9999 grams"), (12000, "overload"), (1234, "1234 grams")]


def show(program, grams, expected):
    program.scale.tell(f"weight {grams}")
    program.wait_for_reading(expected)
    program.wait_for_polls(2)
    print(f"on the pan: {grams:>6} g   panel: {program.window.reading:<22} "
          f"export: {program.window.export}", flush=True)


def demonstrate(session, picture):
    program = harness.Program(session, arguments=("--weight", "0"))
    try:
        program.wait_for_status("Scale connected")
        program.wait_for_reading("0 grams")
        program.window.click(GRAMS)
        for grams, expected in WEIGHTS:
            show(program, grams, expected)
        program.window.click(POUNDS_OUNCES_FRACTION)
        show(program, 1234, "2 pounds 11 1/2 ounces")
        session.output_of("import", "-window", program.window.id, str(picture))
        print(f"picture of the window: {picture}")
        return program.stop()
    finally:
        program.kill()


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    with contextlib.closing(harness.Session()) as session:
        sys.exit(demonstrate(session, pathlib.Path(sys.argv[1])))


if __name__ == "__main__":
    main()
