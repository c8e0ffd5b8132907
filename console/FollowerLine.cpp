// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/FollowerLine.h"

#include <QDateTime>
#include <QJsonDocument>
#include <algorithm>

namespace {

const QString countKey = QStringLiteral("count");
const QString timeKey = QStringLiteral("time");

ReadingReport withoutAge(ReadingReport report)
{
    report.age.reset();
    return report;
}

bool isShownWeight(const ReadingReport &report)
{
    return report.state == ReportState::Weight && report.shown;
}

/// Whatever its unit, where there are grams of it.
bool isSameLoad(const ReadingReport &one, const ReadingReport &other)
{
    return one.grams || other.grams ? one.grams == other.grams : one.shown == other.shown;
}

} // namespace

QByteArray followerLine(const ReadingReport &report, int number)
{
    const QDateTime now = QDateTime::currentDateTime();
    QJsonObject object = report.toJson();
    object.insert(countKey, number);
    object.insert(timeKey, now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs));
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<QByteArray> FollowerLines::next(const ReadingReport &report)
{
    if (m_number > 0 && withoutAge(report) == withoutAge(m_latest))
        return {};
    return again(report);
}

QByteArray FollowerLines::again(const ReadingReport &report)
{
    m_latest = report;
    return followerLine(report, ++m_number);
}

QByteArray FollowerLines::present(const ReadingReport &report) const
{
    return followerLine(report, m_number);
}

int FollowedCount::next(const QJsonObject &line)
{
    const int number = line.value(countKey).toInt();
    m_own += m_ofSource == 0 ? 1 : std::max(1, number - m_ofSource);
    m_ofSource = number;
    return m_own;
}

QString FollowedWords::next(const ReadingReport &report)
{
    const bool isSignOfLife = withoutAge(report) == withoutAge(m_latest);
    m_latest = report;
    if (!isSignOfLife)
        return report.words;
    if (!report.age)
        return report.words + QStringLiteral(" (still)");
    const auto seconds = static_cast<qint64>(*report.age);
    return report.words + QStringLiteral(" (still, %1 s old)").arg(seconds);
}

bool ParcelFilter::takes(const ReadingReport &report)
{
    m_isOnPan = m_isOnPan && !tellsOfAnother(report);
    if (!isShownWeight(report) || !report.parcel)
        return false;
    const bool isKnown = isLatest(report);
    m_latest = report;
    m_isOnPan = true;
    m_isNewConnection = false;
    return !isKnown;
}

bool ParcelFilter::isLatest(const ReadingReport &report) const
{
    return m_isOnPan || (!m_isNewConnection && report.parcel == m_latest.parcel);
}

bool ParcelFilter::tellsOfAnother(const ReadingReport &report) const
{
    if (isShownWeight(report))
        return report.shown->weight <= 0 || !isSameLoad(report, m_latest);
    return report.state == ReportState::Overload || report.state == ReportState::UnderLoad;
}
