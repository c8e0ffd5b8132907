// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/DeviceWatcher.h"

#include "base/Log.h"

#include <QFileInfo>
#include <QSocketNotifier>
#include <QTimer>
#include <cerrno>
#include <chrono>
#include <functional>
#include <libudev.h>

using namespace std::chrono_literals;

namespace {

constexpr auto subsystem = "hidraw";

/// Until devices that could not be listed are listed again.
constexpr auto listingPause = 1000ms;

/// Longest time that udevd needs to set a node's permissions and announce the device.
constexpr auto announcementGrace = 1000ms;

struct DeviceDeleter
{
    void operator()(udev_device *device) const { udev_device_unref(device); }
};
using Device = std::unique_ptr<udev_device, DeviceDeleter>;

/// "0003:000004D9:00008010" is bus, vendor and product, whatever carries the device.
void readIdentity(udev_device *device, HidDeviceInfo &info)
{
    udev_device *hid = udev_device_get_parent_with_subsystem_devtype(device, "hid", nullptr);
    if (hid == nullptr)
        return;
    const QByteArray identity = udev_device_get_property_value(hid, "HID_ID");
    const QList<QByteArray> fields = identity.split(':');
    if (fields.size() != 3)
        return;
    info.vendorId = static_cast<std::uint16_t>(fields[1].toUInt(nullptr, 16));
    info.productId = static_cast<std::uint16_t>(fields[2].toUInt(nullptr, 16));
}

HidDeviceInfo describe(udev_device *device)
{
    HidDeviceInfo info;
    info.systemPath = QString::fromUtf8(udev_device_get_syspath(device));
    info.node = QString::fromUtf8(udev_device_get_devnode(device));
    readIdentity(device, info);
    return info;
}

enum class Listing { Complete, Failed };

Listing forEachPresent(udev *context, const std::function<void(udev_device *)> &visit)
{
    struct EnumerateDeleter
    {
        void operator()(udev_enumerate *list) const { udev_enumerate_unref(list); }
    };
    const std::unique_ptr<udev_enumerate, EnumerateDeleter> list(udev_enumerate_new(context));
    if (!list || udev_enumerate_add_match_subsystem(list.get(), subsystem) < 0 ||
        udev_enumerate_scan_devices(list.get()) < 0)
        return Listing::Failed;
    udev_list_entry *entry = nullptr;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(list.get()))
    {
        const Device device(udev_device_new_from_syspath(context, udev_list_entry_get_name(entry)));
        if (device)
            visit(device.get());
    }
    return Listing::Complete;
}

bool udevdIsRunning()
{
    return QFileInfo::exists(QStringLiteral("/run/udev/control"));
}

} // namespace

void DeviceWatcher::UdevDeleter::operator()(udev *handle) const
{
    udev_unref(handle);
}

void DeviceWatcher::UdevDeleter::operator()(udev_monitor *handle) const
{
    udev_monitor_unref(handle);
}

DeviceWatcher::DeviceWatcher()
    : m_context(udev_new())
{
}

DeviceWatcher::~DeviceWatcher() = default;

void DeviceWatcher::start()
{
    arm();
    QTimer::singleShot(0, this, &DeviceWatcher::reportPresent);
}

std::optional<HidDeviceInfo> DeviceWatcher::find(std::uint16_t vendorId,
                                                 std::uint16_t productId) const
{
    std::optional<HidDeviceInfo> found;
    forEachPresent(m_context.get(), [&](udev_device *device) {
        const HidDeviceInfo info = describe(device);
        if (!found && info.vendorId == vendorId && info.productId == productId)
            found = info;
    });
    return found;
}

QList<HidDeviceInfo> DeviceWatcher::present() const
{
    QList<HidDeviceInfo> devices;
    forEachPresent(m_context.get(), [&](udev_device *device) { devices.append(describe(device)); });
    return devices;
}

void DeviceWatcher::arm()
{
    // "udev", not "kernel": its events come after the rules have set the node's permissions.
    m_monitor.reset(udev_monitor_new_from_netlink(m_context.get(), "udev"));
    m_sinceArmed.start();
    if (!m_monitor ||
        udev_monitor_filter_add_match_subsystem_devtype(m_monitor.get(), subsystem, nullptr) < 0 ||
        udev_monitor_enable_receiving(m_monitor.get()) < 0) {
        qCWarning(systemLog, "No device events: a scale plugged in from now on is not noticed");
        emit unwatched();
        return;
    }
    auto *notifier =
        new QSocketNotifier(udev_monitor_get_fd(m_monitor.get()), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &DeviceWatcher::receive);
}

void DeviceWatcher::receive()
{
    errno = 0;
    while (const Device device{udev_monitor_receive_device(m_monitor.get())}) {
        const QByteArray action = udev_device_get_action(device.get());
        if (action == "add")
            takeAnnouncement(describe(device.get()));
        else if (action == "change")
            emit changed(describe(device.get()));
        else if (action == "remove")
            reportRemoved(describe(device.get()));
        errno = 0;
    }
    // Too many events for the socket's buffer, mostly. What was in them is to be seen all the same.
    if (errno != 0 && errno != EAGAIN)
        resynchronise();
}

void DeviceWatcher::reportPresent()
{
    const auto armedFor = static_cast<quint64>(m_sinceArmed.nsecsElapsed() / 1000);
    const auto listing = forEachPresent(m_context.get(), [&](udev_device *device) {
        const HidDeviceInfo info = describe(device);
        if (udev_device_get_is_initialized(device) != 0) {
            // One that became ready after the monitor was armed is announced by an event.
            if (udev_device_get_usec_since_initialized(device) >= armedFor)
                reportAddedUnlessKnown(info);
            return;
        }
        const auto delay = udevdIsRunning() ? announcementGrace : 0ms;
        QTimer::singleShot(delay, this, [this, info] {
            if (QFileInfo::exists(info.systemPath))
                reportUnannounced(info);
        });
    });
    if (listing == Listing::Failed)
        resynchroniseLater();
}

void DeviceWatcher::resynchroniseLater()
{
    QTimer::singleShot(listingPause, this, &DeviceWatcher::resynchronise);
}

void DeviceWatcher::resynchronise()
{
    QHash<QString, HidDeviceInfo> found;
    const auto listing = forEachPresent(m_context.get(), [&](udev_device *device) {
        const HidDeviceInfo info = describe(device);
        found.insert(info.systemPath, info);
    });
    // No list is no news of a removal.
    if (listing == Listing::Failed) {
        resynchroniseLater();
        return;
    }
    const QHash<QString, HidDeviceInfo> known = m_present;
    for (const HidDeviceInfo &device : known) {
        if (!found.contains(device.systemPath))
            reportRemoved(device);
    }
    // The event of any of them may still be in the queue, or come now that there is room again.
    for (const HidDeviceInfo &device : std::as_const(found))
        reportUnannounced(device);
}

void DeviceWatcher::takeAnnouncement(const HidDeviceInfo &device)
{
    // What was reported without it is not reported again; its node may have been closed then.
    if (m_unannounced.remove(device.systemPath))
        emit changed(device);
    else
        reportAdded(device);
}

void DeviceWatcher::reportUnannounced(const HidDeviceInfo &device)
{
    if (m_present.contains(device.systemPath))
        return;
    m_unannounced.insert(device.systemPath);
    reportAdded(device);
}

void DeviceWatcher::reportAdded(const HidDeviceInfo &device)
{
    m_present.insert(device.systemPath, device);
    emit added(device);
}

void DeviceWatcher::reportAddedUnlessKnown(const HidDeviceInfo &device)
{
    if (!m_present.contains(device.systemPath))
        reportAdded(device);
}

void DeviceWatcher::reportRemoved(const HidDeviceInfo &device)
{
    const auto known = m_present.constFind(device.systemPath);
    const HidDeviceInfo remembered = known == m_present.constEnd() ? device : *known;
    m_present.remove(device.systemPath);
    m_unannounced.remove(device.systemPath);
    emit removed(remembered);
}
