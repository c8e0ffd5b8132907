// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace rules {

/// What happens at a scale, one after the other.
struct PanEvent
{
    enum Kind : std::uint8_t { Report, FailedRead, UnitChange, HoldChange, ScaleLost };
    Kind kind = Report;
    std::array<std::uint8_t, 3> bytes{}; ///< of a report

    bool operator==(const PanEvent &) const = default;
};

/// Whether the last event of @p history is a report at which the parcel's weight leaves. Told by
/// looking back from it, without a state that would be carried along.
bool leavesAtEndOf(std::span<const PanEvent> history);

enum class Pan { Empty, Settling, Settled };

/// How it stands after the last event.
Pan panAtEndOf(std::span<const PanEvent> history);

} // namespace rules
