// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/SleepRest.h"

#include <algorithm>
#include <ctime>

using namespace std::chrono_literals;

namespace {

/// A hub and its devices are back within two or three seconds.
constexpr auto settlingTime = 10s;

/// logind waits five seconds for those who hold it up, unless it is told to wait longer.
constexpr auto longestGoodNight = 30s;

std::chrono::nanoseconds read(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// All sleeps since the machine was started: of the two clocks only one goes on in them.
std::chrono::nanoseconds slept()
{
    return read(CLOCK_BOOTTIME) - read(CLOCK_MONOTONIC);
}

} // namespace

void SleepRest::begin()
{
    m_isResting = true;
    m_isAwake = false;
    m_sleptBefore = slept();
    m_sinceBegin.start();
}

bool SleepRest::isOverdue() const
{
    return isAsleep() && std::chrono::milliseconds(m_sinceBegin.elapsed()) >= longestGoodNight;
}

std::chrono::milliseconds SleepRest::wakeUp()
{
    m_isAwake = true;
    m_settling.setRemainingTime(settlingTime);
    const auto time =
        std::chrono::duration_cast<std::chrono::milliseconds>(slept() - m_sleptBefore);
    return std::max(time, 0ms);
}
