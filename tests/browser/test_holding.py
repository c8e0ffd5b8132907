# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""How long a reading holds the program's one thread."""

import os
import statistics
import subprocess

import harness
from browser_harness import BrowserTest
from session import end

# More of them for figures that are to be written down.
READINGS = int(os.environ.get("POSTAL_SCALE_READINGS", "40"))
INTERVAL = 40  # ms; what one reading costs does not depend on it

TROUBLED_READINGS = 60  # longer than the trouble lasts

# What no reading waits for, whatever the page does. A reading that waited for a page would be held
# for as long as the page stays away, or for the 150 ms after which that is said.
WAITED = 100

ADDRESSES = {
    "USPS": "https://www.usps.com/usps-rows?ounces=02&pounds=05",
    "UPS": "https://www.ups.com/ups",
    "FedEx": "https://www.fedex.com/fedex",
}


class HoldingTest(BrowserTest):
    def test_filling(self):
        for carrier, address in ADDRESSES.items():
            with self.subTest(carrier):
                self.page.go(address)
                times = self.finish(self.start_timer(carrier, READINGS))
                middle = statistics.median(times)
                high = statistics.quantiles(times, n=100)[98]
                print(f"{self.browser.name} {carrier}: median {middle:.1f} ms, "
                      f"99th percentile {high:.1f} ms, longest {max(times):.1f} ms")
                self.assertEqual(len(times), READINGS)
                self.assert_held_briefly(times)

    def test_busy_page(self):
        self.page.go(ADDRESSES["USPS"])
        timer = self.start_timer("USPS", TROUBLED_READINGS)
        self.page.start("const end = Date.now() + 1500; while (Date.now() < end) {}")
        times = self.finish(timer)
        self.assert_held_briefly(times)

    def test_alert(self):
        self.page.go(ADDRESSES["USPS"] + "&title=alert")
        timer = self.start_timer("USPS", TROUBLED_READINGS)
        self.page.start("alert('Are you there?')")
        times = self.finish(timer)
        self.close_alert("alert")
        self.assert_held_briefly(times)

    def test_navigation(self):
        self.page.go(ADDRESSES["USPS"])
        timer = self.start_timer("USPS", TROUBLED_READINGS)
        number = 0
        while timer.poll() is None:
            number += 1
            self.page.go(f"{ADDRESSES['USPS']}&number={number}")
        self.assertGreater(number, 0)
        self.assert_held_briefly(self.finish(timer))

    def assert_held_briefly(self, times):
        self.assertLess(max(times), WAITED)

    def start_timer(self, carrier, readings):
        timer = self.session.spawn(
            [harness.binaries() / "browser-fill-timer", carrier, str(readings), str(INTERVAL)],
            stdout=subprocess.PIPE, text=True)
        self.addCleanup(end, timer)
        self.assertEqual(timer.stdout.readline(), "ready\n")
        return timer

    @staticmethod
    def finish(timer):
        output, _ = timer.communicate()
        return [float(line.split()[0]) for line in output.splitlines()]
