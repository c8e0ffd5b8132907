# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The link is set up in a user's folders, and taken back."""

import json
import os
import pathlib
import subprocess
import tempfile
import unittest

HOST = pathlib.Path(os.environ["POSTAL_SCALE_BIN"]) / "postal-scale-browser-host"
REGISTER = pathlib.Path(__file__).parents[2] / "browser" / "register"

HOST_FOLDERS = (
    ".config/chromium/NativeMessagingHosts",
    ".config/google-chrome/NativeMessagingHosts",
    ".mozilla/native-messaging-hosts",
)


class RegisterTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        for each in HOST_FOLDERS:
            (self.home / each).mkdir(parents=True)
            (self.home / each / "org.example.other.json").write_text("{}", encoding="ascii")
            (self.home / each).with_name("Preferences").write_text("kept", encoding="ascii")

    def register(self, *arguments):
        subprocess.run([REGISTER, HOST, *arguments], check=True, stdout=subprocess.DEVNULL,
                       env=os.environ | {"HOME": str(self.home),
                                         "XDG_CONFIG_HOME": str(self.home / ".config")})

    def files(self):
        return {str(each.relative_to(self.home)): each.is_file() and each.read_text("utf-8")
                for each in self.home.rglob("*")}

    def test_remove_takes_away_what_was_put_there_and_nothing_else(self):
        before = self.files()
        self.register()
        added = {name: text for name, text in self.files().items() if before.get(name) != text}
        self.assertEqual(set(added),
                         {f"{folder}/org.postalscale.browser.json" for folder in HOST_FOLDERS})
        for text in added.values():
            self.assertEqual(json.loads(text)["path"], str(HOST.resolve()))
        self.register("--remove")
        self.assertEqual(self.files(), before)

    def test_remove_without_a_link(self):
        before = self.files()
        self.register("--remove")
        self.assertEqual(self.files(), before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
