# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Reports that are not as they should be, and what is left when they are again."""

from weighing import (ANSWER_PATIENCE, SECOND, check_equal, check_single, check_weighs_soon,
                      expect_grams, next_weight, plug_and_open, start_weighing, unplug_and_lose,
                      weighs_again)


def wide_reports(guest):
    """64 bytes, announced as such."""
    program = guest.start_program()
    guest.bus.form("wide")
    guest.bus.length(64)
    grams = next_weight(guest)
    plug_and_open(guest, program)
    expect_grams(program, grams)
    for _ in range(5):
        check_weighs_soon(guest, program)
    check_single(guest, program)


def short_reports(guest):
    """Debian's kernel hands on no report that is shorter than announced: the scale is silent."""
    program = start_weighing(guest)
    seconds = []
    for length in 1, 7:
        guest.bus.length(length)
        program.lines_during(5)
        check_equal(len(program.open_nodes()), 1)
        guest.bus.length(8)
        seconds.append(weighs_again(guest, program))
    guest.note(f"weighed again {max(seconds):.2f} s after the last short report at most")
    assert max(seconds) <= ANSWER_PATIENCE + SECOND, seconds
    check_single(guest, program)


def delayed_reports(guest):
    program = start_weighing(guest)
    for milliseconds in 100, 500, 1900:
        guest.bus.delay(milliseconds)
        seconds = weighs_again(guest, program)
        # The reading under way, and the one after it.
        limit = 2 * milliseconds / 1000 + SECOND
        assert seconds <= limit, f"{seconds:.2f} s with a delay of {milliseconds} ms"
        guest.bus.delay(0)
        program.lines_during(2)
        check_weighs_soon(guest, program)
    for milliseconds in 2100, 3000:
        guest.bus.delay(milliseconds)
        seconds = weighs_again(guest, program)
        guest.note(f"answers {milliseconds} ms late: a new weight was read after {seconds:.2f} s")
        assert seconds <= 3 * milliseconds / 1000 + ANSWER_PATIENCE, seconds
        guest.bus.delay(0)
        # The answers that are on their way.
        program.lines_during(4)
        check_weighs_soon(guest, program)
    check_single(guest, program)


def doubled_reports(guest):
    program = start_weighing(guest)
    guest.bus.copies(2)
    program.lines_during(4)
    delay = weighs_again(guest, program)
    check_single(guest, program)
    guest.bus.copies(1)
    program.lines_during(2)
    after = weighs_again(guest, program)
    guest.note(f"every answer twice, for 4 s: a new weight was read after {delay:.2f} s; "
               f"after the doubling: {after:.2f} s")
    check_after_replug(guest, program)


def unasked_reports(guest):
    program = start_weighing(guest)
    # Slower than the polls, and faster.
    for milliseconds in 1000, 100:
        guest.bus.unasked(milliseconds)
        program.lines_during(4)
        delay = weighs_again(guest, program)
        check_single(guest, program)
        guest.bus.unasked(0)
        after = weighs_again(guest, program)
        guest.note(f"a report that nobody asked for each {milliseconds} ms: a new weight was read "
                   f"after {delay:.2f} s; once they have stopped, {after:.2f} s")
        check_after_replug(guest, program)


def check_after_replug(guest, program):
    """What has queued up goes with the handle."""
    unplug_and_lose(guest, program)
    program.lines_during(1)
    plug_and_open(guest, program)
    check_weighs_soon(guest, program)
    check_single(guest, program)
    check_equal(len(program.open_nodes()), 1)
