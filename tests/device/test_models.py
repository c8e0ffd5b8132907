# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The choice of the model, and what of it comes back at the next start."""

import harness
from unit_rows import ALL_ROWS, ENABLED_ROWS, POUNDS_OUNCES_FRACTION

# What every number without a model of its own gets.
OTHER_ROWS = ENABLED_ROWS["KV-C300"]

FIRST_MODEL = "KV-A100"


def enabled_rows(program):
    return tuple(row for row in ALL_ROWS if program.window.widget(row).is_enabled)


class ModelChoiceTest(harness.DeviceTest):
    def test_the_pop_up_and_the_menu_each_lack_one_model(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        for choose, model in ((program.window.choose_model, "KV-C400"),
                              (lambda name: program.window.choose_from_menu("modelMenu", name),
                               "KV-C100")):
            program.scale.tell("clear-reports")
            choose(model)
            program.scale.wait_for_command(0)
            self.assertEqual(program.window.title, "Postal Scale-" + model)
            self.assertTrue(program.window.widget(POUNDS_OUNCES_FRACTION).is_checked)
            self.assertEqual(enabled_rows(program), ENABLED_ROWS[FIRST_MODEL])
        # Each knows its own choice only.
        self.assertEqual(program.window.model_box.name, "KV-C400")
        self.assertTrue(program.window.menu_item("modelMenu", "KV-C100").is_checked)

    def test_the_menu_is_refused_without_a_scale(self):
        program = self.start("--unplugged")
        program.window.choose_from_menu("modelMenu", "KV-C400")
        program.log.wait_for("Device Not Connected/Detected!!!$")
        self.assertTrue(program.window.menu_item("modelMenu", FIRST_MODEL).is_checked)
        self.assertFalse(program.window.menu_item("modelMenu", "KV-C400").is_checked)
        self.assertEqual(program.window.title, "Postal Scale-" + FIRST_MODEL)
        self.assertEqual(enabled_rows(program), ENABLED_ROWS[FIRST_MODEL])


class StoredModelTest(harness.DeviceTest):
    def test_what_is_stored_decides_on_the_pop_up_and_the_rows(self):
        # stored text, model in the pop-up, rows, number that is stored from then on
        cases = (
            (None, FIRST_MODEL, ENABLED_ROWS[FIRST_MODEL], "0"),
            ("3", "KV-B200", ENABLED_ROWS["KV-B200"], "3"),
            ("5", "KV-C100", ENABLED_ROWS["KV-C100"], "5"),
            # The menu's model stands last in the list; its rows come with the number 5.
            ("8", "KV-C400", OTHER_ROWS, "8"),
            ("-1", FIRST_MODEL, OTHER_ROWS, "-1"),
            ("99999999999999999999", FIRST_MODEL, OTHER_ROWS, "2147483647"),
            ("heavy", FIRST_MODEL, ENABLED_ROWS[FIRST_MODEL], "0"),
        )
        for stored, model, rows, kept in cases:
            with self.subTest(stored=stored):
                settings = f"[General]\nlastSelectedValue={stored}\n"
                program = self.start("--unplugged",
                                     settings=None if stored is None else settings)
                self.assertEqual(program.window.model_box.name, model)
                self.assertEqual(enabled_rows(program), rows)
                self.assertEqual(program.window.title, "Postal Scale-" + FIRST_MODEL)
                self.assertIn(f"lastSelectedValue={kept}", program.settings_lines())
                self.assertEqual(program.stop(), 0)

    def test_the_chosen_model_comes_back(self):
        first = self.start("--capacity", "high", "--weight", "1230")
        first.wait_for_reading("123 grams")
        first.window.choose_model("KV-A200")
        first.wait_for_reading("2 pounds 11 1/2 ounces")
        self.assertEqual(first.stop(), 0)

        again = self.start("--capacity", "high", "--weight", "1230",
                           settings_folder=first.settings_folder)
        self.assertEqual(again.window.model_box.name, "KV-A200")
        self.assertEqual(enabled_rows(again), ENABLED_ROWS["KV-A200"])
        # The pop-up and the rows are all that comes back. For the reading no model is chosen yet,
        # and steps of 10 g pass for grams.
        again.wait_for_reading("123 grams")


if __name__ == "__main__":
    harness.main()
