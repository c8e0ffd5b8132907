# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Files that are no files, or far too large: the program says so, and neither waits nor grows."""

import json
import os
import subprocess
import time

import harness
from command_line import CommandLineTest
from waiting import PATIENCE, wait_until

USAGE_ERROR = 64
NOT_REGULAR = "It is not a regular file"


class OddFileTest(CommandLineTest):
    def odd_files(self):
        folder = self.session.new_folder("odd")
        pipe = folder / "pipe"
        os.mkfifo(pipe)
        place = folder / "folder"
        place.mkdir()
        return [pipe, place, "/dev/zero", "/dev/full", "/dev/null"]

    def run_offscreen(self, *arguments, **changes):
        """Ends by itself where the arguments are refused."""
        return self.run_program(*arguments, QT_QPA_PLATFORM="offscreen", **changes)


class TrafficFileTest(OddFileTest):
    def test_a_record_is_read_from_a_regular_file_only(self):
        for file in self.odd_files():
            with self.subTest(file=file):
                result = self.run_offscreen("--replay", file)
                self.assertEqual((result.status, result.errors),
                                 (USAGE_ERROR, f"Cannot read {file}: {NOT_REGULAR}\n"))

    def test_a_record_is_written_into_a_regular_file_only(self):
        for file in self.odd_files():
            with self.subTest(file=file):
                result = self.run_offscreen("--record", file)
                self.assertEqual(result.status, USAGE_ERROR)
                self.assertIn(result.errors, (f"Cannot write {file}: {NOT_REGULAR}\n",
                                              f"Cannot write {file}: Is a directory\n"))

    def test_a_full_disk_is_called_so(self):
        file = self.session.new_folder("full") / "scale.txt"
        command = ["sh", "-c", 'trap "" XFSZ; ulimit -S -f 0; exec "$@"', "sh",
                   harness.binaries() / "postal-scale", "--record", file]
        ended = subprocess.run(command, env=self.environment(QT_QPA_PLATFORM="offscreen"),
                               stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                               timeout=PATIENCE, check=False)
        self.assertEqual(ended.returncode, USAGE_ERROR)
        self.assertIn(f"Cannot write {file}: File too large\n", ended.stderr)

    def test_a_record_of_a_hundred_mebibytes_is_not_read(self):
        file = self.session.new_folder("large") / "scale.txt"
        with open(file, "wb") as large:
            large.truncate(100 * 1024 * 1024)
        result = self.run_offscreen("--replay", file)
        self.assertEqual(result.errors, f"Cannot read {file}: It is larger than 64 MiB\n")


    def test_what_lies_two_months_ahead_is_waited_for(self):
        # 2^32 ms and 1.7 s.
        file = self.session.new_folder("long") / "scale.txt"
        file.write_text("postal-scale traffic 1\n"
                        "0.000 attach hidraw0 04d9:8010\n"
                        "0.010 open hidraw0\n"
                        "0.400 send 00 90 ff 80 00 00 00 00 00\n"
                        "0.401 read 01 34 12 00 00 00 00 00\n"
                        "4294969.000 detach hidraw0 04d9:8010\n")
        program = self.start("--unplugged", program_arguments=("--replay", file))
        program.wait_for_reading("1234 grams")
        program.wait_for_polls(8)
        self.assertEqual(program.window.status, "Scale connected")


class InformationFileTest(OddFileTest):
    def check_built_in(self, file, reason):
        program = self.start("--weight", "1234", program_arguments=("--info", file))
        program.wait_for_reading("1234 grams")
        self.assertTrue(program.window.says(f"Cannot read {file}: {reason}")
                        or program.window.says(f"{file} is damaged: {reason}"), reason)
        self.assertEqual(program.stop(), 0)

    def test_only_a_regular_file_is_read(self):
        for file in self.odd_files()[:3]:
            with self.subTest(file=file):
                self.check_built_in(file, NOT_REGULAR)

    def test_a_hundred_thousand_models_are_too_many(self):
        folder = self.session.new_folder("models")
        for models, reason in ((100_000, "It is larger than 256 KiB"),
                               (1_001, "more than 1000 models")):
            with self.subTest(models=models):
                file = folder / f"{models}.json"
                names = [f"M{number}" for number in range(models)]
                file.write_text(json.dumps({"isUSPS": "YES", "KayForUSPS": names}))
                self.check_built_in(file, reason)


class SettingsFileTest(OddFileTest):
    def start_with(self, make):
        folder = self.session.new_folder("config")
        (folder / "postal-scale").mkdir()
        file = folder / "postal-scale" / "postal-scale.ini"
        make(file)
        program = self.start("--weight", "1234", settings_folder=folder)
        program.wait_for_reading("1234 grams")
        return program, file

    def test_what_is_no_file_is_set_aside(self):
        for make in (os.mkfifo, lambda file: file.symlink_to("/dev/zero")):
            program, file = self.start_with(make)
            self.assertTrue(program.window.says("The settings were not usable"))
            self.assertTrue(os.path.lexists(f"{file}.damaged-1"))
            wait_until(file.is_file, "settings of its own")
            self.assertEqual(program.stop(), 0)

    def test_two_hundred_megabytes_are_set_aside(self):
        def make(file):
            with open(file, "wb") as large:
                large.truncate(200_000_000)

        program, file = self.start_with(make)
        self.assertTrue(program.window.says("The settings were not usable"))
        self.assertEqual(os.path.getsize(f"{file}.damaged-1"), 200_000_000)
        self.assertEqual(program.stop(), 0)

    def test_two_thousand_options_are_no_trouble(self):
        def make(file):
            options = "".join(f"{1000 + number}=selected\n" for number in range(2000))
            file.write_text("[defaultValue]\n100=selected\n" + options)

        begin = time.monotonic()
        program, file = self.start_with(make)
        self.assertLess(time.monotonic() - begin, PATIENCE)
        wait_until(lambda: "100=selected" in file.read_text(), "the option that there is")
        self.assertEqual(program.stop(), 0)


class LogFileTest(OddFileTest):
    def test_it_is_a_regular_file_only(self):
        for file in self.odd_files():
            with self.subTest(file=file):
                result = self.run_offscreen("--log", file)
                self.assertEqual(result.status, USAGE_ERROR)
                self.assertIn(f"Cannot write {file}: ", result.errors)


if __name__ == "__main__":
    harness.main()
