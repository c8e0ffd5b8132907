// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"
#include "scale/traffic/Traffic.h"

#include <QElapsedTimer>
#include <QHash>
#include <QPointer>
#include <QTimer>

/// Devices that do once more what they did when they were recorded.
///
/// Devices come and go at their recorded distance from the line before, and not before everything
/// that was read earlier has been read again: a replay neither loses a report nor runs ahead. A
/// read takes as long as it did, and a scale that was silent is silent again. Commands are taken
/// and have no effect; only polls are matched with the recorded ones. A read beyond what was
/// recorded gets the latest report once more, so that the last state stays when the record has
/// ended.
class ReplayedHidDevices : public QObject, public HidDevices
{
    Q_OBJECT

public:
    explicit ReplayedHidDevices(Traffic traffic);

    std::unique_ptr<DeviceEvents> events() override;
    std::unique_ptr<HidConnection> open(const QString &node) override;
    std::unique_ptr<HidConnection> openToRead(const QString &node) override;
    int sendOutputReport(const QString &node, std::span<const std::uint8_t> report) override;
    QString lastError() const override { return m_openError; }
    int accessError(const QString &node) const override;
    int readingError(const QString &node) const override { return accessError(node); }
    QByteArray reportDescriptor(const HidDeviceInfo &device) override;
    QString nameOf(const HidDeviceInfo &device) const override;

    std::optional<HidDeviceInfo> find(std::uint16_t vendorId, std::uint16_t productId) const;
    void startReporting(DeviceEvents *listener);
    /// @param node over a connection to which
    int sendFeatureReport(const QString &node, std::span<const std::uint8_t> report);
    QList<HidDeviceInfo> present() const;
    std::optional<int> read(std::span<std::uint8_t> buffer, std::chrono::milliseconds patience);
    /// Of a device that sends by itself: its reports come when they came. At the end of the record
    /// the latest comes again and again, in the rhythm of readings.
    std::optional<int> listen(const QString &node, std::span<std::uint8_t> buffer);

private:
    using Kind = TrafficLine::Kind;

    /// Null at the end.
    const TrafficLine *nextLine() const;
    bool isNext(Kind kind) const;
    /// Lines that nobody will ask for: the commands of the recorded user.
    void passCommands();
    bool isOpening(const QString &node) const;
    /// The recorded program opened anew what is open here: it had slept, or was permitted again.
    void passOpening();
    void take();
    void describe();
    /// By the attach that is the next line.
    void describeAttached(const QString &node);
    bool canBeOpened(const QString &node);
    bool isDescribed(const QString &node) const { return m_about.contains(node); }
    /// The recorded program waited in vain for an answer to the poll taken last.
    bool wasSilent(std::chrono::milliseconds patience) const;
    std::chrono::milliseconds untilDue(const TrafficLine &line) const;
    void scheduleEvent();
    void reportEvent();
    void noteEnd();

    std::vector<TrafficLine> m_lines;
    std::size_t m_next = 0;
    std::chrono::milliseconds m_takenTime{0}; ///< recorded time of the line taken last
    QElapsedTimer m_sinceTaken;
    QPointer<DeviceEvents> m_listener;
    QTimer m_eventDue;
    QHash<QString, HidDeviceInfo> m_present;        ///< by node
    QHash<QString, TrafficLine> m_about;            ///< by node, of the scales of the class there
    QHash<std::size_t, TrafficLine> m_descriptions; ///< by the place of the attach in the lines
    TrafficLine m_latestRead;
    bool m_awaitsAnswer = false; ///< to the poll taken last
    QString m_openError;
    int m_openErrorNumber = 0;
    bool m_endNoted = false;
};
