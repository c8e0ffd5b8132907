# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Every model, every unit that it has: what is sent when it is clicked, what the panel says.

On a scale that counts tenths of an ounce in binary."""

import harness
import unit_rows
from unit_rows import ENABLED_ROWS
from unit_test import UnitTest


class BinaryUnitTest(UnitTest):
    unit_bits = unit_rows.BINARY_UNIT_BITS

    def test_every_row_of_every_model_shows_the_weight_in_its_unit(self):
        program = self.start("--type", "1", "--weight", "1234")
        program.wait_for_reading("1.2 kilograms")
        for model, rows in ENABLED_ROWS.items():
            before = program.window.reading
            with self.subTest(model=model):
                self.choose_model(program, model)
                # The starting unit is one that this scale lacks.
                self.assertEqual(program.window.reading, before)
            for row in rows:
                with self.subTest(model=model, row=row):
                    before = program.window.reading
                    self.choose_row(program, row)
                    self.assertEqual(program.window.reading,
                                     unit_rows.BINARY_SCALE_AT_1234[row] or before)

    def test_light_and_heavy_weights(self):
        program = self.start("--type", "1")
        program.wait_for_reading("0.0 kilograms")
        self.choose_model(program, "KV-C300")
        for row in ENABLED_ROWS["KV-C300"]:
            with self.subTest(row=row):
                self.read_weights(program, row, unit_rows.BINARY_SCALE_READINGS[row])


if __name__ == "__main__":
    harness.main()
