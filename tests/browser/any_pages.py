# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Pages with fields for a weight that no carrier's names fit. Each notes on its document element the
events that reached it, by the field's name; a page in a frame tells them to the one around it."""

import itertools

OTHER_SITE = "https://www.market.example"

_visits = itertools.count(73101)

_EVENTS = """
<script>
    const {dataset} = document.documentElement;
    addEventListener("contextmenu", ({isTrusted}) => {
        dataset.menus = `${dataset.menus ?? ""}${isTrusted ? "trusted" : "made up"};`;
    }, {capture: true});
    const note = (field, value, type) => {
        const events = JSON.parse(dataset.events ?? "[]");
        events.push([field, type]);
        dataset.events = JSON.stringify(events);
        dataset.framed = value;
    };
    for (const type of ["input", "change"]) {
        addEventListener(type, (event) => {
            const [field] = event.composedPath();
            note(field.name ?? "text", field.value, type);
            if (parent !== window)
                parent.postMessage([field.name, field.value, type], "*");
        }, {capture: true});
    }
    addEventListener("message", ({data}) => Array.isArray(data) && note(...data));
</script>
"""


def _component(mode):
    return """
<weight-box></weight-box>
<script>
    customElements.define("weight-box", class extends HTMLElement {
        connectedCallback() {
            const root = this.attachShadow({mode: "%s"});
            root.innerHTML = '<label>Crate (kg) <input name="boxed-%s"></label>';
            window.inner = root.querySelector("input");
        }
    });
</script>""" % (mode, mode)


def _framed(source):
    return f'<iframe src="{source}" width="400" height="80" style="border: 0"></iframe>'


# Version 2 has another id, another label and another place for the same field.
_SHOP = {
    1: '<form><p><label>Weight in kg <input id="w1" name="shipWeight" placeholder="0.5"></label></p>'
       '<p><label>Zip <input name="zip"></label></p></form>',
    2: '<main><div class="new"><h2>Your parcel</h2><label for="parcel-w">Parcel weight in kg</label>'
       '<div><input id="parcel-w" name="shipWeight" placeholder="0.5"></div></div></main>'
       '<p><label>Zip <input name="zip"></label></p>',
}

_LATE = """
<div id="place"></div>
<script>
    setTimeout(() => {
        place.innerHTML = '<label>Late weight, kg <input name="lateWeight"></label>';
    }, 700);
</script>"""

_SINGLE = """
<nav><button id="toOrders" onclick="show('orders')">Orders</button>
<button id="toParcel" onclick="show('parcel')">Parcel</button></nav>
<div id="view"></div>
<script>
    const views = {
        orders: '<p><label>Quantity <input name="quantity"></label></p>',
        parcel: '<p><label>Weight of parcel (kg) <input name="appWeight"></label></p>',
    };
    function show(name) {
        history.pushState(null, "", "/any/single");
        document.getElementById("view").innerHTML = views[name];
    }
    document.getElementById("view").innerHTML = views.parcel;
</script>"""

# As an application has it whose pages are behind the "#": a field of each has the same label, and no
# name.
_ROUTES = """
<div id="view"></div>
<script>
    const view = document.getElementById("view");
    function show() {
        const kept = location.hash.startsWith("#/named") ? ' name="routed"' : "";
        view.innerHTML = `<h1>${location.hash}</h1><label>Weight (kg) <input${kept}></label>`;
    }
    addEventListener("hashchange", show);
    show();
</script>"""

# A word more with each key, as an editor has it that completes what is written.
_COMPLETED = """
<div contenteditable id="text">Weight:</div>
<script>
    const text = document.getElementById("text");
    text.addEventListener("input", () => setTimeout(() => {
        getSelection().getRangeAt(0).insertNode(document.createTextNode(" net"));
        getSelection().collapseToEnd();
    }));
</script>"""

# Without names that say a unit. Each row's second and third field are one weight, or its first and second.
_ROWS = """
<p>Count <input name="i1"> Pounds <input name="a1"> Ounces <input name="b1"></p>
<p>Count <input name="i2"> Weight <input name="a2"> lbs <input name="b2"> oz</p>
<p>Count <input name="i3"> Pounds <input name="a3"> Ounces <input name="b3"> Zip <input name="j3"></p>
<p>Weight <input name="a4"> lbs <input name="b4"> oz Zip <input name="j4"></p>
<p>Weight <input name="a5"> lbs <input name="b5"> oz <input name="j5" aria-label="Zip"></p>
<p>Pounds <input name="a6"> Ounces <input name="b6"> (max. 150 lbs)</p>
<table><tr><td>Count</td><td><input name="i7"></td><td>Pounds</td><td><input name="a7"></td>
<td>Ounces</td><td><input name="b7"></td></tr></table>"""

# Each field in a shadow tree of its own, with its unit in it or around it.
_APART = """
<p><one-box label="Pounds" name="a1"></one-box><one-box label="Ounces" name="b1"></one-box></p>
<p>Weight <one-box name="a2"></one-box> lbs <one-box name="b2"></one-box> oz</p>
<p><one-box label="Pounds" name="a3" closed></one-box><one-box label="Ounces" name="b3" closed></one-box></p>
<script>
    window.boxed = {};
    customElements.define("one-box", class extends HTMLElement {
        connectedCallback() {
            const root = this.attachShadow({mode: this.hasAttribute("closed") ? "closed" : "open"});
            root.innerHTML = "<div><label></label> <input></div>";
            root.querySelector("label").textContent = this.getAttribute("label") ?? "";
            root.querySelector("input").name = this.getAttribute("name");
            boxed[this.getAttribute("name")] = root.querySelector("input");
        }
    });
</script>"""

# A page that works out what both of its fields mean, and one that keeps a record of its own and shows that.
_TOTAL = """
<form onchange="total.textContent += ` ${this.a.value * 16 + Number(this.b.value)}`">
Weight <input name="a"> lbs <input name="b"> oz</form><output id="total"></output>"""
_RECORD = """
<form>Weight <input name="a"> lbs <input name="b"> oz</form><output id="total"></output>
<script>
    const record = {a: "", b: ""};
    const form = document.forms[0];
    form.addEventListener("input", ({target}) => {
        record[target.name] = target.value;
        for (const name of ["a", "b"])
            form[name].value = record[name];
        total.textContent = JSON.stringify(record);
    });
</script>"""

# Its form is for the next parcel then. Neither of the two sites sees a click in the other one.
_NEXT = """<p><button id="next" onclick="frames[0].postMessage('next', '*')">Next</button></p>"""
_FRAMED_WEIGHT = """
<label>Framed weight (kg) <input name="framedWeight" style="position: absolute; left: 10px; top: 10px;
width: 200px; height: 40px"></label>
<script>
    addEventListener("message", ({data}) => {
        if (data === "next")
            document.querySelector("input").value = "";
    });
</script>"""

# The key is one.
_CLOSING = '<label>Weight (kg) <input name="closing" onkeydown="this.disabled = true"></label>'

_UNADDRESSED = """
<iframe width="400" height="80" style="border: 0"></iframe>
<script>
    document.querySelector("iframe").srcdoc = `<!doctype html>
        <label>Framed weight (kg) <input name="framedWeight" style="position: absolute; left: 10px; top:
        10px; width: 200px; height: 40px" oninput="parent.postMessage(
        [this.name, this.value, 'input'], '*')"></label>`;
</script>"""

_BODIES = {
    "shop": lambda version: _SHOP[version],
    "pair": lambda _: '<p>Weight <input name="pounds" size="4"> lbs <input name="ounces" size="4"> oz</p>',
    "open": lambda _: _component("open"),
    "closed": lambda _: _component("closed"),
    "framed": lambda _: _framed("/any/inner"),
    "two": lambda _: '<p><label>First (kg) <input name="first" autofocus></label></p>'
                     '<p><label>Second (kg) <input name="second"></label></p>',
    "kept-cursor": lambda _: '<p><label>First (kg) <input name="first"></label></p>'
                             '<p><label>Second (kg) <input name="second"'
                             ' onmousedown="event.preventDefault()"></label></p>',
    "twins": lambda _: _framed("/any/inner") + "<br>" + _framed("/any/inner"),
    "unlike-twins": lambda _: _framed("/any/inner") + "<br>" + _framed(f"{OTHER_SITE}/any/inner"),
    "routes": lambda _: _ROUTES,
    "area": lambda _: '<textarea id="text" name="text" rows="3" cols="30">Weight:</textarea>',
    "completed": lambda _: _COMPLETED,
    "framed-other": lambda _: _framed(f"{OTHER_SITE}/any/inner"),
    "inner": lambda _: _FRAMED_WEIGHT,
    "next": lambda _: _NEXT + _framed("/any/inner"),
    "next-other": lambda _: _NEXT + _framed(f"{OTHER_SITE}/any/inner"),
    "rows": lambda _: _ROWS,
    "apart": lambda _: _APART,
    "total": lambda _: _TOTAL,
    "record": lambda _: _RECORD,
    # A field of ounces behind one of pounds would be its other half.
    "tenths": lambda _: '<p><label>A (oz) <input name="whole" type="number" step="1"></label></p>'
                        '<p><label>B (oz) <input name="digits" pattern="[0-9]+"></label></p>'
                        '<p><label>C (lb) <input name="step" type="number" step="0.1"></label></p>'
                        '<p><label>D (lb) <input name="pattern" pattern="[0-9]+([.][0-9])?"></label></p>'
                        '<p><label>E (lb) <input name="fine" type="number" step="0.001"></label></p>'
                        '<p><label>F (lb) <input name="money" pattern="[0-9]+[.][0-9]{2}"></label></p>',
    "editable": lambda _: '<div contenteditable id="text">Weight:</div>',
    "number": lambda _: '<label>Weight (lb) <input name="stepped" type="number" min="0" max="70"'
                        ' step="0.1"></label><label>Letter (g) <input name="small" type="number"'
                        ' max="50"></label>',
    "numbers": lambda _: "".join(f"<p><label>{label} <input {rest}></label></p>" for label, rest in (
        ("A (lb)", 'name="exponent" type="number" step="1e-3"'),
        ("B (lb)", 'name="begun" type="number" min="0.05" step="0.5"'),
        ("C (lb)", 'name="valued" type="number" value="0.25" step="1"'),
        ("D (lb)", 'name="any" type="number" step="any" lang="de"'),
        ("E (lb)", 'name="free" type="number"'),
        ("F (g)", 'name="least" type="number" min="2000"'),
        ("G (lb)", 'name="grouped" placeholder="1,000"'),
        ("H (lb)", 'name="both" placeholder="1,234.50"'),
        ("I (lb)", 'name="comma" placeholder="0,500"'),
        ("J (lb)", 'name="groups" pattern="[0-9,]+"'),
        ("K (lb)", 'name="own" lang="fr"'),
        ("L (lb)", 'name="two" pattern="[0-9]+,[0-9]{2}"')))
        + '<form><label>M (lb) <input name="whole" type="number"></label></form>'
        '<form novalidate><label>N (lb) <input name="unheld" type="number"></label></form>'
        '<p><label>O (g) <input name="shown" onchange="this.value = Number(this.value)'
        ".toLocaleString('en')\"></label></p>",
    "german": lambda _: '<label>Gewicht (lb) <input name="gewicht"></label>'
                        '<p><label>Kurz (lb) <input name="kurz" maxlength="4"></label></p>',
    "renamed": lambda _: '<label>Weight (kg) <input name="renamedWeight"'
                         f' id="field-{next(_visits)}"></label>',
    "similar": lambda _: '<p><label>Weight <input></label></p><p><label>Weight <input></label></p>',
    "similar-later": lambda version: "".join(
        f'<p><label>Gross <input name="{"gross" if version == 1 else f"brut{number}"}"></label></p>'
        for number in range(version)),
    "units": lambda _: '<p><label>Mass <input name="listed"></label> <select name="unit">'
                       '<option value="LBS">lb</option><option value="KGS" selected>kg</option></select>'
                       '</p><div><input name="suffixed"><span>oz</span></div>'
                       '<p><input name="held" placeholder="grams"></p>'
                       '<p><label>Plain <input name="plain"></label></p>'
                       '<p><label>Plain 2 <input name="ship_weight_lbs"></label></p>',
    # What names a unit, and what only looks like it.
    "words": lambda _: '<p><label>A <input name="example" placeholder="e.g. 2.5"></label></p>'
                       '<p><label>B <input name="gross" title="G.W. (kg)"></label></p>'
                       '<p><label>C <input name="glued" placeholder="0.5kg"></label></p>'
                       '<p><label>D <input name="sized"></label> <select><option>Letter up to 50 g'
                       '</option></select></p>'
                       '<p><label>E (max. 150 lbs) <input name="limited"></label> <select><option>lb'
                       '</option><option selected>kg</option></select></p>'
                       # Lists that the page has built itself.
                       '<p><label>F <input name="beside"></label><input role="combobox" readonly size="1">'
                       '<span>kg</span></p><div><label>G <input name="inside"></label>'
                       '<input readonly size="4" value="kg"></div>'
                       '<p>H <input name="behind" size="4"> kg <input name="h1" size="4"> x'
                       ' <input name="h2" size="4"> cm</p>'
                       # Limits in another unit than the field's.
                       '<p><label>I in kg (max. 66 lb) <input name="capped"></label></p>'
                       '<p><label>J (max. 150 lbs) <input name="ended" size="4"></label> kg</p>'
                       '<p>K in kg <input name="reaching" placeholder="up to 70 lbs"></p>'
                       '<p>L (max. 150 lbs) <input name="rowed" size="4"> kg Zip'
                       ' <input name="l1" size="4"></p>'
                       '<p>M <input name="followed" size="4"> kg Postal code of the receiver'
                       ' <input name="m1" size="4"></p>',
    "forms": lambda _: '<form>Pounds <input name="a"></form><form>Ounces <input name="b"></form>',
    # Where another field's text stands in front of the weight's, or in its label.
    "letters": lambda _: '<p><textarea rows="1">Dear Ann, </textarea> <input name="area"> kg</p>'
                         '<div><div contenteditable>Dear Ann, </div><input name="editable"> kg</div>'
                         '<label>Box <span contenteditable>Dear Ann, </span>'
                         '<input name="labelled"> kg</label>',
    "limits": lambda _: '<textarea id="text" name="text" maxlength="10">Weight:</textarea>',
    "unwilling": lambda _: '<textarea id="text" name="text" oninput="this.value = \'Weight:\'">'
                           'Weight:</textarea>',
    "anew": lambda _: '<div id="place"><label>Weight (kg) <input name="anew"'
                      ' onchange="place.innerHTML = place.innerHTML"></label></div>',
    "reworded": lambda version: "".join(
        f'<p><label>{label} <input{rest}></label></p>' for label, rest in (
            (("Weight (kg)", ""), ("Mass of the box", ' name="value"')) if version == 1 else
            (("Weight limit (kg)", ""), ("Price", ' name="value"')))),
    "table": lambda _: '<table><tr><td>Pounds</td><td><input name="pounds"></td><td>Ounces</td>'
                       '<td><input name="ounces"></td></tr></table>',
    "never": lambda _: '<p><label>C <input name="card" autocomplete="billing cc-number"></label></p>'
                       '<p><label>N <input name="number" autocomplete="CC-NUMBER"></label></p>'
                       '<p><label>R <input name="fixed" readonly></label></p>'
                       '<p><label>D <input name="date" type="date"></label></p>'
                       '<p><label>E <input name="mail" type="email"></label></p>'
                       # The last, as a browser's list of passwords covers what is below.
                       '<p><label>P <input name="password" type="password"></label></p>',
    "closing": lambda _: _CLOSING,
    "veiled": lambda version: '<label>Weight (kg) <input name="veiled"%s></label>' % (
        {1: "", 2: ' style="opacity: 0"', 3: " disabled", 4: " readonly"}[version]),
    "doubled": lambda version: "<p><label>Weight <input></label></p>" * version,
    "unaddressed": lambda _: _UNADDRESSED,
    "late": lambda _: _LATE,
    "single": lambda _: _SINGLE,
}

NAMES = tuple(_BODIES)
# Whose next version is not the same with another look.
_HAVE_VERSIONS = ("shop", "similar-later", "reworded", "veiled", "doubled")


def page(path, query):
    """The document, None if there is no such page: /any/NAME?version=2"""
    name = path.removeprefix("/any/")
    if path != f"/any/{name}" or name not in _BODIES:
        return None
    version = int(query.get("version", ["1"])[0])
    language = "de" if name == "german" else "en"
    body = _BODIES[name](version)
    if version > 1 and name not in _HAVE_VERSIONS:
        body = in_version_2(body)
    return (f'<!doctype html><html lang="{language}"><head><meta charset="utf-8"><title>{name}</title>'
            f"</head><body>{_EVENTS}{body}</body></html>")


def in_version_2(body):
    """In another place, with another id and a word more in each label. A frame's page is in version 2 as
    well."""
    changed = (body.replace("<label>", "<label>Parcel: ").replace("/any/inner", "/any/inner?version=2")
               .replace("<input ", f'<input id="new-{next(_visits)}-x" '))
    return f'<main><div class="new"><h2>Your parcel</h2>{changed}</div></main>'
