#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What a linked browser is sent while somebody weighs: POSTAL_SCALE_BIN=... transcript.py FILE

For comparing two versions of the program, byte for byte. As the number of readings between two
deeds is a matter of time, equal readings in a row are written down once.
"""

import contextlib
import json
import sys

import harness
from browser_harness import ALL_CARRIERS, KV_C300
from extension_stand_in import ExtensionStandIn
from session import Session

HOSTS = ("www.usps.com", "www.ups.com", "www.fedex.com")
WEIGHTS = (0, 1234, 0, 3, 1000, 1500, 0, 20000, -500, 453, 454, 0)
# With all carriers on, the first assignment of the first one begins a reading.
FIRST_OF_READING = "$TextBoxPounds')[0].value="
UNITS = ("rg4", "rg6", "rg7")


class RecordingExtension(ExtensionStandIn):
    """Has none of the fields."""

    def __init__(self, session):
        self.sent = []
        super().__init__(session)

    def _answer(self):
        with contextlib.suppress(OSError):
            while True:
                message = self._stream.receive()
                plan = message["plan"]
                self.sent.append(json.dumps(plan["steps"]))
                self._stream.send({"ran": {"id": plan["id"],
                                           "fields": {"written": 0, "changed": 0},
                                           "notes": []}})


def weigh(program, extension):
    for number, host in enumerate(HOSTS, 1):
        extension.show(number, host)
        for unit in UNITS:
            program.window.click(unit)
            for grams in WEIGHTS:
                program.scale.tell(f"weight {grams}")
                program.wait_for_polls(4)
    program.window.click("holdButton")
    program.scale.tell("weight 777")
    program.wait_for_polls(4)
    program.window.click("holdButton")
    program.wait_for_polls(4)


def readings(messages):
    """Each with all its messages."""
    whole = []
    for message in messages:
        if FIRST_OF_READING in message:
            whole.append("")
        if whole:
            whole[-1] += message + "\n"
    return whole


def distinct(texts):
    return [text for index, text in enumerate(texts) if index == 0 or text != texts[index - 1]]


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    with contextlib.closing(Session()) as session:
        program = harness.Program(session, settings=KV_C300 + ALL_CARRIERS)
        try:
            program.wait_for_polls()
            extension = RecordingExtension(session)
            weigh(program, extension)
            program.stop()
            extension.close()
        finally:
            program.kill()
    with open(sys.argv[1], "w", encoding="utf-8") as file:
        file.write("\n".join(distinct(readings(extension.sent))))


if __name__ == "__main__":
    main()
