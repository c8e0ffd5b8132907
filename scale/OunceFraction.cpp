// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/OunceFraction.h"

#include <array>

Fraction ounceFraction(int tenths, Capacity capacity)
{
    static constexpr std::array<Fraction, 10> eighths{
        {{0, 0}, {1, 8}, {1, 4}, {1, 4}, {3, 8}, {1, 2}, {5, 8}, {3, 4}, {3, 4}, {7, 8}}};
    static constexpr std::array<Fraction, 10> quarters{
        {{0, 0}, {1, 4}, {1, 4}, {1, 4}, {1, 2}, {1, 2}, {1, 2}, {3, 4}, {3, 4}, {3, 4}}};
    if (tenths < 0 || tenths > 9)
        return {tenths, 0};
    const auto index = static_cast<std::size_t>(tenths);
    return capacity == Capacity::High ? quarters[index] : eighths[index];
}
