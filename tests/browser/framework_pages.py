# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Pages whose forms belong to a framework or a library, and one with a carrier's field names as it
was seen on its rate page.

`frameworks/pages` has their scripts; `frameworks/install` makes them. Each page notes on its document
element what it has come to know of each field (`known`), and each event that reached it (`events`).
"""

import html
import os
import pathlib

# Where each place of a page is mounted by which script.
SCRIPTS = {
    "react": "react", "react-hook-form": "react-hook-form", "preact": "preact",
    "vue": "vue", "vue-lazy": "vue", "vue-number": "vue", "svelte": "svelte", "solid": "solid",
    "angular": "angular", "imask-number": "imask", "imask-pattern": "imask",
    "jquery": "jquery", "jquery-mask": "jquery", "jquery-mask-two-decimals": "jquery",
    "jquery-keyup": "jquery",
}

# Of UPS, each gets the exported weight; only the first is written twice.
FIELDS = ("weight", *(f"weight{number}" for number in range(1, 11)),
          *(f"weights{number}" for number in range(1, 6)))

_EVENTS = """
<script>
    const events = [];
    for (const type of ["input", "change"]) {
        addEventListener(type, (event) => {
            events.push([event.target.name, type]);
            document.documentElement.dataset.events = JSON.stringify(events);
        }, {capture: true});
    }
</script>
"""

_RATES = """
<form>
  <label>Packaging <select name="packageType"><option>Your packaging</option></select></label>
  <label><input type="radio" name="weightType" value="total"> Total weight</label>
  <label><input type="radio" name="weightType" value="perPackage" checked> Weight of each</label>
  <p><label>Weight <input type="text" name="perPackageWeight" maxlength="6"
    onkeyup="this.value = this.value.replace(/[^0-9.]/g, '')"></label>
  <select name="weightUnit"><option value="lbs">lb</option><option value="kgs">kg</option></select></p>
  <p><label>First of several <input name="psdData.mpsRowDataList[0].weight"></label></p>
  <p><label>Shipment <input name="aryShipmentWeight[0]" maxlength="4"></label></p>
  <output id="rate"></output>
</form>
<script>
    const known = {};
    document.forms[0].addEventListener("change", ({target}) => {
        (known[target.name] ??= []).push(target.value);
        document.documentElement.dataset.known = JSON.stringify(known);
        document.getElementById("rate").textContent =
            `A rate for ${target.value} ${document.forms[0].weightUnit.value}`;
    });
</script>
"""


def page(path, version=1):
    """The document, None if there is no such page: /frameworks/NAME[,NAME...] or /rates. In version 2 the
    fields have another place."""
    if path == "/rates":
        return _document("rates", _RATES)
    names = path.removeprefix("/frameworks/").split(",")
    if not all(name in SCRIPTS for name in names):
        return None
    places = "".join(f'<p data-framework="{name}" data-name="{field}"></p>'
                     for name, field in zip(names, FIELDS, strict=False))
    scripts = "".join(f'<script src="/frameworks/{each}.js"></script>'
                      for each in dict.fromkeys(SCRIPTS[name] for name in names))
    if version > 1:
        places = f"<main><h2>Your parcel</h2><div>{places}</div></main>"
    return _document(path, places + scripts)


def script(path):
    """Of a framework's pages; None if there is no such script."""
    name = path.removeprefix("/frameworks/").removesuffix(".js")
    if path != f"/frameworks/{name}.js" or name not in SCRIPTS.values():
        return None
    return (pathlib.Path(os.environ["POSTAL_SCALE_FRAMEWORKS"]) / f"{name}.js").read_text("utf-8")


def _document(title, body):
    return (f'<!doctype html><html lang="en"><head><meta charset="utf-8">'
            f"<title>{html.escape(title)}</title></head><body>{_EVENTS}{body}</body></html>")
