// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/pointofsale/ScaleStatement.h"

/// A reading as it is shown and kept in mind.
struct ScaleReading
{
    ScaleStatement statement; ///< while it is held, the one that is held
    bool isHeld = false;
    bool isConfirmed = true; ///< else it may be of the weighing before
    bool isRepeated =
        false; ///< nothing has come since the reading before; only choices have changed
    bool asPoundsAndOunces = false; ///< what is stated in ounces
    bool canTare = false;
    bool hasTareFailed = false; ///< the scale could not be told

    bool operator==(const ScaleReading &) const = default;
};
