// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/NumberText.h"

#include <array>
#include <charconv>

namespace {

QString text(double value, std::chars_format format, int precision)
{
    // Long enough for the largest double in fixed notation with six decimals.
    std::array<char, 330> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision).ptr;
    return QString::fromLatin1(buffer.data(), end - buffer.data());
}

} // namespace

QString floatText(float value)
{
    return text(value, std::chars_format::general, 7);
}

QString fixedText(double value, int decimals)
{
    return text(value, std::chars_format::fixed, decimals);
}
