// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <cstdint>
#include <memory>
#include <optional>

struct udev;
struct udev_monitor;

/// A HID device as udev describes it.
struct HidDeviceInfo
{
    QString systemPath; ///< of its hidraw node; tells devices apart
    QString node;       ///< for example /dev/hidraw0
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
};

/// Tells of every HID device that is there, comes or goes, on the thread that started it.
class DeviceWatcher : public QObject
{
    Q_OBJECT

public:
    DeviceWatcher();
    ~DeviceWatcher() override;

    /// Devices already present are reported once the event loop runs.
    void start();

    /// The first node of that identity, in the order of the system's paths, looked up afresh.
    std::optional<HidDeviceInfo> find(std::uint16_t vendorId, std::uint16_t productId) const;

signals:
    void added(const HidDeviceInfo &device);
    /// Carries what was known when the device was added: by now its parents are gone.
    void removed(const HidDeviceInfo &device);

private:
    struct UdevDeleter
    {
        void operator()(udev *handle) const;
        void operator()(udev_monitor *handle) const;
    };

    void arm();
    void receive();
    void reportPresent();
    void resynchronise();
    void resynchroniseLater();
    void reportAdded(const HidDeviceInfo &device);
    void reportAddedUnlessKnown(const HidDeviceInfo &device);
    void reportRemoved(const HidDeviceInfo &device);

    std::unique_ptr<udev, UdevDeleter> context;
    std::unique_ptr<udev_monitor, UdevDeleter> monitor;
    QElapsedTimer sinceArmed;
    QHash<QString, HidDeviceInfo> present; ///< by system path
};
