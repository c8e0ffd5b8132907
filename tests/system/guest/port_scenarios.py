# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What happens to a scale between its plug and the program."""

import time

from system import hidraw_nodes, wait_until
from usb import Port, authorize
from weighing import (ANSWER_PATIENCE, SECOND, check_equal, check_polling_stops, check_single,
                      check_weighs_after_each, check_weighs_soon, plug_and_open,
                      polls_on_the_wire, start_weighing, unplug_and_lose, weighs_again)


NODE = "/dev/hidraw0"


def bus_reset(guest):
    program = start_weighing(guest)
    port = Port(program.open_nodes()[0])
    check_weighs_after_each(guest, program, guest.rounds(5, 100), "resets", port.reset)


def bus_reset_in_poll(guest):
    """The answer is lost for certain: the scale is slower than the reset."""
    program = start_weighing(guest)
    port = Port(program.open_nodes()[0])
    rounds = guest.rounds(2, 20)
    seconds = []
    for _ in range(rounds):
        guest.bus.ignore_polls()
        program.wait_until_it_waits()
        port.reset()
        guest.bus.answer_polls()
        seconds.append(weighs_again(guest, program))
    guest.note(f"{rounds} resets while it waited: weighed again after {max(seconds):.2f} s at most")
    assert max(seconds) <= ANSWER_PATIENCE + SECOND, max(seconds)
    check_single(guest, program)


def autosuspend(guest):
    """Linux keeps a device awake whose hidraw node is open, and lets one sleep that nobody reads."""
    guest.bus.plug()
    wait_until(hidraw_nodes, "a node")
    port = Port(hidraw_nodes()[0])
    port.suspend_when_idle_for(100)
    for _ in range(2):
        time.sleep(2)
        asleep = port.suspended_milliseconds()
        assert asleep > 0
        program = guest.start_program()
        program.expect("our device")
        check_weighs_soon(guest, program)
        awake_since = port.suspended_milliseconds()
        check_single(guest, program)
        check_equal(port.suspended_milliseconds(), awake_since)
        guest.note(f"had slept for {asleep} ms when the program came")
        program.kill()


def authorization(guest):
    program = start_weighing(guest)
    port = Port(program.open_nodes()[0])
    for place in port.hub, port.device:
        for _ in range(guest.rounds(1, 3)):
            authorize(place, False)
            program.expect("hid_device_removal_callback")
            check_polling_stops(guest, program)
            authorize(place, True)
            program.expect("our device")
            check_weighs_soon(guest, program)
        check_single(guest, program)


def binding(guest):
    program = start_weighing(guest)
    port = Port(program.open_nodes()[0])
    for _ in range(5):
        port.unbind()
        program.expect("hid_device_removal_callback")
        check_polling_stops(guest, program)
        port.bind()
        program.expect("our device")
        check_weighs_soon(guest, program)
    check_single(guest, program)
    # Closer together than two polls, which leaves the timer before running too.
    for _ in range(3):
        port.unbind()
        port.bind()
        program.expect("our device")
        check_weighs_soon(guest, program)
        check_equal(program.open_nodes(), hidraw_nodes())
    unplug_and_lose(guest, program)


def node_numbers(guest):
    """The number that was the scale's is another device's, and the other way round."""
    program = start_weighing(guest)
    for order in ("mouse", "scale"), ("scale", "mouse"), ("mouse", "scale"):
        guest.bus.unplug_all()
        program.expect("hid_device_removal_callback")
        wait_until(lambda: not hidraw_nodes() and not program.open_nodes(), "all to be gone")
        program.lines_during(1)
        for number, device in enumerate(order):
            guest.bus.plug(device)
            wait_until(lambda: len(hidraw_nodes()) > number, "its node")
        program.expect("our device")
        check_weighs_soon(guest, program)
        check_equal(program.open_nodes(), [f"/dev/hidraw{order.index('scale')}"])
        check_single(guest, program)


def late_udev(guest):
    """Until udev has dealt with the device, nobody but root may open it."""
    for seconds in 0.5, 1.5, 3:
        program = guest.start_program()
        plug_unannounced(guest)
        time.sleep(seconds)
        guest.udev.go_on()
        program.expect("our device")
        first = check_weighs_soon(guest, program)
        check_single(guest, program)
        program.stop()
        guest.bus.unplug()

        plug_unannounced(guest)
        program = guest.start_program()
        time.sleep(seconds)
        guest.udev.go_on()
        second = check_weighs_soon(guest, program)
        check_single(guest, program)
        unplug_and_lose(guest, program)
        program.stop()
        guest.note(f"announced after {seconds} s: it weighed {first:.2f} s later; started before "
                   f"that: {second:.2f} s")


def plug_unannounced(guest):
    guest.udev.hold()
    guest.bus.plug()
    wait_until(hidraw_nodes, "a node")


def composite(guest):
    """A scale with a second HID interface: both are attachments of its vendor's, and each starts a
    timer and opens the scale, which is the first interface."""
    program = guest.start_program()
    guest.bus.form("composite")
    plug_and_open(guest, program)
    program.expect("our device")
    check_weighs_soon(guest, program)
    check_equal(len(hidraw_nodes()), 2)
    # Once or, where both were announced together, twice.
    check_equal(set(program.open_nodes()), {NODE})
    polls = polls_on_the_wire(guest, 4)
    guest.note(f"{polls} polls in 4 s")
    assert polls in range(18, 24), polls
    guest.bus.unplug()
    check_polling_stops(guest, program)
    guest.bus.form("plain")
    plug_and_open(guest, program)
    check_weighs_soon(guest, program)
    check_single(guest, program)
