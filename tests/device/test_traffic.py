# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What is recorded of a scale is shown again without one."""

import subprocess

import harness
from unit_rows import POUNDS_OUNCES_FRACTION
from waiting import PATIENCE

USAGE_ERROR = 64


class TrafficTest(harness.DeviceTest):
    def test_a_recorded_scale_is_shown_again(self):
        for scale_type, grams, kilograms, ounces in (
                ("0", "1234 grams", "454 grams", "1 pound 0 ounces"),
                ("1", "1.2 kilograms", "0.5 kilograms", "0.5 kilograms")):
            with self.subTest(type=scale_type):
                file = self.session.new_folder("record") / "scale.txt"
                program = self.start("--type", scale_type, "--weight", "1234",
                                     program_arguments=("--record", file))
                self.stay_at(program, grams)
                program.scale.tell("weight 454")
                self.stay_at(program, kilograms)
                program.window.click(POUNDS_OUNCES_FRACTION)
                self.stay_at(program, ounces)
                program.scale.tell("unplug")
                program.wait_for_status("Scale not connected")
                self.assertEqual(program.stop(), 0)

                replay = self.start("--unplugged", program_arguments=("--replay", file))
                for reading in (grams, kilograms, ounces):
                    replay.wait_for_reading(reading)
                replay.wait_for_status("Scale not connected")
                self.assertEqual(replay.scale.reports(), [], "of a scale that is not there")
                self.assertEqual(replay.stop(), 0)

    def test_a_record_is_complete_up_to_the_moment(self):
        file = self.session.new_folder("record") / "scale.txt"
        program = self.start("--weight", "1234", program_arguments=("--record", file))
        program.wait_for_reading("1234 grams")
        lines = file.read_text(encoding="ascii").splitlines()
        self.assertEqual(lines[0], "postal-scale traffic 1")
        # Status, low byte, high byte of 1234 g.
        self.assertTrue(any(" read 01 34 12" in line for line in lines), lines)

    def test_files_that_cannot_be_used(self):
        folder = self.session.new_folder("record")
        damaged = folder / "damaged.txt"
        damaged.write_text("postal-scale traffic 1\n\n0.1 attach\n", encoding="ascii")
        for option, file, said in (
                ("--replay", damaged, f"Cannot play back {damaged}: line 3: cannot be understood"),
                ("--replay", folder / "none", f"Cannot read {folder}/none: "
                                              "No such file or directory"),
                ("--record", folder / "no" / "one", f"Cannot write {folder}/no/one: "
                                                    "No such file or directory")):
            with self.subTest(said=said):
                self.assertEqual(self.run_alone(option, file), (USAGE_ERROR, said + "\n"))

    def test_a_window_that_is_open_already_is_no_place_for_it(self):
        file = self.session.new_folder("record") / "scale.txt"
        self.start("--unplugged")
        self.assertEqual(self.run_alone("--record", file),
                         (1, "Postal Scale is running already; close its window first\n"))
        self.assertFalse(file.exists())

    @staticmethod
    def stay_at(program, reading):
        """For long enough that it cannot be overlooked when it is played back."""
        program.wait_for_reading(reading)
        program.wait_for_polls(4)

    def run_alone(self, *arguments):
        """Status, and what is said."""
        ended = subprocess.run([harness.binaries() / "postal-scale", *arguments],
                               env=self.session.environment | {"QT_QPA_PLATFORM": "offscreen"},
                               stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                               timeout=PATIENCE, check=False)
        return ended.returncode, ended.stderr


if __name__ == "__main__":
    harness.main()
