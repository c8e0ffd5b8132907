// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <chrono>

/// Where the machine stands between the news that it goes to sleep and the moment when its devices
/// have settled again.
class SleepRest
{
public:
    void begin();
    /// How long the machine slept.
    std::chrono::milliseconds wakeUp();
    /// Within the time in which devices come and go: the scale is to be found once more.
    void lookAgain() { m_isResting = m_isAwake = true; }
    void end() { m_isResting = m_isAwake = false; }

    /// The machine has not been said to be awake.
    bool isAsleep() const { return m_isResting && !m_isAwake; }
    /// Asleep for longer than a machine takes to fall asleep, by the clock that stands still while
    /// it sleeps: the news that it is awake will not come any more.
    bool isOverdue() const;
    /// The scale has not been found again yet.
    bool isResting() const { return m_isResting; }
    /// The machine is awake, the scale is not found yet, and its coming or going may be announced.
    bool isLooking() const { return m_isResting && m_isAwake && !m_settling.hasExpired(); }
    /// Devices may still come and go because of the sleep.
    bool isNear() const { return m_isResting || !m_settling.hasExpired(); }

private:
    bool m_isResting = false;
    bool m_isAwake = false;
    std::chrono::nanoseconds m_sleptBefore{}; ///< all sleeps since the machine was started
    QElapsedTimer m_sinceBegin;
    QDeadlineTimer m_settling{0};
};
