// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"

#include <QElapsedTimer>
#include <QHash>
#include <QSet>

struct udev;
struct udev_monitor;

/// The system's HID devices, as udev tells of them.
class DeviceWatcher : public DeviceEvents
{
    Q_OBJECT

public:
    DeviceWatcher();
    ~DeviceWatcher() override;

    void start() override;
    std::optional<HidDeviceInfo> find(std::uint16_t vendorId,
                                      std::uint16_t productId) const override;
    QList<HidDeviceInfo> present() const override;

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
    void takeAnnouncement(const HidDeviceInfo &device);
    void reportAdded(const HidDeviceInfo &device);
    /// Of one that is found in a list, and whose event may still come.
    void reportUnannounced(const HidDeviceInfo &device);
    void reportAddedUnlessKnown(const HidDeviceInfo &device);
    void reportRemoved(const HidDeviceInfo &device);

    std::unique_ptr<udev, UdevDeleter> m_context;
    std::unique_ptr<udev_monitor, UdevDeleter> m_monitor;
    QElapsedTimer m_sinceArmed;
    QHash<QString, HidDeviceInfo> m_present; ///< by system path
    QSet<QString> m_unannounced;             ///< of those, what udev may still tell of
};
