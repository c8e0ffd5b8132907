# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Runs the unit tests against a mutant until one of them notices."""

import os
import pathlib
import signal
import subprocess
import threading
import time

from workshop import FOLDER, LinkedProgram, MutatedSource, run

REFUSED = "does not compile"
SAME = "same object code"
SURVIVED = "SURVIVED"


class Programs:
    """How the test programs are linked; looked up once for all."""

    def __init__(self, tests):
        self.tests = tests
        self.linked = {}
        self.times = {}
        self.lock = threading.Lock()

    @staticmethod
    def measure(test):
        """Without a mutation every test has to pass; how long it takes sets its time limit."""
        began = time.monotonic()
        problem = problem_of(test, test.program, 600)
        if problem:
            raise SystemExit(f"{test.name} fails without a mutation: {problem}")
        return time.monotonic() - began

    def of(self, source):
        """The tests that the source's object takes part in, with their links."""
        with self.lock:
            for test in self.tests:
                if test.program not in self.linked:
                    self.linked[test.program] = LinkedProgram(test.program)
            used = [
                (test, self.linked[test.program])
                for test in self.tests
                if self.linked[test.program].uses(source.library, source.member)
            ]
            for test, _ in used:
                if test.name not in self.times:
                    self.times[test.name] = self.measure(test)
        return used


class Judge:
    """For one source. Tests near it and quick ones come first, the latest that noticed before all.
    """

    def __init__(self, path, programs, work):
        self.source = MutatedSource(path, work)
        self.work = work
        self.tests = programs.of(self.source)
        if not self.tests:
            raise SystemExit(f"no unit test runs {path}")
        self.seen = {self.source.original}
        self.times = programs.times
        folder = path.rsplit("/", 1)[0]
        self.tests.sort(
            key=lambda entry: self.times[entry[0].name] * (1 if entry[0].source == folder else 4)
        )
        # The way by which mutants are judged lets the program itself pass.
        problem = self.run_test(*self.tests[0], self.source.original_object, {}, 600)
        if problem:
            raise SystemExit(f"{path} fails {self.tests[0][0].name} without a mutation: {problem}")

    def verdict(self, mutant):
        """The name of the test that caught it, or what else became of it."""
        if not self.source.compile(mutant.applied_to(self.source.text)):
            return REFUSED
        digest = self.source.digest()
        if digest in self.seen:
            return SAME
        if self.source.defined_symbols() != self.source.symbols:
            return REFUSED
        self.seen.add(digest)
        programs = {}
        for place, (test, linked) in enumerate(self.tests):
            # Loaded machines are slow, but not twenty times as slow.
            limit = 20 + 20 * self.times[test.name]
            problem = self.run_test(test, linked, self.source.object, programs, limit)
            if problem:
                self.tests.insert(0, self.tests.pop(place))
                return f"{test.name} ({problem})"
        return SURVIVED

    def run_test(self, test, linked, mutated, programs, limit):
        """What went wrong, or nothing. @param programs are those linked with it before."""
        if test.program not in programs:
            programs[test.program] = self.link(test, linked, mutated)
        return problem_of(test, programs[test.program], limit)

    def link(self, test, linked, mutated):
        program = self.work / pathlib.Path(test.program).name
        program.unlink(missing_ok=True)
        link = run(linked.link_command(program, [mutated]))
        if link.returncode:
            raise SystemExit(f"{test.name} does not link:\n{link.stderr}")
        return program


def problem_of(test, program, limit):
    """What went wrong, or nothing."""
    environment = {**os.environ, **dict(item.split("=", 1) for item in test.environment)}
    process = subprocess.Popen(
        [program, *test.arguments], cwd=test.folder, env=environment, start_new_session=True,
        text=True, errors="replace", stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
    )
    overdue = threading.Event()

    def end():
        overdue.set()
        kill_group(process)

    timer = threading.Timer(limit, end)
    timer.start()
    try:
        failed = next((line for line in process.stdout if line.startswith("FAIL!")), None)
        if failed:
            kill_group(process)
        status = process.wait()
    finally:
        timer.cancel()
        if process.poll() is None:
            kill_group(process)
    if overdue.is_set():
        return "time limit"
    if failed:
        return failed.split("::", 1)[1].split("(", 1)[0]
    return None if status == 0 else f"exit status {status}"


def kill_group(process):
    """Of a session of its own, which this script started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass


def work_folder(number):
    return FOLDER / "mutants" / str(number)
