# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A window that a slow desktop lets be seen late."""

import contextlib
import signal
import subprocess
import threading

import harness
from option_test import OptionTest
from waiting import wait_until


class LateWindowTest(OptionTest):
    def test_what_waits_for_the_first_frame_does_not_wait_for_ever(self):
        folder = self.session.new_folder("config")
        stored = folder / "postal-scale" / "postal-scale.ini"
        visible = []

        def look():
            wait_until(stored.exists, "the settings, written")
            visible.append(self.visible_windows())

        with self.held_up_until(look):
            program = self.start("--weight", "1234", settings_folder=folder)
        self.assertEqual(visible, [""])
        program.wait_for_reading("1234 grams")
        wait_until(lambda: self.colours(program) > 10, "the window, drawn")
        self.assertIn("Icon (16 x 16)", self.session.output_of(
            "xprop", "-id", program.window.id, "_NET_WM_ICON"))
        # What is chosen is written at once, as ever.
        self.click_option(program, 100)
        wait_until(lambda: "100=selected" in program.settings_lines(), "the option, written")

    @contextlib.contextmanager
    def held_up_until(self, ended):
        """The window manager shows no new window while `ended()` waits."""
        manager = self.session.window_manager

        def let_go():
            try:
                ended()
            finally:
                manager.send_signal(signal.SIGCONT)

        manager.send_signal(signal.SIGSTOP)
        thread = threading.Thread(target=let_go)
        thread.start()
        try:
            yield
        finally:
            thread.join()

    def visible_windows(self):
        return subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--class", "postal-scale"],
            env=self.session.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            text=True, check=False).stdout

    def colours(self, program):
        return int(self.session.output_of("import", "-window", program.window.id, "-format", "%k",
                                          "info:"))


if __name__ == "__main__":
    harness.main()
