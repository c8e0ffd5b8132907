# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Installed below a prefix of one's own, chosen at the installation, and started from there.

POSTAL_SCALE_BUILD names the build folder.
"""

import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

from test_package_data import BUILD, SOURCES, output_of

HOST_MANIFEST = "native-messaging-hosts/org.postalscale.browser.json"


def installed_by(prefix, **environment):
    """@return what the installation says that it has installed"""
    said = output_of("cmake", "--install", BUILD, "--prefix", prefix, env=os.environ | environment)
    return re.findall(r"^-- (?:Installing|Up-to-date): (.*)$", said, re.MULTILINE)


def is_looked_at(folder, *names):
    """Whether this machine has a package of the program, whose files would be found instead."""
    return any((pathlib.Path(folder) / name).exists() for name in names)


class PrefixTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="postal-scale-prefix-")
        cls.addClassCleanup(folder.cleanup)
        # Configured for another one, and with a letter that scripts stumble over.
        cls.prefix = pathlib.Path(folder.name) / "my programs"
        # First where nothing of this machine can be overwritten.
        front = f"{folder.name}/front"
        cls.told = [file.removeprefix(front) for file in installed_by(cls.prefix, DESTDIR=front)]
        elsewhere = [file for file in cls.told if not file.startswith(f"{cls.prefix}/")]
        if elsewhere:
            raise AssertionError(f"not below the prefix: {elsewhere}")
        installed_by(cls.prefix)

    def doctor(self, **environment):
        home = tempfile.TemporaryDirectory(prefix="postal-scale-home-")
        self.addCleanup(home.cleanup)
        plain = {"PATH": os.environ["PATH"], "HOME": home.name, "XDG_RUNTIME_DIR": home.name,
                 "LC_ALL": "C.UTF-8"}
        return subprocess.run([self.prefix / "bin/postal-scale", "--doctor"], text=True,
                              stdout=subprocess.PIPE, env=plain | environment).stdout.splitlines()

    def test_all_files_stay_together(self):
        self.assertGreater(len(self.told), 20)
        for file in self.told:
            self.assertTrue(pathlib.Path(file).exists(), file)

    def test_a_folder_in_front_holds_all_of_it(self):
        """As packagers install, whose prefix is the system's."""
        with tempfile.TemporaryDirectory(prefix="postal-scale-destdir-") as folder:
            told = installed_by("/usr", DESTDIR=folder)
            self.assertEqual(len(told), len(self.told))
            places = {file.removeprefix(folder).split("/")[1] for file in told}
            self.assertEqual(places, {"usr", "etc"})
            manifest = pathlib.Path(folder, "etc/chromium", HOST_MANIFEST)
            self.assertRegex(json.loads(manifest.read_text())["path"],
                             "^/usr/libexec/postal-scale/")
            self.assertTrue(pathlib.Path(folder, "etc/xdg/postal-scale/Info.json").is_file())

    def test_the_browsers_manifests_name_the_host_that_is_there(self):
        for place in ("etc/chromium", "lib/mozilla"):
            manifest = json.loads((self.prefix / place / HOST_MANIFEST).read_text())
            host = pathlib.Path(manifest["path"])
            self.assertTrue(host.is_relative_to(self.prefix), host)
            self.assertTrue(os.access(host, os.X_OK), host)

    def test_the_desktop_entry_starts_the_program_that_is_there(self):
        (entry,) = (self.prefix / "share/applications").iterdir()
        self.assertEqual(output_of("desktop-file-validate", entry), "")
        self.assertIn(f'Exec="{self.prefix}/bin/postal-scale"', entry.read_text().splitlines())

    def test_the_manual_page_names_the_files_that_are_there(self):
        page = (self.prefix / "share/man/man1/postal-scale.1").read_text().replace(r"\-", "-")
        for file in re.findall(r"^\.I (/.*)$", page, re.MULTILINE):
            self.assertTrue(pathlib.Path(file).is_file(), file)
        self.assertIn(f"{self.prefix}/etc/xdg/postal-scale/Info.json", page)

    @unittest.skipIf(is_looked_at("/usr/lib/udev/rules.d", "60-postal-scale.rules"),
                     "the package is installed")
    def test_doctor_tells_that_udev_does_not_look_there(self):
        rule = f"{self.prefix}/lib/udev/rules.d/60-postal-scale.rules"
        said = self.doctor()
        finding = said.index(f"!!  udev does not read the rule {rule}")
        self.assertEqual(said[finding + 1],
                         f'    Link it: sudo ln -s "{rule}" /etc/udev/rules.d/, and plug the scale '
                         "in again.")

    @unittest.skipIf(is_looked_at("/etc/chromium", HOST_MANIFEST), "the package is installed")
    def test_doctor_tells_that_the_browsers_do_not_look_there(self):
        said = self.doctor()
        finding = said.index("!!  Browser link: the browsers do not look into this installation")
        for folder, looked_at in (("etc/chromium", "/etc/chromium"),
                                  ("lib/mozilla", "/usr/lib/mozilla")):
            self.assertIn(f'sudo ln -s "{self.prefix}/{folder}/{HOST_MANIFEST}" '
                          f"{looked_at}/native-messaging-hosts/", said[finding + 1])

    def test_a_prefix_that_no_text_can_name_is_refused(self):
        with tempfile.TemporaryDirectory(prefix="postal-scale-prefix-") as folder:
            refused = subprocess.run(["cmake", "--install", BUILD, "--prefix", '/a"b'], text=True,
                                     capture_output=True, env=os.environ | {"DESTDIR": folder})
            self.assertNotEqual(refused.returncode, 0)
            self.assertIn("cannot be named", refused.stderr)
            self.assertEqual(list(pathlib.Path(folder).iterdir()), [])


class ConfiguredFoldersTest(unittest.TestCase):
    """Nothing is built: what CMake makes of what a packager says."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="postal-scale-configured-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        # A machine whose Qt has no test library.
        output_of("cmake", "-S", SOURCES, "-B", cls.folder, "-G", "Ninja",
                  "-DBUILD_TESTING=OFF", "-DCMAKE_DISABLE_FIND_PACKAGE_Qt6Test=ON",
                  "-DCMAKE_INSTALL_PREFIX=/opt/scale", "-DCMAKE_INSTALL_LIBEXECDIR=lib/helpers",
                  "-DPOSTALSCALE_UDEV_FOLDER=/srv/rules",
                  "-DPOSTALSCALE_CHROMIUM_HOSTS_FOLDER=/srv/chromium",
                  "-DPOSTALSCALE_MOZILLA_HOSTS_FOLDER=lib64/mozilla/native-messaging-hosts")
        cls.header = (cls.folder / "base/InstalledFolders.h").read_text()

    def test_the_program_knows_the_folders(self):
        for folder in ("/srv/rules", "/srv/chromium",
                       "../lib64/mozilla/native-messaging-hosts", "../etc/xdg/postal-scale"):
            self.assertIn(f'"{folder}"', self.header)

    def test_what_nobody_has_said_is_built_as_it_is_shipped(self):
        cache = (self.folder / "CMakeCache.txt").read_text()
        self.assertRegex(cache, r"(?m)^CMAKE_BUILD_TYPE:\w+=Release$")


if __name__ == "__main__":
    unittest.main(verbosity=2)
