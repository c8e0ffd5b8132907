// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace rules {

/// What a report of a scale of the point-of-sale class says.
struct Stated
{
    int status = 0; ///< 1 to 8; 0: none of those
    int unit = 0;   ///< 1 to 12; 0: none of those
    std::uint32_t digits = 0;
    int exponent = 0;
    bool below = false;
};

/// Report 3 of the class: status, unit, exponent, weight with its low byte first. Nothing for
/// others.
std::optional<Stated> stated(const std::vector<std::uint8_t> &report);

/// In full, without the sign.
std::string statedNumber(const Stated &weight);

struct StatedTexts
{
    std::string pounds;          ///< seven significant digits, halves to even
    std::string kilograms;       ///< the same
    std::string grams;           ///< the same
    std::string poundsUp;        ///< up to a whole number
    std::string kilogramsUp;     ///< the same
    std::string wholePounds;     ///< and with them
    std::string remainingOunces; ///< up to a whole number
};

/// Nothing where no weight is said, or its grams have more than 15 digits before the point or more
/// than 9 zeros behind it.
std::optional<StatedTexts> statedTexts(const Stated &weight);

} // namespace rules
