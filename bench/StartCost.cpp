// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// To be preloaded into a program of the toolkit's: when it hands its first frame to the X server,
// it prints the milliseconds of processor time that all its threads have used until then, and ends.
// Its clocks go slowly meanwhile: what the program puts off until its first frame, for a second at
// most, does not come before that frame where the machine is slow, or callgrind makes it so.

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr std::int64_t slowness = 1000;
constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

/// In the place of the C library's, which the one below hides.
int readClock(clockid_t clock, timespec &time) noexcept
{
    return static_cast<int>(syscall(SYS_clock_gettime, clock, &time));
}

std::int64_t nanoseconds(const timespec &time)
{
    return std::int64_t{time.tv_sec} * nanosecondsPerSecond + time.tv_nsec;
}

[[noreturn]] void tellAndEnd()
{
    timespec used{};
    readClock(CLOCK_PROCESS_CPUTIME_ID, used);
    std::printf("%.3f\n", static_cast<double>(nanoseconds(used)) / 1e6);
    std::fflush(stdout);
    _exit(0);
}

} // namespace

// In the place of the X library's own: with shared memory, and without.
extern "C" int xcb_shm_put_image()
{
    tellAndEnd();
}

extern "C" int xcb_put_image()
{
    tellAndEnd();
}

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    static const std::int64_t begun = [] {
        timespec now{};
        readClock(CLOCK_MONOTONIC, now);
        return nanoseconds(now);
    }();
    const int result = readClock(clock, *time);
    if (result == 0 && clock == CLOCK_MONOTONIC) {
        const std::int64_t slowed = begun + (nanoseconds(*time) - begun) / slowness;
        *time = {.tv_sec = slowed / nanosecondsPerSecond, .tv_nsec = slowed % nanosecondsPerSecond};
    }
    return result;
}
