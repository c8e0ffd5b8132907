// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/RepeatingTimer.h"

RepeatingTimer::RepeatingTimer(std::chrono::milliseconds interval, QObject *parent)
    : QTimer(parent)
    , m_period(interval)
{
    setSingleShot(true);
    setTimerType(Qt::PreciseTimer);
    connect(this, &QTimer::timeout, this, &RepeatingTimer::fire);
    m_sinceStart.start();
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
    const std::chrono::milliseconds elapsed(m_sinceStart.elapsed());
    start(m_period - elapsed % m_period);
}
