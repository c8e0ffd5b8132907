// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace rules {

namespace {

std::string formatted(double value, std::chars_format format, int precision)
{
    // Zero over zero comes out of the processor with its sign bit set.
    if (std::isnan(value))
        return "nan";
    std::array<char, 400> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
    return {buffer.data(), end.ptr};
}

} // namespace

std::string numberText(double value)
{
    return formatted(value, std::chars_format::general, 7);
}

std::string fixedText(double value, int decimals)
{
    return formatted(value, std::chars_format::fixed, decimals);
}

} // namespace rules
