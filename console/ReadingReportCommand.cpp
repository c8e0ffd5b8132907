// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/ReadingReportCommand.h"

#include "app/Application.h"
#include "console/SingleInstance.h"
#include "console/SingleInstanceRequest.h"
#include "scale/pointofsale/ReportRhythm.h"
#include "scale/pointofsale/ScaleSearch.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <cstdio>

using namespace std::chrono_literals;

namespace {

/// Fifteen readings.
constexpr auto answerPatience = 6000ms;
/// Of a scale that sends by itself: what comes first counts once another report has come or none is
/// to be waited for any more.
constexpr auto listeningPatience = 2 * ReportRhythm::patience + 1000ms;
constexpr auto answerInterval = 100ms;

void write(const ReadingReport &report, ReportFormat format)
{
    if (format == ReportFormat::Json)
        std::puts(QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact).constData());
    else if (report.hasReading())
        std::puts(qPrintable(report.words));
    if (!report.hasReading())
        std::fprintf(stderr, "%s\n", qPrintable(report.words));
}

/// Nothing certain has come from the scale, or its answer is late. One that sends by itself has
/// been waited for when it is said not to answer.
bool isComing(const ReadingReport &report)
{
    return report.state == ReportState::Waiting ||
           (report.state == ReportState::NoAnswer && report.device.isEmpty());
}

/// In the beginning the event loop has not attached the scale yet.
bool isFinal(const ReadingReport &report)
{
    return !isComing(report) && report.state != ReportState::NoScale;
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
    if (!findAnyScale(m_application.devices()).name.isEmpty())
        m_deadline.setRemainingTime(listeningPatience);
    const ReadingReport report = fromWindowOrScale(line.infoFile);
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
            return ReadingReport::ofHangingWindow();
        const ReadingReport report = ReadingReport::fromJson(claim.answer);
        if (!isComing(report) || m_deadline.hasExpired())
            return report;
        QThread::msleep(answerInterval.count());
    }
}

ReadingReport ReadingReportCommand::fromScale(const QString &infoFile)
{
    const ScaleAccess access = findAnyScale(m_application.devices()).node.access;
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
