// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ReadingReport.h"

#include <chrono>

/// Which readings are worth a word to who listens: a weight that has settled, once; what goes wrong
/// and what comes back, at once; nothing of a weight on its way.
class SpokenReadings
{
public:
    /// What else says in words that something is wrong.
    enum class Notice { None, Said };

    /// @param now of a clock that only goes on
    /// @param notice of this very trouble: it needs no words here then
    /// @return what is to be said; mostly nothing
    QString take(const ReadingReport &report, std::chrono::milliseconds now,
                 Notice notice = Notice::None);

private:
    bool isOtherTrouble(const ReadingReport &report) const;
    QString weightWords(const ReadingReport &report, std::chrono::milliseconds now);

    ReportState m_state = ReportState::NoScale;
    QString m_words; ///< of the latest weight
    std::chrono::milliseconds m_wordsSince{};
    /// Or what else there is in place of a weight.
    QString m_trouble = ReadingReport::of(ReportState::NoScale).words;
    QString m_told; ///< which weight; empty after anything else
};
