# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Measures, prints, and writes the table in docs/PERFORMANCE.md: measure.py [FIGURE...]"""

import contextlib
import datetime
import os
import pathlib
import platform
import re
import subprocess
import sys

import figures
import harness
from samples import Figure

DOCUMENT = pathlib.Path(__file__).parents[1] / "docs" / "PERFORMANCE.md"
BEGIN, END = "<!-- bench/run writes from here -->", "<!-- to here -->"
HEAD = ("| figure | goal | median | middle 80 % | runs | | |\n"
        "|---|---|---|---|---|---|---|")


def machine():
    processor = re.search(r"model name\s*: (.*)",
                          pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8"))[1]
    gibibytes = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE") / 2**30
    toolkit = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", "libqt6widgets6"],
                             check=True, text=True, stdout=subprocess.PIPE).stdout
    load = os.getloadavg()[0]
    return (f"{datetime.date.today()}, {processor}, {os.cpu_count()} processors, "
            f"{gibibytes:.0f} GiB, {platform.freedesktop_os_release()['PRETTY_NAME']}, "
            f"Linux {platform.release()}, Qt {toolkit}, Xvfb and openbox. "
            f"Load when it began: {load:.1f}.")


def measured(names, described):
    rows, tables = [], []
    for name in names:
        # A session for each: nothing is left over from the figure before.
        with contextlib.closing(harness.Session()) as session:
            for result in figures.ALL[name](session):
                if isinstance(result, Figure):
                    rows.append(result.row())
                    print(rows[-1], flush=True)
                else:
                    tables.append(result.table())
                    print(tables[-1], flush=True)
    return "\n".join([described, "", HEAD, *rows, *("\n" + table for table in tables)])


def write(text):
    before, rest = DOCUMENT.read_text(encoding="utf-8").split(BEGIN)
    after = rest.split(END)[1]
    DOCUMENT.write_text(f"{before}{BEGIN}\n{text}\n{END}{after}", encoding="utf-8")


def main():
    described = machine()
    names = sys.argv[1:]
    text = measured(names or figures.ALL, described)
    if not names:
        write(text)


if __name__ == "__main__":
    main()
