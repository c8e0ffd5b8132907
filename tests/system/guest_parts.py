#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""Fetches Debian's kernel and udev for the guest: guest_parts.py CACHE

They are downloaded and unpacked once, and not installed. CACHE then holds vmlinux, the modules and
udev's programs and rules.
"""

import lzma
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile

import session_initrd

# In the order in which they need each other, with their parameters: three ports, at the full speed
# of a device as slow as a scale.
MODULES = [
    "usb-common", "usbcore", "udc-core", "dummy_hcd num=3 is_high_speed=0",
    "configfs", "libcomposite", "usb_f_hid", "hid", "usbhid", "hid-generic",
]
# The hardware data base knows neither scales nor the emulated machine. The program that asks each
# hidraw node whether it is a security key would take a fifth of the whole run.
UNUSED_UDEV = ["hwdb.d", "60-fido-id.rules", "fido_id"]
# How Debian 12 and 13 pack their kernels.
XZ_MAGIC = b"\xfd7zXZ\x00"
ZSTD_MAGIC = b"\x28\xb5\x2f\xfd"
# Where a package of Debian 12 has a file in the left folder, one of 13 has it in the right one.
MERGED_FOLDERS = {"bin": "usr/bin", "lib": "usr/lib", "lib64": "usr/lib64", "sbin": "usr/sbin"}


class Packages:
    """Debian's archive, by the machine's package lists, or by fresh ones if those are stale."""

    def __init__(self, directory):
        self.directory = directory
        self.options = []

    def run(self, *command):
        return subprocess.run([command[0], *self.options, *command[1:]], cwd=self.directory,
                              check=True, text=True, stdout=subprocess.PIPE).stdout

    def refresh(self):
        # Lists of our own, so that nobody needs to be root.
        lists = self.directory / "lists"
        (lists / "partial").mkdir(parents=True)
        self.options = ["-o", f"Dir::State::Lists={lists}",
                        "-o", f"Dir::Cache={self.directory / 'apt'}"]
        self.run("apt-get", "update", "-q")

    def download(self):
        depends = self.run("apt-cache", "depends", "linux-image-amd64")
        kernel = re.search(r"Depends: (linux-image-\S+)", depends).group(1)
        # systemd also for its rules on seats, which give a device to the user who sits there.
        self.run("apt-get", "download", "-q", kernel, "udev", *session_initrd.PACKAGES)

    def fetch(self):
        try:
            self.download()
        except (subprocess.CalledProcessError, AttributeError):
            self.refresh()
            self.download()
        return self.directory.glob("*.deb")


def make_tree(tree):
    """Where all files come to lie below usr."""
    for name, target in MERGED_FOLDERS.items():
        (tree / target).mkdir(parents=True)
        (tree / name).symlink_to(target)


def unpack(package, tree):
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", package],
                          stdout=subprocess.PIPE) as files:
        # dpkg-deb by itself would put a folder in the place of a link.
        subprocess.run(["tar", "--extract", "--keep-directory-symlink", "--directory", tree],
                       check=True, stdin=files.stdout)
    if files.returncode != 0:
        sys.exit(f"{package} cannot be unpacked")


def payload(image):
    """Of a self-extracting kernel, as its header tells: in the "boot protocol" of the kernel's
    documentation. The size that it has once unpacked stands behind it."""
    sectors = image[0x1F1] + 1
    offset, length = struct.unpack_from("<II", image, 0x248)
    begin = sectors * 512 + offset
    return image[begin:begin + length - 4]


def unpacked(packed):
    if packed.startswith(XZ_MAGIC):
        return lzma.decompress(packed)
    if packed.startswith(ZSTD_MAGIC):
        return subprocess.run(["zstd", "--decompress", "--stdout"], check=True, input=packed,
                              stdout=subprocess.PIPE).stdout
    return packed


def extract_kernel(tree, parts):
    """The plain image inside the self-extracting one boots twice as fast under emulation."""
    [image] = (tree / "boot").glob("vmlinuz-*")
    (parts / "vmlinux").write_bytes(unpacked(payload(image.read_bytes())))


def extract_modules(tree, parts):
    (parts / "modules").mkdir()
    for module in MODULES:
        name = module.split()[0] + ".ko"
        [path] = (tree / "usr/lib/modules").rglob(name + "*")
        (parts / "modules" / name).write_bytes(unpacked(path.read_bytes()))


def extract_udev(tree, parts):
    shutil.copytree(tree / "usr/lib/udev", parts / "udev",
                    ignore=shutil.ignore_patterns(*UNUSED_UDEV))
    shutil.copy(tree / "usr/bin/udevadm", parts / "udev")


def is_complete(parts):
    modules = (parts / "modules" / (module.split()[0] + ".ko") for module in MODULES)
    return all(module.exists() for module in modules) and (parts / "session").exists()


def fetch(parts):
    parts.parent.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=parts.parent) as scratch:
        tree = pathlib.Path(scratch) / "tree"
        make_tree(tree)
        for package in Packages(pathlib.Path(scratch)).fetch():
            unpack(package, tree)
        fresh = pathlib.Path(scratch) / "parts"
        fresh.mkdir()
        extract_kernel(tree, fresh)
        extract_modules(tree, fresh)
        extract_udev(tree, fresh)
        session_initrd.extract(tree, fresh)
        # In one step: an interrupted download leaves nothing that looks complete.
        shutil.rmtree(parts, ignore_errors=True)
        fresh.rename(parts)


def main():
    parts = pathlib.Path(sys.argv[1])
    if is_complete(parts):
        print("already there")
        return
    try:
        fetch(parts)
    except (subprocess.CalledProcessError, AttributeError) as problem:
        sys.exit(f"Debian's kernel and udev packages cannot be had: {problem}")


if __name__ == "__main__":
    main()
