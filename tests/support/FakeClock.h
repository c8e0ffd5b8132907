// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>

/// The clock that timers go by (CLOCK_MONOTONIC), defined by the test program itself: on the main
/// thread time stands still until the test moves it on. Whatever waits there for a deadline waits
/// for ever, QTRY_ included. The time of day and the other threads' clock are left alone.
namespace fakeclock {

void advance(std::chrono::milliseconds time);

} // namespace fakeclock
