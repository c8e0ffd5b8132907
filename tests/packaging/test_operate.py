# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The verbs, for keys of the desktop and foot pedals: another start operates the window."""

import harness
from clipboard import ClipboardTest
from command_line import CommandLineTest
from waiting import wait_until

NOBODY = "Postal Scale is not running; start it first\n"


class OperateTest(CommandLineTest, ClipboardTest):
    def setUp(self):
        super().setUp()
        self.program = self.start("--weight", "1234")
        self.program.wait_for_reading("1234 grams")

    def operate(self, *arguments):
        result = self.run_program(*arguments)
        return result.status, result.output + result.errors

    def test_tare(self):
        self.assertEqual(self.operate("--tare"), (0, "Tare\n"))
        self.program.wait_for_reading("0 grams")

    def test_hold(self):
        held = "1234 grams, on hold"
        for value, answer, reading in (("on", "Hold is on\n", held), ("on", "Hold is on\n", held),
                                       ("off", "Hold is off\n", "1234 grams"),
                                       ("toggle", "Hold is on\n", held),
                                       ("toggle", "Hold is off\n", "1234 grams")):
            with self.subTest(value=value):
                self.assertEqual(self.operate("--hold", value), (0, answer))
                self.program.wait_for_reading(reading)

    def test_compact(self):
        for value, answer in (("on", "compact"), ("on", "compact"), ("toggle", "whole"),
                              ("toggle", "compact"), ("off", "whole")):
            with self.subTest(value=value):
                self.assertEqual(self.operate("--compact", value),
                                 (0, f"The window is {answer}\n"))
                shown = self.program.window.widget("powerButton").is_showing
                self.assertEqual(shown, answer == "whole")
        self.assertEqual(self.operate("--compact", "maybe")[0], 64)

    def test_power(self):
        self.assertEqual(self.operate("--power"), (0, "Switching the scale off\n"))
        self.program.wait_for_reading("off")
        self.assertEqual(self.operate("--power"), (0, "Switching the scale on\n"))
        wait_until(lambda: self.program.window.reading != "off", "a scale that is on")

    def test_unit(self):
        self.assertEqual(self.operate("--unit", "oz"), (0, "Ounces\n"))
        self.program.wait_for_reading("43.5 ounces")
        self.assertEqual(self.operate("--unit=g"), (0, "Grams\n"))
        self.program.wait_for_reading("1234 grams")
        status, words = self.operate("--unit", "lboz-whole")
        self.assertEqual(status, 2)
        self.assertIn("this scale does not have it here", words)

    def test_what_a_scale_would_not_do(self):
        overload = "Overload: there is too much on the pan\n"
        lifted = "Under load: the pan is missing or is being lifted\n"
        silent = "The scale does not answer; unplug it and plug it in again\n"
        off = "The scale is switched off\n"
        for command, state, answers in (
                ("weight 20000", "overload", {"--tare": overload}),
                ("weight -500", "under-load", {"--tare": lifted}),
                ("silence on", "no-answer", {"--tare": silent, "--power": silent,
                                             "--unit=oz": silent}),
                ("silence off", "weight", {"--power": "Switching the scale off\n"}),
                ("weight 100", "off", {"--tare": off, "--unit=oz": off,
                                       "--power": "Switching the scale on\n"})):
            self.program.scale.tell(command)
            if state == "weight":
                self.program.scale.tell_all("weight 1234", "burst 1")
            wait_until(lambda state=state: self.state() == state, f"the state {state}")
            for verb, words in answers.items():
                with self.subTest(state=state, verb=verb):
                    status = 0 if words.startswith("Switching") else 2
                    self.assertEqual(self.operate(verb), (status, words))

    def state(self):
        return self.run_program("--print", "--json").report["state"]

    def test_what_is_not_known(self):
        for arguments in (["--unit", "stone"], ["--hold", "maybe"], ["--tare", "--power"],
                          ["--unit"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.operate(*arguments)[0], 64)

    def test_capture(self):
        self.program.window.click("rg5")
        self.copy_elsewhere("another text")
        wait_until(lambda: self.operate("--capture") == (0, "1.234 has left\n"), "a settled weight")
        self.wait_for_clipboard("1.234")
        self.copy_elsewhere("another text")
        self.program.wait_for_polls(4)
        self.assertEqual(self.clipboard(), "another text", "it leaves once")

    def test_what_cannot_be_captured(self):
        for command, words in (("weight 0", "The weight has not settled\n"),
                               ("weight 20000", "Overload: there is too much on the pan\n"),
                               ("unplug", "No scale connected\n")):
            with self.subTest(command=command):
                self.program.scale.tell(command)
                wait_until(lambda words=words: self.operate("--capture")[1] == words, words)

    def test_what_would_leave_as_nothing(self):
        wait_until(lambda: self.operate("--capture") ==
                   (2, "Nothing leaves: leaves as 0: choose a unit\n"), "the reason")

    def test_without_a_window(self):
        self.assertEqual(self.program.stop(), 0)
        for arguments in (["--tare"], ["--hold", "on"], ["--power"], ["--unit", "g"],
                          ["--capture"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.operate(*arguments), (1, NOBODY))


class NotReadyTest(CommandLineTest):
    """A scale of the class for points of sale that asks for care."""

    def test_nothing_can_be_tared_or_captured(self):
        program = self.start("--unplugged")
        program.scale.tell_all("say class 03010bff0000", "plug class")
        words = "The scale has a fault"
        wait_until(lambda: program.window.says(words), words)
        for verb in ("--tare", "--capture"):
            with self.subTest(verb=verb):
                wait_until(lambda verb=verb: self.run_program(verb).errors.startswith(words),
                           words)
                self.assertEqual(self.run_program(verb).status, 2)


if __name__ == "__main__":
    harness.main()
