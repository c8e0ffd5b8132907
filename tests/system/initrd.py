# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The guest's root file system, all of it in memory: what is needed of the host and no more."""

import os
import pathlib
import shutil
import stat
import subprocess
import sys
import tempfile

import session_initrd
from guest_parts import MODULES

BUSYBOX = pathlib.Path("/bin/busybox")
SOURCE = pathlib.Path(__file__).resolve().parent

EMPTY_DIRECTORIES = ["proc", "sys", "dev", "run", "root", "etc/udev/rules.d"]
LINKS = {"bin": "usr/bin", "sbin": "usr/sbin", "lib": "usr/lib", "lib64": "usr/lib64"}
UNUSED_PYTHON = {"config-", "test", "lib2to3", "pydoc_data", "idlelib", "distutils", "ensurepip"}


class Archive:
    """A cpio archive as the kernel unpacks it ("newc")."""

    def __init__(self, path):
        self.file = open(path, "wb")
        self.names = set()

    def close(self):
        self.write("TRAILER!!!", 0, b"")
        self.file.close()

    def directory(self, name, permissions=0o755):
        if name and name not in self.names:
            self.directory(os.path.dirname(name))
            self.write(name, stat.S_IFDIR | permissions, b"")

    def link(self, name, target):
        self.write(name, stat.S_IFLNK | 0o777, target.encode())

    def add(self, name, content, permissions=0o644, modified=0):
        """Where /lib and its like are links, a file goes to where they lead."""
        first, _, rest = name.partition("/")
        name = f"{LINKS[first]}/{rest}" if first in LINKS else name
        if name not in self.names:
            self.directory(os.path.dirname(name))
            self.write(name, stat.S_IFREG | permissions, content, modified)

    def copy(self, source, name=None):
        source = pathlib.Path(source)
        permissions = 0o755 if os.access(source, os.X_OK) else 0o644
        # Python compiles its library anew if the files seem to be of another time.
        self.add(name or str(source).lstrip("/"), source.read_bytes(), permissions,
                 int(source.stat().st_mtime))

    def copy_tree(self, source, name=None, leave_out=frozenset()):
        source = pathlib.Path(source)
        for path in sorted(source.rglob("*")):
            inside = path.relative_to(source)
            if path.is_file() and not inside.parts[0].startswith(tuple(leave_out)):
                self.copy(path, f"{name or str(source).lstrip('/')}/{inside}")

    def write(self, name, mode, content, modified=0):
        self.names.add(name)
        number = len(self.names)
        fields = [number, mode, 0, 0, 1, modified, len(content), 0, 0, 0, 0, len(name) + 1, 0]
        header = "070701" + "".join(f"{field:08x}" for field in fields) + name + "\0"
        for part in header.encode(), content:
            self.file.write(part + b"\0" * (-len(part) % 4))


def libraries(programs, folders):
    """The shared libraries that these load, and the loader: the host's, but where @param folders, of
    libraries that are the guest's own, have one of that name."""
    path = ":".join(map(str, folders))
    listing = subprocess.run(["ldd", *programs], check=True, text=True, stdout=subprocess.PIPE,
                             env={**os.environ, "LD_LIBRARY_PATH": path}).stdout
    missing = [line.strip() for line in listing.splitlines() if "not found" in line]
    if missing:
        sys.exit("libraries to be installed: " + ", ".join(missing))
    words = {word for line in listing.splitlines() if line.startswith("\t")
             for word in line.split()}
    return sorted(pathlib.Path(word) for word in words if word.startswith("/"))


def add_python(archive):
    library = pathlib.Path(os.__file__).parent
    archive.copy(os.path.realpath(sys.executable), "usr/bin/python3")
    archive.copy_tree(library, leave_out=UNUSED_PYTHON)
    return [sys.executable, *library.glob("lib-dynload/*.so")]


def add_programs(archive, program, gadget, qt_plugins):
    archive.copy(program, "usr/bin/postal-scale")
    archive.copy(gadget, "usr/bin/postal-scale-gadget")
    plugins = [qt_plugins / "platforms/libqoffscreen.so",
               *qt_plugins.glob("imageformats/*.so"), *qt_plugins.glob("iconengines/*.so")]
    for plugin in plugins:
        archive.copy(plugin)
    return [program, gadget, *plugins]


def add_udev(archive, parts, rule):
    archive.copy_tree(parts / "udev", "usr/lib/udev")
    archive.copy(rule, f"usr/lib/udev/rules.d/{rule.name}")
    return [path for path in (parts / "udev").iterdir() if path.is_file()]


def add_package(archive, package):
    """As dpkg puts it there, its script after the installation among what dpkg keeps. The program
    and the rule are the package's then."""
    with tempfile.TemporaryDirectory() as scratch:
        tree = pathlib.Path(scratch)
        subprocess.run(["dpkg-deb", "--extract", package, tree], check=True)
        subprocess.run(["dpkg-deb", "--control", package, tree / "control"], check=True)
        archive.copy(tree / "control/postinst", "var/lib/dpkg/info/postal-scale.postinst")
        shutil.rmtree(tree / "control")
        for file in sorted(each for each in tree.rglob("*") if each.is_file()):
            archive.copy(file, str(file.relative_to(tree)))


def make(path, parts, program, gadget, rule, qt_plugins, package, with_session):
    """@param package None: program and rule as they were built"""
    archive = Archive(path)
    if package:
        # First: a file that is there already is not added again.
        add_package(archive, package)
    for name, target in LINKS.items():
        archive.link(name, target)
    for name in EMPTY_DIRECTORIES:
        archive.directory(name)
    archive.directory("tmp", 0o1777)
    session_programs = session_initrd.add(archive, parts, qt_plugins) if with_session else []
    for name in "/etc/passwd", "/etc/group":
        archive.copy(name)
    archive.copy(SOURCE / "guest/init", "init")
    archive.copy_tree(SOURCE / "guest", "guest")
    archive.copy(BUSYBOX, "usr/bin/busybox")
    archive.copy_tree(parts / "modules", "modules")
    archive.add("modules/order", ("\n".join(MODULES) + "\n").encode())
    programs = add_python(archive) + add_programs(archive, program, gadget, qt_plugins)
    programs += add_udev(archive, parts, rule) + session_programs
    for library in libraries(programs, session_initrd.library_folders(parts)):
        archive.copy(library, session_initrd.name_in_guest(parts, library))
    archive.close()
