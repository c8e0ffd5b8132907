// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <chrono>

/// Fires at the multiples of its interval, counted from its start. Multiples that pass while the
/// thread is held by a slow action are skipped, so that the event loop gets its turn in between.
class RepeatingTimer : public QTimer
{
    Q_OBJECT

public:
    RepeatingTimer(std::chrono::milliseconds interval, QObject *parent);

signals:
    void fired();

private:
    void fire();
    void waitForNextMultiple();

    std::chrono::milliseconds m_period;
    QElapsedTimer m_sinceStart;
};
