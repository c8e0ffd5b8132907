// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"
#include "scale/ScaleNode.h"
#include "scale/pointofsale/ScaleLayout.h"

#include <optional>

/// A scale of the class, as it is found.
struct FoundScale
{
    HidDeviceInfo device;
    ScaleLayout layout;
    QString name; ///< of maker and product, as the device says; never empty
};

/// The first one in the order of the system's paths, looked up afresh. Nothing is opened.
std::optional<FoundScale> findClassScale(HidDevices &devices, const DeviceEvents &events);

/// The scale that the program would take: of both kinds, the first one of the described kind.
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
