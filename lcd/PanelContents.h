// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <array>
#include <optional>

/// What can be seen on the panel. Pictures, words and numbers are made from it.
struct PanelContents
{
    /// 0 to 9; nothing where the position is dark, or is to show what there is no picture of.
    using Digit = std::optional<int>;

    std::array<Digit, 4> digits; ///< from the left
    Digit numerator;             ///< the tenths while the bar is not shown
    Digit denominator;
    std::array<bool, 4> points{}; ///< each behind its digit
    bool bar = false;
    bool colon = false;
    bool minus = false;
    bool overload = false;
    bool grams = false;
    bool kilograms = false;
    bool pounds = false;
    bool ounces = false;
    bool hold = false;
    QString words; ///< what the pictures have no room for, as it is read out; mostly empty

    bool isBlank() const { return digits == std::array<Digit, 4>{} && !numerator; }

    bool operator==(const PanelContents &) const = default;
};
