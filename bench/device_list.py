# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT
"""The list of devices that the program's start asks for: milliseconds of the wall clock, the kernel's
part included, of the first one in a process; with other devices on the machine."""

from programs import binary

# Of no scale: each is described, and asked for its report descriptor.
_NODE = """\
P: /devices/pci0000:00/0000:00:14.0/usb1/1-{port}
E: SUBSYSTEM=usb
E: DEVTYPE=usb_device
E: PRODUCT=46d/c077/100

P: /devices/pci0000:00/0000:00:14.0/usb1/1-{port}/1-{port}:1.0
E: SUBSYSTEM=usb
E: DEVTYPE=usb_interface

P: {hid}
E: SUBSYSTEM=hid
E: HID_ID=0003:0000046D:0000C077
E: HID_NAME=Mouse
H: report_descriptor=05010902A1010901A100050919012903150025019503750181029501750581030501093009311581257F750895028106C0C0

P: {hid}/hidraw/hidraw{node}
E: SUBSYSTEM=hidraw
E: DEVNAME=/dev/hidraw{node}
L: device=../../../{hid_name}

"""


def measure(session, nodes, runs):
    """@param nodes how many there are, emulated; None: the machine's own"""
    wrapper = [] if nodes is None else _emulated(session, nodes)
    answers = [session.output_of(*wrapper, binary("list-cost")).split() for _ in range(runs)]
    seen = {int(count) for count, _ in answers}
    if nodes is not None and seen != {nodes}:
        raise RuntimeError(f"{nodes} devices are there, and {seen} are listed")
    return seen, [float(milliseconds) for _, milliseconds in answers]


def _emulated(session, nodes):
    file = session.new_folder("devices") / "description"
    file.write_text("".join(_node(number) for number in range(nodes)), encoding="ascii")
    return ["umockdev-run", *(["--device", str(file)] if nodes else []), "--"]


def _node(number):
    port = number + 1
    name = f"0003:046D:C077.{port:04X}"
    return _NODE.format(port=port, node=number, hid_name=name,
                        hid=f"/devices/pci0000:00/0000:00:14.0/usb1/1-{port}/1-{port}:1.0/{name}")
