# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""--doctor, on the machine of the test: what it says of the scale and of the session."""

import harness
from command_line import CommandLineTest


class DoctorTest(CommandLineTest):
    def test_without_a_scale_it_says_how_to_get_one(self):
        result = self.run_with_scale("--doctor", scale=["--unplugged"])
        self.assertEqual(result.status, 1)
        finding, cure = result.output.splitlines()[:2]
        self.assertEqual(finding, "!!  No scale (USB id 04d9:8010)")
        self.assertIn("Plug it in", cure)

    def test_a_scale_is_found_and_may_be_opened(self):
        result = self.run_with_scale("--doctor", scale=["--weight", "1234"])
        lines = result.output.splitlines()
        self.assertIn("ok  Scale found at /dev/hidraw0", lines)
        self.assertIn("ok  Permission to open it", lines)
        self.assertIn("--  Postal Scale is not running", lines)

    def test_another_device_of_the_maker_is_no_scale(self):
        result = self.run_with_scale("--doctor", scale=["--unplugged"],
                                     prepare=["plug stranger"])
        self.assertIn("!!  No scale (USB id 04d9:8010)", result.output.splitlines())

    def test_without_a_desktop_it_does_not_judge_one(self):
        lines = self.run_program("--doctor").output.splitlines()
        self.assertIn("--  Clipboard: there is no desktop in this session", lines)
        self.assertIn("--  On top: there is no desktop in this session", lines)

    def test_it_asks_the_running_window(self):
        self.start("--weight", "1234")
        lines = self.run_program("--doctor", DISPLAY=self.display).output.splitlines()
        self.assertIn("ok  Postal Scale is running", lines)
        self.assertIn("ok  Clipboard: can be written at every reading", lines)
        self.assertIn("ok  On top: the window manager does it", lines)

    @property
    def display(self):
        return self.session.environment["DISPLAY"]


if __name__ == "__main__":
    harness.main()
