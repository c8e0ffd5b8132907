// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace rules {

struct Segment
{
    std::string_view name;
    /// Outlet of the segment's image view.
    std::string_view view;
};

/// In the order in which a name is looked up.
const std::array<Segment, 13> &segments();

struct IconCall
{
    std::string_view name;
    bool show;
};

struct IconOutcome
{
    std::vector<IconCall> calls;
    std::vector<std::string> log;
};

/// Calls are listed also where they reach no view.
IconOutcome displayUnit(int code, int currentScale, int unitnumber, std::uint8_t scaleCommand,
                        bool highCapacityModel);

/// The names that blanking the panel switches off, in order.
const std::array<std::string_view, 13> &clearAllOrder();

bool drawIconReaches(std::string_view name, int currentScale);

} // namespace rules
