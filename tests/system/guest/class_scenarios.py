# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Scales of the class for points of sale, which send their weight by themselves."""

from system import SEAT_USER, can_open, hidraw_nodes
from weighing import check_equal, expect_grams, plug_and_open, unplug_and_lose

NODE = "/dev/hidraw0"

STABLE, IN_MOTION, AT_ZERO = 4, 3, 2
GRAM, OUNCE = 2, 11
OTHER_REPORT = "0401"


def report(status, unit, digits, exponent=0):
    data = [3, status, unit, exponent % 256, digits % 256, digits // 256]
    return bytes(data).hex()


def expect(program, status, unit, digits, exponent=0):
    program.expect(f"Scale says: status {status}, unit {unit}, {digits}e{exponent}")


def permit(guest, program):
    """The advice that is given to somebody without a rule, beside the rule that there is."""
    guest.bus.plug("class")
    pattern = rf"No permission to open the scale at {NODE}\..*: (ACTION.*)"
    advice = program.expect(pattern).group(1)
    assert not can_open(NODE, SEAT_USER)
    check_equal(program.open_nodes(), [])
    guest.bus.unplug("class")
    program.expect("DeviceRemoved")
    guest.udev.add_local_rule(guest.udev.rule_line() + "\n" + advice)


def plug_class(guest, program, device="class"):
    guest.bus.plug(device)
    program.expect("DeviceAdded")
    program.expect(rf"Scale of the point-of-sale class at .*: Example {device}")


def class_scale(guest):
    """Plugged, weighed with, set to zero, unplugged."""
    program = guest.start_program()
    permit(guest, program)
    guest.bus.say("class", OTHER_REPORT, report(STABLE, GRAM, 1234))
    plug_class(guest, program)
    expect(program, STABLE, GRAM, 1234)
    check_equal(program.open_nodes(), [NODE])
    guest.bus.say("class", report(IN_MOTION, OUNCE, 354, -1))
    expect(program, IN_MOTION, OUNCE, 354, -1)
    guest.bus.say("class", report(STABLE, OUNCE, 12, -1))
    expect(program, STABLE, OUNCE, 12, -1)
    # Nothing is sent to it as long as nobody presses anything, and its node is open to be read.
    check_equal(guest.bus.written("class"), [])
    check_equal(program.operate("--tare"), "Tare\n")
    expect(program, AT_ZERO, OUNCE, 0, -1)
    check_equal(guest.bus.written("class"), ["0202"])
    check_equal(program.open_nodes(), [NODE])
    guest.bus.unplug("class")
    program.expect("DeviceRemoved")
    program.lines_during(2)
    check_equal(program.open_nodes(), [])


def class_replug(guest):
    program = guest.start_program()
    permit(guest, program)
    rounds = guest.rounds(few=5, many=200)
    for cycle in range(rounds):
        guest.bus.say("class", report(STABLE, GRAM, 100 + cycle))
        plug_class(guest, program)
        check_equal(hidraw_nodes(), [NODE])
        expect(program, STABLE, GRAM, 100 + cycle)
        check_equal(program.open_nodes(), [NODE])
        guest.bus.unplug("class")
        program.expect("DeviceRemoved")
    guest.note(f"{rounds} times plugged in again, each time {NODE}")


def class_beside(guest):
    """Of two of them the first one; a described scale before both."""
    program = guest.start_program()
    permit(guest, program)
    guest.bus.say("class", report(STABLE, GRAM, 70))
    guest.bus.say("class-two", report(STABLE, GRAM, 80))
    plug_class(guest, program)
    expect(program, STABLE, GRAM, 70)
    guest.bus.plug("class-two")
    program.expect("DeviceAdded")
    expect(program, STABLE, GRAM, 70)
    check_equal(len(program.open_nodes()), 1)
    guest.bus.unplug("class")
    program.expect(r"Scale of the point-of-sale class at .*: Example class-two")
    expect(program, STABLE, GRAM, 80)
    for grams in 1234, 555:
        guest.bus.weight(grams)
        plug_and_open(guest, program)
        expect_grams(program, grams)
        check_equal(len(program.open_nodes()), 1)
        assert not any("Scale says" in line for line in program.lines_during(2))
        unplug_and_lose(guest, program)
        expect(program, STABLE, GRAM, 80)
