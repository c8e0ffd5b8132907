// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/SystemHidDevices.h"

#include "scale/DeviceWatcher.h"

#include <QElapsedTimer>
#include <algorithm>
#include <cerrno>
#include <hidapi.h>
#include <unistd.h>

using namespace std::chrono_literals;

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

    std::optional<int> read(std::span<std::uint8_t> buffer,
                            std::chrono::milliseconds patience) override
    {
        QElapsedTimer waited;
        waited.start();
        for (;;) {
            const std::chrono::milliseconds gone(waited.elapsed());
            errno = 0;
            const int received =
                hid_read_timeout(m_device, buffer.data(), buffer.size(),
                                 static_cast<int>(std::max(patience - gone, 0ms).count()));
            // A signal ends the library's wait, where the kernel would have gone on with a read.
            if (received < 0 && errno == EINTR)
                continue;
            // 0 is the answer to a report without bytes, too. Time tells them apart.
            if (received == 0 && waited.elapsed() >= patience.count())
                return std::nullopt;
            return received;
        }
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
