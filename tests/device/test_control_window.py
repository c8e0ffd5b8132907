# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The emulator's own window, with which a person sets the load and pulls the cable."""

import harness
from waiting import wait_until


class ControlWindowTest(harness.DeviceTest):
    def setUp(self):
        self.program = self.start("--weight", "1234")
        self.program.wait_for_reading("1234 grams")
        (socket,) = self.session.folder.glob("emulator-*/socket")
        controls = self.session.spawn(
            [harness.binaries() / "postal-scale-emulator-window", socket],
            self.session.environment | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
        self.addCleanup(harness.end, controls)
        self.window = wait_until(self.find_window, "the emulator's window")

    def find_window(self):
        return next((each for each in self.session.accessibility.showing_windows()
                     if each.name == "Emulated Scale"), None)

    def test_it_shows_the_scale_and_changes_it(self):
        self.wait_for("label", "1234")  # net, in grams
        self.type_load("454")
        self.program.wait_for_reading("454 grams")
        self.wait_for("label", "454")
        self.wait_for("push button", "Unplug").act("Press")
        self.program.wait_for_status("Scale not connected")
        self.wait_for("push button", "Plug in").act("Press")
        self.program.wait_for_reading("454 grams")

    def type_load(self, grams):
        place = self.find("spin box").extents
        self.session.pointer_clicks((place.x + place.width // 2, place.y + place.height // 2))
        self.session.output_of("xdotool", "key", "ctrl+a", "type", grams)

    def wait_for(self, role, name):
        return wait_until(lambda: self.find(role, name), lambda: f"the {role} {name!r}")

    def find(self, role, name=""):
        return next((each for each in self.window.descendants()
                     if (each.role, each.name) == (role, name)), None)


if __name__ == "__main__":
    harness.main()
