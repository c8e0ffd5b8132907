// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <cstdint>

/// A log line that a pure rule decided on but leaves to its caller to write: formatting it would
/// cost more than the decision itself.
struct LogLine
{
    enum class Argument : std::uint8_t { None, Number, TwoNumbers, Real };

    const char *text = ""; ///< static storage; %1 and %2 stand for the arguments
    Argument argument = Argument::None;
    std::int64_t first = 0;
    std::int64_t second = 0;
    double real = 0; ///< written with six decimals

    static LogLine plain(const char *text);
    static LogLine number(const char *text, std::int64_t first);
    static LogLine numbers(const char *text, std::int64_t first, std::int64_t second);
    static LogLine withReal(const char *text, double real);

    QString toString() const;
};
