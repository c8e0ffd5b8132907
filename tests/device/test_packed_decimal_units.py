# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Every model, every unit that it has: what is sent when it is clicked, what the panel says.

On a scale that counts grams in packed decimal."""

import harness
import unit_rows
from unit_rows import ENABLED_ROWS, HIGH_CAPACITY_MODELS, POUNDS_WHOLE_OUNCES
from unit_test import UnitTest


class PackedDecimalUnitTest(UnitTest):
    unit_bits = unit_rows.PACKED_DECIMAL_UNIT_BITS

    def test_every_row_of_every_model_shows_the_weight_in_its_unit(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        for model, rows in ENABLED_ROWS.items():
            high = model in HIGH_CAPACITY_MODELS
            program.scale.tell("capacity " + ("high" if high else "ordinary"))
            with self.subTest(model=model):
                # The choice of a model leaves the switch for whole ounces as the last unit set it.
                whole = program.window.widget(POUNDS_WHOLE_OUNCES).is_checked
                self.choose_model(program, model)
                self.assertEqual(program.window.reading,
                                 "2 pounds 11 ounces" if whole else "2 pounds 11 1/2 ounces")
            expected = (unit_rows.TEN_GRAM_SCALE_AT_1234 if high
                        else unit_rows.GRAM_SCALE_AT_1234)
            for row in rows:
                with self.subTest(model=model, row=row):
                    self.choose_row(program, row)
                    self.assertEqual(program.window.reading, expected[row])

    def test_light_and_heavy_weights_on_a_scale_of_one_gram_steps(self):
        program = self.start()
        program.wait_for_reading("0 grams")
        for model in ("KV-B100", "KV-C100"):
            self.choose_model(program, model)
            for row in ENABLED_ROWS[model]:
                with self.subTest(model=model, row=row):
                    self.read_weights(program, row, unit_rows.GRAM_SCALE_READINGS[row])

    def test_light_and_heavy_weights_on_a_scale_of_ten_gram_steps(self):
        program = self.start("--capacity", "high")
        program.wait_for_reading("0 grams")
        self.choose_model(program, "KV-A200")
        for row in ENABLED_ROWS["KV-A200"]:
            with self.subTest(row=row):
                self.read_weights(program, row, unit_rows.TEN_GRAM_SCALE_READINGS[row])


if __name__ == "__main__":
    harness.main()
