// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/ReadingReportCommand.h"

#include "app/Application.h"
#include "console/SingleInstance.h"
#include "console/SingleInstanceRequest.h"
#include "scale/ScaleNode.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace {

/// Fifteen readings.
constexpr auto answerPatience = 6000ms;
constexpr auto answerInterval = 100ms;
/// A read that has not come back by then never will.
constexpr auto blockedTime = answerPatience + 2000ms;

void write(const ReadingReport &report, ReportFormat format)
{
    if (format == ReportFormat::Json)
        std::puts(QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact).constData());
    else if (report.hasReading())
        std::puts(qPrintable(report.words));
    if (!report.hasReading())
        std::fprintf(stderr, "%s\n", qPrintable(report.words));
}

/// Acts when it is not destroyed in time. The thread that reads the scale cannot watch itself: it
/// waits for a report as long as it takes.
class Watchdog
{
public:
    explicit Watchdog(std::function<void()> action)
        : m_thread([this, act = std::move(action)](const std::stop_token &stop) {
            std::unique_lock lock(m_mutex);
            if (!m_stopped.wait_for(lock, stop, blockedTime, [&] { return stop.stop_requested(); }))
                act();
        })
    {
    }

private:
    std::mutex m_mutex;
    std::condition_variable_any m_stopped;
    std::jthread m_thread;
};

/// The event loop has not attached the scale yet, or nothing certain has come from it.
bool isFinal(const ReadingReport &report)
{
    return report.state != ReportState::Waiting && report.state != ReportState::NoScale;
}

[[noreturn]] void endUnanswered(ReportFormat format)
{
    const ReadingReport report = ReadingReport::of(ReportState::NoAnswer);
    write(report, format);
    std::fflush(nullptr);
    // Destructors would wait for the thread that reads.
    std::_Exit(report.exitStatus());
}

} // namespace

ReadingReportCommand::ReadingReportCommand(Application &application, SingleInstance &instance)
    : m_application(application)
    , m_instance(instance)
    , m_deadline(answerPatience)
{
}

int ReadingReportCommand::run(const CommandLine &line)
{
    // Standard error is for the one line that says why there is no reading.
    QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
    ReadingReport report;
    {
        const Watchdog watchdog([&] { endUnanswered(line.format); });
        report = fromWindowOrScale(line.infoFile);
    }
    write(report, line.format);
    return report.exitStatus();
}

ReadingReport ReadingReportCommand::fromWindowOrScale(const QString &infoFile)
{
    for (;;) {
        const SingleInstance::Claim claim = m_instance.claim(readingRequest());
        if (claim.outcome == SingleInstance::Claim::Outcome::Ours)
            return fromScale(infoFile);
        if (claim.outcome == SingleInstance::Claim::Outcome::Unanswered)
            return ReadingReport::of(ReportState::NoAnswer);
        const ReadingReport report = ReadingReport::fromJson(claim.answer);
        if (report.state != ReportState::Waiting || m_deadline.hasExpired())
            return report;
        QThread::msleep(answerInterval.count());
    }
}

ReadingReport ReadingReportCommand::fromScale(const QString &infoFile)
{
    const ScaleAccess access = findScaleNode(m_application.devices()).access;
    if (access == ScaleAccess::Absent)
        return ReadingReport::of(ReportState::NoScale);
    if (access == ScaleAccess::Denied)
        return ReadingReport::of(ReportState::NoPermission);

    m_application.launchUnseen(infoFile);
    ReadingReport report;
    QEventLoop readings;
    const auto look = [&] {
        report = m_application.delegate()->readingReport();
        if (isFinal(report) || m_deadline.hasExpired())
            readings.quit();
    };
    QTimer interval;
    interval.setInterval(answerInterval);
    QObject::connect(&interval, &QTimer::timeout, &readings, look);
    interval.start();
    readings.exec();
    return report;
}
