# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""No permission on the scale's node, the commonest trouble of all.

Root may open everything, so this file runs as nobody when it is started as root.
"""

import os

import harness
from nobody import become_nobody


def setUpModule():
    if os.geteuid() == 0:
        become_nobody()


class PermissionTest(harness.DeviceTest):
    NOTICE = "No permission to open the scale"

    def test_the_notice_names_the_cause_until_the_scale_can_be_opened(self):
        program = self.start("--unplugged", "--weight", "1234")
        program.scale.tell_all("permission off", "plug")
        program.log.wait_for(self.NOTICE)
        # The status has two texts only, and this device passes for a scale.
        program.wait_for_status("Scale connected")
        program.wait_for_reading("off")
        self.assertTrue(program.window.says(self.NOTICE))
        self.assertEqual(program.scale.tell("opens"), "0")

        program.scale.tell_all("unplug", "permission on", "plug")
        program.wait_for_reading("1234 grams")
        self.assertFalse(program.window.says(self.NOTICE))

    def test_permission_that_arrives_later_is_used(self):
        program = self.start("--unplugged", "--weight", "1234")
        program.scale.tell_all("permission off", "plug")
        program.log.wait_for(self.NOTICE)
        program.wait_for_reading("off")
        # As when the rule has been put in place and udev is told to apply it.
        program.scale.tell_all("permission on", "change-event")
        program.wait_for_reading("1234 grams")
        self.assertFalse(program.window.says(self.NOTICE))
        self.assertEqual(program.scale.tell("open-handles"), "1")
        program.scale.tell("clear-reports")
        program.scale.wait_for_reports(7)
        times = [report.seconds for report in program.scale.polls()]
        self.assertAlmostEqual(times[6] - times[0], 6 * harness.POLL_INTERVAL, delta=0.6)

    def test_the_notice_says_which_rule_to_install(self):
        program = self.start("--unplugged")
        program.scale.tell_all("permission off", "plug")
        program.log.wait_for(self.NOTICE)
        notice = program.window.label_that_says(self.NOTICE)
        for part in ("60-postal-scale.rules", 'ATTRS{idVendor}=="04d9"',
                     'ATTRS{idProduct}=="8010"', 'TAG+="uaccess"'):
            self.assertIn(part, notice.description)


if __name__ == "__main__":
    harness.main()
