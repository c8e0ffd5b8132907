// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"
#include "scale/traffic/TrafficLine.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHash>

/// Passes everything on to other devices, unchanged, and writes down what passes. Each line is in
/// the file before the program goes on: whatever ends the program, what led to it is there.
class RecordedHidDevices : public HidDevices
{
public:
    explicit RecordedHidDevices(std::unique_ptr<HidDevices> devices);

    /// Replaces a file of that name. False where that is not possible; errorText() says why.
    bool startFile(const QString &name);
    QString errorText() const { return m_trouble; }

    std::unique_ptr<DeviceEvents> events() override;
    std::unique_ptr<HidConnection> open(const QString &node) override;
    std::unique_ptr<HidConnection> openToRead(const QString &node) override;
    int sendOutputReport(const QString &node, std::span<const std::uint8_t> report) override;
    QString lastError() const override { return m_devices->lastError(); }
    int accessError(const QString &node) const override { return m_devices->accessError(node); }
    int readingError(const QString &node) const override { return m_devices->readingError(node); }
    /// Scales of the class are written down with it, once; of others it is nobody's business.
    QByteArray reportDescriptor(const HidDeviceInfo &device) override;
    QString nameOf(const HidDeviceInfo &device) const override { return m_devices->nameOf(device); }

    /// Puts the time to it.
    void write(TrafficLine line);
    /// It is gone; what comes at its node is described anew.
    void forget(const HidDeviceInfo &device);
    /// What is no traffic, but helps to understand it.
    void remark(const QString &text);

private:
    std::unique_ptr<HidConnection> recorded(std::unique_ptr<HidConnection> connection,
                                            const QString &node, int error);
    /// When the disk is full, for example, the program goes on without the record.
    void put(const QByteArray &text);

    std::unique_ptr<HidDevices> m_devices;
    QHash<QString, QByteArray> m_described; ///< by node
    QString m_name;
    QFile m_file;
    QString m_trouble;
    QElapsedTimer m_sinceStart;
};
