#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What became of one scenario of the latest run: verdict.py RESULTS SCENARIO"""

import json
import pathlib
import sys


def main():
    results, scenario = sys.argv[1:]
    verdict = json.loads((pathlib.Path(results) / (scenario + ".json")).read_text())
    print(verdict["report"])
    if verdict["passed"] is not True:
        sys.exit(f"{scenario} failed")


if __name__ == "__main__":
    main()
