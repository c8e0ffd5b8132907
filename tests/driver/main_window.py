# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The program's window as a person meets it: what it says, and a mouse to click with."""

import pathlib
import subprocess
import xml.etree.ElementTree

from waiting import wait_until

WINDOW_FILE = pathlib.Path(__file__).parents[2] / "resources" / "MainWindow.ui"

_ROLES = {
    "QCheckBox": "check box",
    "QComboBox": "combo box",
    "QLabel": "label",
    "QMenu": "menu item",
    "QPushButton": "push button",
    "QRadioButton": "radio button",
}

# From the left edge of a control: on its words or its mark, however wide the layout makes it.
_NEAR_LEFT = 10
_ASIDE = 50


class WindowFile:
    """The texts of the window file by object name, so that the tests need not repeat them."""

    def __init__(self):
        root = xml.etree.ElementTree.parse(WINDOW_FILE).getroot()
        self._elements = {each.get("name"): each
                          for tag in ("widget", "action") for each in root.iter(tag)}

    def role(self, object_name):
        return _ROLES.get(self._elements[object_name].get("class"), "menu item")

    def text(self, object_name):
        """Without mnemonics."""
        for key in ("text", "title"):
            text = self.property(object_name, key)
            if text is not None:
                return text.replace("&", "")
        raise LookupError(f"{object_name} has no text")

    def property(self, object_name, key):
        return self._elements[object_name].findtext(f"./property[@name='{key}']/string")


class MainWindow:
    def __init__(self, session, accessible, window_id):
        self._session = session
        self._accessible = accessible
        self._file = WindowFile()
        self._found = {}
        self.id = window_id

    @property
    def title(self):
        return self._accessible.name

    @property
    def extents(self):
        return self._accessible.extents

    @property
    def panel_extents(self):
        return self._described("imageBox", "accessibleDescription").extents

    @property
    def reading(self):
        """The panel in words."""
        return self._described("imageBox", "accessibleDescription").name

    @property
    def status(self):
        """The connection status, None if no label says one."""
        texts = ("Scale connected", "Scale not connected")
        label = next(self._labels(lambda each: each.name in texts), None)
        return label and label.name

    @property
    def export(self):
        """The export label."""
        return self._described("lbLBL", "toolTip").name

    @property
    def last_option(self):
        caption = self.widget("optionLbl").extents
        (label,) = self._labels(lambda each: each.extents.x > caption.x
                                and abs(each.extents.y - caption.y) < caption.height)
        return label.name

    def says(self, words):
        """Whether some label holds these words."""
        return self.label_that_says(words) is not None

    def label_that_says(self, words):
        return next(self._labels(lambda each: words in each.name), None)

    def widget(self, object_name):
        if object_name not in self._found:
            self._found[object_name] = self._find(
                self._file.role(object_name),
                lambda each: each.name == self._file.text(object_name), object_name)
        return self._found[object_name]

    @property
    def shows_option_box(self):
        return self.widget("checkOnTop").is_showing

    def click(self, object_name):
        self.click_widget(self.widget(object_name))

    def click_twice(self, first, second):
        """In far less than the 0.4 s after which the option box answers to a click."""
        self._session.pointer_clicks(*(_hit(self.widget(each)) for each in (first, second)))

    def click_widget(self, accessible):
        wait_until(lambda: _has_its_place(accessible), f"{accessible.name} showing")
        self._session.pointer_clicks(_hit(accessible))

    def choose_from_menu(self, menu, title):
        """@param menu object name; @param title the item's text"""
        self.click(menu)
        self._click_in_popup(self.menu_item(menu, title))

    def choose_option_from_menu(self, object_name):
        self.choose_from_menu("optionsMenu", self._file.text(object_name))

    def menu_item(self, menu, title):
        return next(each for each in self.widget(menu).descendants() if each.name == title)

    def option_menu_item(self, object_name):
        return self.menu_item("optionsMenu", self._file.text(object_name))

    def choose_model(self, model):
        """From the pop-up."""
        self.click_widget(self.model_box)
        (choices,) = self.model_box.children
        # Its items always say that they are showing.
        wait_until(lambda: choices.is_showing, "the list of models")
        self._click_in_popup(next(each for each in choices.children if each.name == model))

    @property
    def model_box(self):
        if "optionButton" not in self._found:
            self._found["optionButton"] = self._find("combo box", lambda each: True, "the models")
        return self._found["optionButton"]

    def all_accessibles(self):
        return list(self._accessible.descendants())

    def focused_name(self):
        focused = self._accessible.focused()
        return focused and focused.name

    def press(self, key):
        """@param key empty: only gives the window the keyboard"""
        keys = ["key", key] if key else []
        self._session.output_of("xdotool", "windowfocus", "--sync", self.id, *keys)

    def close(self):
        """By the window manager's close button."""
        subprocess.run(["wmctrl", "-i", "-c", self.id], env=self._session.environment, check=True)

    def _click_in_popup(self, item):
        wait_until(lambda: _has_its_place(item), f"{item.name} in an open pop-up")
        # Aside of the place of the click that opened it, which would pass for a double click.
        place = item.extents
        self._session.pointer_clicks((place.x + _ASIDE, place.y + place.height // 2))

    def _labels(self, matches):
        return self._accessible.descendants_that(
            lambda each: each.role == "label" and each.is_showing and matches(each))

    def _described(self, object_name, key):
        """Of a label whose name is what it says just now."""
        if object_name not in self._found:
            description = self._file.property(object_name, key)
            self._found[object_name] = self._find(
                "label", lambda each: each.description == description, object_name)
        return self._found[object_name]

    def _find(self, role, matches, what):
        found = next(self._accessible.descendants_that(
            lambda each: each.role == role and matches(each)), None)
        if found is None:
            raise LookupError(f"{what} is not in the window")
        return found


def _has_its_place(accessible):
    """Whether it is to be seen, and its layout is done: it no longer moves from one turn of the
    program's event loop to the next."""
    return accessible.is_showing and accessible.extents == accessible.extents


def _hit(accessible):
    place = accessible.extents
    return place.x + min(_NEAR_LEFT, place.width // 2), place.y + place.height // 2
