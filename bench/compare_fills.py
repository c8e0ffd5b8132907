#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Two builds fill the same pages by turns, in one run: how long a reading holds the thread, and how
long it is from its beginning to the first field written.

    bench/compare_fills.py BROWSER BUILD_BEFORE BUILD_NOW

Each build needs the targets browser-fill-timer and postal-scale-browser-host.
"""

import json
import os
import pathlib
import statistics
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests" / "driver"), str(ROOT / "tests" / "browser")]

from browser_harness import Surroundings  # noqa: E402

READINGS = 200
BLOCK = 50  # readings until it is the other's turn
INTERVAL = 40  # ms

# Address, and the field that is written first.
CARRIERS = {
    "USPS": ("https://www.usps.com/usps-rows?ounces=02&pounds=05",
             "ctl00$ContentPlaceHolder1$TextBoxPounds"),
    "UPS": ("https://www.ups.com/ups", "formbean.shipping.weight"),
    "FedEx": ("https://www.fedex.com/fedex", "psdData.mpsRowDataList[0].weight"),
}

# An output's text is seen to change, whoever writes it; a box's is not.
WATCH = """void ((name) => {
    const field = document.createElement("output");
    field.setAttribute("name", name);
    document.body.prepend(field);
    const times = [];
    new MutationObserver(() => {
        if (field.textContent === "")
            return;
        times.push(performance.timeOrigin + performance.now());
        document.documentElement.dataset.times = JSON.stringify(times);
        field.textContent = "";
    }).observe(field, {childList: true, characterData: true, subtree: true});
})(%s)"""


class Build:
    def __init__(self, folder):
        self._bin = pathlib.Path(folder).resolve() / "bin"
        self.use()
        self._around = Surroundings()

    def use(self):
        os.environ["POSTAL_SCALE_BIN"] = str(self._bin)

    def fill(self, carrier):
        """Milliseconds held, and until the first field; each of all readings."""
        self.use()
        address, field = CARRIERS[carrier]
        page = self._around.page
        page.go("about:blank")
        page.go(address)
        page.evaluate(WATCH % json.dumps(field))
        timer = self._around.session.spawn(
            [self._bin / "browser-fill-timer", carrier, str(BLOCK), str(INTERVAL)],
            stdout=subprocess.PIPE, text=True)
        output, _ = timer.communicate()
        readings = [[float(number) for number in line.split()] for line in output.splitlines()[1:]]
        written = json.loads(page.evaluate("document.documentElement.dataset.times || '[]'"))
        delays = [next((time - start for time in written if time > start), None)
                  for _, start in readings]
        return [held for held, _ in readings], [each for each in delays if each is not None]

    def close(self):
        self._around.close()


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    os.environ["POSTAL_SCALE_BROWSER"] = sys.argv[1]
    builds = {"before": Build(sys.argv[2]), "now": Build(sys.argv[3])}
    try:
        for carrier in CARRIERS:
            samples = {name: ([], []) for name in builds}
            for _ in range(READINGS // BLOCK):
                for name, build in builds.items():
                    for all_of_them, new in zip(samples[name], build.fill(carrier)):
                        all_of_them += new
            for name, (held, delays) in samples.items():
                print(f"{sys.argv[1]} {carrier} {name}: held {statistics.median(held):.2f} / "
                      f"{statistics.quantiles(held, n=100)[98]:.2f} / {max(held):.2f} ms, "
                      f"first field after {statistics.median(delays):.1f} ms", flush=True)
    finally:
        for build in builds.values():
            build.close()


if __name__ == "__main__":
    main()
