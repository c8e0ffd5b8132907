# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A desktop that takes the control of its clipboard away from a program that has it."""

import pathlib
import subprocess

import harness
from option_test import OptionTest
from unit_rows import GRAMS
from waiting import wait_until

NAME = "wayland-clipboard"
CLIPBOARD = 300


class ClipboardControlTest(OptionTest):
    """The window is on X11, the clipboard that of a compositor beside it."""

    environment = {"WAYLAND_DISPLAY": NAME}

    def setUp(self):
        self.compositor = self.session.spawn(
            [harness.binaries() / "clipboard-compositor", NAME], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.compositor.stdout.close)
        self.addCleanup(self.compositor.stdin.close)
        self.addCleanup(harness.end, self.compositor)
        socket = pathlib.Path(self.session.environment["XDG_RUNTIME_DIR"]) / NAME
        wait_until(socket.exists, "a compositor")
        self.program = self.start("--weight", "1234")
        self.program.wait_for_reading("1234 grams")
        self.program.window.click(GRAMS)
        self.click_option(self.program, CLIPBOARD)
        self.wait_for_pasted("1.234")

    def tell(self, command):
        self.compositor.stdin.write(command + "\n")
        self.compositor.stdin.flush()
        return self.compositor.stdout.readline().rstrip("\n")

    def wait_for_pasted(self, expected):
        wait_until(lambda: self.tell("paste") == expected,
                   lambda: f"{expected!r} pasted; it is {self.tell('paste')!r}")

    def test_the_next_reading_asks_for_another_control(self):
        self.assertEqual(self.tell("finish"), "ended")
        self.wait_for_pasted("1.234")
        self.program.scale.tell("weight 567")
        self.wait_for_pasted("0.567")

    def test_where_there_is_none_any_more_the_window_writes_its_own_clipboard(self):
        self.assertIsNone(self.clipboard())
        self.assertEqual(self.tell("withdraw"), "ended")
        self.wait_for_clipboard("1.234")
        self.program.scale.tell("weight 567")
        self.wait_for_clipboard("0.567")
        self.assertEqual(self.tell("paste"), "")


if __name__ == "__main__":
    harness.main()
