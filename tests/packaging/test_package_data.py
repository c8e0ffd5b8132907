# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What is installed beside the program, as it is installed.

POSTAL_SCALE_BUILD names the build folder.
"""

import configparser
import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

import jsonschema
from zsh_completion import Zsh

SOURCES = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(os.environ["POSTAL_SCALE_BUILD"])

ICON_NAMESPACE = "{http://www.w3.org/2000/svg}"

# What the shell does when the tab key is pressed at the end of a line.
EVERY_OPTION = ["--info", "--print", "--follow", "--tare", "--hold", "--power", "--unit", "--capture",
                "--compact", "--doctor", "--record", "--replay", "--log", "--help", "--version"]

COMPLETE = """
source "$1"
compopt() { :; }
COMP_WORDS=($2)
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
_postal_scale
printf '%s\\n' "${COMPREPLY[@]}"
"""


def output_of(*arguments, **options):
    """Of a checker: everything it says, on whichever stream."""
    return subprocess.run(arguments, check=True, text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, **options).stdout


def definition(file, pattern):
    return re.search(pattern, (SOURCES / file).read_text(encoding="utf-8")).group(1)


class PackageDataTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="postal-scale-installed-")
        cls.addClassCleanup(folder.cleanup)
        output_of("cmake", "--install", BUILD, env=os.environ | {"DESTDIR": folder.name})
        cls.files = [path for path in pathlib.Path(folder.name).rglob("*") if path.is_file()]
        cls.application_id = definition("CMakeLists.txt", r"POSTALSCALE_APPLICATION_ID (\S+)\)")

    def installed(self, end):
        """The one file whose path ends so."""
        found = [path for path in self.files if str(path).endswith("/" + end)]
        self.assertEqual(len(found), 1, f"files {end}: {found}")
        return found[0]

    def test_the_desktop_entry_is_valid(self):
        entry = self.installed(f"applications/{self.application_id}.desktop")
        self.assertEqual(output_of("desktop-file-validate", entry), "")

    def test_the_metainfo_is_valid(self):
        metainfo = self.installed(f"metainfo/{self.application_id}.metainfo.xml")
        said = output_of("appstreamcli", "validate", "--pedantic", "--no-net", "--no-color",
                         metainfo)
        notes = re.findall(r"^[IWEP]: \S+ (.*)", said, re.MULTILINE)
        # The tag came with 1.0; Debian 12 has a checker of before.
        before = re.search(r"AppStream version: 0\.", output_of("appstreamcli", "--version"))
        self.assertEqual(notes, ["unknown-tag developer"] if before else [])
        self.assertRegex(said, r"\S+ Validation was successful")

    def test_the_manual_page_has_no_warnings(self):
        page = self.installed("man1/postal-scale.1")
        man = subprocess.run(["man", "--warnings", "--local-file", "-EUTF-8", "-Tutf8", "-Z", page],
                             check=True, text=True, capture_output=True,
                             env=os.environ | {"LC_ALL": "C.UTF-8"})
        self.assertEqual(man.stderr, "")

    def test_the_manual_page_has_every_option_of_the_help(self):
        page = self.installed("man1/postal-scale.1").read_text(encoding="utf-8")
        program_help = output_of(self.installed("bin/postal-scale"), "--help")
        options = re.findall(r"--[a-z]+", program_help)
        self.assertIn("--print", options)
        for option in options:
            self.assertIn(option.replace("-", r"\-"), page)

    def test_one_name_for_the_program_everywhere(self):
        entry = configparser.ConfigParser(interpolation=None, delimiters="=")
        entry.optionxform = str
        entry.read(self.installed(f"{self.application_id}.desktop"), encoding="utf-8")
        self.assertEqual(entry["Desktop Entry"]["Icon"], self.application_id)
        metainfo = xml.etree.ElementTree.parse(
            self.installed(f"{self.application_id}.metainfo.xml"))
        self.assertEqual(metainfo.findtext("id"), self.application_id)
        self.assertEqual(metainfo.findtext("launchable"), f"{self.application_id}.desktop")

    def test_the_icons_are_drawings(self):
        for name, size in (("scalable/apps/{}.svg", "128"),
                           ("symbolic/apps/{}-symbolic.svg", "16")):
            root = xml.etree.ElementTree.parse(
                self.installed(name.format(self.application_id))).getroot()
            self.assertEqual(root.tag, ICON_NAMESPACE + "svg")
            self.assertEqual((root.get("width"), root.get("height")), (size, size))

    def test_software_centres_learn_which_device_it_is_for(self):
        vendor = definition("scale/ScaleIdentity.h", "scaleVendorId = 0x([0-9A-F]{4})")
        product = definition("scale/ScaleIdentity.h", "scaleProductId = 0x([0-9A-F]{4})")
        metainfo = xml.etree.ElementTree.parse(
            self.installed(f"{self.application_id}.metainfo.xml"))
        self.assertEqual(metainfo.findtext("provides/modalias"), f"usb:v{vendor}p{product}d*")

    def test_the_udev_rule_gives_the_user_in_front_access(self):
        rule = self.installed("udev/rules.d/60-postal-scale.rules").read_text(encoding="utf-8")
        self.assertIn('TAG+="uaccess"', rule)

    def test_the_information_file_is_where_an_administrator_looks(self):
        information = json.loads(self.installed("xdg/postal-scale/Info.json").read_text())
        self.assertEqual(len(information["KayForUSPS"]), 9)

    def test_scripts_find_the_description_of_readings(self):
        schema = json.loads(self.installed("doc/postal-scale/reading.schema.json").read_text())
        jsonschema.Draft7Validator.check_schema(schema)
        with self.assertRaises(jsonschema.ValidationError):
            jsonschema.validate({"format": 1}, schema)

    def test_the_browsers_find_the_host(self):
        host = self.installed("postal-scale/postal-scale-browser-host")
        for browser in ("chromium", "mozilla"):
            manifest = json.loads(self.installed(
                f"{browser}/native-messaging-hosts/org.postalscale.browser.json").read_text())
            self.assertTrue(str(host).endswith(manifest["path"]), manifest["path"])
            self.assertTrue(os.access(host, os.X_OK))

    def test_the_browsers_find_the_extension(self):
        chromium = self.installed("chromium/extensions/postal-scale/manifest.json")
        worker = json.loads(chromium.read_text())["background"]["service_worker"]
        self.assertTrue((chromium.parent / worker).is_file())
        name = json.loads(self.installed(
            "mozilla/native-messaging-hosts/org.postalscale.browser.json").read_text())
        (extension,) = name["allowed_extensions"]
        self.installed(f"{extension}/manifest.json")

    def test_the_versions_agree(self):
        version = definition("CMakeLists.txt", r"project\(postal-scale VERSION (\S+)")
        self.assertEqual(definition("packaging/debian/changelog", r"\((\S+)\)"), version)
        metainfo = xml.etree.ElementTree.parse(
            self.installed(f"{self.application_id}.metainfo.xml"))
        self.assertEqual(metainfo.find("releases/release").get("version"), version)

    def test_the_shell_completes(self):
        for line, expected in (
            ("postal-scale --", EVERY_OPTION),
            ("postal-scale --d", ["--doctor"]),
            ("postal-scale --print --", ["--json", "--info"]),
            ("postal-scale --follow --", ["--json", "--settled", "--info"]),
            ("postal-scale --hold t", ["toggle"]),
            ("postal-scale --unit l", ["lboz", "lboz-fraction", "lb", "lboz-whole"]),
            ("postal-scale --unit = l", ["lboz", "lboz-fraction", "lb", "lboz-whole"]),
            ("postal-scale --hold =", ["on", "off", "toggle"]),
            ("postal-scale --settled --f", ["--follow"]),
            ("postal-scale --json --", ["--print", "--follow", "--info"]),
            ("postal-scale --settled --json --", ["--follow", "--json", "--info"]),
            ("postal-scale --info CMakeL", ["CMakeLists.txt"]),
            ("postal-scale --replay CMakeL", ["CMakeLists.txt"]),
        ):
            with self.subTest(line=line):
                self.assertEqual(self.completions(line), expected)

    def test_the_other_shells_know_the_same_options(self):
        zsh = self.installed("zsh/vendor-completions/_postal-scale").read_text()
        self.assertEqual(set(re.findall(r"--[a-z]+(?==?\[)", zsh)) |
                         {"--help", "--version"}, {*EVERY_OPTION, "--json", "--settled"})
        program_help = output_of(self.installed("bin/postal-scale"), "--help")
        with_value = re.findall(r"(--[a-z]+) <", program_help)
        self.assertIn("--unit", with_value)
        self.assertEqual(set(re.findall(r"--[a-z]+(?==\[)", zsh)), set(with_value))
        fish = self.installed("fish/vendor_completions.d/postal-scale.fish")
        offered = output_of("fish", "-N", "-c",
                            f"source {fish}; complete -C 'postal-scale --'").splitlines()
        self.assertEqual({line.split("\t")[0] for line in offered},
                         {*EVERY_OPTION, "--json", "--settled"})

    def test_zsh_completes(self):
        folder = self.installed("zsh/vendor-completions/_postal-scale").parent
        with Zsh(folder, SOURCES) as zsh:
            for line, expected in (
                ("--doc", "--doctor"),
                ("--follow --se", "--follow --settled"),
                ("--print --fo", "--print --fo"),
                ("--hold=t", "--hold=toggle"),
                ("--unit=lboz-w", "--unit=lboz-whole"),
                ("--compact=of", "--compact=off"),
                ("--capture --p", "--capture --p"),
                ("--replay=CMakeL", "--replay=CMakeLists.txt"),
            ):
                with self.subTest(line=line):
                    self.assertEqual(zsh.completed(line).strip(), expected)

    def completions(self, line):
        file = self.installed("bash-completion/completions/postal-scale")
        return output_of("bash", "-uc", COMPLETE, "bash", file, line, cwd=SOURCES).split()


if __name__ == "__main__":
    unittest.main(verbosity=2)
