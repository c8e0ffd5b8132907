// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/traffic/RecordedHidDevices.h"

#include "base/Log.h"
#include "base/RegularFile.h"
#include "scale/pointofsale/ReportDescriptor.h"
#include "scale/traffic/Traffic.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <cerrno>

namespace {

using LineKind = TrafficLine::Kind;
using Outcome = TrafficLine::Outcome;

QString nodeName(const QString &node)
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
    RecordedEvents(std::unique_ptr<DeviceEvents> events, RecordedHidDevices &record)
        : m_events(std::move(events))
        , m_record(record)
    {
        connect(m_events.get(), &DeviceEvents::unwatched, this, &DeviceEvents::unwatched);
        connect(m_events.get(), &DeviceEvents::added, this, [this](const HidDeviceInfo &device) {
            write(LineKind::Attach, device);
            emit added(device);
        });
        connect(m_events.get(), &DeviceEvents::changed, this, [this](const HidDeviceInfo &device) {
            write(LineKind::Change, device);
            emit changed(device);
        });
        connect(m_events.get(), &DeviceEvents::removed, this, [this](const HidDeviceInfo &device) {
            write(LineKind::Detach, device);
            m_record.forget(device); // another one may come at its node
            emit removed(device);
        });
    }

    void start() override { m_events->start(); }

    std::optional<HidDeviceInfo> find(std::uint16_t vendorId,
                                      std::uint16_t productId) const override
    {
        return m_events->find(vendorId, productId);
    }

    QList<HidDeviceInfo> present() const override { return m_events->present(); }

private:
    void write(LineKind kind, const HidDeviceInfo &device)
    {
        m_record.write({.kind = kind,
                        .device = nodeName(device.node),
                        .vendorId = device.vendorId,
                        .productId = device.productId});
    }

    std::unique_ptr<DeviceEvents> m_events;
    RecordedHidDevices &m_record;
};

class RecordedConnection : public HidConnection
{
public:
    RecordedConnection(std::unique_ptr<HidConnection> connection, RecordedHidDevices &record)
        : m_connection(std::move(connection))
        , m_record(record)
    {
    }

    int sendFeatureReport(std::span<const std::uint8_t> report) override
    {
        const int sent = m_connection->sendFeatureReport(report);
        m_record.write(
            {.kind = LineKind::Send, .outcome = outcomeOf(sent), .report = bytesOf(report)});
        return sent;
    }

    std::optional<int> read(std::span<std::uint8_t> buffer,
                            std::chrono::milliseconds patience) override
    {
        const std::optional<int> received = m_connection->read(buffer, patience);
        if (!received)
            return received;
        const auto length = static_cast<std::size_t>(std::max(*received, 0));
        m_record.write({.kind = LineKind::Read,
                        .outcome = outcomeOf(*received),
                        .report = bytesOf(buffer.first(length))});
        return received;
    }

private:
    std::unique_ptr<HidConnection> m_connection;
    RecordedHidDevices &m_record;
};

} // namespace

RecordedHidDevices::RecordedHidDevices(std::unique_ptr<HidDevices> devices)
    : m_devices(std::move(devices))
{
    m_sinceStart.start();
}

bool RecordedHidDevices::startFile(const QString &name)
{
    m_name = name;
    m_file.setFileName(name);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        m_trouble = m_file.errorString();
        return false;
    }
    put(Traffic::heading);
    put("# by version " + QCoreApplication::applicationVersion().toUtf8() + ", " +
        QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toUtf8() +
        "; seconds since the start");
    return m_file.isOpen();
}

std::unique_ptr<DeviceEvents> RecordedHidDevices::events()
{
    return std::make_unique<RecordedEvents>(m_devices->events(), *this);
}

std::unique_ptr<HidConnection> RecordedHidDevices::open(const QString &node)
{
    return recorded(m_devices->open(node), node, m_devices->accessError(node));
}

std::unique_ptr<HidConnection> RecordedHidDevices::openToRead(const QString &node)
{
    return recorded(m_devices->openToRead(node), node, m_devices->readingError(node));
}

std::unique_ptr<HidConnection>
RecordedHidDevices::recorded(std::unique_ptr<HidConnection> connection, const QString &node,
                             int error)
{
    if (connection) {
        write({.kind = LineKind::Open, .device = nodeName(node)});
        return std::make_unique<RecordedConnection>(std::move(connection), *this);
    }
    const bool denied = error == EACCES;
    write({.kind = LineKind::Open,
           .outcome = denied ? Outcome::Denied : Outcome::Failed,
           .device = nodeName(node),
           .reason = m_devices->lastError().simplified()});
    return nullptr;
}

int RecordedHidDevices::sendOutputReport(const QString &node, std::span<const std::uint8_t> report)
{
    const int sent = m_devices->sendOutputReport(node, report);
    write({.kind = LineKind::Send, .outcome = outcomeOf(sent), .report = bytesOf(report)});
    return sent;
}

QByteArray RecordedHidDevices::reportDescriptor(const HidDeviceInfo &device)
{
    const QByteArray descriptor = m_devices->reportDescriptor(device);
    const bool isScale =
        scaleLayout({reinterpret_cast<const std::uint8_t *>(descriptor.constData()),
                     static_cast<std::size_t>(descriptor.size())})
            .has_value();
    if (isScale && m_described.value(device.node) != descriptor) {
        m_described.insert(device.node, descriptor);
        write({.kind = LineKind::About,
               .device = nodeName(device.node),
               .report = descriptor,
               .reason = m_devices->nameOf(device)});
    }
    return descriptor;
}

void RecordedHidDevices::forget(const HidDeviceInfo &device)
{
    m_described.remove(device.node);
}

void RecordedHidDevices::write(TrafficLine line)
{
    line.time = std::chrono::milliseconds(m_sinceStart.elapsed());
    put(line.toText());
}

void RecordedHidDevices::remark(const QString &text)
{
    put("# " + text.simplified().toUtf8());
}

void RecordedHidDevices::put(const QByteArray &text)
{
    if (!m_file.isOpen() || appendWhole(m_file, text + '\n', &m_trouble))
        return;
    qCWarning(systemLog).noquote()
        << QStringLiteral("The record in %1 ends here: %2").arg(m_name, m_trouble);
}
