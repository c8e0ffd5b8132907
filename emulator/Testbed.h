// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/GObjectPointer.h"
#include "emulator/HidrawMinors.h"
#include "emulator/UeventSender.h"

/// What a HID device on USB tells of itself.
struct HidIdentity
{
    std::string port; ///< bus and port as in sysfs, for example "1-2"
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::string manufacturer;
    std::string product;
    std::span<const std::uint8_t> reportDescriptor;
};

/// The made-up /sys and /dev that the started command sees. Its directory goes with this object.
class Testbed
{
public:
    Testbed();

    /// A device and its interfaces, from the USB device down to the hidraw node.
    struct Placement
    {
        int minor = 0;
        HidrawNode *node = nullptr; ///< until unplug()
        std::vector<Uevent> chain;  ///< without the action
    };

    std::string directory() const;
    Placement plug(const HidIdentity &identity, Permission permission, HidrawDevice &device);
    void unplug(const Placement &placement);
    /// An event for the hidraw node alone.
    void announce(const Placement &placement, const std::string &action);

    int openHandles(const HidrawDevice &device) const { return m_minors.openHandles(device); }
    void interruptReads() { m_minors.interruptReads(); }

private:
    void addHost();
    void add(const std::string &description);
    void send(Uevent uevent, const std::string &action);

    GObjectPointer<UMockdevTestbed> m_testbed;
    UeventSender m_sender;
    HidrawMinors m_minors;
    int m_lastUsbAddress = 1; ///< the root hub's
    int m_lastHidNumber = 0;
};
