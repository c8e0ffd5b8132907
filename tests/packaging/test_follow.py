# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""--follow, on which scripts rely for every change, beside a window."""

import contextlib
import fcntl
import json
import os
import socket
import subprocess
from datetime import datetime

import harness
from follower import FollowTest, Follower
from harness import LogLines
from reading_schema import assert_valid
from waiting import wait_until

RESTARTS = 10
PEERS = 16
MOST_FOLLOWERS = 32
SIGN_OF_LIFE = 10  # seconds without a line
# A machine that has no time for the scale makes a line of that too.
TIME_FOR_A_SIGN = 120


def first_repeated(reports):
    """The first two in a row that tell the same, or None."""
    def told(report):
        return {key: value for key, value in report.items() if key not in ("count", "time", "age")}

    return next(((one, other) for one, other in zip(reports, reports[1:])
                 if told(one) == told(other)), None)


class FollowWindowTest(FollowTest):
    def setUp(self):
        super().setUp()
        self.program = self.start("--weight", "1234")
        self.program.wait_for_reading("1234 grams")

    def follow(self, *arguments):
        return Follower(self, *arguments, environment=self.environment())

    def test_each_change_is_a_line(self):
        follower = self.follow()
        follower.wait_for(state="weight", weight=1234, settled=True, parcel=1)
        for command, expected in (
                ("weight 777", {"weight": 777, "settled": True, "parcel": 2}),
                ("weight 20000", {"state": "overload"}),
                ("weight 777", {"weight": 777, "parcel": 3}),
                ("unplug", {"state": "no-scale"}),
                ("plug", {"state": "weight"}),
                ("silence on", {"state": "no-answer"})):
            with self.subTest(command=command):
                mark = follower.lines.mark()
                self.program.scale.tell(command)
                follower.wait_for(mark, **expected)
        self.program.scale.tell_all("silence off", "burst 1")
        reports = follower.reports()
        for report in reports:
            assert_valid(report)
        self.assertEqual([report["count"] for report in reports],
                         list(range(1, len(reports) + 1)))

    def test_a_steady_weight_is_one_line_and_then_a_sign_of_life(self):
        follower = self.follow()
        first, latest = wait_until(lambda: first_repeated(follower.reports()), "a sign of life",
                                   TIME_FOR_A_SIGN)
        self.assertTrue(first["settled"])
        self.assertEqual(latest["count"], first["count"] + 1)
        between = datetime.fromisoformat(latest["time"]) - datetime.fromisoformat(first["time"])
        self.assertGreaterEqual(between.total_seconds(), SIGN_OF_LIFE - 1)
        self.assertLess(latest["age"], SIGN_OF_LIFE)
        assert_valid(latest)

    def test_a_sign_of_life_in_words(self):
        follower = self.session.spawn([harness.binaries() / "postal-scale", "--follow"],
                                      self.environment(), stdout=subprocess.PIPE, text=True)
        lines = LogLines(follower.stdout)
        self.addCleanup(lines.finish)
        self.addCleanup(harness.end, follower)
        lines.wait_for(r"^1234 grams \(still, \d+ s old\)$", timeout=TIME_FOR_A_SIGN)

    def test_settled_weights_are_one_line_each(self):
        follower = self.follow("--settled")
        follower.wait_for(weight=1234)
        for weight in (0, 1234, 500):
            self.program.scale.tell(f"weight {weight}")
            self.program.wait_for_reading(f"{weight} grams")
            self.program.wait_for_polls(4)
        follower.wait_for(weight=500)
        self.assertEqual([report["weight"] for report in follower.reports()], [1234, 1234, 500])

    def test_readers_that_stop_hold_up_nobody(self):
        """For longer than a window takes to count as hanging."""
        waits, refuses = self.follow_unread(blocking=True), self.follow_unread(blocking=False)
        for weight in range(100, 160):
            self.program.scale.tell(f"weight {weight}")
            self.program.wait_for_polls(1)
        self.program.wait_for_reading("159 grams")
        for kind, output in (("waits", waits), ("refuses", refuses)):
            with self.subTest(pipe=kind):
                counts = []
                weight = None
                while weight != 159:
                    report = json.loads(output.readline())
                    self.assertEqual(report["state"], "weight")
                    counts.append(report["count"])
                    weight = report["weight"]
                self.assertGreater(counts[-1], len(counts), "some were left out")
                self.assertEqual(counts, sorted(set(counts)))

    def follow_unread(self, blocking):
        """The reading end of a short pipe. @param blocking whether it makes its writer wait"""
        reading, writing = os.pipe()
        fcntl.fcntl(writing, fcntl.F_SETPIPE_SZ, 4096)
        os.set_blocking(writing, blocking)
        follower = self.session.spawn(
            [harness.binaries() / "postal-scale", "--follow", "--json"], self.environment(),
            stdout=writing)
        self.addCleanup(harness.end, follower)
        os.close(writing)
        output = os.fdopen(reading, encoding="utf-8")
        self.addCleanup(output.close)
        return output

    def test_one_parcel_is_one_line_in_whatever_unit(self):
        follower, everything = self.follow("--settled"), self.follow()
        follower.wait_for(weight=1234)
        for row, unit in (("rg1", "oz"), ("rg5", "g")):
            mark = everything.lines.mark()
            self.program.window.click(row)
            everything.wait_for(mark, unit=unit, settled=True)
        self.program.scale.tell("weight 500")
        follower.wait_for(weight=500)
        self.assertEqual([report["weight"] for report in follower.reports()], [1234, 500])

    def test_the_same_parcel_under_one_window_after_another(self):
        follower, everything = self.follow("--settled"), self.follow()
        follower.wait_for(weight=1234)
        for _ in range(RESTARTS):
            self.assertEqual(self.program.stop(), 0)
            mark = everything.lines.mark()
            self.program = self.start("--weight", "1234")
            everything.wait_for(mark, settled=True)
        self.program.scale.tell("weight 500")
        follower.wait_for(weight=500)
        self.assertEqual([report["weight"] for report in follower.reports()], [1234, 500])

    def test_followers_leave_room_for_others(self):
        self.fill_with_followers(PEERS)
        self.assertEqual(self.run_program("--print").output, "1234 grams\n")
        self.fill_with_followers(MOST_FOLLOWERS - PEERS)
        self.assertEqual(self.run_program("--print").output, "1234 grams\n")
        refused = self.run_program("--follow")
        self.assertEqual((refused.status, refused.output, refused.errors),
                         (69, "", "Too many programs follow the scale already; "
                                  "end one of them first\n"))

    def fill_with_followers(self, number):
        path = str(self.session.folder / "runtime" / "postal-scale.socket")
        for _ in range(number):
            peer = socket.socket(socket.AF_UNIX)
            self.addCleanup(peer.close)
            peer.connect(path)
            peer.sendall(b'{"request":"follow"}\n')
            self.assertIn(b"1234", peer.recv(4096))

    def test_two_and_a_print_at_once(self):
        followers = [self.follow(), self.follow("--settled")]
        self.assertEqual(self.run_program("--print").output, "1234 grams\n")
        for follower in followers:
            follower.wait_for(weight=1234)

    def test_windows_come_and_go(self):
        follower = self.follow("--settled")
        follower.wait_for(weight=1234)
        expected = [1234]
        for weight in range(100, 100 + RESTARTS):
            self.assertEqual(self.program.stop(), 0)
            self.program = self.start("--weight", str(weight))
            follower.wait_for(weight=weight)
            expected.append(weight)
        self.assertEqual([report["weight"] for report in follower.reports()], expected)
        counts = [report["count"] for report in follower.reports()]
        self.assertEqual(counts, sorted(set(counts)))

    def test_a_window_that_hangs(self):
        follower = self.follow()
        follower.wait_for(weight=1234)
        self.program.scale.tell("raise-child STOP")
        self.assertIn("The window that is running does not answer",
                      follower.wait_for(state="no-answer")["text"])
        self.program.scale.tell("raise-child CONT")
        follower.wait_for(follower.lines.mark(), weight=1234)

    def test_a_window_that_hangs_and_takes_nobody_in(self):
        """Those who gave up have filled its queue; nobody is to be started beside it."""
        self.program.scale.tell("raise-child STOP")
        with self.full_queue():
            follower = self.follow()
            self.assertIn("The window that is running does not answer",
                          follower.wait_for(state="no-answer")["text"])
            self.assertEqual(self.sources(), [])
        self.program.scale.tell("raise-child CONT")
        follower.wait_for(follower.lines.mark(), weight=1234)

    @contextlib.contextmanager
    def full_queue(self):
        path = self.session.folder / "runtime" / "postal-scale.socket"
        with contextlib.ExitStack() as waiting:
            with contextlib.suppress(BlockingIOError):
                while True:
                    peer = waiting.enter_context(socket.socket(socket.AF_UNIX))
                    peer.setblocking(False)
                    peer.connect(str(path))
            yield

    def test_it_ends_with_its_reader(self):
        result = subprocess.run(
            ["bash", "-c", '"$0" --follow | head -n 1; echo ${PIPESTATUS[0]}',
             harness.binaries() / "postal-scale"],
            env=self.environment(), capture_output=True, text=True, check=True, timeout=30)
        self.assertEqual(result.stdout, "1234 grams\n0\n")

    def test_it_ends_with_a_reader_at_a_socket(self):
        """While there is nothing to write."""
        ours, output = socket.socketpair()
        follower = self.session.spawn(
            [harness.binaries() / "postal-scale", "--follow", "--settled"], self.environment(),
            stdout=output)
        self.addCleanup(harness.end, follower)
        output.close()
        with ours:
            self.assertEqual(ours.recv(100), b"1234 grams\n")
        self.assertEqual(follower.wait(30), 0)

    def test_a_signal_ends_it(self):
        follower = self.follow()
        follower.wait_for(weight=1234)
        follower.process.terminate()
        self.assertEqual(follower.process.wait(30), -15)

    def test_an_output_that_takes_nothing_is_told(self):
        for option in ("--follow", "--print", "--tare", "--version", "--help", "--doctor"):
            for output, reason in (("> /dev/full", "No space left on device"),
                                   (">&-", "Bad file descriptor")):
                with self.subTest(option=option, output=output):
                    result = self.run_shell(f'"$0" {option} {output}')
                    self.assertEqual((result.returncode, result.stderr),
                                     (74, f"Cannot write: {reason}\n"))

    def test_streams_that_are_closed(self):
        for closed in ("<&-", "2>&-", "<&- 2>&-"):
            with self.subTest(closed=closed):
                result = self.run_shell(f'"$0" --follow {closed} | head -n 1')
                self.assertEqual(result.stdout, "1234 grams\n")

    def run_shell(self, script):
        return subprocess.run(["bash", "-c", script, harness.binaries() / "postal-scale"],
                              env=self.environment(), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, timeout=30, check=False)


if __name__ == "__main__":
    harness.main()
