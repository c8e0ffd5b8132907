// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <span>
#include <string>
#include <vector>

/// The feature reports that a device has received, for those who want to know or to wait.
class FeatureLog
{
public:
    FeatureLog() = default;
    ~FeatureLog();
    FeatureLog(const FeatureLog &) = delete;
    FeatureLog &operator=(const FeatureLog &) = delete;

    void record(std::span<const std::uint8_t> report);
    void clear();
    /// "SECONDS HEX" each, seconds since the device was made, oldest first.
    std::vector<std::string> lines() const;

    enum class Outcome { Reached, TimedOut };
    using Callback = std::function<void(Outcome)>;

    /// Until @p count more reports have been received than now.
    void waitFor(int count, std::chrono::milliseconds timeout, Callback callback);

private:
    struct Waiter
    {
        FeatureLog *log = nullptr;
        std::uint64_t target = 0;
        unsigned timer = 0;
        Callback callback;
    };

    void wake(std::list<Waiter>::iterator waiter, Outcome outcome);

    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    std::vector<std::string> m_recorded;
    std::uint64_t m_received = 0; ///< goes on counting through clear()
    std::list<Waiter> m_waiters;
};
