# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Starting the program again while it runs."""

import re
import signal
import subprocess

import harness
from command_line import CommandLineTest
from event_watch import EventWatch
from waiting import wait_until

_TICKS = 4
_NOT_RAISED = "The desktop has not brought its window to the front"


class SecondStartTest(CommandLineTest):
    def test_it_brings_the_window_to_the_front(self):
        program = self.start("--weight", "1234")
        other = self.cover(program)
        self.assert_stacked(below=program.window.id, above=other)
        result = self.start_again()
        self.assertEqual((result.status, result.output), (0, ""))
        self.assertNotIn(_NOT_RAISED, result.errors)
        self.assert_stacked(below=other, above=program.window.id)
        wait_until(lambda: self.active_window() == int(program.window.id, 16), "it active")

    def test_it_brings_a_minimised_window_back(self):
        program = self.start("--weight", "1234")
        self.session.output_of("xdotool", "windowminimize", program.window.id)
        wait_until(lambda: self.is_minimised(program), "the window minimised")
        self.assertEqual(self.start_again().status, 0)
        wait_until(lambda: not self.is_minimised(program), "the window back")
        wait_until(lambda: self.active_window() == int(program.window.id, 16), "it active")

    def test_it_does_not_poll_the_scale_too(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        self.assertEqual(self.start_again().status, 0)
        mark = program.log.mark()
        program.scale.tell("clear-reports")
        program.wait_for_polls(_TICKS)
        polls = len(program.scale.polls())
        # Whatever the window wrote before those polls has been read when it begins another.
        program.wait_for_polls(1)
        self.assertGreaterEqual(polls, _TICKS - 1)
        # Twice as many would come from two programs; the one more is the tick that was waited for.
        self.assertLessEqual(polls, len(program.log.since(mark, "readData$")) + 1)
        self.assertEqual(program.scale.tell("opens"), "1")
        self.assertEqual(len(self.session.managed_windows()["postal-scale"]), 1)

    def test_the_desktop_is_told_that_the_start_is_over(self):
        self.start("--weight", "1234")
        watch = EventWatch(self.session, "-root")
        self.addCleanup(watch.close)
        self.start_again(DESKTOP_STARTUP_ID="launcher-1_TIME123456")
        watch.lines.wait_for("_NET_STARTUP_INFO_BEGIN")

    def test_a_start_that_nothing_comes_of_is_told_of(self):
        program = self.start("--weight", "1234")
        self.cover(program)
        self.stop_raising(program)
        result = self.start_again()
        self.assertEqual((result.status, result.output), (0, ""))
        self.assertIn(_NOT_RAISED, result.errors)

    def test_nothing_is_told_of_a_window_that_is_marked(self):
        program = self.start("--weight", "1234")
        self.cover(program)
        self.session.output_of("xdotool", "set_window", "--urgency", "1", program.window.id)
        wait_until(lambda: "DEMANDS_ATTENTION" in self.states_of(program), "the mark")
        self.stop_raising(program)
        result = self.start_again()
        self.assertEqual((result.status, result.errors), (0, ""))

    def test_after_a_crash_it_starts_afresh(self):
        crashed = harness.Program(self.session, arguments=["--weight", "1234"])
        crashed.scale.tell("raise-child KILL")
        self.assertNotEqual(crashed.wait_for_end(), 0)
        program = self.start("--weight", "567")
        program.wait_for_reading("567 grams")

    def start_again(self, **changes):
        """As from the session's menu."""
        return self.run_program(DISPLAY=self.session.environment["DISPLAY"],
                                QT_QPA_PLATFORM="xcb", **changes)

    def cover(self, program):
        viewer = self.session.spawn(["display", "-size", "1000x900", "xc:red"],
                                    stderr=subprocess.DEVNULL)
        self.addCleanup(harness.end, viewer)
        (other,) = wait_until(self.other_windows, "the other window")
        self.session.output_of("wmctrl", "-i", "-a", other)
        wait_until(lambda: self.active_window() == int(other, 16), "the other window active")
        return other

    def stop_raising(self, program):
        """The window manager does nothing any more, for a window that knows itself inactive."""
        wait_until(lambda: program.window.focused_name() is None, "it inactive")
        self.session.window_manager.send_signal(signal.SIGSTOP)
        self.addCleanup(self.session.window_manager.send_signal, signal.SIGCONT)

    def other_windows(self):
        windows = self.session.managed_windows()
        windows.pop("postal-scale")
        return next(iter(windows.values()), None)

    def is_minimised(self, program):
        return "Iconic" in self.session.output_of("xprop", "-id", program.window.id, "WM_STATE")

    def states_of(self, program):
        return self.session.output_of("xprop", "-id", program.window.id, "_NET_WM_STATE")

    def active_window(self):
        (window,) = self.windows_of_root("_NET_ACTIVE_WINDOW")
        return window

    def assert_stacked(self, below, above):
        order = [int(below, 16), int(above, 16)]
        wait_until(lambda: self.windows_of_root("_NET_CLIENT_LIST_STACKING") == order,
                   lambda: f"{above} above {below}")

    def windows_of_root(self, name):
        text = self.session.output_of("xprop", "-root", name)
        return [int(number, 16) for number in re.findall("0x[0-9a-f]+", text)]


if __name__ == "__main__":
    harness.main()
