// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"
#include "scale/ScaleNode.h"
#include "scale/pointofsale/ScaleLayout.h"

#include <memory>
#include <vector>

/// A scale of the class, as it is found.
struct FoundScale
{
    HidDeviceInfo device;
    ScaleLayout layout;
    QString name; ///< of maker and product, as the device says; never empty
};

/// All of them in the order of the system's paths, looked up afresh. Nothing is opened.
std::vector<FoundScale> findClassScales(HidDevices &devices, const DeviceEvents &events);

struct OpenedScale
{
    std::unique_ptr<HidConnection> connection; ///< null where it cannot be opened
    QString trouble;                           ///< why, and what helps; else empty
};

/// To listen to it.
OpenedScale openClassScale(HidDevices &devices, const HidDeviceInfo &device);

/// The scale that the program would take: of both kinds, the first one of the described kind; of
/// the class, the first one that may be read.
struct AnyScale
{
    ScaleNode node;
    HidDeviceInfo device; ///< without a node where there is none
    QString name;         ///< what the device says; empty where it is named by the chosen model
};

/// Looked up afresh; nothing is opened.
AnyScale findAnyScale(HidDevices &devices);

/// The line of udev's rules that lets whoever sits at the machine open such a device.
QString udevRuleFor(const HidDeviceInfo &device);
