// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "lcd/DigitLayout.h"

#include <array>
#include <optional>
#include <span>

inline constexpr int unitRowCount = 7;

/// One for each row, from above.
using UnitRowSet = std::array<bool, unitRowCount>;

/// Which rows a model allows.
/// @param modelIndex one of modelindex::; any other counts as c300
UnitRowSet enabledRows(int modelIndex);

/// The row of a unit tag; none for what is no tag.
std::optional<int> rowOfUnit(int unitnumber);

/// The row that shows what switching on sets: kilograms on the binary scale, else pounds and
/// ounces B.
int powerOnRow(int currentScale);

/// The views that hold zeros on an empty pan, in the order in which a tare makes them blink. None
/// on the binary scale.
std::span<const DigitView> blinkingViews(int currentScale, int unitnumber);
