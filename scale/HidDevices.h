// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

/// A HID device as the system describes it.
struct HidDeviceInfo
{
    QString systemPath; ///< of its hidraw node; tells devices apart
    QString node;       ///< for example /dev/hidraw0
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
};

/// Tells of every HID device that is there, comes or goes, on the thread that started it.
class DeviceEvents : public QObject
{
    Q_OBJECT

public:
    /// Devices already present are reported once the event loop runs.
    virtual void start() = 0;

    /// The first node of that identity, in the order of the system's paths, looked up afresh.
    virtual std::optional<HidDeviceInfo> find(std::uint16_t vendorId,
                                              std::uint16_t productId) const = 0;

    /// All there are, in the same order, looked up afresh.
    virtual QList<HidDeviceInfo> present() const = 0;

signals:
    /// From the start on neither of the following will come, but for the devices present.
    void unwatched();
    void added(const HidDeviceInfo &device);
    /// Of a device that was added: its node's permissions may be others now.
    void changed(const HidDeviceInfo &device);
    /// Carries what was known when the device was added: by now its parents are gone.
    void removed(const HidDeviceInfo &device);
};

/// One open device; released when destroyed.
class HidConnection
{
public:
    HidConnection() = default;
    virtual ~HidConnection() = default;
    HidConnection(const HidConnection &) = delete;
    HidConnection &operator=(const HidConnection &) = delete;

    /// First byte: report number, 0 for none. The length of @p report, or -1.
    virtual int sendFeatureReport(std::span<const std::uint8_t> report) = 0;
    /// Waits for the next input report; its length, or -1 (also when the device goes meanwhile).
    /// Nothing where none has come by the time that @p patience, 0 or more, is over.
    virtual std::optional<int> read(std::span<std::uint8_t> buffer,
                                    std::chrono::milliseconds patience) = 0;
};

/// Where the link's devices come from: from the machine, or from the record of another one.
class HidDevices
{
public:
    HidDevices() = default;
    virtual ~HidDevices() = default;
    HidDevices(const HidDevices &) = delete;
    HidDevices &operator=(const HidDevices &) = delete;

    virtual std::unique_ptr<DeviceEvents> events() = 0;

    /// Null when the node cannot be opened.
    virtual std::unique_ptr<HidConnection> open(const QString &node) = 0;
    /// The same for a device that is only listened to: what it sends can be read, and nothing be
    /// sent to it.
    virtual std::unique_ptr<HidConnection> openToRead(const QString &node) = 0;
    /// Opens the node for this one report, whose first byte is its number, 0 for none. The length
    /// of @p report, or -1.
    virtual int sendOutputReport(const QString &node, std::span<const std::uint8_t> report) = 0;
    /// Why the latest open failed, in the words of whoever refused it.
    virtual QString lastError() const = 0;
    /// The error number that reading and writing @p node would meet; 0 for none.
    virtual int accessError(const QString &node) const = 0;
    /// The same for reading alone.
    virtual int readingError(const QString &node) const = 0;

    /// Its report descriptor; empty where the system does not tell.
    virtual QByteArray reportDescriptor(const HidDeviceInfo &device) = 0;
    /// What the device says of itself, maker and product; empty where the system does not tell.
    virtual QString nameOf(const HidDeviceInfo &device) const = 0;
};
