// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/pointofsale/ScaleStatement.h"

#include <QElapsedTimer>
#include <chrono>
#include <optional>

/// When a scale's reports came, and what is to be thought of the latest one. Some scales send all
/// the time, some every few seconds, and some only when something changes.
class ReportRhythm
{
public:
    /// The longest time between two reports that a scale is given. Without one for so long nothing
    /// is known of what comes next: it may be of another time. And what comes first, with nothing
    /// behind it for so long, is what the scale has to say.
    static constexpr std::chrono::milliseconds patience{10000};

    /// From here on reports are waited for.
    void begin();
    void take(const ScaleStatement &statement);
    /// Newer reports than the latest one are lost: it counts as the first one of a row.
    void doubt() { m_isFirst = true; }

    /// The latest report is of now: the first one of a row may be of the weighing before. Silence
    /// speaks for it only where the scale may be silent.
    bool isConfirmed() const;
    /// A report should have come and has not: of a scale that repeats itself, of one whose load was
    /// in motion, and of one that has sent nothing at all.
    bool isSilent() const;
    bool hasBegun() const { return m_latest.has_value(); }

private:
    std::chrono::milliseconds sinceReport() const;

    QElapsedTimer m_sinceReport; ///< or since the begin
    std::optional<ScaleStatement> m_latest;
    bool m_isFirst = false; ///< of a row
    /// The longest time between two equal reports at rest; nothing where there were none.
    std::optional<std::chrono::milliseconds> m_interval;
};
