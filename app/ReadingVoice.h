// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SpokenReadings.h"

#include <QElapsedTimer>
#include <QObject>

class Announcer;
class ReadingReportDelegate;

/// Has a screen reader say what a person who looks at the window sees: readings and troubles by
/// SpokenReadings, and that a command was taken. Costs nothing while no screen reader runs.
class ReadingVoice : public QObject
{
    Q_OBJECT

public:
    /// @p delegate must outlive the object, and has its window.
    explicit ReadingVoice(ReadingReportDelegate &delegate);

private:
    void tellReading();
    void confirm(const QString &command);

    ReadingReportDelegate &m_delegate;
    Announcer *m_announcer;
    SpokenReadings m_readings;
    QElapsedTimer m_clock;
};
