# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What is handed to the browsers' stores is what they ask for."""

import json
import os
import pathlib
import struct
import subprocess
import unittest
import zipfile

STORE = pathlib.Path(os.environ["POSTAL_SCALE_STORE"])
LINTER = os.environ["POSTAL_SCALE_LINTER"]

# browser/store/README.md has the reasons.
EXPLAINED = ["KEY_FIREFOX_ANDROID_UNSUPPORTED_BY_MIN_VERSION"]


def archive(browser):
    (found,) = STORE.glob(f"postal-scale-*-{browser}.zip")
    return found


def manifest(browser):
    with zipfile.ZipFile(archive(browser)) as opened:
        return json.loads(opened.read("manifest.json"))


CARRIERS = ["https://*.usps.com/*", "https://*.ups.com/*", "https://*.fedex.com/*"]
ALL_SITES = ["https://*/*"]  # of which the browser asks for each

# Whatever speaks of permissions or hosts.
ALLOWED = {
    "chromium": {
        "permissions": ["nativeMessaging", "scripting", "storage", "activeTab", "contextMenus"],
        "host_permissions": CARRIERS,
        "optional_host_permissions": ALL_SITES,
        "content_scripts": [{"matches": CARRIERS, "js": ["early.js"], "run_at": "document_start"}],
    },
    "firefox": {
        "permissions": ["nativeMessaging", "scripting", "storage", "activeTab", "menus", *CARRIERS],
        "optional_permissions": ALL_SITES,
    },
}
# What else a manifest may have.
HARMLESS = {"manifest_version", "name", "version", "description", "icons", "background", "action",
            "browser_action", "browser_specific_settings", "commands", "options_ui",
            "minimum_chrome_version"}


class StoreTest(unittest.TestCase):
    def test_no_further_permission(self):
        for browser, allowed in ALLOWED.items():
            with self.subTest(browser):
                self.assertEqual({key: value for key, value in manifest(browser).items()
                                  if key not in HARMLESS}, allowed)

    def test_mozillas_linter(self):
        output = subprocess.run([LINTER, "--output", "json", archive("firefox")],
                                capture_output=True, text=True, check=False).stdout
        report = json.loads(output)
        self.assertEqual(report["errors"], [])
        self.assertEqual(report["notices"], [])
        self.assertEqual([each["code"] for each in report["warnings"]], EXPLAINED)

    def test_nothing_is_collected(self):
        settings = manifest("firefox")["browser_specific_settings"]["gecko"]
        self.assertEqual(settings["data_collection_permissions"], {"required": ["none"]})

    def test_the_chrome_store_gives_the_key(self):
        self.assertNotIn("key", manifest("chromium"))

    def test_icons_have_their_sizes(self):
        for browser in ("chromium", "firefox"):
            icons = manifest(browser)["icons"]
            self.assertEqual(set(icons), {"16", "48", "128"})
            with zipfile.ZipFile(archive(browser)) as opened:
                for size, name in icons.items():
                    picture = opened.read(name)
                    self.assertEqual(picture[:8], b"\x89PNG\r\n\x1a\n")
                    self.assertEqual(struct.unpack(">II", picture[16:24]), (int(size), int(size)))

    def test_every_file_that_is_named_is_there(self):
        for browser in ("chromium", "firefox"):
            own = manifest(browser)
            background = own["background"]
            named = {*own["icons"].values(), own["options_ui"]["page"], "page.js", "numbers.js", "help.html",
                     *background.get("scripts", [background.get("service_worker")]),
                     *(name for each in own.get("content_scripts", []) for name in each["js"]),
                     *(f"anyfield/{name}.js" for name in (
                         "aim", "field", "fit", "follow", "list", "put", "puts", "recipes", "signs",
                         "text", "unit", "write"))}
            with zipfile.ZipFile(archive(browser)) as opened:
                self.assertLessEqual(named, set(opened.namelist()))


if __name__ == "__main__":
    unittest.main(verbosity=2)
