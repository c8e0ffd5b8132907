// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The HID access library's functions, defined by the test program itself, so that the real link
/// is compiled and run unchanged.
struct FakeHidapi
{
    bool openFails = false;
    bool sendFails = false;
    std::optional<int> sentBytes; ///< what a send that works answers, where it is not the length
    std::function<void()> duringSend; ///< what goes on while a report is on its way; may be empty
    /// To be read, oldest first; none left: the read fails.
    std::deque<std::vector<std::uint8_t>> reports;
    bool readFails = false; ///< also while there are reports
    /// What goes on while a read waits, for so many milliseconds at most; moves the clock on and
    /// may bring a report. Set: with none left, the read ends with its time and does not fail.
    std::function<void(int patience)> duringWait;
    int waits = 0;
    int looks = 0; ///< reads that do not wait
    std::vector<std::array<std::uint8_t, 9>> sent;
    std::vector<std::string> opened;
    int openHandles = 0;
    int misuses = 0; ///< calls with a handle that is closed, closing again among them

    static FakeHidapi &instance();
    static void reset() { instance() = {}; }
};
