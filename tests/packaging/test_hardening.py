# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What is built to be shipped is hardened, whoever builds it."""

import os
import pathlib
import subprocess
import unittest

PROGRAMS = ("postal-scale", "postal-scale-browser-host")


def told(program, *options):
    file = pathlib.Path(os.environ["POSTAL_SCALE_BIN"]) / program
    return subprocess.run(["readelf", "--wide", *options, file], check=True, text=True,
                          stdout=subprocess.PIPE).stdout


class HardeningTest(unittest.TestCase):
    def test_symbols_are_bound_at_the_start_and_read_only_from_then_on(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertIn("NOW", told(program, "--dynamic"))
                self.assertIn("GNU_RELRO", told(program, "--segments"))

    def test_the_start_reads_no_network_library(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertNotIn("libQt6Network", told(program, "--dynamic"))

    def test_the_program_may_be_anywhere(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertIn("DYN (Position-Independent Executable file)",
                              told(program, "--file-header"))

    def test_stacks_are_watched(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertIn("__stack_chk_fail", told(program, "--dyn-syms"))

    def test_functions_that_write_into_buffers_are_fortified(self):
        # The browsers' host has no buffer that the compiler cannot see to itself.
        self.assertRegex(told("postal-scale", "--dyn-syms"), "__[a-z]+_chk@")


if __name__ == "__main__":
    unittest.main(verbosity=2)
