// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/ChildProcess.h"
#include "emulator/ClassScale.h"
#include "emulator/EmulatedScale.h"

/// Everything that the commands act on.
class Emulator
{
public:
    Emulator();

    /// The environment in which a program sees the emulated devices.
    Environment environment() const;

    /// Also ends the reads in which the program blocks the signal, as the kernel would.
    void raiseInChild(int signal);

    Testbed testbed;
    EmulatedScale scale;
    EmulatedScale second;
    PluggableDevice mouse;
    PluggableDevice stranger;   ///< of the scale's vendor, but no scale
    ClassScale classScale;      ///< of the point-of-sale class, as the class has it
    ClassScale otherClassScale; ///< the same once more
    ClassScale oddScale;        ///< of the class, with other usages and order, and without zero
    std::unique_ptr<ChildProcess> child;
};
