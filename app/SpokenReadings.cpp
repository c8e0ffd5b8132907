// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/SpokenReadings.h"

#include <QStringList>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// Zero and less have no settling; a parcel that is being lifted passes through both.
constexpr auto steadyAfter = 1000ms;

} // namespace

QString SpokenReadings::take(const ReadingReport &report, std::chrono::milliseconds now,
                             Notice notice)
{
    // What is not certain yet takes nothing back, but a scale that is there.
    if (report.state == ReportState::Waiting && m_state != ReportState::NoScale)
        return {};
    const ReportState before = std::exchange(m_state, report.state);
    QStringList said;
    if (before == ReportState::NoScale && m_state != before)
        said.append(QStringLiteral("Scale connected"));
    if (before == ReportState::Hold && m_state == ReportState::Weight)
        said.append(QStringLiteral("Hold is off"));
    if (m_state == ReportState::Weight) {
        said.append(weightWords(report, now));
    } else if (m_state != before || isOtherTrouble(report)) {
        m_trouble = report.words;
        // A weight that was held is still on the pan.
        if (m_state != ReportState::Hold)
            m_told.clear();
        if (m_state != ReportState::Waiting && notice == Notice::None)
            said.append(report.words);
    }
    said.removeAll(QString());
    return said.join(QStringLiteral(". "));
}

/// A scale that tells what is wrong may go from one thing to the next.
bool SpokenReadings::isOtherTrouble(const ReadingReport &report) const
{
    return !report.hasReading() && report.words != m_trouble;
}

QString SpokenReadings::weightWords(const ReadingReport &report, std::chrono::milliseconds now)
{
    if (report.words != m_words) {
        m_words = report.words;
        m_wordsSince = now;
    }
    const bool isSettled = report.settled.value_or(false);
    const bool isNothing = report.shown && report.shown->weight <= 0;
    if (!isSettled && !(isNothing && now - m_wordsSince >= steadyAfter))
        return {};
    const QString weight =
        isSettled ? QStringLiteral("%1: %2").arg(report.parcel.value_or(0)).arg(m_words) : m_words;
    if (weight == std::exchange(m_told, weight))
        return {};
    return report.advice.isEmpty() ? m_words : QStringLiteral("%1, %2").arg(m_words, report.advice);
}
