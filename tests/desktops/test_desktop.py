# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What a person meets on a desktop; POSTAL_SCALE_DESKTOP names it."""

import os
import subprocess

import harness
import nobody
from desktops import chosen_desktop
from harness import LogLines, Program, binaries
from main_window import MainWindow, WindowFile
from paste_field import COPY_KEY, FOREIGN_TEXT, TITLE
from waiting import wait_until

FIELD = ("/usr/bin/python3", "-B", __file__.replace("test_desktop.py", "paste_field.py"))

ON_TOP = 100
CLIPBOARD = 300

GLASS_ASPECT = 592 / 232
"""As the display is drawn; it may be wider, but never higher."""

CLIPBOARD_WORKS = "ok  Clipboard: can be written at every reading"
ON_TOP_WORKS = "ok  On top: the window manager does it"

ABOUT = "About Postal Scale"

LEFT = "1.234 has left"
REFUSED = ("The desktop does not let the window write the clipboard; fields that are switched on "
           "get 1.234 all the same")

PANEL = WindowFile().property("imageBox", "accessibleDescription")
NOTICES = ("does not let programs keep a window on top", "does not keep windows on top")
NOT_RAISED = "The desktop has not brought its window to the front"
CLIPBOARD_NOTICE = "lets only the front window write the clipboard"


def setUpModule():
    # Some desktops are nothing for root.
    if os.getuid() == 0:
        nobody.become_nobody()


class DesktopProgram(Program):
    """Started as the user's menu starts it: the platform is the program's own choice."""

    def __init__(self, session, **options):
        super().__init__(session, environment={"QT_QPA_PLATFORM": ""}, **options)

    def _find_window(self):
        if self._emulator.poll() is not None:
            raise AssertionError(f"the program did not start:\n{self.log.tail()}")
        # A shell shows objects of that name too, for its task bar.
        windows = [each for each in self._session.accessibility.showing_windows()
                   if each.name.startswith("Postal Scale")
                   and next(each.descendants_that(lambda part: part.description == PANEL), None)]
        if len(windows) != 1 or not self._session.window_titled(windows[0].name):
            return None
        return MainWindow(self._session, windows[0], None)


class DesktopTest(harness.DeviceTest):
    @classmethod
    def setUpClass(cls):
        cls.session = chosen_desktop()()
        cls.addClassCleanup(cls.session.close)

    def setUp(self):
        self.program = None

    def start_with(self, *tags, settings_folder=None):
        """With those options on, as they were left."""
        settings = "[defaultValue]\n" + "".join(f"{tag}=selected\n" for tag in tags)
        self.program = DesktopProgram(self.session, arguments=("--weight", "1234"),
                                      settings=None if settings_folder else settings,
                                      settings_folder=settings_folder)
        self._programs.append(self.program)
        self.addCleanup(self.program.kill)
        self.program.wait_for_reading("1234 grams")
        self.operate("--unit", "g")
        return self.program

    def open_field(self):
        field = self.session.spawn(FIELD, stdout=subprocess.PIPE, text=True)
        pasted = LogLines(field.stdout)
        self.addCleanup(pasted.finish)
        self.addCleanup(harness.end, field)
        self.session.bring_to_front(TITLE)
        return pasted

    def operate(self, *verb):
        self.session.output_of(binaries() / "postal-scale", *verb)

    def doctor(self):
        result = subprocess.run(
            [binaries() / "postal-scale", "--doctor"], env=self.session.environment, text=True,
            check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return result.stdout.splitlines()

    def wait_until_it_is_noticed(self, title):
        wait_until(lambda: self.what_is_done_with(title) is not None,
                   lambda: f"the window; in front is {self.session.active_title()!r}")
        print(self.what_is_done_with(title), flush=True)

    def what_is_done_with(self, title):
        if self.session.active_title() == title:
            return "in front"
        return "marked" if self.session.is_marked(title) else None

    def test_the_clipboard_follows_while_another_program_has_the_focus(self):
        program = self.start_with(CLIPBOARD)
        works = self.session.lets_write_clipboard
        self.assertEqual(CLIPBOARD_WORKS in self.doctor(), works)
        self.assertEqual(program.window.says(CLIPBOARD_NOTICE), not works)
        if not works:
            return
        pasted = self.open_field()
        for grams, text in ((567, "0.567"), (1000, "1"), (777, "0.777")):
            program.scale.tell(f"weight {grams}")
            pasted.wait_for(f"^{text}$", pasted.mark())
        mark = pasted.mark()
        program.wait_for_polls(8)
        steady = pasted.since(mark)
        self.assertEqual(set(steady), {"0.777"}, "each paste of a steady weight")
        # What is copied elsewhere lasts until the next reading.
        program.scale.tell("silence on")
        wait_until(lambda: program.window.says("The scale does not answer"), "the silence")
        self.session.press(COPY_KEY)
        pasted.wait_for(f"^{FOREIGN_TEXT}$", mark)
        program.scale.tell("silence off")
        pasted.wait_for("^0.777$", pasted.mark())
        self.assertEqual(self.session.active_title(), TITLE)

    def test_on_top_works_or_says_that_it_does_not(self):
        program = self.start_with()
        title = program.window.title
        self.open_field()
        said = program.window.says
        self.assertFalse(any(said(notice) for notice in NOTICES))
        program.window.widget("checkOnTop").act("Toggle")
        works = self.session.keeps_on_top
        self.assertEqual(ON_TOP_WORKS in self.doctor(), works)
        if works:
            wait_until(lambda: self.session.is_above(title, TITLE), "the window above the other")
            self.assertFalse(any(said(notice) for notice in NOTICES))
        else:
            wait_until(lambda: any(said(notice) for notice in NOTICES), "the notice")
        program.window.widget("checkOnTop").act("Toggle")
        if works:
            self.session.bring_to_front(TITLE)
            wait_until(lambda: self.session.is_above(TITLE, title), "the other above the window")
        wait_until(lambda: not any(said(notice) for notice in NOTICES), "no notice any more")

    def start_again(self):
        second = subprocess.run([binaries() / "postal-scale"], env=self.session.environment,
                                check=False, timeout=30, stderr=subprocess.PIPE, text=True)
        self.assertEqual(second.returncode, 0)
        self.assertEqual(NOT_RAISED in second.stderr, self.session.tells_of_second_start)

    def test_a_second_start_brings_the_window_to_the_front_or_marks_it(self):
        title = self.start_with().window.title
        self.open_field()
        self.session.cover(title, TITLE)
        self.start_again()
        expected = self.session.second_start
        if expected is not None:
            wait_until(lambda: self.what_is_done_with(title) == expected,
                       lambda: f"the window {expected}; it is {self.what_is_done_with(title)}")

    def test_a_second_start_leaves_an_open_box_in_front_of_the_window(self):
        if self.session.second_start != "in front":
            self.skipTest("it brings nothing to the front")
        program = self.start_with()
        program.window.menu_item("helpMenu", "About").act("Press")
        wait_until(lambda: ABOUT in self.session.windows(), "the box")
        self.open_field()
        self.start_again()
        wait_until(lambda: self.session.active_title() == ABOUT,
                   lambda: f"the box; in front is {self.session.active_title()!r}")

    def test_keys_of_the_desktop_operate_it_while_another_program_has_the_focus(self):
        if not self.session.has_keys:
            self.skipTest("nothing here has keys of its own")
        program = self.start_with()
        wait_until(lambda: program.window.says("Settled since"), "a settled weight")
        self.open_field()
        said = self.session.said_at_keys()  # by starts of other tests
        for key, answer, reading in (
                ("F6", LEFT if self.session.lets_write_clipboard else REFUSED, "1234 grams"),
                ("F7", "Hold is on", "1234 grams, on hold"),
                ("F7", "Hold is off", "1234 grams"),
                ("F8", "Ounces", "43.5 ounces"),
                ("F9", "Tare", "0.0 ounces"),
                ("F11", "The window is compact", "0.0 ounces"),
                ("F12", "Switching the scale off", "off")):
            said.append(answer)
            self.session.press(key)
            wait_until(lambda: self.session.said_at_keys() == said,
                       lambda: f"{said}; it was {self.session.said_at_keys()}")
            program.wait_for_reading(reading)
        self.assertEqual(self.session.active_title(), TITLE)

    def test_a_start_by_a_key_brings_the_window_to_the_front_or_marks_it(self):
        """With whatever token the desktop gives to what it starts."""
        if not self.session.has_keys:
            self.skipTest("nothing here has keys of its own")
        title = self.start_with().window.title
        self.open_field()
        self.session.cover(title, TITLE)
        self.session.press("F4")
        self.wait_until_it_is_noticed(title)
        if self.session.tells_of_second_start:
            wait_until(lambda: any(NOT_RAISED in said for said in self.session.said_at_keys()),
                       "a word")

    def test_its_place_and_size_come_back(self):
        """The size alone where nothing can be placed."""
        program = self.start_with()
        title = program.window.title
        first = program.window.extents
        if self.session.lets_place:
            self.session.place(title, 40, 70, first.width + 60)
            wait_until(lambda: program.window.extents.x != first.x
                       and program.window.extents.width != first.width,
                       lambda: f"another place and size than {first}")
        program.wait_for_polls(3)
        before = program.window.extents
        for _ in range(3):
            self.session.close_window(title)
            program.wait_for_end()
            program = self.start_with(settings_folder=program.settings_folder)
            program.wait_for_polls(3)
            self.assertEqual(program.window.extents, before)

    def test_a_tile_is_filled_and_its_contents_stay_together(self):
        window = self.start_with().window
        tile = self.session.tile_of(window.title)
        if tile is None:
            self.skipTest("there are no tiles here")

        def size():
            return window.extents.width, window.extents.height

        wait_until(lambda: size() == tile, lambda: f"the tile {tile} filled; it is {size()}")
        panel = window.panel_extents
        self.assertGreater(tile[1], tile[0] / 2, "higher than the window is designed")
        self.assertGreater(panel.width / panel.height, GLASS_ASPECT)
        caption = window.label_that_says("Export").extents
        self.assertLess(caption.y - panel.y - panel.height, panel.height / 4)

    def test_it_brings_its_icon(self):
        if self.session.is_wayland:
            self.skipTest("on Wayland the icon is the installed one")
        program = self.start_with()
        window = self.session.window_titled(program.window.title)
        self.assertIn("Icon (16 x 16)", self.session.run("xprop", "-id", window, "_NET_WM_ICON"))

    def test_closing_it_switches_the_scale_off(self):
        program = self.start_with()
        self.assertTrue(program.scale.state())
        self.session.close_window(program.window.title)
        self.assertEqual(program.wait_for_end(), 0)


if __name__ == "__main__":
    harness.main()
