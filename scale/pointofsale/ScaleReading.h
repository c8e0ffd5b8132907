// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/pointofsale/ScaleStatement.h"

/// A reading as it is shown and kept in mind.
struct ScaleReading
{
    ScaleStatement statement; ///< while it is held, the one that is held
    bool isHeld = false;
    bool asPoundsAndOunces = false; ///< what is stated in ounces
    bool canTare = false;

    bool operator==(const ScaleReading &) const = default;
};
