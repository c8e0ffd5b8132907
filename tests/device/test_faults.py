# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Trouble that needs the real process: with the desktop, the disk, and a scale that goes while it
is read. What else can fail is in tests/faults.

Root may write everywhere, so this file runs as nobody when it is started as root.
"""

import os
import pathlib
import shutil
import signal
import subprocess

import harness
from nobody import become_nobody
from option_test import OptionTest
from session import Session
from unit_rows import GRAMS
from waiting import wait_until

BEFORE = "[General]\nlastSelectedValue=0\n"
UNSAVED = "Settings cannot be saved"
ON_TOP = 100
CLIPBOARD = 300


def setUpModule():
    if os.geteuid() == 0:
        become_nobody()


class DesktopTest(OptionTest):
    def test_without_an_x_server_the_program_ends_and_nothing_is_lost(self):
        desktop = Session()
        self.addCleanup(desktop.close)
        first = harness.Program(desktop, arguments=("--weight", "1234"))
        self.addCleanup(first.kill)
        first.wait_for_reading("1234 grams")
        self.click_option(first, ON_TOP)
        desktop.lose_x_server()
        self.assertEqual(first.wait_for_end(), 1)
        self.assertEqual(self.saved(first), {ON_TOP})
        left = {each.name for each in (first.settings_folder / "postal-scale").iterdir()}
        self.assertEqual(left, {"postal-scale.ini"})

        again = self.start("--weight", "1234", settings_folder=first.settings_folder)
        again.wait_for_reading("1234 grams")
        self.assertEqual(self.checked(again), {ON_TOP})

    def test_an_owner_of_the_clipboard_that_hangs_or_dies_holds_nothing_up(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.click(GRAMS)
        self.click_option(program, CLIPBOARD)
        self.wait_for_clipboard("1.234")
        for last in (signal.SIGSTOP, signal.SIGKILL):
            owner = self.own_clipboard()
            owner.send_signal(last)
            program.wait_for_polls(2)
            self.wait_for_clipboard("1.234")
            owner.kill()

    def own_clipboard(self):
        owner = self.session.spawn(["xclip", "-quiet", "-selection", "clipboard", "-i", "/dev/null"],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        self.addCleanup(harness.end, owner)
        self.addCleanup(owner.stderr.close)
        # Said once it is the owner.
        wait_until(lambda: "Waiting" in owner.stderr.readline(), "another owner of the clipboard")
        return owner


class DiskTest(OptionTest):
    # A write beyond the limit is to fail, as on a full disk, and not to end the program.
    FULL_DISK = ("sh", "-c", 'trap "" XFSZ; ulimit -S -f 0; exec "$@"', "sh")

    def test_full_disk(self):
        program = self.start("--weight", "1234", settings=BEFORE, wrapper=self.FULL_DISK)
        self.check_unsaved(program)
        self.assertEqual(program.settings_lines(), BEFORE.splitlines())
        subprocess.run(["prlimit", f"--pid={self.program_pid(program)}", "--fsize=unlimited:"],
                       check=True)
        self.check_saved_again(program)

    def test_read_only_settings(self):
        program = self.start("--weight", "1234", settings=BEFORE)
        folder = program.settings_folder / "postal-scale"
        folder.chmod(0o555)
        self.addCleanup(folder.chmod, 0o755)
        self.check_unsaved(program)
        self.assertEqual(program.settings_lines(), BEFORE.splitlines())
        folder.chmod(0o755)
        self.check_saved_again(program)

    def test_deleted_settings(self):
        program = self.start("--weight", "1234", settings=BEFORE)
        program.wait_for_reading("1234 grams")
        shutil.rmtree(program.settings_folder / "postal-scale")
        self.click_option(program, ON_TOP)
        self.assertEqual(self.saved(program), {ON_TOP})
        self.assertFalse(program.window.says(UNSAVED))

    def check_unsaved(self, program):
        program.wait_for_reading("1234 grams")
        self.click_option(program, ON_TOP)
        wait_until(lambda: program.window.says(UNSAVED), "the notice")
        program.scale.tell("weight 567")
        program.wait_for_reading("567 grams")

    def check_saved_again(self, program):
        self.click_option(program, CLIPBOARD)
        wait_until(lambda: not program.window.says(UNSAVED), "the notice withdrawn")
        self.assertEqual(self.saved(program), {ON_TOP, CLIPBOARD})

    def program_pid(self, program):
        children = pathlib.Path(f"/proc/{program.emulator_pid}/task/{program.emulator_pid}/children")
        return children.read_text(encoding="ascii").split()[0]


class VanishingScaleTest(harness.DeviceTest):
    def test_a_scale_that_goes_while_it_is_read(self):
        program = self.start("--weight", "1234")
        for _ in range(3):
            program.wait_for_reading("1234 grams")
            program.scale.tell_all("silence on", "vanish-in-read")
            program.wait_for_status("Scale not connected")
            program.wait_for_reading("no scale connected")
            wait_until(lambda: program.scale.tell("open-handles") == "0", "the handle closed")
            program.scale.tell_all("silence off", "plug")


if __name__ == "__main__":
    harness.main()
