# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Branding and model lists that an administrator has changed: the installed file, and one of the
user's choice."""

import json
import os
import subprocess

import harness
from command_line import CommandLineTest


class InformationTest(CommandLineTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        folder = cls.session.new_folder("installed")
        subprocess.run(["cmake", "--install", harness.binaries().parent], check=True,
                       env=os.environ | {"DESTDIR": str(folder)}, stdout=subprocess.DEVNULL)
        (cls.file,) = folder.rglob("xdg/postal-scale/Info.json")
        (cls.installed_program,) = folder.rglob("bin/postal-scale")
        cls.text = cls.file.read_text(encoding="utf-8")

    def setUp(self):
        self.file.write_text(self.text, encoding="utf-8")

    def change(self):
        """As an administrator would: the first model gets another name."""
        information = json.loads(self.text)
        information["KayForUSPS"][0] = "Counter 3"
        self.file.write_text(json.dumps(information), encoding="utf-8")

    def model(self, *arguments, folders="/nowhere", program=None):
        """@param folders those of the machine's settings"""
        program = program or harness.binaries() / "postal-scale"
        command = ["env", f"XDG_CONFIG_DIRS={folders}", program, "--print", "--json", *arguments]
        return self.run_with_scale(command=command).report["model"]

    def test_what_is_installed_is_what_is_built_in(self):
        self.assertEqual(self.model(folders=self.file.parents[1]), self.model())

    def test_the_installed_file_counts(self):
        self.change()
        self.assertEqual(self.model(folders=self.file.parents[1]), "Counter 3")

    def test_an_installation_anywhere_reads_its_own(self):
        self.change()
        self.assertEqual(self.model(program=self.installed_program), "Counter 3")

    def test_what_the_system_has_comes_first(self):
        """It may be the administrator's, beside an installation for trial."""
        folder = self.session.new_folder("system")
        (folder / "postal-scale").mkdir()
        (folder / "postal-scale/Info.json").write_text(self.text, encoding="utf-8")
        self.change()
        self.assertEqual(self.model(program=self.installed_program, folders=folder), self.model())

    def test_the_file_that_is_named_counts(self):
        self.change()
        self.assertEqual(self.model("--info", self.file), "Counter 3")


if __name__ == "__main__":
    harness.main()
