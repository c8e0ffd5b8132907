#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Runs test files in one browser: POSTAL_SCALE_BIN=... POSTAL_SCALE_BROWSER=... run.py NAME...

A NAME is that of a file, as `filling`, with a class and a test behind it if only those are wanted.
"""

import sys
import unittest

from browser_harness import Surroundings


def main():
    with Surroundings.for_all_tests():
        tests = unittest.defaultTestLoader.loadTestsFromNames(
            f"test_{name}" for name in sys.argv[1:])
        passed = unittest.TextTestRunner(verbosity=2).run(tests).wasSuccessful()
    sys.exit(0 if passed else 1)


if __name__ == "__main__":
    main()
