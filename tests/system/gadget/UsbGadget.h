// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

/// What a HID device tells of itself on the bus.
struct GadgetIdentity
{
    std::string name; ///< of its directory; unique among the gadgets
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::string manufacturer;
    std::string product;
    std::span<const std::uint8_t> reportDescriptor;
    int reportLength = 8; ///< bytes of the longest report
    /// Of a second HID interface, a mouse's say; empty: there is none.
    std::span<const std::uint8_t> secondDescriptor = {};
};

/// A HID device on a USB device controller of this kernel; dummy_hcd loops it back to a host
/// controller of the same kernel. Needs root, configfs and usb_f_hid. Throws std::system_error when
/// the kernel refuses.
class UsbGadget
{
public:
    /// @param deviceController as in /sys/class/udc
    UsbGadget(GadgetIdentity identity, std::string deviceController);

    /// Throws std::logic_error when it is plugged in already.
    void plug();
    /// The node is gone afterwards: close it before. Throws std::logic_error when it is not
    /// plugged in.
    void unplug();
    /// Of the next plug.
    void setIdentity(const GadgetIdentity &wanted) { identity = wanted; }

    /// The device's side of the link; there from plug() to unplug().
    std::filesystem::path node() const;

private:
    void make();
    void remove() const;

    GadgetIdentity identity;
    std::filesystem::path directory;
    std::filesystem::path function;
    std::string controller;
    bool plugged = false;
};
