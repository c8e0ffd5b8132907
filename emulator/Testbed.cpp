// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/Testbed.h"

#include <cstdarg>
#include <cstdio>
#include <glib.h>
#include <stdexcept>

namespace {

const std::string controllerPath = "/devices/pci0000:00/0000:00:14.0";
const std::string hubPath = controllerPath + "/usb1";
/// Given to hidraw at boot from those that are free; any value will do.
constexpr int hidrawMajor = 242;
constexpr int lastAddressOfBus = 127;

/// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string text(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    g_autofree gchar *formatted = g_strdup_vprintf(format, arguments);
    va_end(arguments);
    return formatted;
}

UMockdevTestbed *newTestbed()
{
    // Asked before there is a testbed the library answers no for good, and then leaves the
    // sending of events to us.
    umockdev_in_mock_environment();
    return umockdev_testbed_new();
}

/// In the library's language: P path, E property, A attribute, H attribute in hex, L link.
std::string usbDevice(const std::string &path, const HidIdentity &identity, int address)
{
    return text("P: %s\n"
                "E: SUBSYSTEM=usb\n"
                "E: DEVTYPE=usb_device\n"
                "E: DRIVER=usb\n"
                "E: PRODUCT=%x/%x/100\n"
                "E: BUSNUM=001\n"
                "E: DEVNUM=%03d\n"
                "A: idVendor=%04x\\n\n"
                "A: idProduct=%04x\\n\n"
                "A: bcdDevice=0100\\n\n"
                "A: busnum=1\\n\n"
                "A: devnum=%d\\n\n"
                "A: manufacturer=%s\\n\n"
                "A: product=%s\\n\n",
                path.c_str(), identity.vendorId, identity.productId, address, identity.vendorId,
                identity.productId, address, identity.manufacturer.c_str(),
                identity.product.c_str());
}

std::string usbInterface(const std::string &path)
{
    return text("P: %s\n"
                "E: SUBSYSTEM=usb\n"
                "E: DEVTYPE=usb_interface\n"
                "E: DRIVER=usbhid\n"
                "A: bInterfaceNumber=00\\n\n"
                "A: bInterfaceClass=03\\n\n",
                path.c_str());
}

std::string hidDevice(const std::string &path, const HidIdentity &identity)
{
    std::string descriptor;
    for (const std::uint8_t byte : identity.reportDescriptor)
        descriptor += text("%02X", byte);
    return text("P: %s\n"
                "E: SUBSYSTEM=hid\n"
                "E: DRIVER=hid-generic\n"
                "E: HID_ID=0003:%08X:%08X\n"
                "E: HID_NAME=%s %s\n"
                "E: HID_PHYS=usb-0000:00:14.0-%s/input0\n"
                "E: HID_UNIQ=\n"
                "H: report_descriptor=%s\n",
                path.c_str(), identity.vendorId, identity.productId, identity.manufacturer.c_str(),
                identity.product.c_str(), identity.port.substr(identity.port.find('-') + 1).c_str(),
                descriptor.c_str());
}

/// Without the newline that sysfs ends the numbers with, or the library cannot take them back.
std::string hidrawNode(const std::string &path, int minor)
{
    const std::string hidName = path.substr(0, path.find("/hidraw/"));
    return text("P: %s\n"
                "E: SUBSYSTEM=hidraw\n"
                "E: DEVNAME=/dev/hidraw%d\n"
                "E: MAJOR=%d\n"
                "E: MINOR=%d\n"
                "A: dev=%d:%d\n"
                "L: device=../../../%s\n",
                path.c_str(), minor, hidrawMajor, minor, hidrawMajor, minor,
                hidName.substr(hidName.rfind('/') + 1).c_str());
}

} // namespace

Testbed::Testbed()
    : m_testbed(newTestbed())
    , m_sender(directory())
    , m_minors(m_testbed.get())
{
    addHost();
}

std::string Testbed::directory() const
{
    g_autofree gchar *root = umockdev_testbed_get_root_dir(m_testbed.get());
    return root;
}

void Testbed::addHost()
{
    add("P: " + controllerPath + "\nE: SUBSYSTEM=pci\nE: DRIVER=xhci_hcd\n");
    add("P: " + hubPath +
        "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nA: idVendor=1d6b\\n\nA: idProduct=0002\\n\n"
        "A: busnum=1\\n\nA: devnum=1\\n\n");
}

void Testbed::add(const std::string &description)
{
    g_autoptr(GError) error = nullptr;
    if (!umockdev_testbed_add_from_string(m_testbed.get(), description.c_str(), &error))
        throw std::runtime_error(error->message);
}

Testbed::Placement Testbed::plug(const HidIdentity &identity, Permission permission,
                                 HidrawDevice &device)
{
    Placement placement;
    placement.minor = m_minors.lowestFree();
    m_lastUsbAddress = m_lastUsbAddress == lastAddressOfBus ? 2 : m_lastUsbAddress + 1;

    const std::string usb = hubPath + '/' + identity.port;
    const std::string interface = usb + '/' + identity.port + ":1.0";
    const std::string hid = text("%s/0003:%04X:%04X.%04X", interface.c_str(), identity.vendorId,
                                 identity.productId, static_cast<unsigned>(++m_lastHidNumber));
    const std::string hidraw = text("%s/hidraw/hidraw%d", hid.c_str(), placement.minor);
    const std::string node = text("/dev/hidraw%d", placement.minor);
    placement.chain = {{{}, usb, "usb", "usb_device", {}},
                       {{}, interface, "usb", "usb_interface", {}},
                       {{}, hid, "hid", {}, {}},
                       {{}, hidraw, "hidraw", {}, node, hidrawMajor, placement.minor}};

    placement.node = &m_minors.plug(placement.minor, permission, device);
    add(usbDevice(usb, identity, m_lastUsbAddress));
    add(usbInterface(interface));
    add(hidDevice(hid, identity));
    add(hidrawNode(hidraw, placement.minor));
    for (const Uevent &uevent : placement.chain)
        send(uevent, "add");
    return placement;
}

// By the time the udev daemon passes a removal on, nothing of the device is left to look at.
void Testbed::unplug(const Placement &placement)
{
    const std::vector<Uevent> childFirst(placement.chain.rbegin(), placement.chain.rend());
    for (const Uevent &uevent : childFirst)
        umockdev_testbed_remove_device(m_testbed.get(), ("/sys" + uevent.devicePath).c_str());
    m_minors.unplug(placement.minor);
    for (const Uevent &uevent : childFirst)
        send(uevent, "remove");
}

void Testbed::announce(const Placement &placement, const std::string &action)
{
    send(placement.chain.back(), action);
}

void Testbed::send(Uevent uevent, const std::string &action)
{
    uevent.action = action;
    m_sender.send(uevent);
}
