# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The kinds of pages and fields that the table in browser/README.md tells of, by the name that they
have there."""

import dataclasses

SHOP = "https://www.shop.example"
OTHER_SITE = "www.market.example"
PLAIN_SERVER = "http://127.0.0.1"  # without encryption, at the site's own port

_INPUT = "document.querySelector('input')"
_FRAMED = "(document.documentElement.dataset.framed ?? '')"
_ALL = "[...document.querySelectorAll('input')].map(({value}) => value).join(' ').trim()"

# At the cursor 1 kg, remembered 2 kg, in the next version too, and 0.5 kg at the next visit.
_KILOGRAMS = ("1", "2", "0.5")
_POUNDS = ("2.205", "4.409", "1.102")
_COMMA = ("2,205", "4,409", "1,102")
_TENTHS = ("2.3", "4.5", "1.2")
_PAIR = ("2 4", "4 7", "1 2")


def named(name):
    return f"document.getElementsByName('{name}')[0]"


@dataclasses.dataclass
class Kind:
    page: str
    element: str = _INPUT
    texts: tuple = _KILOGRAMS
    shown: str = ""  # of the element, its value
    is_framed: bool = False
    site: str = "www.shop.example"
    is_knowing: bool = False  # the page has a framework, which is to know
    # As it was when it was remembered, if that is not possible any more.
    before: "Kind | None" = None
    route: str = ""
    version: int = 1
    # Where the browser itself has no item for it.
    has_item: bool = True

    def __post_init__(self):
        self.shown = self.shown or (_FRAMED if self.is_framed else f"{self.element}.value")

    def address(self, **query):
        base = self.page if self.page.startswith("http") else f"{SHOP}{self.page}"
        if self.version > 1:
            query = {"version": self.version} | query
        asked = "&".join(f"{name}={value}" for name, value in query.items())
        return f"{base}?{asked}{self.route}" if asked else base + self.route


def _any(name, *arguments, **options):
    return Kind(f"/any/{name}", *arguments, **options)


def _framework(name):
    return Kind(f"/frameworks/{name}", named("weight"), _POUNDS, is_knowing=True)


def _never(name, **options):
    return _any("never", named(name), _POUNDS, **options)


def kinds(port):
    """@param port of the site itself"""
    return {
        "plain": _any("shop", named("shipWeight")),
        "pounds and ounces": _any("pair", named("ounces"), _PAIR, _ALL),
        "decimal comma": _any("german", named("gewicht"), _COMMA),
        "`type=number` with step and maximum": _any("number", named("stepped"), _TENTHS),
        "React": _framework("react"),
        "Angular reactive form": _framework("angular"),
        "Vue": _framework("vue"),
        "custom element, open": _any("open", "inner"),
        "custom element, closed": _any("closed", "inner"),
        "another id at each visit": _any("renamed", named("renamedWeight")),
        "a field that comes late": _any("late", named("lateWeight")),
        "one-page application": _any("single", named("appWeight")),
        "the same, with routes behind the `#`, its fields without names": _any("routes", route="#/parcel"),
        "frame of the same site": _any("framed", is_framed=True),
        "frame of another site": _any("framed-other", is_framed=True, site=OTHER_SITE),
        "one field in two frames": _any("twins", is_framed=True,
                                        before=_any("framed", is_framed=True)),
        "two fields that look the same": _any(
            "doubled", "document.querySelectorAll('input')[1]", _POUNDS, _ALL, version=2,
            before=_any("doubled", _INPUT, _POUNDS)),
        "editable text": _any("editable", "document.getElementById('text')", ("Weight:2.205 lb",),
                              "document.getElementById('text').textContent"),
        "`textarea`": _any("area", "document.getElementById('text')", ("Weight:2.205 lb",)),
        "card": _never("card"),
        "address of mail": _never("mail"),
        "password": _never("password", has_item=False),
        "read-only": _never("fixed", has_item=False),
        "date": _never("date", has_item=False),
        "disabled meanwhile": _any("closing", named("closing"), has_item=False),
        "hidden": _any("veiled", version=2, before=_any("veiled")),
        "page without https": Kind(f"{PLAIN_SERVER}:{port}/any/shop", named("shipWeight")),
        "frame without an address of its own": _any("unaddressed", is_framed=True),
    }
