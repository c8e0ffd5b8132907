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
    std::unique_ptr<HidConnection> openToRead(const QString &node) override;
    int sendOutputReport(const QString &node, std::span<const std::uint8_t> report) override;
    QString lastError() const override;
    int accessError(const QString &node) const override;
    int readingError(const QString &node) const override;
    QByteArray reportDescriptor(const HidDeviceInfo &device) override;
    QString nameOf(const HidDeviceInfo &device) const override;

private:
    QString m_readingTrouble; ///< of the latest open to read; empty if it was another one
};
