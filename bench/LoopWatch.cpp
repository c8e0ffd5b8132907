// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// To be preloaded into a program: writes, to the file that LOOP_WATCH_FILE names, how many
// nanoseconds its event loop was away each time before it waited again.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <poll.h>
#include <unistd.h>

namespace {

using Poll = int (*)(pollfd *, nfds_t, int);

std::int64_t now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

/// Libraries that wait for one answer wait on one descriptor, and hold the thread meanwhile; the
/// event loop has several.
bool isEventLoop(nfds_t count)
{
    return count > 1 && gettid() == getpid();
}

std::FILE *output()
{
    static std::FILE *const file = [] {
        const char *name = std::getenv("LOOP_WATCH_FILE");
        return name != nullptr ? std::fopen(name, "we") : nullptr;
    }();
    return file;
}

} // namespace

extern "C" int poll(pollfd *descriptors, nfds_t count, int timeout)
{
    static const auto next = reinterpret_cast<Poll>(dlsym(RTLD_NEXT, "poll"));
    static std::int64_t wakeUp = 0;
    // A look without waiting is a part of the turn.
    if (!isEventLoop(count) || timeout == 0)
        return next(descriptors, count, timeout);
    if (wakeUp != 0 && output() != nullptr) {
        std::fprintf(output(), "%lld\n", static_cast<long long>(now() - wakeUp));
        std::fflush(output());
    }
    const int result = next(descriptors, count, timeout);
    wakeUp = now();
    return result;
}
