# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What a release promises of its texts: one version, one date, and whose every file is."""

import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCES = pathlib.Path(__file__).parents[2]
PROGRAM = "packaging/release-texts"
TEXTS = ("CHANGELOG.md", "CMakeLists.txt", "packaging/postal-scale.metainfo.xml.in",
         "packaging/debian/changelog", "packaging/debian/control")

NEWS = """# Changelog

## Unreleased

Heavier parcels, in words & numbers that fit a line no more once they are written down for a package.

- Tons.

"""


def run(*arguments):
    return subprocess.run(arguments, text=True, capture_output=True)


class ReleaseTest(unittest.TestCase):
    def test_whose_every_file_is(self):
        said = run("reuse", "--root", SOURCES, "lint")
        self.assertEqual(said.returncode, 0, said.stdout)
        # Later versions warn of the form of .reuse/dep5, which Debian 12's alone reads.
        self.assertNotIn("ERROR", said.stderr)

    def test_all_texts_are_of_one_release(self):
        said = run(SOURCES / PROGRAM, "--check")
        self.assertEqual((said.returncode, said.stderr), (0, ""))


class NewReleaseTest(unittest.TestCase):
    """On a copy of the texts, in which something is new."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="postal-scale-release-")
        self.addCleanup(folder.cleanup)
        self.copy = pathlib.Path(folder.name)
        for name in (PROGRAM, *TEXTS):
            (self.copy / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(SOURCES / name, self.copy / name)
        log = (self.copy / "CHANGELOG.md")
        self.before = log.read_text()
        log.write_text(self.before.replace("# Changelog\n\n", NEWS))

    def text(self, name):
        return (self.copy / name).read_text(encoding="utf-8")

    def release(self, *arguments):
        return run(self.copy / PROGRAM, *arguments)

    def test_one_command_makes_all_texts(self):
        self.assertEqual(self.release("9.8.7", "2031-02-03").returncode, 0)
        self.assertTrue(self.text("CHANGELOG.md").startswith(
            "# Changelog\n\n## 9.8.7 - 2031-02-03\n\nHeavier parcels,"))
        self.assertIn("project(postal-scale VERSION 9.8.7 ", self.text("CMakeLists.txt"))
        metainfo = self.text("packaging/postal-scale.metainfo.xml.in")
        self.assertIn('<release version="9.8.7" date="2031-02-03">', metainfo)
        self.assertIn("in words &amp; numbers", metainfo)
        debian = self.text("packaging/debian/changelog")
        self.assertTrue(debian.startswith("postal-scale (9.8.7) unstable; urgency=medium\n\n"
                                          "  * Heavier parcels, in words & numbers"))
        self.assertIn("\n -- Postal Scale contributors <contributors@postalscale.org>  "
                      "Mon, 03 Feb 2031 00:00:00 +0000\n", debian)
        self.assertLessEqual(max(len(line) for line in debian.splitlines() if line[:3] != " --"), 78)

    def test_earlier_releases_stay(self):
        earlier = re.findall(r"^## (\d\S+) - (\S+)", self.before, re.MULTILINE)
        self.assertEqual(self.release("9.8.7", "2031-02-03").returncode, 0)
        metainfo = self.text("packaging/postal-scale.metainfo.xml.in")
        self.assertEqual(re.findall(r'<release version="(\S+)" date="(\S+)">', metainfo),
                         [("9.8.7", "2031-02-03"), *earlier])

    def test_a_second_time_changes_nothing(self):
        self.release("9.8.7", "2031-02-03")
        first = [self.text(name) for name in TEXTS]
        self.assertEqual(self.release("9.8.7", "2032-02-03").returncode, 0)
        self.assertEqual([self.text(name) for name in TEXTS], first)
        self.assertEqual(self.release("--check").returncode, 0)

    def test_a_text_that_was_forgotten_is_named(self):
        self.release("9.8.7", "2031-02-03")
        for name in TEXTS[1:4]:
            with self.subTest(text=name):
                whole = self.text(name)
                (self.copy / name).write_text(whole.replace("9.8.7", "9.8.6"))
                said = self.release("--check")
                self.assertEqual(said.returncode, 1)
                self.assertEqual(said.stderr, f"{name} is not of the release of CHANGELOG.md\n")
                (self.copy / name).write_text(whole)

    def test_nothing_new_is_no_release(self):
        (self.copy / "CHANGELOG.md").write_text(self.before.replace("## Unreleased", "## 0.0.1 - x"))
        said = self.release("9.8.7")
        self.assertEqual(said.returncode, 1)
        self.assertIn("says nothing that is unreleased", said.stderr)

    def test_a_version_that_is_none_is_refused(self):
        for version in ("1.2", "v1.2.3", "1.2.3-rc", ""):
            with self.subTest(version=version):
                self.assertEqual(self.release(version).returncode, 2)


if __name__ == "__main__":
    unittest.main(verbosity=2)
