# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The desktop's clipboard, as other programs read and write it."""

import subprocess

import harness
from waiting import wait_until


class ClipboardTest(harness.DeviceTest):
    def clipboard(self):
        """As another program pastes it; None while nobody offers anything."""
        answer = subprocess.run(["xclip", "-selection", "clipboard", "-o"], check=False,
                                env=self.session.environment, text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL)
        return answer.stdout if answer.returncode == 0 else None

    def wait_for_clipboard(self, expected):
        wait_until(lambda: self.clipboard() == expected,
                   lambda: f"{expected!r} on the clipboard; it holds {self.clipboard()!r}")

    def copy_elsewhere(self, text):
        """Until somebody else writes the clipboard."""
        self.offer(text)
        self.wait_for_clipboard(text)

    def offer(self, text):
        """Returns the program that offers it, which ends when somebody else writes the clipboard."""
        file = self.session.new_folder("copied") / "text"
        file.write_text(text, encoding="utf-8")
        owner = self.session.spawn(["xclip", "-quiet", "-selection", "clipboard", "-i", file],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(harness.end, owner)
        return owner
