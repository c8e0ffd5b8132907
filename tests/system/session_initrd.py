# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What a session needs beyond the guest's root: systemd as the first process, logind, the system bus,
polkit, without which logind lets nobody delay anything, and an X server."""

import pathlib
import shutil

SOURCE = pathlib.Path(__file__).resolve().parent
LIBRARIES = "usr/lib/x86_64-linux-gnu"

PACKAGES = ["systemd", "libsystemd-shared", "libpam-systemd", "libpam-modules", "dbus-daemon",
            "dbus", "dbus-system-bus-common", "util-linux", "polkitd", "libpolkit-gobject-1-0",
            "libduktape207"]

# What is taken from them, as far as they have it. Of systemd's units only those of a seat, of a sleep
# and of the way down; others that these name are no trouble to systemd where they are missing.
SYSTEMD = "usr/lib/systemd"
UNITS = f"{SYSTEMD}/system"
FILES = [
    f"{SYSTEMD}/systemd", f"{SYSTEMD}/systemd-executor", f"{SYSTEMD}/systemd-logind",
    f"{SYSTEMD}/systemd-sleep", f"{SYSTEMD}/systemd-shutdown", f"{SYSTEMD}/systemd-user-runtime-dir",
    "usr/bin/systemctl", "usr/bin/loginctl", "usr/bin/systemd-inhibit", "usr/bin/busctl",
    f"{UNITS}/*.target", f"{UNITS}/*.slice", f"{UNITS}/user@.service",
    f"{UNITS}/user-runtime-dir@.service", f"{UNITS}/systemd-logind.service",
    f"{UNITS}/systemd-suspend.service", f"{UNITS}/systemd-poweroff.service",
    f"{UNITS}/dbus.service", f"{UNITS}/dbus.socket",
    f"{SYSTEMD}/user/*", f"{LIBRARIES}/systemd/*.so",
    "usr/bin/dbus-daemon", "usr/share/dbus-1/**/*",
    f"{LIBRARIES}/security/pam_permit.so", f"{LIBRARIES}/security/pam_rootok.so",
    f"{LIBRARIES}/security/pam_systemd.so", "usr/sbin/runuser",
    f"{UNITS}/polkit.service", "usr/lib/polkit-1/polkitd", "usr/share/polkit-1/**/*",
    f"{LIBRARIES}/libpolkit-gobject-1.so.0", f"{LIBRARIES}/libduktape.so.207",
]

X_SERVER = [pathlib.Path("/usr/bin/Xvfb"), pathlib.Path("/usr/bin/xkbcomp")]
KEYBOARDS = pathlib.Path("/usr/share/X11/xkb")


def extract(tree, parts):
    """Out of the unpacked packages."""
    for pattern in FILES:
        for path in tree.glob(pattern):
            if path.is_file():
                target = parts / "session" / path.relative_to(tree)
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(path, target)


def library_folders(parts):
    """Where those of the packages are."""
    folder = parts / "session" / LIBRARIES
    return [folder, folder / "systemd"]


def name_in_guest(parts, library):
    """Of one of the packages', or of the host's."""
    own = parts / "session"
    return str(library.relative_to(own if library.is_relative_to(own) else "/"))


def add(archive, parts, qt_plugins):
    """The programs among it, whose libraries are needed too."""
    # Its own come first, so that they stand in the place of the packages'.
    for tree in SOURCE / "session_root", parts / "session":
        for path in sorted(each for each in tree.rglob("*") if each.is_file()):
            archive.copy(path, str(path.relative_to(tree)))
    archive.directory("var")
    archive.link("var/run", "/run")
    archive.add("etc/machine-id", b"0123456789abcdef0123456789abcdef\n")
    archive.copy_tree(KEYBOARDS)
    programs = [*X_SERVER, qt_plugins / "platforms/libqxcb.so"]
    for program in programs:
        archive.copy(program)
    executables = [path for path in (parts / "session").rglob("*")
                   if path.is_file() and path.read_bytes()[:4] == b"\x7fELF"]
    return programs + executables
