# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Pages with the carriers' field names, written for these tests."""

import html
import pathlib

_EXTENSION = pathlib.Path(__file__).parents[2] / "browser" / "extension"

# A page that has a button to continue sends this along with its fields.
SUBMITTED = "submitted"

ROWS = ("02", "05", "08", "11", "14")
ROWS_OF_TWO_BOXES = ("02", "05", "08")

USPS_POUND_BOXES = (
    "ctl00$ContentPlaceHolder1$TextBoxPounds",
    "shippingWeightInPounds",
    "ctl00$maincontent$txtPounds",
)
USPS_OUNCE_BOXES = (
    "ctl00$ContentPlaceHolder1$TextBoxOunces",
    "shippingWeightInOunces",
    "ctl00$maincontent$txtOunces",
)
USPS_LABEL_BOXES = ("cnsCartList[0].labelPkg.pounds", "cnsCartList[0].labelPkg.ounces")

# Whole pounds only; the other fields of the page get the exported weight.
UPS_POUND_FIELDS = (
    "formbean.shipping.weight",
    "formbean.packageBean.weight",
    "shipmentWeight",
    "packageBean.weight",
)
UPS_EXPORT_FIELDS = (
    "weight", "shipmentBean.weight", "estimateShipmentWeight",
    *(f"weight{number}" for number in range(1, 11)),
    "TotalWeight00", "shipmentBean.dimWeight",
    *(f"weights{number}" for number in range(1, 6)),
    "approxWeight", "totalWeight",
)

FEDEX_POUNDS_FIELD = "psdData.mpsRowDataList[0].weight"
FEDEX_EXPORT_FIELDS = (
    "perPackageWeight",
    *(f"aryShipmentWeight[{number}]" for number in range(6)),
    *(f"arrayWeight[{number}]" for number in range(5)),
)


def row_box(row):
    return f"ctl00$ContentPlaceHolder1$ctl{row}$TextBoxWeight"


def second_row_box(row):
    return row_box(row) + "_2"


def _document(title, body, language):
    return (f'<!doctype html><html lang="{html.escape(language)}"><head><meta charset="utf-8">'
            f"<title>{html.escape(title)}</title></head><body><form>{body}</form></body></html>")


def _box(name, value=""):
    return (f'<label>{html.escape(name)} <input name="{html.escape(name)}" '
            f'value="{html.escape(value)}"></label><br>')


def _unit_buttons(row, chosen):
    start = f"ctl00_ContentPlaceHolder1_ctl{row}"
    return "".join(
        f'<label><input type="radio" name="unit{row}" id="{start}_ctl0{number}"'
        f'{" checked" if chosen == unit else ""}>{unit}</label>'
        for number, unit in ((1, "ounces"), (2, "pounds")))


def _usps_boxes(_):
    return "".join(map(_box, USPS_POUND_BOXES + USPS_OUNCE_BOXES))


def _usps_rows(query):
    """Query: `without`, `filled`, `ounces`, `pounds`, each a list of rows; `single` for rows that
    lack their second box, `filled_2` for rows whose second box is filled."""
    lists = {key: value[0].split(",") for key, value in query.items()}
    body = ""
    for row in ROWS:
        if row in lists.get("without", ()):
            continue
        body += _box(row_box(row), "7" if row in lists.get("filled", ()) else "")
        if row in ROWS_OF_TWO_BOXES and row not in lists.get("single", ()):
            body += _box(second_row_box(row), "7" if row in lists.get("filled_2", ()) else "")
        chosen = next((unit for unit in ("ounces", "pounds") if row in lists.get(unit, ())), None)
        body += _unit_buttons(row, chosen) + "<br>"
    return body


def _usps_label(query):
    checked = " checked" if "weigh" in query else ""
    return (f'<input type="radio" name="flatRate" id="flatRateNo"{checked}>'
            + "".join(map(_box, USPS_LABEL_BOXES)))


def _ups(_):
    return "".join(map(_box, UPS_POUND_FIELDS + UPS_EXPORT_FIELDS))


def _fedex(_):
    return "".join(map(_box, (FEDEX_POUNDS_FIELD,) + FEDEX_EXPORT_FIELDS))


def _twins(_):
    return _box("weight") + _box("weight")


def _shapes(_):
    return (_box("weight") + _box("empty") + _box("blank", " ")
            + '<input type="password" name="secret" value="open sesame">'
              '<input type="file" name="file"><p name="paragraph" id="plain">Text</p>'
              '<input type="checkbox" id="choice"><input type="checkbox" id="chosen" checked>')


_FRAMEWORK = """
<script>
    const box = document.getElementsByName("weight")[0];
    const inBox = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, "value");
    let known = "";
    // What the page's own scripts write is no news to it.
    Object.defineProperty(box, "value", {
        get() { return inBox.get.call(this); },
        set(value) { known = String(value); inBox.set.call(this, value); },
    });
    document.body.addEventListener("input", (event) => {
        if (event.target !== box || inBox.get.call(box) === known)
            return;
        known = inBox.get.call(box);
        document.getElementById("changes").textContent += "*";
        document.getElementById("known").textContent = known;
    });
</script>
"""


def _taken_names(_):
    """Elements are properties of the page's global object, by id and some by name."""
    names = ("browser", "chrome", "connect", "connectPostalScale", "port", "run")
    return _box("weight") + "".join(
        f'<p id="{name}"></p><img name="{name}" alt="">' for name in names)


def _taken_frame(_):
    return _box("weight") + '<iframe name="chrome"></iframe>'


def _framework(_):
    return _box("weight") + '<output id="known">nothing</output><output id="changes"></output>' + _FRAMEWORK


_EVENTS = """
<script>
    const events = [];
    for (const type of ["input", "change"]) {
        document.addEventListener(type, (event) => {
            events.push([type, event.target.name, event.target.value]);
            document.documentElement.dataset.events = JSON.stringify(events);
        });
    }
</script>
"""


def _events(_):
    return _box("weight") + _box("weight1") + _EVENTS


def _postback(_):
    """Sends itself at each change, and comes back empty."""
    return _box("weight") + """
<script>
    document.forms[0].addEventListener("change", (event) => event.target.form.submit());
</script>
"""


def _remade(_):
    """Replaces its field at each change, as a server's part of a page does. A star for each."""
    return '<div id="place"></div><button type="button" id="next">Next</button><p id="made"></p>' + """
<script>
    const make = () => { document.getElementById("place").innerHTML = '<input name="weight">'; };
    const again = () => {
        make();
        document.getElementById("made").textContent += "*";
    };
    make();
    document.getElementById("place").addEventListener("change", again);
    document.getElementById("next").addEventListener("click", again);
</script>
"""


def _remade_pair(query):
    """Replaces both its fields at each change; with `keep` each with the text of the one before."""
    return '<div id="place"></div>' + _EVENTS + """
<script>
    const names = ["weight", "weight1"];
    const make = (texts) => {
        document.getElementById("place").innerHTML =
            names.map((name, index) => `<input name="${name}" value="${texts[index]}">`).join("");
    };
    make(["", ""]);
    document.addEventListener("change", () => {
        make(names.map((name) => %s ? document.getElementsByName(name)[0].value : ""));
    });
</script>
""" % ("true" if "keep" in query else "false")


def _repainting(_):
    """Shows two decimals of what it was told, and does so anew with each key in the other field."""
    return _box("weight") + '<input name="note" id="note">' + _EVENTS + """
<script>
    const box = document.getElementsByName("weight")[0];
    let known = "";
    document.addEventListener("input", ({target}) => {
        if (target === box)
            known = Number(box.value).toFixed(2);
        box.value = known;
    });
</script>
"""


def _shows(query):
    """Whatever is put into one of its fields, that shows its own text of the query, in its language."""
    kind = html.escape(query.get("type", ["text"])[0])
    return "".join(
        f'<p lang="{html.escape(language)}"><input name="weight{number or ""}" step="any" type="{kind}"'
        f' data-text="{html.escape(text)}"></p>'
        for number, (language, text) in enumerate(zip(query["lang"], query["text"], strict=True))) + """
<script>
    document.addEventListener("input", ({target}) => { target.value = target.dataset.text; });
</script>
"""


def _waiting(_):
    """At its first change it waits for a page that does not come."""
    return _box("weight") + _box("weight1") + """
<script>
    document.addEventListener("change", () => {
        const request = new XMLHttpRequest();
        request.open("GET", "/empty?slow", false);
        request.send();
    }, {once: true});
</script>
"""


def _on_input(change):
    """A page that makes `change` of what was typed into it."""
    return _box("weight") + ("<script>document.getElementsByName('weight')[0].addEventListener("
                             f"'input', (event) => {{ const box = event.target; {change} }});</script>")


def _masked(_):
    """Two decimals, which it puts in by itself; whole numbers stay."""
    return _on_input("if (box.value.includes('.'))"
                     " box.value = String(Number(box.value.replace('.', '')) / 100);")


def _late(_):
    """Paints its own text once its event is over."""
    return _on_input("queueMicrotask(() => { box.value = String(Math.floor(box.value)); });")


def _unit(_):
    return _on_input("box.value += ' lb';")


def _comma(_):
    return _on_input("box.value = box.value.replace('.', ',');")


def _two_numbers(_):
    return _on_input("box.value += ' lb 4 oz';")


def _thousandfold(_):
    """Writes a thousand times as much, in groups."""
    return _on_input("box.value += ',000.0';")


def _reloading(_):
    """Loads itself anew at each change."""
    return ('<input name="weight" autocomplete="off">'
            "<script>document.forms[0].addEventListener('change', () => location.reload());</script>")


def _resetting(_):
    """Empties itself at each change, as a person might do, and sends itself then."""
    return _box("weight") + """
<script>
    document.forms[0].addEventListener("change", (event) => {
        const form = event.target.form;
        form.reset();
        form.submit();
    });
</script>
"""


def _list(_):
    return '<select name="weight"><option>1<option>2<option>3</select>'


def _slider(_):
    return '<input type="range" name="weight" min="0" max="10" step="1">'


_LINK = """
    let deliver = null;
    window.chrome = {runtime: {connect: () => ({
        onMessage: {addListener(listener) { deliver = listener; }},
        onDisconnect: {addListener() {}},
        postMessage() {},
        disconnect() {},
    })}};
"""

_INSTRUMENTS = """
    const ROWS = ["02", "05", "08", "11", "14"];
    let seen = [];
    let meddle = () => {};

    // A field is looked at before it is written: that counts as part of the writing. And what is
    // asked twice in a row is one question.
    function see(line) {
        if (line.startsWith("write ") && seen.at(-1) === "read " + line.split(" ")[1])
            seen.pop();
        if (!line.startsWith("read ") || seen.at(-1) !== line)
            seen.push(line);
    }

    function instrument(prototype, property, read, write) {
        const own = Object.getOwnPropertyDescriptor(prototype, property);
        Object.defineProperty(prototype, property, {
            get() { read(this); return own.get.call(this); },
            set(value) { write(this, value); own.set.call(this, value); },
        });
    }

    const inputs = HTMLInputElement.prototype;
    instrument(inputs, "value", ({name}) => see(`read ${name}`), (element, value) => {
        see(`write ${element.name} ${value}`);
        meddle(element);
    });
    instrument(inputs, "checked", ({id}) => see(`checked ${id}`), () => {});
    for (const [method, word] of [["getElementsByName", "name"], ["getElementById", "id"]]) {
        const own = Document.prototype[method];
        Document.prototype[method] = function (key) {
            see(`${word} ${key}`);
            return own.call(this, key);
        };
    }
    const box = (name, part) =>
        part === 0 ? "" : `<input name="${name}" value="${part === 2 ? "" : "7"}">`;
    const button = (id, part) =>
        part === 0 ? "" : `<input type="checkbox" id="${id}"${part === 2 ? " checked" : ""}>`;

    function build(states) {
        document.body.innerHTML = ROWS.map((row, index) => {
            const digits = [0, 1, 2, 3].map((place) => Math.floor(states[index] / 3 ** place) % 3);
            const main = `ctl00$ContentPlaceHolder1$ctl${row}$TextBoxWeight`;
            const start = `ctl00_ContentPlaceHolder1_ctl${row}`;
            return box(main, digits[0]) + box(`${main}_2`, digits[1]) +
                   button(`${start}_ctl01`, digits[2]) + button(`${start}_ctl02`, digits[3]);
        }).join("") + button("flatRateNo", states[5]);
    }

    function fill(states, steps) {
        build(states);
        seen = [];
        deliver({id: 1, steps, quiet: true, toldBefore: null});
        return seen;
    }

    function hashOf(text) {
        let hash = 2166136261;
        for (let index = 0; index < text.length; ++index)
            hash = Math.imul(hash ^ text.charCodeAt(index), 16777619);
        return hash >>> 0;
    }

    /** The first case that goes another way, and how it went; else the number of cases. */
    function compare(steps, cases) {
        for (const [...numbers] of cases) {
            const expected = numbers.pop();
            const lines = fill(numbers, steps);
            if (hashOf(lines.map((line) => line + "\\n").join("")) !== expected)
                return JSON.stringify({numbers, lines});
        }
        return cases.length;
    }
"""


def _own_script(start):
    """The extension's script as a script of the page's own, which then sees all that it does."""
    scripts = "".join(f"<script>{(_EXTENSION / name).read_text(encoding='utf-8')}</script>"
                      for name in ("numbers.js", "page.js"))
    return f"<script>{_LINK}{start}</script>{scripts}"


def _transcript(_):
    return _own_script(_INSTRUMENTS)


_OUTLINES = """
    let shadow = null;
    const attach = Element.prototype.attachShadow;
    Element.prototype.attachShadow = function (options) {
        return shadow = attach.call(this, options);
    };
    function fill(...names) {
        deliver({id: 1, quiet: false, toldBefore: null, steps: names.map(
            (name) => `document.getElementsByName('${name}')[0].value=2`)});
    }

    /** The number of outlines beside the badge's own box; none before the badge is there. */
    function outlines() {
        return shadow && [...shadow.querySelectorAll("div")].filter(
            (box) => box.style.border !== "").length;
    }
"""


def _outlines(_):
    return ('<input name="weight"><input type="hidden" name="weight1">'
            '<input name="weight2" style="display: none"><input name="weight3" style="opacity: 0">'
            '<input name="weight4" style="visibility: hidden">'
            '<input name="weight5" style="width: 0; padding: 0; border: 0">'
            '<p style="height: 5000px"></p>' + _own_script(_OUTLINES))


def _empty(_):
    return "<p>Nothing to fill in.</p>"


_RECORDER = """
<script>
    const written = [];
    const recorded = new URLSearchParams(location.search).get("record");
    document.addEventListener("input", (event) => {
        if (event.target.name !== recorded)
            return;
        written.push([Date.now() / 1000, event.target.value]);
        document.documentElement.dataset.written = JSON.stringify(written);
    });
</script>
"""


_BODIES = {
    "/usps-boxes": _usps_boxes,
    "/usps-rows": _usps_rows,
    "/usps-label": _usps_label,
    "/ups": _ups,
    "/fedex": _fedex,
    "/twins": _twins,
    "/shapes": _shapes,
    "/taken-names": _taken_names,
    "/taken-frame": _taken_frame,
    "/framework": _framework,
    "/transcript": _transcript,
    "/events": _events,
    "/postback": _postback,
    "/remade": _remade,
    "/remade-pair": _remade_pair,
    "/repainting": _repainting,
    "/shows": _shows,
    "/waiting": _waiting,
    "/outlines": _outlines,
    "/masked": _masked,
    "/late": _late,
    "/unit": _unit,
    "/comma": _comma,
    "/two-numbers": _two_numbers,
    "/thousandfold": _thousandfold,
    "/reloading": _reloading,
    "/resetting": _resetting,
    "/list": _list,
    "/slider": _slider,
    "/empty": _empty,
}


def page(path, query):
    """The document, None if there is no such page. `title` in the query names its window, `record`
    a field: the page keeps the time and the text of each input into it, `lang` the page's language.
    With `continue` there is a button that sends the form, and that brings the same page once more."""
    make_body = _BODIES.get(path)
    if make_body is None:
        return None
    body = make_body(query) + (_RECORDER if "record" in query else "")
    if "continue" in query or SUBMITTED in query:
        body += f'<button name="{SUBMITTED}">Continue</button>'
    return _document(query.get("title", [path])[0], body, query.get("lang", ["en"])[0])
