# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Five minutes with a screen reader: what Orca says, and that it says no more.

    run-in-root ROOT PROGRAMS DESKTOP --orca
"""

import itertools
import time

import harness
import test_desktop
from orca_reader import PATIENCE, Orca
from waiting import wait_until

setUpModule = test_desktop.setUpModule

QUIET = 6
"""Seconds in which nothing more may be said."""

STEP = 0.6
"""Seconds between two weights on the way up: each of them is read once, and none settles."""

OVERLOAD = "Overload: there is too much on the pan"
REFUSED = "No permission to open the scale"
SILENCE = "The scale does not answer; unplug it and plug it in again"


class OrcaTest(harness.DeviceTest):
    setUpClass = test_desktop.DesktopTest.__dict__["setUpClass"]
    start_with = test_desktop.DesktopTest.start_with
    operate = test_desktop.DesktopTest.operate

    def setUp(self):
        self.began = time.monotonic()
        self.program = self.start_with()
        self.orca = Orca(self.session)
        self.addCleanup(self.orca.end)
        self.session.bring_to_front(self.program.window.title)
        wait_until(lambda: "frame" in " ".join(self.orca.said()),
                   lambda: f"the window read out; it said {self.orca.said()}", PATIENCE)
        # The window's toolkit learns after a while only what Orca wants to be told.
        weights = itertools.count(300)
        wait_until(lambda: self.says(next(weights)), "a weight", PATIENCE)
        self.wait_for_quiet()

    def says(self, grams):
        self.program.scale.tell(f"weight {grams}")
        time.sleep(QUIET)
        return f"{grams} grams" in self.orca.said()

    def wait_for_quiet(self):
        mark = 0
        while self.orca.said(mark):
            mark = self.orca.mark()
            time.sleep(QUIET)

    def expect(self, act, *words):
        """Exactly these, in this order, and then nothing."""
        mark = self.orca.mark()
        act()
        wait_until(lambda: words[-1] in self.orca.said(mark),
                   lambda: f"{words}; it said {self.orca.said(mark)} of the window's "
                           f"{self.program.window.reading!r}", PATIENCE)
        time.sleep(QUIET)
        said = self.orca.said(mark)
        print(f"{time.monotonic() - self.began:5.0f} s  {'; '.join(said)}", flush=True)
        self.assertEqual(said, list(words))

    def raise_to(self, grams):
        for part in range(1, 8):
            self.program.scale.tell(f"weight {grams * part // 8}")
            time.sleep(STEP)
        self.program.scale.tell(f"weight {grams}")

    def tell(self, *commands):
        return lambda: self.program.scale.tell_all(*commands)

    def test_five_minutes(self):
        verb = self.operate
        self.expect(lambda: self.raise_to(800), "800 grams")
        self.expect(self.tell("weight 0"), "0 grams")
        self.expect(self.tell("weight 20000"), OVERLOAD)
        self.expect(self.tell("weight 800"), "800 grams")
        self.expect(lambda: verb("--hold", "on"), "800 grams, on hold")
        self.expect(lambda: verb("--hold", "off"), "Hold is off")
        self.expect(lambda: verb("--unit", "oz"), "28.2 ounces")
        self.expect(lambda: verb("--unit", "g"), "800 grams")
        self.expect(lambda: verb("--tare"), "Tare", "0 grams")
        self.expect(self.tell("weight 0"), "minus 800 grams, press Tare")
        self.expect(lambda: verb("--tare"), "Tare", "0 grams")
        self.expect(lambda: verb("--power"), "Power", "The scale is switched off")
        self.expect(lambda: verb("--power"), "Power", "0 pounds 0 ounces")
        self.expect(lambda: verb("--unit", "g"), "0 grams")
        self.expect(self.tell("silence on"), SILENCE)
        self.expect(self.tell("silence off"), "0 grams")
        self.expect(self.tell("unplug"), "No scale connected")
        self.expect(self.tell("plug"), "Scale connected", "0 grams")
        # The focus goes on, to the panel itself: Orca reads it out, and its changes as elsewhere.
        self.session.press("Tab")
        wait_until(lambda: "0 grams" in " ".join(self.orca.said()[-2:]), "the panel read out", PATIENCE)
        self.wait_for_quiet()
        self.expect(lambda: self.raise_to(600), "600 grams")
        self.expect(self.tell("weight 20000"), OVERLOAD)
        self.expect(self.tell("weight 600"), "600 grams")

    def test_a_notice_is_said_as_it_appears(self):
        self.expect(self.tell("unplug"), "No scale connected")
        mark = self.orca.mark()
        self.program.scale.tell_all("permission off", "plug")
        wait_until(lambda: any(REFUSED in each for each in self.orca.said(mark)),
                   lambda: f"{REFUSED}; it said {self.orca.said(mark)}", PATIENCE)
        time.sleep(QUIET)
        said = " ".join(self.orca.said(mark))
        print(said, flush=True)
        self.assertEqual(said.count(REFUSED), 1)
        self.assertIn("Press Alt+E for details", said)


if __name__ == "__main__":
    harness.main()
