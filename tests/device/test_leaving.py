# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The session asks the program to end: the scale that is on is switched off, the settings are whole.
"""

import contextlib
import itertools
import os
import pathlib
import re
import signal

import harness
from emulated_scale import POWER_OFF
from option_test import OptionTest
from session import Session
from waiting import wait_until

ON_TOP = 100
SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
TOGETHER = ((signal.SIGTERM, signal.SIGHUP), (signal.SIGHUP, signal.SIGTERM),
            (signal.SIGHUP, signal.SIGHUP))


class LeavingTest(OptionTest):
    def start_staying(self, *arguments, session=None, **options):
        wrapper = harness.STAYING + options.pop("wrapper", ())
        program = harness.Program(session or self.session, arguments=arguments, wrapper=wrapper,
                                  **options)
        self.addCleanup(program.kill)
        return program

    def start_weighing(self, **options):
        program = self.start_staying("--weight", "1234", **options)
        program.wait_for_reading("1234 grams")
        return program

    def has_ended_by(self, program, process, number):
        """Sends one more unless it has."""
        if program.log.since(0, "^ended with"):
            return True
        with contextlib.suppress(ProcessLookupError):
            os.kill(process, number)
        return False

    def wait_for_status(self, program):
        """Of the program's end, as a shell tells it."""
        program.log.wait_for("^ended with")
        (line,) = program.log.since(0, "^ended with")
        return int(re.search("[0-9]+", line).group())

    def assert_switched_off(self, program):
        # A poll that was due may follow, to which a scale that is off has nothing to say.
        self.assertTrue(program.scale.commands()[-1].command & POWER_OFF, program.scale.reports()[-3:])
        self.assertEqual(program.scale.state()["power"], "off")


class SignalTest(LeavingTest):
    def test_a_signal_ends_it_as_its_close_button_does(self):
        for each in SIGNALS:
            with self.subTest(signal=each.name):
                program = self.start_weighing()
                self.click_option(program, ON_TOP)
                os.kill(pid_of(program), each)
                self.assertEqual(self.wait_for_status(program), 0)
                self.assert_switched_off(program)
                self.assertEqual(self.saved(program), {ON_TOP})

    def test_a_window_beside_it_does_not_hold_it_up(self):
        program = self.start_weighing()
        program.window.choose_from_menu("helpMenu", "About")
        os.kill(pid_of(program), signal.SIGTERM)
        self.assertEqual(self.wait_for_status(program), 0)
        self.assert_switched_off(program)

    def test_signals_that_come_together_are_one(self):
        """As systemd ends a session, and a terminal that is closed its programs."""
        for pair in TOGETHER:
            with self.subTest(pair=pair):
                self.assertEqual(self.end_while_silent(pair), 0)

    def test_others_end_it_at_once_however_soon(self):
        """As Ctrl+C does when it is pressed twice."""
        for pair in itertools.product(SIGNALS, repeat=2):
            if pair not in TOGETHER:
                with self.subTest(pair=pair):
                    self.assertEqual(self.end_while_silent(pair), 128 + pair[1])

    def end_while_silent(self, pair):
        """The second follows the first at once, while the scale is waited for. Returns the status."""
        program = self.start_weighing()
        program.scale.tell_all("silence on", "clear-reports")
        program.scale.wait_for_reports(1)
        process = pid_of(program)
        os.kill(process, pair[0])
        wait_until(lambda: signals_of(process, "ShdPnd") == 0, "the first signal taken")
        os.kill(process, pair[1])
        status = self.wait_for_status(program)
        if status == 0:
            self.assert_switched_off(program)
        return status

    def test_a_second_signal_ends_at_once_while_the_scale_is_silent(self):
        for second in SIGNALS:
            with self.subTest(second=second.name):
                program = self.start_weighing()
                program.scale.tell("silence on")
                program.scale.wait_for_reports(1)
                process = pid_of(program)
                os.kill(process, signal.SIGTERM)
                # The main thread, which waits for the scale, cannot have taken it.
                wait_until(lambda: signals_of(process, "ShdPnd") == 0, "the first signal taken")
                # What comes together with the first is no second one.
                wait_until(lambda: self.has_ended_by(program, process, second), "the end")
                self.assertEqual(self.wait_for_status(program), 128 + second)

    def test_what_it_is_told_to_ignore_it_ignores(self):
        program = self.start_staying("--weight", "1234", wrapper=("nohup",))
        program.wait_for_reading("1234 grams")
        os.kill(pid_of(program), signal.SIGHUP)
        program.wait_for_polls(3)
        os.kill(pid_of(program), signal.SIGTERM)
        self.assertEqual(self.wait_for_status(program), 0)

    def test_a_scale_that_is_off_is_left_alone(self):
        program = self.start_weighing()
        program.window.click("powerButton")
        program.wait_for_reading("off")
        before = len(program.scale.commands())
        os.kill(pid_of(program), signal.SIGTERM)
        self.assertEqual(self.wait_for_status(program), 0)
        self.assertEqual(len(program.scale.commands()), before)


class LostDesktopTest(LeavingTest):
    def test_without_its_x_server_the_scale_is_switched_off_all_the_same(self):
        desktop = Session()
        self.addCleanup(desktop.close)
        program = self.start_weighing(session=desktop)
        desktop.lose_x_server()
        self.assertEqual(self.wait_for_status(program), 1)
        self.assert_switched_off(program)


def pid_of(program):
    """The shell in between is the emulator's child."""
    return children_of(children_of(program.emulator_pid)[0])[0]


def children_of(process):
    text = pathlib.Path(f"/proc/{process}/task/{process}/children").read_text(encoding="ascii")
    return [int(number) for number in text.split()]


def signals_of(process, kind):
    text = pathlib.Path(f"/proc/{process}/status").read_text(encoding="ascii")
    return int(re.search(rf"^{kind}:\s*([0-9a-f]+)$", text, re.MULTILINE).group(1), 16)


if __name__ == "__main__":
    harness.main()
