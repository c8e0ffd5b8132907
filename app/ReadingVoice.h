// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SpokenReadings.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QObject>

class Announcer;
class ReadingReportDelegate;

/// Has a screen reader say what a person who looks at the window sees: readings and troubles by
/// SpokenReadings, each notice at the window's edge, and that a command was taken. Costs nothing
/// while no screen reader runs.
class ReadingVoice : public QObject, private QAccessible::ActivationObserver
{
    Q_OBJECT

public:
    /// @p delegate must outlive the object, and has its window.
    explicit ReadingVoice(ReadingReportDelegate &delegate);
    ~ReadingVoice() override;
    ReadingVoice(const ReadingVoice &) = delete;
    ReadingVoice &operator=(const ReadingVoice &) = delete;

private:
    void accessibilityActiveChanged(bool active) override;
    void tellReading();
    /// Once the event loop is back.
    void tellWhatStands();
    void tellNotice(const QString &words);
    void confirm(const QString &command);
    void confirmHold();

    ReadingReportDelegate &m_delegate;
    Announcer *m_announcer;
    bool m_isHeard; ///< by a screen reader
    SpokenReadings m_readings;
    QElapsedTimer m_clock;
};
