// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ReportRhythm.h"

#include <algorithm>

using std::chrono::milliseconds;

namespace {

/// So many of its reports in a row are not lost by chance.
constexpr int missedIntervals = 3;

} // namespace

void ReportRhythm::begin()
{
    m_latest.reset();
    m_interval.reset();
    m_isFirst = false;
    m_sinceReport.start();
}

void ReportRhythm::take(const ScaleStatement &statement)
{
    const milliseconds gone = sinceReport();
    m_isFirst = !m_latest || gone >= patience;
    // A load in motion may be reported again by a scale that is quiet at rest.
    const bool isRepeated = m_latest == statement && statement.status != ScaleStatus::InMotion;
    if (isRepeated && !m_isFirst)
        m_interval = std::max(m_interval.value_or(milliseconds(0)), gone);
    m_latest = statement;
    m_sinceReport.start();
}

bool ReportRhythm::isConfirmed() const
{
    return m_latest && (!m_isFirst || (sinceReport() >= patience && !isSilent()));
}

bool ReportRhythm::isSilent() const
{
    if (sinceReport() < patience)
        return false;
    if (!m_latest || m_latest->status == ScaleStatus::InMotion)
        return true;
    return m_interval && sinceReport() >= *m_interval * missedIntervals;
}

milliseconds ReportRhythm::sinceReport() const
{
    return milliseconds(m_sinceReport.elapsed());
}
