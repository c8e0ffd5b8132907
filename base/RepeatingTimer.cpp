// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/RepeatingTimer.h"

RepeatingTimer::RepeatingTimer(std::chrono::milliseconds interval, QObject *parent)
    : QTimer(parent)
    , period(interval)
{
    setSingleShot(true);
    setTimerType(Qt::PreciseTimer);
    connect(this, &QTimer::timeout, this, &RepeatingTimer::fire);
    sinceStart.start();
    waitForNextMultiple();
}

void RepeatingTimer::fire()
{
    waitForNextMultiple();
    emit fired();
    // Unless the action stopped it; then from now on, in case the action was slow.
    if (isActive())
        waitForNextMultiple();
}

void RepeatingTimer::waitForNextMultiple()
{
    const std::chrono::milliseconds elapsed(sinceStart.elapsed());
    start(period - elapsed % period);
}
