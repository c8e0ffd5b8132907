# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A scale that may not be opened, as scripts and --doctor are told of it."""

import os

import harness
from command_line import CommandLineTest
from nobody import become_nobody


def setUpModule():
    # Root may open everything.
    if os.geteuid() == 0:
        become_nobody()


class NoPermissionTest(CommandLineTest):
    def test_print_has_a_status_of_its_own(self):
        result = self.run_with_scale("--print", "--json", prepare=["permission off"])
        self.assertEqual((result.status, result.report["state"]), (3, "no-permission"))
        self.assertIn("--doctor", result.errors)

    def test_so_it_has_from_the_window(self):
        program = self.start("--unplugged")
        program.scale.tell_all("permission off", "plug")
        program.wait_for_status("Scale connected")
        result = self.run_program("--print", "--json")
        self.assertEqual((result.status, result.report["state"]), (3, "no-permission"))

    def test_the_doctor_has_a_cure(self):
        result = self.run_with_scale("--doctor", prepare=["permission off"])
        self.assertEqual(result.status, 1)
        lines = result.output.splitlines()
        place = lines.index("!!  No permission to open /dev/hidraw0")
        # Which one it is depends on the machine: rule installed or not, seat or not.
        self.assertRegex(lines[place + 1], r"^    \w")


if __name__ == "__main__":
    harness.main()
