# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""One function for each group of figures that are measured in the same runs."""

import contextlib
import itertools
import os
import statistics
import subprocess
import time

import device_list
import first_weight
import memory_map
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
POLLS_OF_GROWTH = 100_000
READINGS = 40
OURS = ("the program", "with every option on")
LATEST_OF_START = 1.5  # s
EMULATED_NODES = (0, 10)
SETTINGS = {"": None, ", every option on": EVERYTHING_ON}
"""By what a figure's name ends with."""

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
    maps = {name: [] for name in programs}
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
            maps[name].append(memory_map.of_process(program.process_id))
            program.end()
            costs[name].append(processor_time_of_start(session, command, settings))
    return [*_beside(times, stock, "start to first frame", 1.12, "ms", 1),
            *_beside(costs, stock, "processor time to the first frame", 1.12, "ms", 1),
            *_beside(memory, stock, "memory (PSS) after the start", 1.1, "MiB", 1024),
            memory_map.MemoryMap(stock, {name: maps[name] for name in (stock, *OURS)})]


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

        # A second one of the same user's would only raise the first one's window.
        idle = [running(Started(session, binary("postal-scale"), settings=settings, environment={
                    "XDG_RUNTIME_DIR": str(session.new_folder("runtime"))}))
                for settings in SETTINGS.values()]
        same = running(Started(session, binary("bench-label-timer"), "same"))
        new = running(Started(session, binary("bench-label-timer"), "new"))
        weighing = [running(Weighing(session, settings=settings))
                    for settings in SETTINGS.values()]
        for each in idle:
            settled_pss(each)
        used = {each: [] for each in (same, new, *weighing)}
        woken = {each: [] for each in idle}
        for _ in range(RUNS):
            before = {each: processor_seconds(each) for each in used}
            wake_ups_before = {each: wake_ups(each) for each in idle}
            time.sleep(SLICE)
            for each, values in woken.items():
                values.append((wake_ups(each) - wake_ups_before[each]) / SLICE)
            for each, values in used.items():
                values.append((processor_seconds(each) - before[each]) / SLICE * 1000)
    return [*(Figure(f"wake-ups per second with no scale{name}", 0, "", Samples(woken[each]),
                     "all threads") for name, each in zip(SETTINGS, idle)),
            *(figure for name, each in zip(SETTINGS, weighing)
              for figure in _steady(name, *(Samples(used[one]) for one in (each, new, same))))]


def _steady(name, steady, new, same):
    what = f"processor time, steady weight{name}"
    return [Figure(f"{what}, to a timer that sets a label to a new text", 2, "", steady.over(new),
                   f"{steady.median:.2f} ms per second"),
            Figure(f"{what}, to a timer that sets it to the same text", None, "",
                   steady.over(same), "which draws nothing, and logs nothing")]


def poll(_session):
    return [figure for name, settings in SETTINGS.items()
            for figure in each_load("time", "report in hand to views set", name, settings)]


def follow(_session):
    return each_load("follow", "a follower told of a reading")


def each_load(mode, what, name="", settings=None):
    return [Figure(f"{what}: {load}{name}", 50, "µs",
                   Samples([line / 1000 for line in _poll_cost(settings, mode, load, POLLS)]))
            for load in poll_instructions.loads(binary("poll-cost"))]


def _poll_cost(settings, *words):
    """The numbers that it prints."""
    with_settings = ["--settings", settings] if settings else []
    output = subprocess.run(
        [binary("poll-cost"), *with_settings, *map(str, words)], check=True, text=True,
        env={"QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8"}, stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL).stdout
    return [int(line) for line in output.split()]


def pixels(session):
    return [_pixels(session, name, settings) for name, settings in SETTINGS.items()]


def _pixels(session, name, settings):
    weighing = Weighing(session, settings=settings)
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
    return Figure(f"report on the device to pixels changed{name}", 20, "ms", Samples(times),
                  "with the request to the emulator and the grab of the frame")


def weight(session):
    plugged = list(zip(*first_weight.from_plug(session, RUNS)))
    *started, first_frame = zip(*first_weight.from_start(session, RUNS))
    return [
        Figure("first weight, from the plug to its frame", None, "ms", Samples(plugged[-1]),
               "0.4 s of it is the rhythm of the polls"),
        *_parts(plugged),
        Figure("first weight, from the start, with the scale plugged in", None, "ms",
               Samples(started[-1]), "to its frame"),
        *_parts(started),
        Figure("start to first frame, with the scale plugged in", None, "ms", Samples(first_frame),
               "the kernel's part for the scale is emulated"),
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


def devices(session):
    """What the start's list of devices makes it wait for."""
    figures = []
    for nodes in (None, *EMULATED_NODES):
        seen, times = device_list.measure(session, nodes, RUNS)
        where = "of this machine" if nodes is None else "emulated"
        figures.append(Figure(f"the list of devices, {_range(seen)} {where}", None, "ms",
                              Samples(times), "wall clock, the kernel's part with it"))
    return figures


def _range(numbers):
    return " to ".join(str(each) for each in sorted({min(numbers), max(numbers)}))


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
    return [_growth(name, settings) for name, settings in SETTINGS.items()]


def _growth(name, settings):
    # What is loaded by the first polls stays; growth would go on.
    memory = _poll_cost(settings, "grow", POLLS_OF_GROWTH)[10:]
    steps = [(later - earlier) * 100 * 1_000_000 / POLLS_OF_GROWTH
             for earlier, later in zip(memory, memory[1:])]
    return Figure(f"private memory per million polls{name}", 0, "KiB", Samples(steps),
                  f"{memory[-1] - memory[0]} KiB in {len(steps) * POLLS_OF_GROWTH // 100:,} polls; "
                  f"mean {statistics.mean(steps):.0f} KiB per million")


def instructions(session):
    guarded = start_instructions.measure(session, start_instructions.one_family(session))
    counts = poll_instructions.measure(binary("poll-cost"))
    return [*_start_counts(start_instructions.measure(session, {}), 1.12, "",
                           "with the fonts of this machine"),
            *_start_counts(guarded, None, ", one font",
                           "an eased start, as ./check counts it and guards it within 1 %"),
            *(Figure(f"instructions per poll: {name}", None, "", Samples([count]),
                     "guarded by ./check within 2 %") for name, count in counts.items())]


def _start_counts(counts, goal, name, note):
    floor = counts[start_instructions.FLOOR]
    what = f"instructions to the first frame{name}"
    yield Figure(f"{what}: {start_instructions.FLOOR}", None, "", Samples([floor]), note)
    for start_name in OURS:
        count = counts[start_name]
        yield Figure(f"{what}: {start_name}, to {start_instructions.FLOOR}", goal, "",
                     Samples([count / floor]), f"{count:,}; {note}")


ALL = {each.__name__: each
       for each in (start, devices, weight, rest, poll, follow, pixels, held, fill, growth,
                    instructions)}
