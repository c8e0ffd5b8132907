// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeClock.h"

#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr long nanosecondsPerSecond = 1'000'000'000;

long askKernel(clockid_t clock, timespec *time)
{
    return syscall(SYS_clock_gettime, clock, time);
}

/// Starts at the kernel's own time, so that deadlines from before stay near.
long &nanoseconds()
{
    static long now = [] {
        timespec start{};
        askKernel(CLOCK_MONOTONIC, &start);
        return start.tv_sec * nanosecondsPerSecond + start.tv_nsec;
    }();
    return now;
}

bool onMainThread()
{
    thread_local const bool main = gettid() == getpid();
    return main;
}

} // namespace

void fakeclock::advance(std::chrono::milliseconds time)
{
    nanoseconds() += std::chrono::nanoseconds(time).count();
}

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    if (clock != CLOCK_MONOTONIC || !onMainThread())
        return static_cast<int>(askKernel(clock, time));
    const long now = nanoseconds();
    time->tv_sec = now / nanosecondsPerSecond;
    time->tv_nsec = now % nanosecondsPerSecond;
    return 0;
}
