# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Whether it weighs, how soon again, and with how many timers and handles."""

import itertools
import time

from system import hidraw_nodes, wait_until

# Each reading that is waited for is of a weight that no earlier one was of.
fresh_weights = itertools.cycle(range(2000, 9000, 7))

# What a poll waits for before it is sent anew, and the second within which it weighs again.
ANSWER_PATIENCE = 2
SECOND = 1

# Between two polls, with what a busy guest adds.
POLLS_IN_4_S = range(9, 12)


def check_equal(found, wanted):
    assert found == wanted, f"{found} instead of {wanted}"


def plug_and_open(guest, program, device="scale"):
    guest.bus.plug(device)
    program.expect("DeviceAdded")
    program.expect("go forward")
    program.expect("our device")


def unplug_and_lose(guest, program, device="scale"):
    guest.bus.unplug(device)
    program.expect("DeviceRemoved")
    program.expect("hid_device_removal_callback")


def expect_grams(program, grams):
    """A reading of the scale that counts grams."""
    program.expect(f"W Value for Scale 0 is {grams}")
    program.expect(f"wgm value is-->{grams}")


def next_weight(guest):
    """Puts it on the scale."""
    grams = next(fresh_weights)
    guest.bus.weight(grams)
    return grams


def weighs_again(guest, program, since=None):
    """Seconds until a reading of a weight that is put on the scale now.
    @param since: the moment when it could weigh, if that is past"""
    since = time.monotonic() if since is None else since
    expect_grams(program, next_weight(guest))
    return time.monotonic() - since


def check_weighs_soon(guest, program, limit=SECOND):
    seconds = weighs_again(guest, program)
    assert seconds <= limit, f"it weighed again after {seconds:.2f} s"
    return seconds


def check_weighs_after_each(guest, program, rounds, what, befall):
    """That happens so often, at every moment of the 0.4 s between two polls. What is under way is
    lost at some."""
    seconds = []
    for number in range(rounds):
        time.sleep(0.4 * (number * 7 % rounds) / rounds)
        befall()
        seconds.append(weighs_again(guest, program))
    late = [each for each in seconds if each > SECOND]
    guest.note(f"{rounds} {what}: weighed again after {max(seconds):.2f} s at most; "
               f"{len(late)} later than after a second")
    # A lost answer is waited for before the poll is sent anew.
    assert max(seconds) <= ANSWER_PATIENCE + SECOND, max(seconds)
    check_single(guest, program)


def polls_on_the_wire(guest, seconds):
    guest.bus.feature_reports()
    time.sleep(seconds)
    return len(guest.bus.feature_reports())


def check_single(guest, program):
    """One timer, one handle."""
    nodes = program.open_nodes()
    assert len(nodes) == 1 and nodes[0] in hidraw_nodes(), nodes
    polls = polls_on_the_wire(guest, 4)
    assert polls in POLLS_IN_4_S, f"{polls} polls in 4 s"


def check_polling_stops(guest, program):
    """Once the scale is gone: the timer finds out when it ticks once more."""
    wait_until(lambda: not program.open_nodes(), "the handle to be closed")
    time.sleep(1)
    check_equal(polls_on_the_wire(guest, 1), 0)


def start_weighing(guest):
    program = guest.start_program()
    plug_and_open(guest, program)
    weighs_again(guest, program)
    return program
