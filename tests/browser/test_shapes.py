# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the extension does with a text, whoever sends it."""

from browser_harness import BrowserTest, main
from program_stand_in import ProgramStandIn
from waiting import wait_until

UPS = "https://www.ups.com"
BOX = "document.getElementsByName('weight')[0].value"

NUMBERS = {
    "0": "0", "36.000000": "36", "1.000": "1", "2.204": "2.204", "2.": "2", ".5": "0.5",
    "-3": "-3", "1e3": "1000", "99990": "99990",
}
NO_NUMBERS = ("", " 1", "010", "1 lb", "1,5", "+1", "0x10", "--1", "NaN", "Infinity", "'1'", "1;2",
              "alert(1)", "document.title")

REFUSED = (
    "1+1",
    "alert(1)",
    "document.title",
    "document.getElementsByName('weight')[1].value",
    "document.getElementsByName('weight')[0].value;1",
    "document.getElementsByName('weight')[0].innerHTML=1",
    "document.getElementsByName('weight')[0].value.length",
    'document.getElementsByName("weight")[0].value',
    "document.getElementsByName('weight'+'1')[0].value",
    "document.getElementsByName('\\x77eight')[0].value",
    "window.document.getElementsByName('weight')[0].value",
    " document.getElementsByName('weight')[0].value",
    "document.getElementsByName('weight')[0].value\n",
    "document.getElementById('choice').checked=true",
    "document.getElementById('choice').click()",
    "document.getElementById('choice').value",
)


class ShapesTest(BrowserTest):
    def setUp(self):
        self.program = ProgramStandIn(self.session)
        self.addCleanup(self.program.close)
        self.page.go(UPS + "/shapes")
        self.program.wait_for_page("www.ups.com")

    def test_numbers(self):
        for literal, expected in NUMBERS.items():
            with self.subTest(literal):
                self.assertEqual(self.program.run(f"{BOX}={literal}", BOX)[1], expected)

    def test_everything_else_changes_nothing(self):
        self.program.run(f"{BOX}=5")
        for literal in NO_NUMBERS:
            with self.subTest(literal):
                self.assertEqual(self.program.run(f"{BOX}={literal}", BOX), [None, "5"])

    def test_other_shapes_are_refused(self):
        for text in REFUSED:
            with self.subTest(text):
                self.assertEqual(self.program.run(text), [None])
        self.assertIs(self.page.evaluate("document.getElementById('choice').checked"), False)

    def test_missing_fields(self):
        self.assertEqual(
            self.program.run("document.getElementsByName('none')[0].value",
                             "document.getElementsByName('none')[0].value=1",
                             "document.getElementById('none').checked",
                             "document.getElementById('plain').checked",
                             "document.getElementsByName('paragraph')[0].value=1",
                             "document.getElementsByName('file')[0].value=1"), [None] * 6)

    def test_values(self):
        self.assertEqual(
            self.program.run("document.getElementsByName('empty')[0].value",
                             "document.getElementById('choice').checked",
                             "document.getElementById('chosen').checked"), ["", "0", "1"])

    def test_long_values_are_cut(self):
        (value,) = self.program.run("document.getElementsByName('long')[0].value")
        self.assertTrue(0 < len(value) < 1000)

    def test_only_the_current_page_is_served(self):
        self.program.page = self.program.page | {"page": self.program.page["page"] + 1}
        self.assertIsNone(self.program.run(BOX))

    def test_input_events_are_an_option(self):
        self.assertEqual(self.heard_events(), [])
        options = self.browser.options_page()
        options.evaluate("void document.getElementById('inputEvents').click()")
        options.close()
        self.program.wait_for_page("www.ups.com")
        wait_until(self.heard_events, "an input event")
        self.assertEqual(self.page.evaluate("document.getElementById('heard').textContent"),
                         "weight=6")

    def heard_events(self):
        self.program.run(f"{BOX}=6")
        heard = self.page.evaluate("document.getElementById('heard').textContent")
        return [heard] if heard else []


class OtherProtocolTest(BrowserTest):
    def test_it_is_said_and_nothing_is_told(self):
        program = ProgramStandIn(self.session, protocol=2)
        self.addCleanup(program.close)
        self.page.go(UPS + "/ups")
        options = self.browser.options_page()
        said = wait_until(lambda: options.evaluate("document.getElementById('link').textContent"),
                          "the options page's first line")
        self.assertIn("do not fit each other", said)
        self.assertFalse(program.has_more_to_read())


if __name__ == "__main__":
    main()
