# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The guest's kernel, udev and users."""

import contextlib
import os
import pathlib
import struct
import subprocess
import time

SEAT_USER = 1000
OTHER_USER = 1001

# Seconds of the guest's time, which runs by what the guest does: what has not come by then never
# comes, however busy the host is.
PATIENCE = 30

PACKAGED_RULES = pathlib.Path("/usr/lib/udev/rules.d")
LOCAL_RULES = pathlib.Path("/etc/udev/rules.d")
RULE = "60-postal-scale.rules"
UDEVADM = "/usr/lib/udev/udevadm"
POSTINST = pathlib.Path("/var/lib/dpkg/info/postal-scale.postinst")

LOGIND = pathlib.Path("/run/systemd")

ACL = "system.posix_acl_access"
ACL_VERSION = 2
ACL_NAMED_USER = 2


def wait_until(condition, what, pause=0.01):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(pause)


def hidraw_nodes():
    return sorted(str(node) for node in pathlib.Path("/dev").glob("hidraw*"))


def user_rights(node):
    """By user, of those whom an access control list names: 6 is to read and to write."""
    acl = os.getxattr(node, ACL)
    [version] = struct.unpack_from("<I", acl)
    assert version == ACL_VERSION
    entries = struct.iter_unpack("<HHI", acl[4:])
    return {user: rights for tag, rights, user in entries if tag == ACL_NAMED_USER}


def can_open(node, user):
    attempt = subprocess.run(["sh", "-c", f": <> {node}"], user=user, group=user, extra_groups=[],
                             stderr=subprocess.DEVNULL, check=False)
    return attempt.returncode == 0


def change_seat(user):
    """What logind says while a user sits at the machine, as udev and the program read it; and what
    it does to the devices that are there: their rights change hands without a word from udev."""
    for other in SEAT_USER, OTHER_USER:
        write_file(LOGIND / f"users/{other}", "ACTIVE_SEATS=seat0\n" if other == user else "")
    write_file(LOGIND / "seats/seat0", f"IS_SEAT0=1\nACTIVE=1\nACTIVE_UID={user}\n")
    for node in hidraw_nodes():
        give(node, user)


def write_file(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)


def give(node, user):
    """To that user instead of another, where a rule has given it to somebody."""
    with contextlib.suppress(OSError):
        acl = os.getxattr(node, ACL)
        entries = [(tag, rights, user if tag == ACL_NAMED_USER else identifier)
                   for tag, rights, identifier in struct.iter_unpack("<HHI", acl[4:])]
        os.setxattr(node, ACL, acl[:4] + b"".join(struct.pack("<HHI", *each) for each in entries))


class Udev:
    """udevd with the rules of its own package and the scale's."""

    def __init__(self):
        self.rule = (PACKAGED_RULES / RULE).read_text()
        # The daemon and its control program are one file, told apart by their name.
        subprocess.run(["systemd-udevd", "--daemon"], executable=UDEVADM, check=True)

    def rule_line(self):
        """The scale's own; those of others come after it."""
        return next(line for line in self.rule.splitlines()
                    if line and not line.startswith("#"))

    def remove_rule(self):
        (PACKAGED_RULES / RULE).unlink()
        self.reload()

    def add_local_rule(self, line):
        (LOCAL_RULES / RULE).write_text(line + "\n")
        self.reload()

    def restore(self):
        self.go_on()
        (LOCAL_RULES / RULE).unlink(missing_ok=True)
        (PACKAGED_RULES / RULE).write_text(self.rule)
        self.reload()

    def configure_package(self):
        """What dpkg does once the files are there; without a package, what its script would do."""
        self.restore()
        if POSTINST.exists():
            path = f"{pathlib.Path(UDEVADM).parent}:{os.environ['PATH']}"
            subprocess.run(["sh", POSTINST, "configure"], check=True, env={"PATH": path})
        else:
            self.apply_again()

    @staticmethod
    def hold():
        """What happens from now on is not dealt with until go_on()."""
        subprocess.run([UDEVADM, "control", "--stop-exec-queue"], check=True)

    @staticmethod
    def go_on():
        subprocess.run([UDEVADM, "control", "--start-exec-queue"], check=True)

    @staticmethod
    def reload():
        subprocess.run([UDEVADM, "control", "--reload"], check=True)

    @staticmethod
    def apply_again():
        """To the devices that are there."""
        subprocess.run([UDEVADM, "trigger", "--action=change", "--subsystem-match=hidraw"],
                       check=True)
