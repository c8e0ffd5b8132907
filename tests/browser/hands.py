# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What a person's hands do in a browser's window: the pointer, the keys, the menus, the questions that
the browser asks. All of it goes through the X server, as from a mouse and a keyboard."""

import contextlib
import itertools
import operator

from waiting import wait_until

PUT_KEYS = {"chromium": "alt+w", "firefox": "alt+shift+w"}
PUT_ITEM, ALWAYS_ITEM = 0, 1

FRAME = "document.querySelector('iframe')"
INSIDE_FRAME = 60, 25  # where the pages have the field

_LARGE = 30000  # bytes of pixels; more than a tooltip has, and less than a menu

_ALLOWED = {}  # sites by profile

_PLACE = """(({element, dx, dy}) => {
    element.scrollIntoView({block: "center"});
    const {x, y, width, height} = element.getBoundingClientRect();
    const left = window.mozInnerScreenX ?? screenX + (outerWidth - innerWidth) / 2;
    const top = window.mozInnerScreenY ?? screenY + outerHeight - innerHeight;
    return [left + x + (dx ?? width / 2), top + y + (dy ?? height / 2)].map(Math.round);
})({element: %s, dx: %s, dy: %s})"""


# Before that, a browser passes over a click, though it knows of the pointer.
_PAINTED = """new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(
    () => resolve(document.readyState === "complete"))))"""


class Hands:
    def __init__(self, session, browser):
        self._session = session
        self._browser = browser
        self._allowed = _ALLOWED.setdefault(browser.home, set())

    def click(self, page, element, button=1, inside=("null", "null")):
        """@param element a script's expression for it
        @param inside of a frame: where in it, from its left upper corner"""
        x, y = page.evaluate(_PLACE % (element, *inside))
        self._session.output_of("xdotool", "mousemove", str(x), str(y), "click", str(button))

    def hover(self, page, element, inside=("null", "null")):
        """A page that has just come knows of no pointer, and passes over what it does."""
        steps = itertools.cycle((1, 0))  # as one that rests is told of once only

        def is_known():
            x, y = page.evaluate(_PLACE % (element, *inside))
            self._session.output_of("xdotool", "mousemove", str(x + next(steps)), str(y))
            return page.evaluate(f"{element}.matches(':hover')")

        wait_until(is_known, f"the pointer on {element}")

    def focus(self, page, element):
        """A page that has just come takes no click at first."""
        def click():
            self.click(page, element)
            return page.evaluate(f"{element}.getRootNode().activeElement === {element}"
                                 " && document.hasFocus()")
        wait_until(click, f"the cursor in {element}")

    def focus_frame(self, page, frame=FRAME):
        """The field in the page's frame. A frame that has just come takes no click at first."""
        def click():
            self.click(page, frame, inside=INSIDE_FRAME)
            return page.evaluate(f"document.activeElement === {frame}")
        wait_until(click, "the cursor in the frame")

    def press(self, keys):
        self._session.output_of("xdotool", "key", keys)

    def press_put_key(self):
        self.press(PUT_KEYS[self._browser.name])

    def widen(self, page, width):
        """Chromium's window, for the next one."""
        if self._browser.name == "firefox":
            return
        self._session.output_of("wmctrl", "-r", ":ACTIVE:", "-e", f"0,-1,-1,{width},600")
        wait_until(lambda: page.evaluate("outerWidth") == width, f"a window {width} wide")

    def press_toolbar_button(self, page):
        """The extension's own. Chromium has it in a menu of all extensions, as long as nobody has moved
        it out; in a window of 1100 pixels, the button of that menu is the last but two."""
        if self._browser.name == "firefox":
            self._browser.click_toolbar_button()
            return
        # The menu is white.
        page.evaluate("void (document.documentElement.style.background = 'black')")
        before = wait_until(self._dark_picture, "a dark page")
        for key in ("F10", "Left", "Left", "Return"):
            self.press(key)
        wait_until(lambda: _difference(before, self._browser.picture()) > _LARGE, "the menu")
        for key in ("Tab", "Tab", "Return"):
            self.press(key)

    def choose(self, page, element, item, inside=("null", "null")):
        """In the menu of a field. @param item one of those above"""
        with self.menu(page, element, item, inside):
            pass

    @contextlib.contextmanager
    def menu(self, page, element, item, inside=("null", "null")):
        """The same; while the menu is open with the item, the caller goes on."""
        wait_until(lambda: page.evaluate(_PAINTED), "the page painted")
        self.hover(page, element, inside)
        before = self._windows()
        self.click(page, element, button=3, inside=inside)
        menu = wait_until(lambda: self._windows() - before, "the menu")
        # The extension's items are in a menu of their own, which is the last but for Chromium's
        # "Inspect".
        for _ in range(2 if self._browser.name == "chromium" else 1):
            self.press("Up")
        self.press("Right")
        wait_until(lambda: self._windows() - before - menu, "the extension's items")
        for _ in range(item):
            self.press("Down")
        yield
        self.press("Return")
        wait_until(lambda: not (self._windows() & menu), "the menu closed")

    def always(self, page, element, site, inside=("null", "null")):
        """Chooses that item, and lets the extension into the site if the browser asks."""
        # Chromium lets it in again where it was before, though that was given back.
        if site in self._allowed:
            self.choose(page, element, ALWAYS_ITEM, inside)
        else:
            self._browser.act_and_allow(lambda: self.choose(page, element, ALWAYS_ITEM, inside))
        self._allowed.add(site)

    def note_given_back(self):
        """All sites."""
        if self._browser.name == "firefox":
            self._allowed.clear()

    def _dark_picture(self):
        picture = self._browser.picture()
        return picture if picture.count(0) > len(picture) / 2 else None

    def _windows(self):
        return set(self._session.output_of(
            "bash", "-c", "xwininfo -root -children | grep -o '^ *0x[0-9a-f]*' | while read -r w; do"
            " xwininfo -id $w | grep -q IsViewable && echo $w; done; true").split())


def _difference(one, other):
    """In bytes of pixels."""
    return sum(map(operator.ne, one, other))
