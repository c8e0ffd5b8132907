# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""A screen reader that runs before the program does, and the troubles that this begins with.

Root may open everything, so this file runs as nobody when it is started as root.
"""

import os
import sys

import harness
from nobody import become_nobody
from waiting import wait_until

REFUSED = "No permission to open the scale"
DAMAGED = "The settings were damaged"

_WITHOUT_PERMISSION = """
import os, sys
from emulated_scale import EmulatedScale
scale = EmulatedScale(sys.argv[1])
scale.tell_all("permission off", "plug")
scale.close()
os.execv(sys.argv[2], sys.argv[2:])
"""


def setUpModule():
    if os.geteuid() == 0:
        become_nobody()


class ProgramForReaders(harness.Program):
    """Accessible because somebody listens, as on a user's desktop."""

    def _start(self, socket, arguments, environment, command):
        super()._start(socket, arguments, environment,
                       ["env", "-u", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON", *command])


class ProgramWithoutPermission(ProgramForReaders):
    """From its start."""

    def _start(self, socket, arguments, environment, command):
        super()._start(socket, arguments, environment,
                       [sys.executable, "-B", "-c", _WITHOUT_PERMISSION, socket, *command])


class ScreenReaderTest(harness.DeviceTest):
    def test_what_stands_before_the_toolkit_is_on_the_bus_is_told_once(self):
        self.assert_told_once(DAMAGED, ProgramForReaders, settings="[defaultValue\0")

    def test_what_comes_with_the_first_reading_is_told_once(self):
        self.assert_told_once(REFUSED, ProgramWithoutPermission, arguments=("--unplugged",))

    def assert_told_once(self, trouble, kind, **options):
        self.session.accessibility.tell_that_a_reader_runs()
        shown = self.session.accessibility.listen_for_shown()
        program = kind(self.session, **options)
        self._programs.append(program)
        self.addCleanup(self._stop, program)

        def told():
            return [each for each in shown() if trouble in each and "Alt+E" in each]

        wait_until(told, lambda: f"{trouble}; it was {shown()}")
        program.wait_for_polls(5)
        self.assertEqual(len(told()), 1)


if __name__ == "__main__":
    harness.main()
