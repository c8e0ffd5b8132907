// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/traffic/ReplayedHidDevices.h"

#include "base/Log.h"
#include "scale/CommandByte.h"

#include <QFileInfo>
#include <QThread>
#include <algorithm>
#include <cerrno>

using namespace std::chrono_literals;

namespace {

const QLatin1String nodeFolder("/dev/");

/// Of readings.
constexpr auto rhythm = 400ms;

/// A timer counts no more than 2^31 ms.
constexpr std::chrono::milliseconds longestTimer = 24h;

class ReplayedEvents : public DeviceEvents
{
public:
    explicit ReplayedEvents(ReplayedHidDevices &devices)
        : m_devices(devices)
    {
    }

    void start() override { m_devices.startReporting(this); }

    std::optional<HidDeviceInfo> find(std::uint16_t vendorId,
                                      std::uint16_t productId) const override
    {
        return m_devices.find(vendorId, productId);
    }

    QList<HidDeviceInfo> present() const override { return m_devices.present(); }

private:
    ReplayedHidDevices &m_devices;
};

class ReplayedConnection : public HidConnection
{
public:
    ReplayedConnection(ReplayedHidDevices &devices, const QString &node)
        : m_devices(devices)
        , m_node(node)
    {
    }

    int sendFeatureReport(std::span<const std::uint8_t> report) override
    {
        return m_devices.sendFeatureReport(m_node, report);
    }

    std::optional<int> read(std::span<std::uint8_t> buffer,
                            std::chrono::milliseconds patience) override
    {
        return m_devices.read(buffer, patience);
    }

private:
    ReplayedHidDevices &m_devices;
    QString m_node;
};

/// To a device that sends by itself.
class ListeningConnection : public HidConnection
{
public:
    ListeningConnection(ReplayedHidDevices &devices, const QString &node)
        : m_devices(devices)
        , m_node(node)
    {
    }

    int sendFeatureReport(std::span<const std::uint8_t>) override { return -1; }

    std::optional<int> read(std::span<std::uint8_t> buffer, std::chrono::milliseconds) override
    {
        return m_devices.listen(m_node, buffer);
    }

private:
    ReplayedHidDevices &m_devices;
    QString m_node;
};

HidDeviceInfo deviceOf(const TrafficLine &line)
{
    const QString node = nodeFolder + line.device;
    return {
        .systemPath = node, .node = node, .vendorId = line.vendorId, .productId = line.productId};
}

bool isPoll(const TrafficLine &line)
{
    return line.kind == TrafficLine::Kind::Send &&
           isPollReport({reinterpret_cast<const std::uint8_t *>(line.report.constData()),
                         static_cast<std::size_t>(line.report.size())});
}

bool isCommand(const TrafficLine &line)
{
    return line.kind == TrafficLine::Kind::Send && !isPoll(line);
}

bool isEvent(const TrafficLine &line)
{
    using Kind = TrafficLine::Kind;
    return line.kind == Kind::Attach || line.kind == Kind::Change || line.kind == Kind::Detach;
}

void tell(DeviceEvents &listener, TrafficLine::Kind kind, const HidDeviceInfo &device)
{
    if (kind == TrafficLine::Kind::Attach)
        emit listener.added(device);
    else if (kind == TrafficLine::Kind::Change)
        emit listener.changed(device);
    else
        emit listener.removed(device);
}

void pass(std::chrono::milliseconds time)
{
    QThread::msleep(static_cast<unsigned long>(time.count()));
}

int copied(const TrafficLine &line, std::span<std::uint8_t> buffer)
{
    if (line.outcome != TrafficLine::Outcome::Done)
        return -1;
    const std::size_t length =
        std::min(buffer.size(), static_cast<std::size_t>(line.report.size()));
    std::copy_n(line.report.begin(), length, buffer.begin());
    return static_cast<int>(length);
}

} // namespace

ReplayedHidDevices::ReplayedHidDevices(Traffic traffic)
    : m_lines(std::move(traffic.lines))
{
    // Nothing to repeat yet.
    m_latestRead.outcome = TrafficLine::Outcome::Failed;
    m_eventDue.setSingleShot(true);
    m_eventDue.setTimerType(Qt::PreciseTimer);
    connect(&m_eventDue, &QTimer::timeout, this, &ReplayedHidDevices::reportEvent);
    describe();
}

/// What a device is does not wait for its turn: whoever is told of it may ask at once.
void ReplayedHidDevices::describe()
{
    std::vector<TrafficLine> others;
    QHash<QString, std::size_t> attached; // by node, the place of the latest attach
    for (TrafficLine &line : m_lines) {
        const QString node = nodeFolder + line.device;
        if (line.kind == Kind::About) {
            if (attached.contains(node))
                m_descriptions.insert(attached.value(node), line);
            continue;
        }
        if (line.kind == Kind::Attach)
            attached.insert(node, others.size());
        others.push_back(std::move(line));
    }
    m_lines = std::move(others);
}

void ReplayedHidDevices::describeAttached(const QString &node)
{
    const auto own = m_descriptions.constFind(m_next);
    if (own == m_descriptions.constEnd())
        m_about.remove(node);
    else
        m_about.insert(node, *own);
}

std::unique_ptr<DeviceEvents> ReplayedHidDevices::events()
{
    return std::make_unique<ReplayedEvents>(*this);
}

std::unique_ptr<HidConnection> ReplayedHidDevices::open(const QString &node)
{
    if (!canBeOpened(node))
        return nullptr;
    return std::make_unique<ReplayedConnection>(*this, node);
}

std::unique_ptr<HidConnection> ReplayedHidDevices::openToRead(const QString &node)
{
    if (!canBeOpened(node))
        return nullptr;
    return std::make_unique<ListeningConnection>(*this, node);
}

bool ReplayedHidDevices::canBeOpened(const QString &node)
{
    m_openErrorNumber = ENOENT;
    m_openError = QStringLiteral("not opened in the record");
    if (!isOpening(node))
        return false;
    const TrafficLine line = *nextLine();
    take();
    scheduleEvent();
    if (line.outcome == TrafficLine::Outcome::Done)
        return true;
    m_openErrorNumber = line.outcome == TrafficLine::Outcome::Denied ? EACCES : 0;
    m_openError = line.reason;
    return false;
}

int ReplayedHidDevices::sendOutputReport(const QString &, std::span<const std::uint8_t> report)
{
    return static_cast<int>(report.size());
}

QByteArray ReplayedHidDevices::reportDescriptor(const HidDeviceInfo &device)
{
    return m_about.value(device.node).report;
}

QString ReplayedHidDevices::nameOf(const HidDeviceInfo &device) const
{
    return m_about.value(device.node).reason;
}

QList<HidDeviceInfo> ReplayedHidDevices::present() const
{
    QList<HidDeviceInfo> devices = m_present.values();
    std::sort(
        devices.begin(), devices.end(),
        [](const HidDeviceInfo &one, const HidDeviceInfo &other) { return one.node < other.node; });
    return devices;
}

int ReplayedHidDevices::accessError(const QString &node) const
{
    // Permission came at the moment of the opening that made use of it.
    if (isOpening(node) && untilDue(*nextLine()) == 0ms)
        return nextLine()->outcome == TrafficLine::Outcome::Denied ? EACCES : 0;
    return m_openErrorNumber == EACCES ? EACCES : 0;
}

std::optional<HidDeviceInfo> ReplayedHidDevices::find(std::uint16_t vendorId,
                                                      std::uint16_t productId) const
{
    // Which of several scales came first in the system's order is known by what was opened next.
    if (isNext(Kind::Open) && !isDescribed(nodeFolder + nextLine()->device)) {
        const QString node = nodeFolder + nextLine()->device;
        return HidDeviceInfo{
            .systemPath = node, .node = node, .vendorId = vendorId, .productId = productId};
    }
    QStringList nodes;
    for (const HidDeviceInfo &device : m_present) {
        if (device.vendorId == vendorId && device.productId == productId)
            nodes.append(device.node);
    }
    if (nodes.isEmpty())
        return std::nullopt;
    return m_present.value(*std::min_element(nodes.begin(), nodes.end()));
}

void ReplayedHidDevices::startReporting(DeviceEvents *listener)
{
    m_listener = listener;
    m_sinceTaken.start();
    scheduleEvent();
}

int ReplayedHidDevices::sendFeatureReport(const QString &node, std::span<const std::uint8_t> report)
{
    const int sent = static_cast<int>(report.size());
    if (!isPollReport(report))
        return sent;
    passCommands();
    while (isOpening(node))
        passOpening();
    if (!isNext(Kind::Send))
        return sent;
    const bool failed = nextLine()->outcome != TrafficLine::Outcome::Done;
    take();
    scheduleEvent();
    return failed ? -1 : sent;
}

std::optional<int> ReplayedHidDevices::read(std::span<std::uint8_t> buffer,
                                            std::chrono::milliseconds patience)
{
    passCommands();
    if (!isNext(Kind::Read)) {
        if (patience > 0ms && !wasSilent(patience))
            return copied(m_latestRead, buffer);
        pass(patience);
        return std::nullopt;
    }
    // What was read before a poll was there already.
    const std::chrono::milliseconds due = m_awaitsAnswer ? untilDue(*nextLine()) : 0ms;
    pass(std::min(due, patience));
    if (due > patience)
        return std::nullopt;
    m_latestRead = *nextLine();
    take();
    scheduleEvent();
    return copied(m_latestRead, buffer);
}

std::optional<int> ReplayedHidDevices::listen(const QString &node, std::span<std::uint8_t> buffer)
{
    passCommands();
    while (isOpening(node) && untilDue(*nextLine()) == 0ms)
        passOpening();
    const bool isAtEnd = nextLine() == nullptr;
    const auto gone = std::chrono::milliseconds(m_sinceTaken.elapsed());
    if (isAtEnd && gone >= rhythm) {
        m_sinceTaken.restart();
        return copied(m_latestRead, buffer);
    }
    if (isAtEnd || !isNext(Kind::Read) || untilDue(*nextLine()) > 0ms)
        return std::nullopt;
    m_latestRead = *nextLine();
    take();
    scheduleEvent();
    return copied(m_latestRead, buffer);
}

bool ReplayedHidDevices::wasSilent(std::chrono::milliseconds patience) const
{
    return m_awaitsAnswer && nextLine() != nullptr && nextLine()->time - m_takenTime >= patience;
}

const TrafficLine *ReplayedHidDevices::nextLine() const
{
    return m_next < m_lines.size() ? &m_lines[m_next] : nullptr;
}

bool ReplayedHidDevices::isNext(Kind kind) const
{
    return nextLine() != nullptr && nextLine()->kind == kind;
}

void ReplayedHidDevices::passCommands()
{
    while (nextLine() != nullptr && isCommand(*nextLine()))
        ++m_next;
}

bool ReplayedHidDevices::isOpening(const QString &node) const
{
    return isNext(Kind::Open) && nodeFolder + nextLine()->device == node;
}

void ReplayedHidDevices::passOpening()
{
    take();
    scheduleEvent();
}

void ReplayedHidDevices::take()
{
    const TrafficLine &line = m_lines[m_next];
    m_awaitsAnswer = isPoll(line) || (m_awaitsAnswer && line.kind != Kind::Read);
    m_takenTime = line.time;
    ++m_next;
    m_sinceTaken.restart();
}

std::chrono::milliseconds ReplayedHidDevices::untilDue(const TrafficLine &line) const
{
    const auto gone = std::chrono::milliseconds(m_sinceTaken.elapsed());
    return std::max(line.time - m_takenTime - gone, 0ms);
}

void ReplayedHidDevices::scheduleEvent()
{
    passCommands();
    if (nextLine() == nullptr)
        noteEnd();
    else if (isEvent(*nextLine()))
        m_eventDue.start(std::min(untilDue(*nextLine()), longestTimer));
}

void ReplayedHidDevices::reportEvent()
{
    const TrafficLine line = *nextLine();
    if (untilDue(line) > 0ms) {
        scheduleEvent();
        return;
    }
    const HidDeviceInfo device = deviceOf(line);
    if (line.kind == Kind::Attach)
        describeAttached(device.node);
    take();
    if (line.kind == Kind::Detach)
        m_present.remove(device.node);
    else
        m_present.insert(device.node, device);
    if (m_listener)
        tell(*m_listener, line.kind, device);
    scheduleEvent();
}

void ReplayedHidDevices::noteEnd()
{
    if (m_endNoted)
        return;
    m_endNoted = true;
    logLine(QStringLiteral("The record has been played back; its last state stays"));
}
