// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/traffic/RecordedHidDevices.h"

#include "base/Log.h"
#include "scale/traffic/Traffic.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <cerrno>

namespace {

using LineKind = TrafficLine::Kind;
using Outcome = TrafficLine::Outcome;

QString nameOf(const QString &node)
{
    return QFileInfo(node).fileName();
}

Outcome outcomeOf(int result)
{
    return result < 0 ? Outcome::Failed : Outcome::Done;
}

QByteArray bytesOf(std::span<const std::uint8_t> report)
{
    return {reinterpret_cast<const char *>(report.data()), static_cast<qsizetype>(report.size())};
}

class RecordedEvents : public DeviceEvents
{
public:
    RecordedEvents(std::unique_ptr<DeviceEvents> recordedEvents, RecordedHidDevices &deviceRecord)
        : events(std::move(recordedEvents))
        , record(deviceRecord)
    {
        connect(events.get(), &DeviceEvents::added, this, [this](const HidDeviceInfo &device) {
            write(LineKind::Attach, device);
            emit added(device);
        });
        connect(events.get(), &DeviceEvents::removed, this, [this](const HidDeviceInfo &device) {
            write(LineKind::Detach, device);
            emit removed(device);
        });
    }

    void start() override { events->start(); }

    std::optional<HidDeviceInfo> find(std::uint16_t vendorId,
                                      std::uint16_t productId) const override
    {
        return events->find(vendorId, productId);
    }

private:
    void write(LineKind kind, const HidDeviceInfo &device)
    {
        record.write({.kind = kind,
                      .device = nameOf(device.node),
                      .vendorId = device.vendorId,
                      .productId = device.productId});
    }

    std::unique_ptr<DeviceEvents> events;
    RecordedHidDevices &record;
};

class RecordedConnection : public HidConnection
{
public:
    RecordedConnection(std::unique_ptr<HidConnection> recordedConnection,
                       RecordedHidDevices &deviceRecord)
        : connection(std::move(recordedConnection))
        , record(deviceRecord)
    {
    }

    int sendFeatureReport(std::span<const std::uint8_t> report) override
    {
        const int sent = connection->sendFeatureReport(report);
        record.write(
            {.kind = LineKind::Send, .outcome = outcomeOf(sent), .report = bytesOf(report)});
        return sent;
    }

    int read(std::span<std::uint8_t> buffer) override
    {
        const int received = connection->read(buffer);
        const auto length = static_cast<std::size_t>(std::max(received, 0));
        record.write({.kind = LineKind::Read,
                      .outcome = outcomeOf(received),
                      .report = bytesOf(buffer.first(length))});
        return received;
    }

private:
    std::unique_ptr<HidConnection> connection;
    RecordedHidDevices &record;
};

} // namespace

RecordedHidDevices::RecordedHidDevices(std::unique_ptr<HidDevices> recordedDevices)
    : m_devices(std::move(recordedDevices))
{
    sinceStart.start();
}

bool RecordedHidDevices::startFile(const QString &name)
{
    file.setFileName(name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return false;
    put(Traffic::heading);
    put("# by version " + QCoreApplication::applicationVersion().toUtf8() + ", " +
        QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toUtf8() +
        "; seconds since the start");
    return file.isOpen();
}

std::unique_ptr<DeviceEvents> RecordedHidDevices::events()
{
    return std::make_unique<RecordedEvents>(m_devices->events(), *this);
}

std::unique_ptr<HidConnection> RecordedHidDevices::open(const QString &node)
{
    std::unique_ptr<HidConnection> connection = m_devices->open(node);
    if (connection) {
        write({.kind = LineKind::Open, .device = nameOf(node)});
        return std::make_unique<RecordedConnection>(std::move(connection), *this);
    }
    const bool denied = m_devices->accessError(node) == EACCES;
    write({.kind = LineKind::Open,
           .outcome = denied ? Outcome::Denied : Outcome::Failed,
           .device = nameOf(node),
           .reason = m_devices->lastError().simplified()});
    return nullptr;
}

void RecordedHidDevices::write(TrafficLine line)
{
    line.time = std::chrono::milliseconds(sinceStart.elapsed());
    put(line.toText());
}

void RecordedHidDevices::put(const QByteArray &text)
{
    if (!file.isOpen() || file.write(text + '\n') == text.size() + 1)
        return;
    const QString reason = file.errorString();
    file.close();
    qCWarning(systemLog).noquote()
        << QStringLiteral("The record in %1 ends here: %2").arg(file.fileName(), reason);
}
