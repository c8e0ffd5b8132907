// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rules {

/// The link's fields that choosing a unit reads or changes.
struct UnitState
{
    int unitnumber = 3;
    int dotunit = 0;
    int unitindex = 0;
    int currentUnit = 4;
    bool lbOZlast = false;
    std::uint8_t scaleCommand = 0xFF;
};

struct UnitOutcome
{
    UnitState state;
    int selectedRadioButtonIndex;
    std::array<std::uint8_t, 9> report;
    std::vector<std::string> log;
};

/// A click on the cell with `tag` (0 to 6) while a scale is connected. Without one, only the first
/// log line comes about.
UnitOutcome radioSelection(int tag, int currentScale, const UnitState &before);

/// Tags by row; rows run from the top.
const std::array<int, 7> &rowTags();

/// By row. An index outside 0 to 6 counts as 7.
std::array<bool, 7> rowsEnabled(int modelIndex);

/// The row that shows the unit; none for a unit number outside 0 to 6.
std::optional<int> rowOfUnitnumber(int unitnumber);

int powerOnRow(int currentScale);

std::optional<int> modelIndexFromPopUp(std::string_view modelName);
std::optional<int> modelIndexFromMenu(std::string_view modelName);
bool isHighCapacityModel(std::string_view modelName);

/// Outlets of the images that one tick of the tare blink toggles, in order.
std::vector<std::string_view> tareBlinkImages(int currentScale, int unitnumber);

} // namespace rules
