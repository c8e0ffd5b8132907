# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Where the lines of the log go."""

import harness
from command_line import CommandLineTest
from waiting import wait_until

QUIET = {"QT_LOGGING_RULES": ""}

# A disk that has room for so much of each file.
ROOM = 4096
# More than any line that these tests bring about has.
LONGEST_LINE = 200
FULL_DISK = ("sh", "-c", f'trap "" XFSZ; ulimit -S -f {ROOM // 512}; exec "$@"', "sh")


class LogTest(CommandLineTest):
    def start_quiet(self, *arguments, **changes):
        program = self.start("--weight", "1234", program_arguments=arguments,
                             environment=QUIET | changes)
        program.wait_for_reading("1234 grams")
        return program

    def lines_of(self, program):
        """Of the program; the toolkit has its own."""
        return program.log.since(0, "^postalscale")

    def wait_for_polls(self, program, count):
        before = len(program.scale.polls())
        wait_until(lambda: len(program.scale.polls()) >= before + count, f"{count} polls")

    def test_nothing_goes_to_standard_error(self):
        program = self.start_quiet()
        self.wait_for_polls(program, 3)
        self.assertEqual(self.lines_of(program), [])

    def test_warnings_do(self):
        program = self.start_quiet("--info", "/nowhere/Info.json")
        self.assertIn("postalscale: Cannot read /nowhere/Info.json: No such file or directory",
                      self.lines_of(program))
        self.assertEqual(len(self.lines_of(program)), 2)

    def test_a_file_gets_all_of_it(self):
        for by_option in (True, False):
            file = self.session.new_folder("log") / "log.txt"
            program = (self.start_quiet("--log", file) if by_option
                       else self.start_quiet(POSTAL_SCALE_LOG=str(file)))
            self.wait_for_polls(program, 2)
            self.assertEqual(self.lines_of(program), [])
            self.assertEqual(program.stop(), 0)
            texts = [line.split(" ", 1)[1] for line in file.read_text().splitlines()]
            for text in ("Select Postal Scale", "readData", "buf[0]: 1", "set_device_OFF"):
                self.assertIn(text, texts)

    def fill_the_disk(self, option, file):
        """The program, which goes on weighing after it."""
        program = self.start("--weight", "1234", program_arguments=(option, file),
                             environment=QUIET, wrapper=FULL_DISK)
        program.wait_for_reading("1234 grams")
        wait_until(lambda: self.lines_of(program), f"the end of {file.name}")
        program.scale.tell("weight 567")
        program.wait_for_reading("567 grams")
        return program

    def test_a_full_disk_ends_the_log_and_nothing_else(self):
        file = self.session.new_folder("log") / "log.txt"
        program = self.fill_the_disk("--log", file)
        self.wait_for_polls(program, 3)
        self.assertEqual(self.lines_of(program),
                         ["postalscale: The log ends here: File too large"])
        self.check_whole_lines(file)
        self.assertEqual(program.stop(), 0)

    def test_a_full_disk_ends_the_record_and_nothing_else(self):
        file = self.session.new_folder("record") / "scale.txt"
        program = self.fill_the_disk("--record", file)
        self.assertEqual(self.lines_of(program),
                         [f"postalscale: The record in {file} ends here: File too large"])
        self.check_whole_lines(file)
        self.assertEqual(program.stop(), 0)

    def check_whole_lines(self, file):
        """As many as there is room for."""
        text = file.read_bytes()
        self.assertTrue(text.endswith(b"\n"), text[-80:])
        self.assertLessEqual(len(text), ROOM)
        self.assertGreater(len(text), ROOM - LONGEST_LINE)

    def test_a_start_that_raises_the_window_leaves_its_log_alone(self):
        file = self.session.new_folder("log") / "log.txt"
        program = self.start_quiet("--log", file)
        for arguments, changes in ((["--log", file], {}), ([], {"POSTAL_SCALE_LOG": str(file)})):
            result = self.run_program(*arguments, DISPLAY=self.session.environment["DISPLAY"],
                                      QT_QPA_PLATFORM="xcb", **QUIET, **changes)
            self.assertEqual(result.status, 0)
        self.wait_for_polls(program, 2)
        text = file.read_bytes()
        self.assertEqual((text.count(b"\0"), text.count(b"Select Postal Scale")), (0, 1))

    def test_a_record_has_it_as_remarks(self):
        file = self.session.new_folder("record") / "scale.txt"
        program = self.start_quiet("--record", file)
        self.wait_for_polls(program, 2)
        self.assertEqual(self.lines_of(program), [])
        self.assertEqual(program.stop(), 0)
        lines = file.read_text(encoding="utf-8").splitlines()
        self.assertIn("# readData", lines)
        self.assertIn("# set_device_OFF", lines)
        self.assertNotIn("# buf[0]: 1", lines)


if __name__ == "__main__":
    harness.main()
