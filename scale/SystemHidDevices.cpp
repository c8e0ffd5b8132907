// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/SystemHidDevices.h"

#include "scale/DeviceWatcher.h"

#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <hidapi.h>
#include <poll.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

/// What is left of the time that a read may take.
class Patience
{
public:
    explicit Patience(std::chrono::milliseconds time)
        : m_time(time)
    {
        m_waited.start();
    }

    /// Milliseconds, 0 or more.
    int left() const
    {
        const std::chrono::milliseconds gone(m_waited.elapsed());
        return static_cast<int>(std::max(m_time - gone, 0ms).count());
    }

private:
    std::chrono::milliseconds m_time;
    QElapsedTimer m_waited;
};

/// A signal ends a wait, where the kernel would have gone on with a read; so it is begun again.
/// @param attempt one wait, which answers as HidConnection::read() does
template <typename Attempt>
std::optional<int> readPatiently(std::chrono::milliseconds time, Attempt attempt)
{
    const Patience patience(time);
    for (;;) {
        errno = 0;
        const std::optional<int> received = attempt(patience);
        if (!received || *received >= 0 || errno != EINTR)
            return received;
    }
}

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
        return readPatiently(patience, [&](const Patience &rest) -> std::optional<int> {
            const int received =
                hid_read_timeout(m_device, buffer.data(), buffer.size(), rest.left());
            // 0 is the answer to a report without bytes, too. Time tells them apart.
            if (received == 0 && rest.left() == 0)
                return std::nullopt;
            return received;
        });
    }

private:
    hid_device *m_device;
};

/// A node that is read without the library, which opens every node for writing too.
class ReadingConnection : public HidConnection
{
public:
    explicit ReadingConnection(int descriptor)
        : m_descriptor(descriptor)
    {
    }

    ~ReadingConnection() override { close(m_descriptor); }

    int sendFeatureReport(std::span<const std::uint8_t>) override { return -1; }

    std::optional<int> read(std::span<std::uint8_t> buffer,
                            std::chrono::milliseconds patience) override
    {
        return readPatiently(patience, [&](const Patience &rest) -> std::optional<int> {
            pollfd query = {m_descriptor, POLLIN, 0};
            const int ready = poll(&query, 1, rest.left());
            if (ready == 0)
                return std::nullopt;
            const ssize_t received =
                ready < 0 ? -1 : ::read(m_descriptor, buffer.data(), buffer.size());
            // Somebody else who has the same open file may have been quicker.
            if (received < 0 && errno == EAGAIN)
                return std::nullopt;
            return static_cast<int>(received);
        });
    }

private:
    int m_descriptor;
};

QByteArray contentsOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int accessErrorOf(const QString &node, int mode)
{
    return access(node.toUtf8().constData(), mode) == 0 ? 0 : errno;
}

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
    m_readingTrouble.clear();
    hid_device *device = hid_open_path(node.toUtf8().constData());
    if (device == nullptr)
        return nullptr;
    return std::make_unique<HidapiConnection>(device);
}

std::unique_ptr<HidConnection> SystemHidDevices::openToRead(const QString &node)
{
    const int descriptor = ::open(node.toUtf8().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        m_readingTrouble = QString::fromLocal8Bit(std::strerror(errno));
        return nullptr;
    }
    return std::make_unique<ReadingConnection>(descriptor);
}

int SystemHidDevices::sendOutputReport(const QString &node, std::span<const std::uint8_t> report)
{
    hid_device *device = hid_open_path(node.toUtf8().constData());
    if (device == nullptr)
        return -1;
    const int sent = hid_write(device, report.data(), report.size());
    hid_close(device);
    return sent;
}

QString SystemHidDevices::lastError() const
{
    if (!m_readingTrouble.isEmpty())
        return m_readingTrouble;
    return QString::fromWCharArray(hid_error(nullptr));
}

int SystemHidDevices::accessError(const QString &node) const
{
    return accessErrorOf(node, R_OK | W_OK);
}

int SystemHidDevices::readingError(const QString &node) const
{
    return accessErrorOf(node, R_OK);
}

QByteArray SystemHidDevices::reportDescriptor(const HidDeviceInfo &device)
{
    return contentsOf(device.systemPath + QStringLiteral("/device/report_descriptor"));
}

QString SystemHidDevices::nameOf(const HidDeviceInfo &device) const
{
    const QByteArray key = "HID_NAME=";
    const QList<QByteArray> lines =
        contentsOf(device.systemPath + QStringLiteral("/device/uevent")).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(key))
            return QString::fromUtf8(line.mid(key.size())).simplified();
    }
    return {};
}
