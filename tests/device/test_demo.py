# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The demonstration's two windows, side by side or one under the other, as the screen allows."""

import re
import subprocess
import unittest

import harness
from session import Session, end
from waiting import wait_until

SCREENS = ("1920x1080x24", "1280x1024x24")


class DemoTest(unittest.TestCase):
    def test_neither_window_is_over_the_other(self):
        for screen in SCREENS:
            with self.subTest(screen):
                session = Session(screen)
                self.addCleanup(session.close)
                self.place_windows(session)

    def place_windows(self, session):
        demo = session.spawn(
            [harness.binaries() / "postal-scale-emulator", "--control-window", "--",
             harness.binaries() / "postal-scale", "-qwindowgeometry", "+0+0"],
            session.environment | {"QT_QPA_PLATFORM": "xcb"}, stderr=subprocess.DEVNULL)
        self.addCleanup(end, demo)
        places = wait_until(lambda: self.places(session), "two windows in their places")
        (left, top, right, bottom), other = places
        self.assertTrue(other[0] >= right or other[1] >= bottom or other[2] <= left
                        or other[3] <= top, f"{places} overlap")

    @staticmethod
    def places(session):
        """With their frames; None until both are there and stay where they are."""
        windows = [each for ids in session.managed_windows().values() for each in ids]
        if len(windows) != 2:
            return None
        looks = [[_frame(session, each) for each in windows] for _ in range(2)]
        return looks[0] if looks[0] == looks[1] else None


def _frame(session, window):
    facts = session.output_of("xwininfo", "-id", window)
    frame = session.output_of("xprop", "-id", window, "_NET_FRAME_EXTENTS")
    left, right, top, bottom = (map(int, re.findall(r"\d+", frame)) if "=" in frame
                                else (0, 0, 0, 0))
    x, y, width, height = (
        int(re.search(pattern + r": +(-?\d+)", facts).group(1))
        for pattern in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
    return x - left, y - top, x + width + right, y + height + bottom


if __name__ == "__main__":
    harness.main()
