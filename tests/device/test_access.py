# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The window for those who do not see it or do not use a mouse."""

import harness
from unit_rows import ALL_ROWS, ENABLED_ROWS, GRAM_SCALE_AT_1234
from waiting import wait_until

_CONTROL_ROLES = ("push button", "radio button", "check box", "combo box", "menu item")

# In reading order. The radio cells are one stop: arrow keys go on from there.
_STOPS = ["KV-A100", "no scale connected", "Pounds, ounces and fraction", "Power", "Tare", "Hold", "Options"]

# What is on the pan, and what is told of it.
_READINGS = [(1234, "1234 grams"), (7, "7 grams"), (10000, "overload"), (0, "0 grams")]

# What a person hears in place of that.
_SAID = {"overload": "Overload: there is too much on the pan"}


class AccessTest(harness.DeviceTest):
    def test_every_control_has_a_name(self):
        program = self.start("--weight", "1234")
        controls = [each for each in program.window.all_accessibles()
                    if each.role in _CONTROL_ROLES]
        self.assertGreater(len(controls), 40)
        self.assertEqual([each.role for each in controls if not each.name], [])

    def test_panel_tells_every_change(self):
        program = self.start("--weight", "500")
        program.wait_for_reading("500 grams")
        for grams, words in _READINGS:
            program.scale.tell(f"weight {grams}")
            program.wait_for_reading(words)
        program.window.click("powerButton")
        program.wait_for_reading("off")
        program.scale.tell("unplug")
        program.wait_for_reading("no scale connected")

    def test_changes_are_told(self):
        program = self.start("--weight", "500")
        program.wait_for_reading("500 grams")
        # There the panel's own name waits, and what is to be said is said all the same.
        self.go_to(program.window, "500 grams")
        names = self.session.accessibility.listen_for_names()

        def told():
            """Of readings: other names, such as the time since when it is settled, are not in order
            with them."""
            return [each for each in names() if "grams" in each or "verload" in each]

        expected = []
        for grams, words in _READINGS:
            program.scale.tell(f"weight {grams}")
            expected.append(_SAID.get(words, words))
            wait_until(lambda: told() == expected, lambda: f"{expected}, not {told()}")
            # Nor is it told once more.
            program.wait_for_polls(5)
            self.assertEqual(told(), expected)

    def test_a_name_is_told_when_it_changes(self):
        program = self.start("--weight", "20000")
        program.wait_for_reading("overload")
        program.wait_for_polls(4)
        names = self.session.accessibility.listen_for_names()
        program.wait_for_polls(8)
        self.assertEqual(names(), [])

    def test_unit_is_the_same_everywhere(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        for row, words in GRAM_SCALE_AT_1234.items():
            if row not in ENABLED_ROWS["KV-A100"]:
                self.assertFalse(program.window.widget(row).is_enabled)
                continue
            program.window.click(row)
            program.wait_for_reading(words)
            self.assertEqual([each for each in ALL_ROWS if program.window.widget(each).is_checked],
                             [row])
            items = program.window.widget("unitMenu").descendants()
            self.assertEqual([each.name for each in items if each.is_checked],
                             [program.window.widget(row).name])

    def test_tab_goes_in_reading_order(self):
        program = self.start("--unplugged")
        window = program.window
        window.press("")
        # Before any key, so that none is still on its way while another focus is waited for.
        stops = [wait_until(window.focused_name, "a focus")]
        for _ in _STOPS:
            window.press("Tab")
            stops.append(wait_until(lambda: self.focus_other_than(window, stops[-1]),
                                    "another focus"))
        self.assertEqual(stops.pop(), stops[0])
        first = stops.index(_STOPS[0])
        self.assertEqual(stops[first:] + stops[:first], _STOPS)

    def go_to(self, window, name):
        """By the Tab key. With a scale there are more stops than without one, but not twice as many."""
        window.press("")
        stop = wait_until(window.focused_name, "a focus")
        for _ in range(2 * len(_STOPS)):
            if stop == name:
                return
            window.press("Tab")
            stop = wait_until(lambda former=stop: self.focus_other_than(window, former),
                              "another focus")
        self.fail(f"{name} has no focus")

    @staticmethod
    def focus_other_than(window, former):
        name = window.focused_name()
        return name if name != former else None

    def test_keyboard_alone_weighs(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        for key, words in (("ctrl+1", "43.5 ounces"), ("ctrl+2", "2 pounds 11.5 ounces"),
                           ("ctrl+3", "2 pounds 11 1/2 ounces"), ("ctrl+5", "1234 grams"),
                           ("ctrl+h", "1234 grams, on hold"), ("ctrl+h", "1234 grams"),
                           ("ctrl+t", "0 grams"), ("alt+p", "off")):
            program.window.press(key)
            program.wait_for_reading(words)

    def test_assistive_technology_chooses_as_a_click_does(self):
        program = self.start("--weight", "1234")
        program.wait_for_reading("1234 grams")
        program.window.widget("rg1").act("Toggle")
        program.wait_for_reading("43.5 ounces")


if __name__ == "__main__":
    harness.main()
