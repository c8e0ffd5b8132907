# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the scenarios act on: the bus, udev, the user at the machine, the program."""

from bus import Bus
from program import Program, as_user, run
from system import SEAT_USER, Udev, change_seat, hidraw_nodes, wait_until


PROGRAM = "/usr/bin/postal-scale"


class Guest:
    def __init__(self, is_full):
        """@param is_full: with as many rounds as are promised, which takes long"""
        self.is_full = is_full
        self.restore_seat()
        self.udev = Udev()
        self.bus = Bus("/usr/bin/postal-scale-gadget")
        self.programs = []
        self.notes = []

    def restore_seat(self):
        change_seat(SEAT_USER)

    def rounds(self, few, many):
        return many if self.is_full else few

    def start_program(self, user=SEAT_USER):
        program = Program([PROGRAM], as_user(user))
        self.programs.append(program)
        return program

    def run_program(self, user, *arguments):
        """A run that ends by itself: its status, output and errors."""
        return run(PROGRAM, user, *arguments)

    def note(self, text):
        self.notes.append(text)

    def check_nothing_left(self):
        """Whatever the scenario did: nothing stays behind once everything is unplugged."""
        self.bus.unplug_all()
        wait_until(lambda: not hidraw_nodes(), "every node to be gone")
        for program in self.programs:
            if program.is_stopped:
                continue
            program.check_alive()
            wait_until(lambda: not program.open_nodes(), "every handle to be closed")

    def clear_away(self):
        """For the next scenario. The notes of this one and what its programs wrote."""
        self.bus.reset()
        self.restore_seat()
        self.udev.restore()
        for program in self.programs:
            program.stop()
        notes = self.notes
        log = [line for program in self.programs for line in program.lines]
        self.programs = []
        self.notes = []
        return notes, log
