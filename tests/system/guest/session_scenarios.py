# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The session around the program: signals, sleep, users who come and go."""

import contextlib
import pathlib
import signal
import time

from system import OTHER_USER, SEAT_USER, change_seat
from weighing import (check_equal, check_single, check_weighs_after_each, check_weighs_soon,
                      plug_and_open, start_weighing, unplug_and_lose, weighs_again)

POWER = pathlib.Path("/sys/power")
# Seconds that the machine stays asleep in a trial.
PAUSE = pathlib.Path("/sys/module/suspend/parameters/pm_test_delay")

# First byte of a command, which is no poll, and the bit of the second one that switches it off.
COMMAND = 0xA0
POWER_OFF = 0x01


def signals(guest):
    for each in signal.SIGTERM, signal.SIGINT, signal.SIGHUP:
        program = start_weighing(guest)
        check_equal(guest.bus.power(), "on")
        program.process.send_signal(each)
        check_equal(program.wait_for_end(), 0)
        check_switched_off(guest)
        guest.bus.unplug()


def check_switched_off(guest):
    last = guest.bus.feature_reports()[-1]
    kind, command = bytes.fromhex(last)[:2]
    assert kind == COMMAND and command & POWER_OFF, last
    check_equal(guest.bus.power(), "off")
    guest.note(f"last on the wire: {last}")


def sleep(guest):
    """The whole way to sleep and back but for the moment when the machine stops."""
    program = start_weighing(guest)
    with sleeps_of_a_second():
        check_weighs_after_each(guest, program, guest.rounds(2, 20), "sleeps", fall_asleep)


def fall_asleep():
    before = time.monotonic()
    (POWER / "state").write_text("freeze")
    assert time.monotonic() - before >= 1, "it did not sleep"


@contextlib.contextmanager
def sleeps_of_a_second():
    """All that a sleep is but for the machine's own."""
    (POWER / "pm_test").write_text("devices")
    PAUSE.write_text("1")
    try:
        yield
    finally:
        (POWER / "pm_test").write_text("none")


def two_users(guest):
    """Both have the program running; the scale is whose seat it is."""
    mine = guest.start_program()
    plug_and_open(guest, mine)
    weighs_again(guest, mine)
    theirs = guest.start_program(OTHER_USER)
    theirs.expect("No permission to open the scale.*")
    for user, program, other in ((OTHER_USER, theirs, mine), (SEAT_USER, mine, theirs),
                                 (OTHER_USER, theirs, mine)):
        change_seat(user)
        seconds = check_weighs_soon(guest, program)
        guest.note(f"user {user} weighs {seconds:.2f} s after coming to the seat")
        check_single(guest, program)
        check_equal(other.open_nodes(), [])
    # Who is not at the seat does not switch off what others weigh with.
    mine.stop()
    check_equal(guest.bus.power(), "on")
    check_weighs_soon(guest, theirs)
    unplug_and_lose(guest, theirs)
