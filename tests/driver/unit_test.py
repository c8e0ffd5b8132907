# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the tests of the units have in common."""

import harness
from emulated_scale import UNIT_BITS, UNIT_SETTLED
from unit_rows import ALL_ROWS, ENABLED_ROWS, MENU_MODEL, POUNDS_OUNCES_FRACTION


class UnitTest(harness.DeviceTest):
    unit_bits = {}

    def choose_model(self, program, model):
        program.scale.tell("clear-reports")
        if model == MENU_MODEL:
            program.window.choose_from_menu("modelMenu", model)
        else:
            program.window.choose_model(model)
        self.assert_unit_is_sent(program, self.unit_bits[POUNDS_OUNCES_FRACTION])
        self.assertEqual(program.window.title, "Postal Scale-" + model)
        self.assertTrue(program.window.widget(POUNDS_OUNCES_FRACTION).is_checked)
        enabled = [row for row in ALL_ROWS if program.window.widget(row).is_enabled]
        self.assertEqual(tuple(enabled), ENABLED_ROWS[model])

    def choose_row(self, program, row):
        program.scale.tell("clear-reports")
        program.window.click(row)
        self.assert_unit_is_sent(program, self.unit_bits[row])
        self.assertTrue(program.window.widget(row).is_checked)
        self.assertEqual(len(program.scale.commands()), 1)

    def assert_unit_is_sent(self, program, bits):
        """By the command and by the poll that follows, both marked as a change."""
        command = program.scale.wait_for_command(0)
        next_poll, second_poll = program.scale.wait_for_polls_after(command, 2)
        for report in (command, next_poll):
            self.assertEqual(report.command & (UNIT_BITS | UNIT_SETTLED), bits, report)
        self.assertTrue(second_poll.command & UNIT_SETTLED, second_poll)

    def read_weights(self, program, row, readings):
        # In no table: what is read before the first of them is none of theirs.
        program.scale.tell("weight 2000")
        program.window.click(row)
        for grams, expected in readings:
            self.assertNotEqual(program.window.reading, expected, "nothing new would be seen")
            program.scale.tell(f"weight {grams}")
            program.wait_for_reading(expected)
