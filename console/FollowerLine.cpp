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

bool ParcelFilter::takes(const ReadingReport &report)
{
    const bool isWeight = report.state == ReportState::Weight && report.shown;
    if (!isWeight || !report.parcel) {
        // What is settling may still be what was there; an empty pan is not.
        m_isOnPan = m_isOnPan && !(isWeight && report.shown->weight <= 0);
        return false;
    }
    const bool isKnown = isLatest(report);
    m_latest = report;
    m_isOnPan = true;
    m_isNewConnection = false;
    return !isKnown;
}

bool ParcelFilter::isLatest(const ReadingReport &report) const
{
    if (m_isNewConnection)
        return m_isOnPan && report.grams == m_latest.grams;
    return report.parcel == m_latest.parcel;
}
