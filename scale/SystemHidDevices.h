// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"

/// The machine's own devices: udev tells of them, hidapi opens them.
class SystemHidDevices : public HidDevices
{
public:
    std::unique_ptr<DeviceEvents> events() override;
    std::unique_ptr<HidConnection> open(const QString &node) override;
    QString lastError() const override;
    int accessError(const QString &node) const override;
};
