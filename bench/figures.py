# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""One function for each group of figures that are measured in the same runs."""

import contextlib
import itertools
import os
import statistics
import subprocess
import time

import first_weight
import poll_instructions
import start_instructions
from browser_harness import start_browser
from carrier_site import CarrierSite
from harness import POLL_INTERVAL
from login_manager import LoginManager
from programs import (CLIPBOARD_ON, EVERYTHING_ON, Started, Weighing, binary,
                      processor_seconds, processor_time_of_start, settled_pss, wake_ups)
from samples import Figure, Samples
from waiting import wait_until

RUNS = 31
SLICE = 2.0  # s: five polls
POLLS = 400
POLLS_OF_GROWTH = 200_000
READINGS = 40
OURS = ("the program", "with every option on")
LATEST_OF_START = 1.5  # s

CARRIER_PAGES = {
    "USPS": "https://www.usps.com/usps-rows?ounces=02&pounds=05",
    "UPS": "https://www.ups.com/ups",
    "FedEx": "https://www.fedex.com/fedex",
}


def start(session):
    """POSTAL_SCALE_BEFORE names the binary of an earlier build, for a comparison in one run."""
    stock, empty = "the stock window", "the empty window"
    programs = {
        stock: (binary("bench-stock-widgets"), None),
        empty: (binary("bench-empty-window"), None),
        OURS[0]: (binary("postal-scale"), None),
        OURS[1]: (binary("postal-scale"), EVERYTHING_ON),
    }
    if "POSTAL_SCALE_BEFORE" in os.environ:
        programs["before"] = (os.environ["POSTAL_SCALE_BEFORE"], None)
    times = {name: [] for name in programs}
    memory = {name: [] for name in programs}
    costs = {name: [] for name in programs}
    with contextlib.closing(LoginManager(session)) as login:
        for _, (name, (command, settings)) in itertools.product(range(RUNS), programs.items()):
            program = Started(session, command, settings=settings,
                              environment={"DBUS_SYSTEM_BUS_ADDRESS": login.address})
            times[name].append(program.milliseconds)
            # It asks logind a second after its first frame; an earlier build may not.
            if name in OURS:
                login.wait_for_inhibitor()
            elif name == "before":
                time.sleep(LATEST_OF_START)
            memory[name].append(settled_pss(program.process_id))
            program.end()
            costs[name].append(processor_time_of_start(session, command, settings))
    return [*_beside(times, stock, "start to first frame", 1.12, "ms", 1),
            *_beside(costs, stock, "processor time to the first frame", 1.12, "ms", 1),
            *_beside(memory, stock, "memory (PSS) after the start", 1.1, "MiB", 1024)]


def _beside(values, floor, what, goal, unit, scale):
    """Each program by itself, and to the floor."""
    rows = []
    for name, own in values.items():
        samples = Samples([value / scale for value in own])
        rows.append(Figure(f"{what}: {name}", None, unit, samples))
        if name != floor:
            held_to = goal if name in OURS else None
            rows.append(Figure(f"{what}: {name}, to {floor}", held_to, "",
                               samples.over(Samples([value / scale for value in values[floor]]))))
    return rows


def rest(session):
    """Side by side: none of them does anything most of the time."""
    with contextlib.ExitStack() as cleanup:
        def running(program):
            cleanup.callback(program.end)
            return program.process_id

        idle = running(Started(session, binary("postal-scale")))
        same = running(Started(session, binary("bench-label-timer"), "same"))
        new = running(Started(session, binary("bench-label-timer"), "new"))
        weighing = running(Weighing(session))
        settled_pss(idle)
        used = {each: [] for each in (same, new, weighing)}
        woken = []
        for _ in range(RUNS):
            before = {each: processor_seconds(each) for each in used}
            wake_ups_before = wake_ups(idle)
            time.sleep(SLICE)
            woken.append((wake_ups(idle) - wake_ups_before) / SLICE)
            for each, values in used.items():
                values.append((processor_seconds(each) - before[each]) / SLICE * 1000)
    steady = Samples(used[weighing])
    return [
        Figure("wake-ups per second with no scale", 0, "", Samples(woken), "all threads"),
        Figure("processor time, steady weight, to a timer that sets a label to a new text", 2, "",
               steady.over(Samples(used[new])), f"{steady.median:.2f} ms per second"),
        Figure("the same, to a timer that sets it to the same text", None, "",
               steady.over(Samples(used[same])), "which draws nothing, and logs nothing"),
    ]


def poll(_session):
    return each_load("time", "report in hand to views set")


def follow(_session):
    return each_load("follow", "a follower told of a reading")


def each_load(mode, what):
    figures = []
    for load in poll_instructions.loads(binary("poll-cost")):
        output = subprocess.run(
            [binary("poll-cost"), mode, load, str(POLLS)], check=True, text=True,
            env={"QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8"}, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL).stdout
        figures.append(Figure(f"{what}: {load}", 50, "µs",
                              Samples([int(line) / 1000 for line in output.split()])))
    return figures


def pixels(session):
    weighing = Weighing(session)
    watch = session.spawn([binary("frame-watch"), "window", weighing.window], text=True,
                          stdout=subprocess.PIPE)
    watch.stdout.readline()
    weighing.scale.tell("silence on")
    wait_until(lambda: weighing.scale.stays_without_reports(3 * POLL_INTERVAL),
               "the program waiting in its read")
    times = []
    for run in range(RUNS):
        weighing.scale.tell_all("clear-reports", f"weight {1111 * (1 + run % 8)}")
        available = time.monotonic_ns()
        weighing.scale.tell("burst 1")
        times.append((int(watch.stdout.readline()) - available) / 1e6)
        # After its next poll the program waits again.
        wait_until(weighing.scale.polls, "a poll")
    watch.kill()
    watch.wait()
    weighing.end()
    return [Figure("report on the device to pixels changed", 20, "ms", Samples(times),
                   "with the request to the emulator and the grab of the frame")]


def weight(session):
    plugged = list(zip(*first_weight.from_plug(session, RUNS)))
    started = list(zip(*first_weight.from_start(session, RUNS)))
    return [
        Figure("first weight, from the plug to its frame", None, "ms", Samples(plugged[-1]),
               "0.4 s of it is the rhythm of the polls"),
        *_parts(plugged),
        Figure("first weight, from the start, with the scale plugged in", None, "ms",
               Samples(started[-1]), "to its frame"),
        *_parts(started),
    ]


def _parts(columns):
    """What lies between the steps, by run."""
    steps = ("until the program hears of the scale", "until it is open", "until the first poll",
             "until a weight has come", "until its frame is shown")
    before = [0] * len(columns[0])
    for name, after in zip(steps, columns):
        yield Figure(f"of these, {name}", None, "ms",
                     Samples([end - start for start, end in zip(before, after)]))
        before = after


def held(session):
    log = session.new_folder("loop") / "turns"
    weighing = Weighing(session, settings=CLIPBOARD_ON, preload="loop-watch.so",
                        environment={"LOOP_WATCH_FILE": str(log)})
    sums = []
    for _ in range(RUNS):
        seen = len(log.read_text(encoding="ascii").split())
        weighing.scale.tell("clear-reports")
        time.sleep(SLICE)
        turns = [int(line) for line in log.read_text(encoding="ascii").split()[seen:]]
        polls = len(weighing.scale.polls())
        sums.append(sum(turns) / 1e6 / polls)
    weighing.end()
    return [Figure("main thread held per poll, clipboard on", 2, "ms", Samples(sums),
                   "with the waits for the emulated scale's answer")]


def fill(session):
    figures = []
    site = CarrierSite(session.new_folder("site"))
    with contextlib.closing(site):
        for name in ("chromium", "firefox"):
            browser = start_browser(session, site, name)
            with contextlib.closing(browser):
                page = browser.first_page()
                for carrier, address in CARRIER_PAGES.items():
                    page.go(address)
                    figures += _fills(session, browser.name, carrier)
    return figures


def _fills(session, browser, carrier):
    output = session.output_of(binary("fill-cost"), carrier, str(READINGS))
    rows = [[float(number) for number in line.split()] for line in output.splitlines()[1:]]
    held_for, answered, bare = (Samples(list(column)) for column in zip(*rows))
    return [Figure(f"{carrier} fill to its last answer, to a bare client, {browser}", 0.3, "",
                   answered.over(bare),
                   f"{answered.median:.1f} ms, the thread held for {held_for.median:.2f} ms")]


def growth(_session):
    output = subprocess.run(
        [binary("poll-cost"), "grow", str(POLLS_OF_GROWTH)], check=True, text=True,
        env={"QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8"}, stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL).stdout
    # What is loaded by the first polls stays; growth would go on.
    memory = [int(line) for line in output.split()][10:]
    steps = [(later - earlier) * 100 * 1_000_000 / POLLS_OF_GROWTH
             for earlier, later in zip(memory, memory[1:])]
    return [Figure("private memory per million polls", 0, "KiB", Samples(steps),
                   f"{memory[-1] - memory[0]} KiB in {len(steps) * POLLS_OF_GROWTH // 100:,} polls; "
                   f"mean {statistics.mean(steps):.0f} KiB per million")]


def instructions(session):
    starts = start_instructions.measure(session)
    counts = poll_instructions.measure(binary("poll-cost"))
    floor = starts.pop(start_instructions.FLOOR)
    return [Figure("instructions to the first frame: the stock window", None, "",
                   Samples([floor, floor])),
            *(Figure(f"instructions to the first frame: {name}, to the stock window", None, "",
                     Samples([count / floor] * 2),
                     f"{count:,}; guarded by ./check within 1 % of the stock window's")
              for name, count in starts.items()),
            *(Figure(f"instructions per poll: {name}", None, "", Samples([count, count]),
                     "guarded by ./check within 2 %") for name, count in counts.items())]


ALL = {each.__name__: each
       for each in (start, weight, rest, poll, follow, pixels, held, fill, growth, instructions)}
