// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/rules/AutofillRules.h"

#include <array>
#include <vector>

namespace rules {

/// What a USPS page has of its rows, and last of the label's choice. In a row's number the digits
/// of base three stand for main box, second box, ounces button and pounds button, the lowest first:
/// 0 is missing, 1 filled or not ticked, 2 empty or ticked. The choice is one such digit.
inline constexpr std::size_t pageRows = 5;
using PageStates = std::array<int, pageRows + 1>;

Page pageOf(const PageStates &states);

/// All states of each row beside all states of each other; the rest at random.
/// @param step every so manyth of each pair's only
std::vector<PageStates> everyPairOfRows(int step = 1);

/// All states of all boxes, without any button: the final fills look at the boxes of all rows.
std::vector<PageStates> everyCombinationOfBoxes(int step = 1);

} // namespace rules
