# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the script in the page does with a plan: each look and each write, in their order."""

import json
import os
import subprocess

import harness
from browser_harness import BrowserTest

CASES_AT_ONCE = 4000
# Both browsers run the same script, so each takes some of the states, and others than the other one.
# All of them in each: ctest -C Endurance -R every_state
SHARE = 1 if "POSTAL_SCALE_EVERY_STATE" in os.environ else 32
FIRST = {"chromium": 0, "firefox": SHARE // 2}

# Row 02 empty, with ounces chosen; row 05 filled, with two buttons of which none is chosen.
ROW_02 = 2 + 2 * 9
ROW_05 = 1 + 1 * 9 + 1 * 27


class TranscriptTest(BrowserTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        lines = subprocess.run([harness.binaries() / "browser-plan-cases"], check=True,
                               stdout=subprocess.PIPE, text=True).stdout.splitlines()
        cls.steps = lines[0]
        cls.every = lines[1:]
        first = FIRST[os.environ["POSTAL_SCALE_BROWSER"]]
        cls.cases = [[int(number) for number in line.split()] for line in cls.every[first::SHARE]]

    def setUp(self):
        self.page.go("https://www.shop.example/transcript")

    def call(self, function):
        return self.page.evaluate(f"(window.wrappedJSObject ?? window).{function}")

    def compare(self, cases):
        # The text is the page's own: what another world's script holds, a page may not look into.
        return self.call(f"eval({json.dumps(f'compare({self.steps}, {json.dumps(cases)})')})")

    def test_every_state_of_the_page(self):
        self.assertGreater(len(self.every), 70000)
        for start in range(0, len(self.cases), CASES_AT_ONCE):
            some = self.cases[start:start + CASES_AT_ONCE]
            self.assertEqual(self.compare(some), len(some))

    def test_a_difference_is_seen(self):
        wrong = [*self.cases[0][:-1], self.cases[0][-1] ^ 1]
        self.assertIn("lines", self.compare([wrong]))

    def test_what_is_written_may_change_a_later_answer(self):
        self.call("eval(%s)" % json.dumps("""void (meddle = ({name}) => {
            if (name.includes("ctl02$"))
                document.querySelector("#ctl00_ContentPlaceHolder1_ctl05_ctl02").checked = true;
        })"""))
        lines = self.call("eval(%s)" % json.dumps(
            f"JSON.stringify(fill([{ROW_02}, {ROW_05}, 0, 0, 0, 0], {self.steps}))"))
        self.assertIn("write ctl00$ContentPlaceHolder1$ctl05$TextBoxWeight 2.25",
                      json.loads(lines))
