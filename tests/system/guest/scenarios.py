# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""One function for each scenario, under the name that CTest knows it by."""

import re
import time

from system import OTHER_USER, SEAT_USER, can_open, hidraw_nodes, user_rights, wait_until
from weighing import check_equal, expect_grams, plug_and_open, unplug_and_lose

NODE = "/dev/hidraw0"


def rest(program):
    """Until nothing polls: a timer finds out about a removal when it ticks once more."""
    lines = program.lines_during(2)
    check_equal(set(lines) - {"readData"}, set())
    check_equal(program.lines_during(2), [])
    return lines


def check_polling_stops(program):
    assert len(rest(program)) <= 1


def plug(guest):
    program = guest.start_program()
    check_equal(hidraw_nodes(), [])
    guest.bus.feature_reports()
    guest.bus.weight(500)
    plug_and_open(guest, program)
    expect_grams(program, 500)
    reports = guest.bus.feature_reports()
    # As the scale gets them, without the report number: a poll with every bit of the command set,
    # then one without the power-off bit.
    check_equal(reports[:2], ["90ff800000000000", "90fe800000000000"])
    unplug_and_lose(guest, program)
    check_polling_stops(program)


def seat(guest):
    program = guest.start_program()
    plug_and_open(guest, program)
    check_equal(program.status("Uid"), str(SEAT_USER))
    check_equal(program.open_nodes(), [NODE])
    check_equal(user_rights(NODE), {SEAT_USER: 6})
    assert can_open(NODE, SEAT_USER)
    assert not can_open(NODE, OTHER_USER)


def weigh_grams(guest):
    # Before the program starts: devices that are there are found without being plugged in again.
    guest.bus.plug()
    program = guest.start_program()
    program.expect("our device")
    for grams in 0, 1, 250, 1234, 9999:
        guest.bus.weight(grams)
        expect_grams(program, grams)


def weigh_ounces(guest):
    guest.bus.type(1)
    guest.bus.plug()
    program = guest.start_program()
    program.expect("our device")
    # Tenths of an ounce come over the wire: 353, 435 and 8818 for these; the weight that the
    # program takes from them is in hectograms, plus one half.
    for grams, decoded, hectograms in ((1000, "10.507550", 10), (1234, "12.832250", 12),
                                       (25000, "250.490295", 250)):
        guest.bus.weight(grams)
        program.expect(f"Executed Case 8 fot w value {re.escape(decoded)}")
        program.expect(f"wgm value is-->{hectograms}")


def unplug_in_read(guest):
    program = guest.start_program()
    guest.bus.weight(321)
    plug_and_open(guest, program)
    expect_grams(program, 321)
    guest.bus.ignore_polls()
    program.wait_until_it_waits()
    guest.bus.unplug()
    program.expect(r"Unable to read\(\)")
    program.expect("DeviceRemoved")
    program.expect("hid_device_removal_callback")
    check_polling_stops(program)
    check_equal(program.open_nodes(), [])
    guest.bus.answer_polls()
    plug_and_open(guest, program)
    expect_grams(program, 321)


def bounce(guest):
    """Unplugged at every stage of being announced, opened and polled."""
    program = guest.start_program()
    rounds = range(0, 160, 8)
    for milliseconds in rounds:
        guest.bus.plug()
        wait_until(hidraw_nodes, "a node")
        time.sleep(milliseconds / 1000)
        guest.bus.unplug()
        wait_until(lambda: not hidraw_nodes(), "the node to go")
    program.lines_during(2)
    check_equal(program.lines_during(2), [])
    check_equal(program.open_nodes(), [])
    opened = program.count("our device")
    guest.note(f"unplugged {len(rounds)} times, up to {rounds[-1]} ms after the node came; "
               f"opened {opened} times")
    assert 0 < opened < len(rounds), "some before, some after it is opened"
    guest.bus.weight(55)
    plug_and_open(guest, program)
    expect_grams(program, 55)
    check_equal(program.open_nodes(), [NODE])


def replug(guest):
    replugs = guest.rounds(20, 200)
    program = guest.start_program()
    # Once before counting: the first time leaves what every later one uses again.
    plug_and_open(guest, program)
    unplug_and_lose(guest, program)
    check_polling_stops(program)
    before = usage(program)
    for cycle in range(replugs):
        guest.bus.weight(cycle)
        plug_and_open(guest, program)
        check_equal(hidraw_nodes(), [NODE])
        check_equal(program.open_nodes(), [NODE])
        if cycle % 10 == 0:
            expect_grams(program, cycle)
        unplug_and_lose(guest, program)
    # A scale that is back within the poll interval is polled by the timer before as well.
    rest(program)
    after = usage(program)
    check_equal(after["descriptors"], before["descriptors"])
    check_equal(after["threads"], before["threads"])
    guest.note(f"{replugs} times plugged in again, each time {NODE}")
    guest.note(f"before: {before}, after: {after}")
    plug_and_open(guest, program)
    polls = program.lines_during(4).count("readData")
    guest.note(f"polls in the 4 s after that: {polls}")
    assert 9 <= polls <= 11, polls


def usage(program):
    return {"descriptors": len(program.descriptors()), "threads": program.threads(),
            "resident kB": int(program.status("VmRSS"))}


def mouse(guest):
    program = guest.start_program()
    guest.bus.weight(77)
    plug_and_open(guest, program)
    expect_grams(program, 77)
    guest.bus.plug("mouse")
    program.expect("DeviceAdded")
    expect_grams(program, 77)
    check_equal(program.count("go forward"), 1)
    check_equal(program.open_nodes(), [NODE])
    # Any HID device that goes counts as the scale's removal; the next plug mends that.
    unplug_and_lose(guest, program, "mouse")
    check_polling_stops(program)
    check_equal(program.open_nodes(), [NODE])
    unplug_and_lose(guest, program)
    plug_and_open(guest, program)
    expect_grams(program, 77)
    check_equal(program.open_nodes(), [NODE])


def no_rule(guest):
    guest.udev.remove_rule()
    program = guest.start_program()
    guest.bus.weight(42)
    guest.bus.plug()
    advice = program.expect(rf"No permission to open the scale at {NODE}\..*: (ACTION.*)").group(1)
    program.expect("our device")
    for _ in range(3):
        program.expect("readData")
        program.expect(r"Unable to read command\(\)")
        program.expect(r"Unable to read\(\)")
    check_equal(program.open_nodes(), [])
    assert not can_open(NODE, SEAT_USER)
    check_equal(advice, guest.udev.rule_line())
    # The advice helps: at once when the rules are applied again, as the package does, but the
    # program looks only at what is plugged in.
    guest.udev.add_local_rule(advice)
    guest.udev.apply_again()
    wait_until(lambda: can_open(NODE, SEAT_USER), "the user's right")
    assert "DeviceAdded" not in program.lines_during(1)
    guest.bus.unplug()
    program.expect("DeviceRemoved")
    plug_and_open(guest, program)
    expect_grams(program, 42)


def installed(guest):
    """The package comes to a machine whose scale is plugged in: who sits there weighs at once, and
    who does not is told why not."""
    guest.udev.remove_rule()
    guest.bus.weight(1234)
    guest.bus.plug()
    wait_until(hidraw_nodes, "a node")
    check_refused(guest, SEAT_USER, "Install the package")
    guest.udev.configure_package()
    wait_until(lambda: can_open(NODE, SEAT_USER), "the user's right")
    check_equal(guest.run_program(SEAT_USER, "--print")[:2], (0, "1234 grams\n"))
    _, report, _ = guest.run_program(SEAT_USER, "--doctor")
    assert "Permission to open it" in report, report
    check_refused(guest, OTHER_USER, "this session has no seat")
    program = guest.start_program()
    expect_grams(program, 1234)


def check_refused(guest, user, reason):
    status, reading, complaint = guest.run_program(user, "--print")
    check_equal((status, reading), (3, ""))
    assert "ermission" in complaint, complaint
    status, report, _ = guest.run_program(user, "--doctor")
    check_equal(status, 1)
    assert f"No permission to open {NODE}" in report and reason in report, report


def two_scales(guest):
    program = guest.start_program()
    guest.bus.weight(100)
    guest.bus.weight(200, "second")
    plug_and_open(guest, program)
    expect_grams(program, 100)
    plug_and_open(guest, program, "second")
    # The first one on the bus is weighed with, and has been opened a second time.
    expect_grams(program, 100)
    check_equal(hidraw_nodes(), [NODE, "/dev/hidraw1"])
    check_equal(program.open_nodes(), [NODE, NODE])
    unplug_and_lose(guest, program)
    rest(program)
    check_equal(program.open_nodes(), [])
    # The one that is left takes over as soon as it is plugged in again.
    unplug_and_lose(guest, program, "second")
    plug_and_open(guest, program, "second")
    expect_grams(program, 200)
    check_equal(hidraw_nodes(), [NODE])
