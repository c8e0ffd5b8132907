#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Writes the pictures for the browsers' stores: store_pictures.py FOLDER

The form is made up here, and no carrier's; the program fills it as it fills any.
"""

import pathlib
import sys

from browser_harness import ALL_CARRIERS, KV_C300, Surroundings
from harness import Program
from waiting import wait_until

SIZE = "1280x800+0+0"  # what the stores ask for

FORM = """
<style>
  body { margin: 0; background: #f3f1ec; color: #2a2723; font: 19px/1.5 system-ui, sans-serif; }
  header { background: #3a5a40; color: white; padding: 16px 48px; font-size: 26px; }
  form { display: grid; grid-template-columns: 170px 330px; gap: 14px 20px; padding: 32px 48px; }
  input { font: inherit; padding: 6px 10px; border: 1px solid #a8a294; border-radius: 4px; }
</style>
<header>A parcel to send (an example)</header>
<form>
  <label>To</label><input value="Ada Example">
  <label>Town</label><input value="Springfield">
  <label>Weight, lb</label><input name="weight" id="weight">
</form>
"""


def take(surroundings, file):
    surroundings.session.output_of("xdotool", "mousemove", "1279", "1023")
    surroundings.session.output_of("import", "-window", "root", "-crop", SIZE, "+repage", str(file))
    print(file)


def place(surroundings, page, title):
    """The page alone, as large as the picture; its address is this machine's own, whatever it says."""
    above = page.evaluate("outerHeight - innerHeight")
    surroundings.session.output_of("wmctrl", "-r", title, "-e", f"0,0,{-above},1280,{800 + above}")
    surroundings.session.output_of("wmctrl", "-a", title)
    wait_until(lambda: page.evaluate("innerWidth") > 1200, "its width")


def take_page(surroundings, program, file):
    session, page = surroundings.session, surroundings.page
    page.go("https://www.ups.com/empty?title=form")
    page.evaluate(f"void (document.body.innerHTML = `{FORM}`)")
    place(surroundings, page, "form")
    window = program.window.id
    session.output_of("xdotool", "windowmove", window, "350", "300")
    session.output_of("wmctrl", "-i", "-a", hex(int(window, 0)))
    program.scale.tell("weight 1234")
    program.wait_for_reading("2.72 pounds")
    wait_until(lambda: page.evaluate("document.querySelector('postal-scale-badge') !== null"),
               "the mark")
    take(surroundings, file)


def take_options(surroundings, file):
    options = surroundings.browser.options_page()
    options.evaluate("void (document.title = 'options')")
    wait_until(lambda: "options" in surroundings.session.output_of("wmctrl", "-l"), "its window")
    place(surroundings, options, "options")
    take(surroundings, file)


def main():
    folder = pathlib.Path(sys.argv[1])
    with Surroundings.for_all_tests():
        program = Program(Surroundings.shared.session, settings=KV_C300 + ALL_CARRIERS)
        program.wait_for_polls()
        program.window.click("rg4")  # decimal pounds
        take_page(Surroundings.shared, program, folder / "page.png")
        take_options(Surroundings.shared, folder / "options.png")
        program.kill()


if __name__ == "__main__":
    main()
