// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/SystemHidDevices.h"

#include "scale/DeviceWatcher.h"

#include <cerrno>
#include <hidapi.h>
#include <unistd.h>

namespace {

class HidapiConnection : public HidConnection
{
public:
    explicit HidapiConnection(hid_device *device)
        : m_device(device)
    {
    }

    ~HidapiConnection() override { hid_close(m_device); }

    int sendFeatureReport(std::span<const std::uint8_t> report) override
    {
        return hid_send_feature_report(m_device, report.data(), report.size());
    }

    int read(std::span<std::uint8_t> buffer) override
    {
        return hid_read(m_device, buffer.data(), buffer.size());
    }

private:
    hid_device *m_device;
};

} // namespace

std::unique_ptr<DeviceEvents> SystemHidDevices::events()
{
    return std::make_unique<DeviceWatcher>();
}

std::unique_ptr<HidConnection> SystemHidDevices::open(const QString &node)
{
    // The same as hid_open does after its search by identity. That search can crash when a device
    // vanishes under it (hidapi 0.13.1), and a bouncing plug is enough for that. What remains is a
    // device that vanishes in the microseconds between the library's open and its first request,
    // where the library uses freed memory; only a newer library mends that.
    hid_device *device = hid_open_path(node.toUtf8().constData());
    if (device == nullptr)
        return nullptr;
    return std::make_unique<HidapiConnection>(device);
}

QString SystemHidDevices::lastError() const
{
    return QString::fromWCharArray(hid_error(nullptr));
}

int SystemHidDevices::accessError(const QString &node) const
{
    return access(node.toUtf8().constData(), R_OK | W_OK) == 0 ? 0 : errno;
}
