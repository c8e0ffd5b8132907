# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""What the host does to the scale's port."""

import fcntl
import os
import pathlib

from system import hidraw_nodes, wait_until

# _IO('U', 20) of linux/usbdevice_fs.h
USBDEVFS_RESET = 0x5514

DRIVER = pathlib.Path("/sys/bus/usb/drivers/usbhid")


class Port:
    """Of the device behind a hidraw node, where that is at this moment; good until it is unplugged."""

    def __init__(self, node):
        name = os.path.basename(node)
        hid = pathlib.Path(f"/sys/class/hidraw/{name}/device").resolve()
        self.interface = hid.parent
        self.device = self.interface.parent
        self.hub = self.device.parent

    def reset(self):
        """As a hub's hiccup does; the device keeps its address and its nodes."""
        bus, number = (int((self.device / name).read_text()) for name in ("busnum", "devnum"))
        file = os.open(f"/dev/bus/usb/{bus:03}/{number:03}", os.O_WRONLY)
        try:
            fcntl.ioctl(file, USBDEVFS_RESET)
        finally:
            os.close(file)

    def unbind(self):
        (DRIVER / "unbind").write_text(self.interface.name)

    def bind(self):
        (DRIVER / "bind").write_text(self.interface.name)

    def suspend_when_idle_for(self, milliseconds):
        power = self.device / "power"
        (power / "autosuspend_delay_ms").write_text(str(milliseconds))
        (power / "control").write_text("auto")

    def never_suspend(self):
        (self.device / "power/control").write_text("on")

    def suspended_milliseconds(self):
        """So far."""
        return int((self.device / "power/runtime_suspended_time").read_text())


def authorize(device, allowed):
    """A device or a hub, with all that hangs on it."""
    (device / "authorized").write_text("1" if allowed else "0")
    wait_until(lambda: bool(hidraw_nodes()) == allowed, "the node to come or go")
