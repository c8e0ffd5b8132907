// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

/// libudev's functions, defined by the test program itself. What is plugged in is seen by an
/// enumeration; plug() and unplug() also send the event that the monitor receives.
namespace fakeudev {

struct Device
{
    std::string name; ///< "hidraw0"
    std::uint16_t vendor;
    std::uint16_t product;
    bool isInitialized = true; ///< udev is through with it
};

void reset();
/// Present, without an event: as a device is that was there before.
void place(const Device &device);
void plug(const Device &device);
void unplug(const std::string &name);
/// udev is through with a device that was placed before, and says so.
void announceLate(const std::string &name);
/// A further event of that action for a device, present or not.
void announce(const Device &device, const std::string &action);
/// The next receive fails as it does when the kernel dropped events.
void overflow();

/// Calls that fail for as long as they are set; reset() takes them all back.
struct Failing
{
    bool monitor = false;
    bool filter = false;
    bool receiving = false;   ///< enabling it
    bool enumeration = false; ///< making the list
    bool scan = false;        ///< filling it
    bool receive = false;     ///< of an event, which is lost
};
Failing &failing();

} // namespace fakeudev
