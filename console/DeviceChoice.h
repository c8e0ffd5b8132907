// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "console/CommandLine.h"
#include "scale/HidDevices.h"

class RecordedHidDevices;

/// Where the command line says that the devices come from.
struct DeviceChoice
{
    std::unique_ptr<HidDevices> devices;  ///< null: it cannot be done
    RecordedHidDevices *record = nullptr; ///< the devices, if they are being recorded
    QString trouble;                      ///< why; empty if it can

    static DeviceChoice of(const CommandLine &line);
};
