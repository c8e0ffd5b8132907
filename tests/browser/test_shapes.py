# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the extension does with a text, whoever sends it."""

from browser_harness import SLOW_START, BrowserTest
from program_stand_in import ProgramStandIn
from waiting import wait_until

UPS = "https://www.ups.com"
BOX = "document.getElementsByName('weight')[0].value"
OTHER_BOX = "document.getElementsByName('weight1')[0].value"

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


def number_of(fields):
    """What a fill that changes so many fields answers, where the page leaves them alone."""
    return (fields, 0)


class ShapesTest(BrowserTest):
    def setUp(self):
        self.stand_in = ProgramStandIn(self.session)
        self.addCleanup(self.stand_in.close)
        self.stand_in.open(self.page, UPS + "/shapes", "www.ups.com")

    def value(self, name="weight"):
        return self.values(self.page, [name])[name]

    def assert_answers(self, question, yes):
        """By what is written then: the answer itself is not told."""
        self.stand_in.fill(question, {"text": f"{BOX}=1", "if": [0], "unless": []},
                           {"text": f"{BOX}=2", "if": [], "unless": [0]})
        self.assertEqual(self.value(), "1" if yes else "2")

    def test_numbers(self):
        for literal, expected in NUMBERS.items():
            with self.subTest(literal):
                self.assertEqual(self.stand_in.fill(f"{BOX}={literal}"), number_of(1))
                self.assertEqual(self.value(), expected)

    def test_everything_else_changes_nothing(self):
        self.stand_in.fill(f"{BOX}=5")
        for literal in NO_NUMBERS:
            with self.subTest(literal):
                self.assertEqual(self.stand_in.fill(f"{BOX}={literal}"), number_of(0))
                self.assertEqual(self.value(), "5")

    def test_other_shapes_are_refused(self):
        for text in REFUSED:
            with self.subTest(text):
                self.assertEqual(self.stand_in.fill(text), number_of(0))
        self.assertIs(self.page.evaluate("document.getElementById('choice').checked"), False)

    def test_steps_of_another_kind_are_passed_over(self):
        self.assertEqual(self.stand_in.fill(
            None, 7, [], {}, {"text": None}, {"text": f"{BOX}=5", "if": "0"},
            {"text": f"{BOX}=6", "if": 7}, f"{BOX}=8"), number_of(1))
        self.assertEqual(self.value(), "8")

    def test_missing_fields(self):
        self.assertEqual(
            self.stand_in.fill("document.getElementsByName('none')[0].value=1",
                               "document.getElementsByName('paragraph')[0].value=1",
                               "document.getElementsByName('file')[0].value=1"), number_of(0))
        for question in ("document.getElementsByName('none')[0].value",
                         "document.getElementsByName('paragraph')[0].value",
                         "document.getElementById('none').checked",
                         "document.getElementById('plain').checked"):
            with self.subTest(question):
                self.assert_answers(question, False)

    def test_answers(self):
        for question, yes in (("document.getElementsByName('empty')[0].value", True),
                              ("document.getElementsByName('blank')[0].value", False),
                              ("document.getElementsByName('secret')[0].value", False),
                              ("document.getElementById('choice').checked", False),
                              ("document.getElementById('chosen').checked", True)):
            with self.subTest(question):
                self.assert_answers(question, yes)

    def test_conditions(self):
        """On all of several answers; on none that has not been given."""
        yes, no = ("document.getElementById('chosen').checked",
                   "document.getElementById('choice').checked")
        for if_answers, unless, done in (([0], [1], True), ([0, 1], [], False), ([], [0], False),
                                         ([], [1], True), ([0], [0], False), ([2], [], False),
                                         ([], [2], False), ([-1], [], False)):
            with self.subTest(if_answers=if_answers, unless=unless):
                self.assertEqual(self.stand_in.fill(
                    yes, no, {"text": f"{BOX}=3", "if": if_answers, "unless": unless}, yes),
                    number_of(int(done)))

    def test_notes(self):
        """Of the steps that were due, whatever came of them; of the others not a word."""
        yes, no = ("document.getElementById('chosen').checked",
                   "document.getElementById('choice').checked")

        def noted(text, **conditions):
            return {"text": text, "note": True} | conditions

        answer = self.stand_in.run(
            yes, no, noted(f"{BOX}=1", unless=[0]), noted(f"{BOX}=2", **{"if": [0]}),
            {"text": f"{BOX}=3", "if": [0]}, noted(f"{BOX}=4", **{"if": "0"}), noted("alert(1)"),
            {"text": f"{BOX}=5", "note": 1}, noted(f"{BOX}=6", **{"if": [1]}),
            noted("document.getElementsByName('none')[0].value=1", unless=[1]))
        self.assertEqual(answer["notes"], [1, 3, 5])
        self.assertEqual(self.stand_in.run(yes)["notes"], [])

    def test_a_field_that_is_written_twice_counts_once(self):
        self.assertEqual(self.stand_in.fill(f"{BOX}=1", f"{BOX}=2"), number_of(1))

    def test_navigation_during_a_fill(self):
        """The plan is for a page that is not there any more."""
        left = self.stand_in.page
        self.stand_in.open(self.page, "https://www.usps.com/shapes", "www.usps.com")
        entered, self.stand_in.page = self.stand_in.page, left
        self.assertIsNone(self.stand_in.fill(f"{BOX}=5"))
        self.assertEqual(self.value(), "")
        self.stand_in.page = entered
        self.assertEqual(self.stand_in.fill(f"{BOX}=6"), number_of(1))
        self.assertEqual(self.value(), "6")

    def test_only_the_current_page_is_served(self):
        self.stand_in.page = self.stand_in.page | {"page": self.stand_in.page["page"] + 1}
        self.assertIsNone(self.stand_in.fill(f"{BOX}=5"))


class OptionsPageTest(BrowserTest):
    def test_the_link_line_follows_the_link(self):
        options = self.options_page()
        stand_in = ProgramStandIn(self.session)
        self.wait_for_text(options, "link", "Linked to Postal Scale 9.9.")
        stand_in.close()
        self.wait_for_text(options, "link",
                           "Postal Scale is not running, or not linked to this browser.")

    def test_origins_that_name_no_site(self):
        """A user may have let the extension into all sites at once."""
        options = self.options_page()
        for origin, shown in (("https://ship.example.com/*", "ship.example.com"),
                              ("https://*.example.com/*", "*.example.com"),
                              ("https://*/*", "https://*/*"), ("<all_urls>", "<all_urls>")):
            with self.subTest(origin):
                self.assertEqual(options.evaluate(
                    f"(window.wrappedJSObject ?? window).siteOf('{origin}')"), shown)

    def test_permissions_that_cover_a_site(self):
        options = self.options_page()
        for origin, covered in (("https://ship.example.com/*", True), ("https://*/*", True),
                                ("*://*/*", True), ("<all_urls>", True),
                                ("https://*.example.com/*", True), ("https://*.ample.com/*", False),
                                ("https://example.com/*", False), ("http://*/*", False)):
            with self.subTest(origin):
                self.assertIs(options.evaluate(
                    f"(window.wrappedJSObject ?? window).covers('{origin}', 'ship.example.com')"),
                    covered)

    def wait_for_text(self, page, element, start):
        text = f"document.getElementById('{element}').textContent"
        wait_until(lambda: page.evaluate(text).startswith(start),
                   lambda: f"{start!r} in {element}; it says {page.evaluate(text)!r}", SLOW_START)


class NextProgramTest(BrowserTest):
    """What a page answers to a program that is gone is nothing to the next one."""

    def setUp(self):
        self.site.hold_slow_pages()
        self.addCleanup(self.site.answer_slow_pages)
        self.stand_in = ProgramStandIn(self.session)
        self.stand_in.open(self.page, UPS + "/waiting", "www.ups.com")

    def start_next_program(self):
        """While the page is busy with the last plan of this one."""
        self.stand_in.post(f"{BOX}=5")
        self.assertTrue(self.site.wait_for_slow_page(SLOW_START))
        self.stand_in.close()
        self.stand_in = ProgramStandIn(self.session)
        self.addCleanup(self.stand_in.close)
        self.stand_in.wait_for_page("www.ups.com")

    def test_an_answer_to_what_it_never_posted(self):
        for _ in range(2):
            self.stand_in.run("document.title")
        self.start_next_program()
        self.site.answer_slow_pages()
        self.assertEqual(self.stand_in.fill(f"{BOX}=6"), number_of(1))
        self.assertFalse(self.stand_in.has_more_to_read())

    def test_plans_of_the_same_number(self):
        self.start_next_program()
        self.stand_in.post(f"{BOX}=6", f"{OTHER_BOX}=6")
        self.site.answer_slow_pages()
        self.assertEqual(self.stand_in.wait_for_answer()["fields"], {"written": 2, "changed": 0})
        self.assertFalse(self.stand_in.has_more_to_read())


class OtherProtocolTest(BrowserTest):
    def test_it_is_said_and_nothing_is_told(self):
        stand_in = ProgramStandIn(self.session, protocol=1)
        self.addCleanup(stand_in.close)
        self.page.go(UPS + "/ups")
        options = self.options_page()
        said = wait_until(lambda: options.evaluate("document.getElementById('link').textContent"),
                          "the options page's first line")
        self.assertIn("do not fit each other", said)
        self.assertFalse(stand_in.has_more_to_read())
