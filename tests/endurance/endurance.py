#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Days of weighing in minutes: endurance.py --polls N --cycles N [--seed N]

The real program on the emulated scale, its clock sped up a thousandfold by libfaketime: the 0.4 s
between two polls pass as fast as the exchange itself allows. It is sampled from outside, by what
the kernel knows of it. Fails when memory grows, when descriptors or threads remain, and when the
panel does not show what is on the pan.
"""

import argparse
import dataclasses
import os
import pathlib
import random
import re
import sys
import tempfile
import time

import harness
from session import Session
from trend import Trend
from waiting import wait_until

SPEED = 1000

# What the program logs would fill the memory of whoever kept it: twenty lines for each poll.
SPED_UP = ("sh", "-c", f'exec faketime -f "+0 x{SPEED}" "$@" 2>/dev/null', "sh")
# On the clipboard option, so that every reading also goes to the X server.
SETTINGS = "[defaultValue]\n300=selected\n"

SAMPLES = 50
WARM_UP_POLLS = 5000
WARM_UP_CYCLES = 5000
# Half of the smallest block that malloc gives: a leak of one block per poll, or per plug cycle, is
# twice that.
BOUND = 16
# Memory is kept for the most timers and events that there ever were at once. Moments of a plug are
# random, so that number goes up ever more seldom; a short run cannot tell this from a leak.
CYCLES_THAT_TELL = 10_000
# The testbed's library keeps a socket when a node vanishes between its guard's look and its own
# (see emulator/README.md). That was 1 cycle in 900; the program's own would be every one.
CYCLES_PER_KEPT_SOCKET = 100
LOADS = (0, 7, 250, 1234, 9999)
POOL_THREAD = "Thread (pooled)"


@dataclasses.dataclass(frozen=True)
class Usage:
    resident: int
    """Bytes."""
    descriptors: tuple
    """What they lead to, without sockets."""
    sockets: int
    threads: tuple


class Endurance:
    def __init__(self, program, generator):
        self.program = program
        self.scale = program.scale
        self.generator = generator
        faketime = child(program.emulator_pid)
        self.process = pathlib.Path(f"/proc/{child(faketime)}")

    def run(self, polls, cycles):
        for grams in LOADS:
            self.check_reading(grams)
        slope = self.measure("polls", polls, min(WARM_UP_POLLS, polls // 4), self.poll)
        assert slope < BOUND, f"memory grows by {slope:.1f} bytes for each poll"
        self.check_reading(250)
        slope = self.measure("plug cycles", cycles, min(WARM_UP_CYCLES, cycles // 2), self.cycle,
                             kept_sockets=cycles // CYCLES_PER_KEPT_SOCKET)
        assert cycles < CYCLES_THAT_TELL or slope < BOUND, (
            f"memory grows by {slope:.1f} bytes for each plug cycle")
        self.check_reading(1234)
        wait_until(lambda: self.scale.tell("open-handles") == "1", "one open handle")

    def poll(self, count):
        self.scale.wait_for_reports(count, timeout=600)
        self.scale.tell("clear-reports")

    def cycle(self, count):
        """Unplugged and plugged in again, each at a moment of its own."""
        for _ in range(count):
            self._let_pass()
            self.scale.tell("unplug")
            self._let_pass()
            self.scale.tell("plug")

    def _let_pass(self):
        """Up to one and a half poll intervals of the program's time; often nothing at all."""
        if self.generator.random() < 0.7:
            time.sleep(self.generator.uniform(0, 1.5 * harness.POLL_INTERVAL / SPEED))

    def check_reading(self, grams):
        self.scale.tell(f"weight {grams}")
        self.program.wait_for_reading(f"{grams} grams")

    def measure(self, what, count, warm_up, step, kept_sockets=0):
        """Takes @p count steps in SAMPLES portions. The slope of the memory, in bytes per step."""
        step(warm_up)
        start = time.monotonic()
        first = self.usage_at_rest()
        trend = Trend()
        portion = max(1, count // SAMPLES)
        for done in range(portion, count + 1, portion):
            self.scale.tell(f"weight {LOADS[done // portion % len(LOADS)]}")
            step(portion)
            self.settle()
            trend.add(done, self.usage().resident)
        last = self.usage_at_rest()
        print(f"{done} {what} in {time.monotonic() - start:.0f} s: resident memory "
              f"{first.resident} to {last.resident} bytes, slope {trend.slope * 100_000:.0f} "
              f"+- {trend.slope_error * 100_000:.0f} bytes per 100,000 {what}; "
              f"{len(first.descriptors)} to {len(last.descriptors)} files, "
              f"{first.sockets} to {last.sockets} sockets, "
              f"{len(first.threads)} to {len(last.threads)} threads", flush=True)
        assert last.threads == first.threads, f"{first.threads} became {last.threads}"
        assert last.descriptors == first.descriptors, f"{first.descriptors}: {last.descriptors}"
        assert last.sockets <= first.sockets + kept_sockets, "sockets are left behind"
        return trend.slope

    def settle(self):
        """Until what the latest plug has begun is over."""
        self.poll(3)

    def usage_at_rest(self):
        """Digits that are shown for the first time are scaled by threads of the toolkit, which end
        when they have had nothing to do for half a minute."""
        self.settle()
        return wait_until(self.usage_without_pool, "the toolkit's threads at an end", timeout=90)

    def usage_without_pool(self):
        usage = self.usage()
        return None if POOL_THREAD in usage.threads else usage

    def usage(self):
        resident = resident_memory(self.process.name)
        targets = [_target(each) for each in (self.process / "fd").iterdir()]
        sockets = targets.count("socket:")
        others = tuple(sorted(each for each in targets if each != "socket:"))
        return Usage(resident, others, sockets, tuple(self.thread_names()))

    def thread_names(self):
        names = [_thread_name(each) for each in (self.process / "task").iterdir()]
        return [each for each in names if each is not None]


def resident_memory(pid):
    """In bytes."""
    status = pathlib.Path(f"/proc/{pid}/status").read_text(encoding="ascii")
    return int(re.search(r"VmRSS:\s+(\d+) kB", status)[1]) * 1024


def child(pid):
    children = pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text(encoding="ascii")
    return int(children.split()[0])


def _thread_name(task):
    """None of a thread that has ended since it was listed."""
    try:
        return (task / "comm").read_text().rstrip("\n")
    except (FileNotFoundError, ProcessLookupError):
        return None


def _target(descriptor):
    """Without the numbers of nodes, sockets and pipes: one in another's place is as good."""
    try:
        return re.sub(r"\[\d+\]|(?<=hidraw)\d+", "", os.readlink(descriptor))
    except FileNotFoundError:
        return "closed meanwhile"


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--polls", type=int, required=True)
    parser.add_argument("--cycles", type=int, required=True)
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1 << 32))
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    print(f"seed {arguments.seed}", flush=True)
    session = Session()
    try:
        # Each plug makes and removes many files of the emulated /sys; a disk would wait for each.
        with tempfile.TemporaryDirectory(dir="/dev/shm") as memory:
            status = weigh(session, arguments, {"TMPDIR": memory})
    finally:
        session.close()
    if status != 0:
        sys.exit(f"the program ended with status {status}")


def weigh(session, arguments, environment):
    program = harness.Program(session, arguments=("--weight", "1234"), settings=SETTINGS,
                              wrapper=SPED_UP, environment=environment)
    try:
        generator = random.Random(arguments.seed)
        Endurance(program, generator).run(arguments.polls, arguments.cycles)
        return program.stop()
    finally:
        program.kill()


if __name__ == "__main__":
    main()
