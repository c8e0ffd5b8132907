# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""--print, on which scripts rely."""

import datetime

import harness
from command_line import CommandLineTest
from waiting import wait_until


class PrintFromScaleTest(CommandLineTest):
    def test_a_reading_as_text(self):
        result = self.run_with_scale("--print", scale=["--weight", "1234"])
        self.assertEqual((result.status, result.output), (0, "1234 grams\n"))
        self.assertEqual(result.errors, "")

    def test_a_reading_as_json(self):
        result = self.run_with_scale("--print", "--json", scale=["--weight", "1234"])
        self.assertEqual(result.status, 0)
        self.assertEqual(result.report, {
            "format": 1, "parcel": None, "state": "weight", "weight": 1234, "unit": "g", "sign": "+", "grams": 1234,
            "text": "1234 grams", "model": "KV-A100", "settled": False, "settledSince": None,
            "age": None, "advice": None, "export": "0", "exportUnit": "lb",
            "leaves": "leaves as 0: choose a unit"})

    def test_the_other_type_of_scale(self):
        result = self.run_with_scale("--print", "--json",
                                     scale=["--type", "1", "--weight", "1234"])
        self.assertEqual(result.report["weight"], 1.2)
        self.assertEqual(result.report["unit"], "kg")
        self.assertEqual(result.report["grams"], 1200)

    def test_a_type_that_was_announced_to_somebody_else(self):
        program = harness.binaries() / "postal-scale"
        result = self.run_with_scale(
            scale=["--type", "1", "--weight", "1234"],
            command=["sh", "-c", '"$0" --print && "$0" --print --json | grep -o \'"grams":[0-9]*\'',
                     program])
        self.assertEqual(result.output, '1.2 kilograms\n"grams":1200\n')

    def test_no_scale(self):
        result = self.run_with_scale("--print", scale=["--unplugged"])
        self.assertEqual((result.status, result.output), (1, ""))
        self.assertEqual(result.errors, "No scale connected\n")

    def test_no_scale_as_json(self):
        result = self.run_with_scale("--print", "--json", scale=["--unplugged"])
        self.assertEqual(result.status, 1)
        self.assertEqual(result.report, {
            "format": 1, "parcel": None, "state": "no-scale", "weight": None, "unit": None, "sign": None, "grams": None,
            "text": "No scale connected", "model": None, "settled": None, "settledSince": None,
            "age": None, "advice": None, "export": None, "exportUnit": None, "leaves": None})

    def test_another_device_of_the_maker_is_no_scale(self):
        result = self.run_with_scale("--print", scale=["--unplugged"], prepare=["plug stranger"])
        self.assertEqual(result.status, 1)

    def test_overload(self):
        self.assert_not_readable("overload", "weight 20000")

    def test_under_load(self):
        self.assert_not_readable("under-load", "weight -500")

    def test_a_scale_that_does_not_answer(self):
        self.assert_not_readable("no-answer", "silence on")

    def assert_not_readable(self, state, command):
        result = self.run_with_scale("--print", "--json", prepare=[command])
        self.assertEqual(result.status, 2)
        self.assertEqual(result.report["state"], state)
        self.assertIsNone(result.report["weight"])
        self.assertEqual(result.errors, result.report["text"] + "\n")

    def test_two_at_once_do_not_take_each_other_s_answers(self):
        program = harness.binaries() / "postal-scale"
        result = self.run_with_scale(
            scale=["--weight", "1234"],
            command=["sh", "-c", '"$0" --print & "$0" --print; wait', program])
        self.assertEqual(result.output, "1234 grams\n" * 2)

    def test_damaged_arguments(self):
        for arguments in (["--json"], ["--print", "--doctor"], ["--print", "parcel"]):
            with self.subTest(arguments=arguments):
                result = self.run_program(*arguments)
                self.assertEqual((result.status, result.output), (64, ""))
                self.assertNotEqual(result.errors, "")


class PrintFromWindowTest(CommandLineTest):
    def test_the_window_s_reading_is_told_without_a_further_poll(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        result = self.run_program("--print", "--json")
        self.assertEqual(result.status, 0)
        self.assertEqual(result.report["text"], "1234 grams")
        self.assertEqual(program.scale.tell("opens"), "1")

    def test_the_unit_is_that_of_the_window(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click("rg1")
        program.wait_for_reading("43.5 ounces")
        report = self.run_program("--print", "--json").report
        self.assertEqual((report["weight"], report["unit"]), (43.5, "oz"))
        self.assertEqual(report["grams"], 1234)

    def test_less_than_the_tare(self):
        program = self.start("--weight", "100")
        program.wait_for_reading("100 grams")
        program.window.click("tareButton")
        program.wait_for_reading("0 grams")
        program.scale.tell("weight 60")
        program.wait_for_reading("minus 40 grams")
        report = self.run_program("--print", "--json").report
        self.assertEqual((report["weight"], report["sign"], report["grams"]), (-40, "-", -40))
        self.assertEqual((report["advice"], report["settled"]), ("press Tare", False))

    def test_a_held_reading(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click("holdButton")
        program.wait_for_reading("1234 grams, on hold")
        program.scale.tell("weight 60")
        result = self.run_program("--print", "--json")
        self.assertEqual(result.status, 0)
        self.assertEqual((result.report["state"], result.report["weight"]), ("hold", 1234))
        wait_until(lambda: (self.run_program("--print", "--json").report["age"] or 0) > 1,
                   "a held reading that grows old")

    def test_a_settled_reading(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click("rg5")
        wait_until(lambda: self.run_program("--print", "--json").report["settled"], "settled")
        report = self.run_program("--print", "--json").report
        self.assertLess(datetime.datetime.fromisoformat(report["settledSince"]),
                        datetime.datetime.now(datetime.timezone.utc))
        self.assertEqual((report["export"], report["exportUnit"], report["leaves"]),
                         ("1.234", "kg", "leaves as 1.234 kg"))

    def test_not_readable(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        for command, state in (("weight 20000", "overload"), ("weight -500", "under-load"),
                               ("unplug", "no-scale")):
            with self.subTest(state=state):
                program.scale.tell(command)
                wait_until(lambda: self.state() == state, f"the state {state}")

    def test_a_scale_that_was_switched_off(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click("powerButton")
        program.wait_for_reading("off")
        wait_until(lambda: self.state() == "off", "the state off")
        self.assertEqual(self.run_program("--print").status, 2)

    def test_a_window_that_waits_for_the_scale(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("silence on")
        mark = program.log.mark()
        program.log.wait_for("readData$", mark)
        result = self.run_program("--print", "--json")
        self.assertEqual((result.status, result.report["state"]), (2, "no-answer"))
        self.assertGreater(result.report["age"], 2)
        program.scale.tell_all("silence off", "burst 1")
        self.assertEqual(self.run_program("--print").status, 0)

    def test_a_window_that_hangs_is_not_the_scale_s_fault(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("raise-child STOP")
        result = self.run_program("--print", "--json")
        program.scale.tell("raise-child CONT")
        self.assertEqual((result.status, result.report["state"]), (2, "no-answer"))
        self.assertIn("The window that is running does not answer", result.errors)

    def state(self):
        return self.run_program("--print", "--json").report["state"]


if __name__ == "__main__":
    harness.main()
