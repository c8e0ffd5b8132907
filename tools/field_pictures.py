#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Writes what a person sees of the weight in any field: field_pictures.py FOLDER

any-field-BROWSER.png is the menu, ask-BROWSER.png the browser's question for the site, and
permissions-BROWSER.png what its own page says of the extension. The form is made up here.
"""

import os
import pathlib
import sys

from browser_harness import KV_C300, Surroundings
from hands import ALWAYS_ITEM, PUT_ITEM, Hands
from harness import Program
from waiting import wait_until

PAGE = "https://www.shop.example/any/shop"
FIELD = "document.getElementById('w')"

FORM = """
<style>
  body { margin: 0; background: #f3f1ec; color: #2a2723; font: 17px/1.5 system-ui, sans-serif; }
  header { background: #3a5a40; color: white; padding: 10px 32px; font-size: 22px; }
  form { display: grid; grid-template-columns: 120px 230px; gap: 10px 16px; padding: 20px 32px; }
  input { font: inherit; padding: 4px 8px; border: 1px solid #a8a294; border-radius: 4px; }
</style>
<header>Sell an article (an example)</header>
<form>
  <label>Article</label><input value="Teapot">
  <label for="w">Weight, kg</label><input name="articleWeight" id="w">
</form>
"""


def take(surroundings, file, area="800x740+0+0"):
    surroundings.session.output_of("import", "-window", "root", "-crop", area, "+repage", str(file))
    print(file)


def take_menu_and_question(surroundings, folder, name):
    page, hands = surroundings.page, Hands(surroundings.session, surroundings.browser)
    page.go(PAGE)
    page.evaluate(f"void (document.body.innerHTML = `{FORM}`)")
    surroundings.session.output_of("wmctrl", "-r", "shop", "-b",
                                   "remove,maximized_vert,maximized_horz")
    surroundings.session.output_of("wmctrl", "-r", "shop", "-e", "0,0,0,800,740")
    surroundings.session.output_of("wmctrl", "-a", "shop")
    wait_until(lambda: page.evaluate("innerWidth") < 900, "its width")
    hands.focus(page, FIELD)
    with hands.menu(page, FIELD, PUT_ITEM):
        take(surroundings, folder / f"any-field-{name}.png")
    wait_until(lambda: page.evaluate(f"{FIELD}.value") == "1.234", "the weight")
    surroundings.browser.act_and_allow(
        lambda: hands.choose(page, FIELD, ALWAYS_ITEM),
        before_allowing=lambda: take(surroundings, folder / f"ask-{name}.png"))


def take_permissions(surroundings, file):
    page = surroundings.browser.permissions_page()
    take(surroundings, file)
    page.close()


def main():
    folder = pathlib.Path(sys.argv[1])
    name = os.environ["POSTAL_SCALE_BROWSER"]
    with Surroundings.for_all_tests():
        shared = Surroundings.shared
        program = Program(shared.session, settings=KV_C300)
        program.wait_for_polls()
        shared.session.output_of("xdotool", "windowmove", program.window.id, "800", "300")
        program.scale.tell("weight 1234")
        program.wait_for_polls(5)
        take_menu_and_question(shared, folder, name)
        take_permissions(shared, folder / f"permissions-{name}.png")
        program.kill()


if __name__ == "__main__":
    main()
