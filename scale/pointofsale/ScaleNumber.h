// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <cstdint>

/// A decimal number, exactly as a scale states it: digits times ten to the power of the exponent.
struct ScaleNumber
{
    std::uint32_t digits = 0;
    int exponent = 0;
    bool isNegative = false; ///< of a zero too: below zero, nobody knows how far

    bool isZero() const { return digits == 0; }

    bool operator==(const ScaleNumber &) const = default;
};

/// In full, without the sign: "0.50", "1200". As many decimals as the number has.
QString magnitudeText(const ScaleNumber &number);
