// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

inline constexpr int unitRowCount = 7;

/// Which rows a model allows. @p modelIndex 0 to 7; any other counts as 7.
std::array<bool, unitRowCount> enabledRows(int modelIndex);

/// The row of a unit number 0 to 6; none for any other.
std::optional<int> rowOfUnit(int unitnumber);

/// The row that shows what switching on sets: kilograms on the binary scale, else pounds and
/// ounces B.
int powerOnRow(int currentScale);

enum class BlinkView : std::uint8_t { digZero, digOne, digTwo, digThree, numeratorImg };

/// The views that hold zeros on an empty pan, in the order in which a tare makes them blink. None
/// on the binary scale.
std::span<const BlinkView> blinkingViews(int currentScale, int unitnumber);
