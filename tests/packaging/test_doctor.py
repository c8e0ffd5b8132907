# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""--doctor, on the machine of the test: what it says of the scale and of the session."""

import os
import pathlib
import socket
import subprocess

import harness
from command_line import CommandLineTest
from extension_stand_in import PROTOCOL, ExtensionStandIn
from waiting import PATIENCE, wait_until

REGISTER = pathlib.Path(__file__).parents[2] / "browser" / "register"
HOST = "postal-scale-browser-host"

NO_SCALE = ("!!  No scale: none with the USB id 04d9:8010, and none of the USB class for points of "
            "sale")


class DoctorTest(CommandLineTest):
    def test_without_a_scale_it_says_how_to_get_one(self):
        result = self.run_with_scale("--doctor", scale=["--unplugged"])
        self.assertEqual(result.status, 1)
        finding, cure = result.output.splitlines()[:2]
        self.assertEqual(finding, NO_SCALE)
        self.assertIn("Plug it in", cure)

    def test_a_scale_is_found_and_may_be_opened(self):
        result = self.run_with_scale("--doctor", scale=["--weight", "1234"])
        lines = result.output.splitlines()
        self.assertIn("ok  Scale found at /dev/hidraw0", lines)
        self.assertIn("ok  Permission to open it", lines)
        self.assertIn("--  Postal Scale is not running", lines)

    def test_another_device_of_the_maker_is_no_scale(self):
        result = self.run_with_scale("--doctor", scale=["--unplugged"],
                                     prepare=["plug stranger"])
        self.assertIn(NO_SCALE, result.output.splitlines())

    def test_without_a_desktop_it_does_not_judge_one(self):
        lines = self.run_program("--doctor").output.splitlines()
        self.assertIn("--  Clipboard: there is no desktop in this session", lines)
        self.assertIn("--  On top: there is no desktop in this session", lines)

    def test_it_asks_the_running_window(self):
        self.start("--weight", "1234")
        lines = self.run_program("--doctor", DISPLAY=self.display).output.splitlines()
        self.assertIn("ok  Postal Scale is running", lines)
        self.assertIn("ok  Clipboard: can be written at every reading", lines)
        self.assertIn("ok  On top: the window manager does it", lines)

    def test_where_the_window_is_it_learns_from_the_window(self):
        """Without a display of its own, as in a session over the network."""
        self.start("--weight", "1234")
        lines = self.run_program("--doctor").output.splitlines()
        self.assertIn("ok  Clipboard: can be written at every reading", lines)
        self.assertIn("--  On top: there is no desktop in this session", lines)

    def test_a_window_that_hangs(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("raise-child STOP")
        lines = self.run_program("--doctor").output.splitlines()
        cure = lines[lines.index("!!  Postal Scale is running, but does not answer") + 1]
        self.assertRegex(cure, r"^    End it \(process [1-9][0-9]*\) and start it again\.$")
        program.scale.tell("raise-child CONT")

    def test_a_window_that_waits_for_the_scale(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.scale.tell("silence on")
        wait_until(lambda: program.window.says("The scale does not answer"), "the silence noticed")
        lines = self.run_program("--doctor").output.splitlines()
        self.assertIn("ok  Postal Scale is running", lines)

    @property
    def display(self):
        return self.session.environment["DISPLAY"]


class BrowserLinkTest(CommandLineTest):
    """Of a user who keeps the settings elsewhere, and has every browser."""

    def setUp(self):
        home = self.session.new_folder("home")
        self.user = {"HOME": str(home), "XDG_CONFIG_HOME": str(home / "settings")}
        for folder in ("settings/chromium", "settings/google-chrome", ".mozilla"):
            (home / folder).mkdir(parents=True)

    def register(self, *arguments):
        subprocess.run([REGISTER, harness.binaries() / HOST, *arguments], check=True,
                       env=os.environ | self.user, stdout=subprocess.DEVNULL)

    def finding(self):
        """What it says of the link, and how to mend it."""
        lines = self.run_program("--doctor", **self.user).output.splitlines()
        place = next(number for number, line in enumerate(lines) if "Browser link" in line)
        return lines[place:]

    def test_it_finds_what_was_set_up(self):
        before = self.finding()
        self.register()
        self.assertEqual(self.finding(),
                         ["--  Browser link: set up for Chromium, Chrome, Firefox; it is up while "
                          "Postal Scale runs"])
        self.register("--remove")
        self.assertEqual(self.finding(), before)

    def test_it_says_what_the_window_says(self):
        self.register()
        program = self.start("--weight", "1234", settings=harness.USPS_ONLY)
        self.expect(program, "--", "No browser linked")
        extension = self.attach()
        self.expect(program, "ok", "Browser linked, waiting for a carrier page")
        extension.show(1, "tools.usps.com")
        self.expect(program, "ok", "Filling USPS: 6 fields")
        extension.close()
        self.expect(program, "--", "No browser linked")

    def test_an_extension_that_does_not_fit(self):
        self.register()
        program = self.start("--unplugged", settings=harness.USPS_ONLY)
        self.attach(protocol=PROTOCOL - 1, version="7.0")
        self.expect(program, "!!", "Browser extension 7.0 does not fit this program",
                    "    Install both anew: their versions differ.")

    def attach(self, **options):
        """Through the host, started as a browser starts it."""
        browser, host = socket.socketpair()
        browser.settimeout(PATIENCE)
        process = subprocess.Popen([harness.binaries() / HOST], env=self.session.environment,
                                   stdin=host, stdout=host)
        host.close()
        self.addCleanup(process.wait, PATIENCE)
        extension = ExtensionStandIn(self.session, connection=browser, **options)
        self.addCleanup(extension.close)
        return extension

    def expect(self, program, mark, text, *cure):
        wait_until(lambda: program.window.says(text), f"{text!r} in the window")
        self.assertEqual(self.finding(),
                         [f"{mark}  Browser link (Chromium, Chrome, Firefox): {text}", *cure])


if __name__ == "__main__":
    harness.main()
