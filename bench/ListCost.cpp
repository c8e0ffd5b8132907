// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The list of the machine's devices that a start asks for, each with what tells whether it is a
// scale: prints how many there are, and the milliseconds.

#include "scale/SystemHidDevices.h"

#include <chrono>
#include <cstdio>

int main()
{
    SystemHidDevices devices;
    const auto events = devices.events();
    const auto begun = std::chrono::steady_clock::now();
    const QList<HidDeviceInfo> present = events->present();
    for (const HidDeviceInfo &device : present) {
        if (devices.reportDescriptor(device).isEmpty())
            return 1;
    }
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begun;
    std::printf("%lld %.4f\n", static_cast<long long>(present.size()), taken.count());
    return 0;
}
