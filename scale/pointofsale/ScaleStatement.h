// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/pointofsale/ScaleNumber.h"

#include <cstdint>

// The numbers are those of the HID Point of Sale usage tables, page 0x8D ("Weighing Devices"),
// without the 0x70 and 0x50 that the usages add to them.

/// What the scale says of its weight.
enum class ScaleStatus : std::uint8_t {
    Unknown,
    Fault,
    StableAtZero,
    InMotion,
    Stable,
    UnderZero,
    OverLimit,
    ToBeCalibrated,
    ToBeZeroed,
};

enum class WeightUnit : std::uint8_t {
    Unknown, ///< some scales name none at zero
    Milligram,
    Gram,
    Kilogram,
    Carat,
    Tael,
    Grain,
    Pennyweight,
    Tonne,
    ShortTon,
    TroyOunce,
    Ounce,
    Pound,
};

/// What one report of the scale says.
struct ScaleStatement
{
    ScaleStatus status = ScaleStatus::Unknown;
    WeightUnit unit = WeightUnit::Unknown;
    ScaleNumber number;

    /// It comes with a number that means something.
    bool isWeighed() const
    {
        return status == ScaleStatus::StableAtZero || status == ScaleStatus::InMotion ||
               status == ScaleStatus::Stable || status == ScaleStatus::UnderZero;
    }
    /// And status and number do not contradict each other, so that it may leave.
    bool isSound() const
    {
        return isWeighed() && (status != ScaleStatus::StableAtZero || number.isZero());
    }
    /// Above zero and at rest, by the scale's own word.
    bool isSettled() const
    {
        return status == ScaleStatus::Stable && !number.isZero() && !number.isNegative &&
               unit != WeightUnit::Unknown;
    }

    bool operator==(const ScaleStatement &) const = default;
};
