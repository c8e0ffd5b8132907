// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CommandLine.h"
#include "scale/HidDevices.h"

/// Where the command line says that the devices come from.
struct DeviceChoice
{
    std::unique_ptr<HidDevices> devices; ///< null: the machine's own, as they are
    QString trouble;                     ///< why it cannot be done; empty if it can

    /// @param machine must outlive the choice
    static DeviceChoice of(const CommandLine &line, HidDevices &machine);
};
