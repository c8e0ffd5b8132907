# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A session of the real logind: its seat, its sleeps and its ends."""

import contextlib
import pathlib
import subprocess

from desk import ask_logind
from session_scenarios import check_switched_off, sleeps_of_a_second
from system import SEAT_USER, hidraw_nodes, user_rights, wait_until
from weighing import (check_equal, check_single, check_weighs_soon, polls_on_the_wire,
                      start_weighing)

READ_AND_WRITE = 6
SLEEPS = pathlib.Path("/sys/power/suspend_stats/success")

# As they are listed: whom logind waits for.
PROGRAM = "Postal Scale"
WATCHER = "Scenario"

# Seconds between two questions to it, each of which is a process.
QUESTION_PAUSE = 0.2


def logout(guest):
    """The session's processes are told to end, with two signals at once."""
    program = start_weighing(guest)
    check_equal(user_rights(hidraw_nodes()[0]), {SEAT_USER: READ_AND_WRITE})
    check_equal(guest.bus.power(), "on")
    subprocess.run(["loginctl", "terminate-session", program.session], check=True)
    program.wait_for_end()
    check_switched_off(guest)


def x_server_lost(guest):
    program = start_weighing(guest)
    check_equal(guest.bus.power(), "on")
    guest.x_server.kill()
    check_equal(program.wait_for_end(), 1)
    check_switched_off(guest)


def logind_sleep(guest):
    program = start_weighing(guest)
    wait_for_delay(PROGRAM)
    with sleeps_of_a_second():
        for number in range(1, guest.rounds(2, 20) + 1):
            with delaying("sleep"):
                ask_logind("Suspend", "b", "false")
                wait_until(lambda: not delays(PROGRAM), "the program to be ready", QUESTION_PAUSE)
                polls = polls_on_the_wire(guest, 2)
            # Whatever is wrong, it is to be a trial: from another sleep nothing would wake it.
            wait_until(lambda: int(SLEEPS.read_text()) == number, "the end of the sleep")
            check_equal(polls, 0)
            seconds = check_weighs_soon(guest, program)
            guest.note(f"weighed {seconds:.2f} s after sleep {number}")
            wait_for_delay(PROGRAM)
            check_single(guest, program)


def shutdown(guest):
    """The last one: the machine goes down afterwards."""
    program = start_weighing(guest)
    check_equal(guest.bus.power(), "on")
    wait_for_delay(PROGRAM)
    with delaying("shutdown"):
        ask_logind("PowerOff", "b", "false")
        check_equal(program.wait_for_end(), 0)
        # As long as logind waits, nobody is sent any signal.
        jobs = subprocess.run(["systemctl", "list-jobs"], check=True, text=True,
                              stdout=subprocess.PIPE).stdout
        assert "poweroff.target" not in jobs, jobs
        check_switched_off(guest)


def delays(name):
    """Whether logind waits for that one before a sleep or a shutdown."""
    return f'"{name}"' in ask_logind("ListInhibitors")


def wait_for_delay(name):
    wait_until(lambda: delays(name), f"a delay by {name}", QUESTION_PAUSE)


@contextlib.contextmanager
def delaying(what):
    """Logind waits, but for its own five seconds at most."""
    holder = subprocess.Popen(["systemd-inhibit", f"--what={what}", "--mode=delay",
                               f"--who={WATCHER}", "cat"], stdin=subprocess.PIPE)
    wait_for_delay(WATCHER)
    try:
        yield
    finally:
        holder.stdin.close()
        holder.wait()
