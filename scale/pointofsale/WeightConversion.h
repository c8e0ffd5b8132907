// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/WeightText.h"
#include "scale/pointofsale/ScaleStatement.h"

#include <optional>

// Weights in another unit than the scale's own. Nothing is rounded before the last digit that is
// written: a pound is 453.59237 g exactly, and an ounce a sixteenth of it. The unit tael stands for
// several weights, and none is taken for it.

/// In pounds or kilograms: at most seven significant digits, halves rounded to even, no trailing
/// zeros, or rounded up to a whole number. Nothing where the unit says no weight, or the number has
/// more than fifteen digits before the point or more than nine zeros behind it.
std::optional<QString> exportText(const ScaleStatement &statement, ExportForm form,
                                  ExportRounding rounding);

/// As the carriers' pages want it, without the sign; the decimal pounds with halves rounded to
/// even. Nothing where exportText() has nothing.
std::optional<WebStrings> webStrings(const ScaleStatement &statement);

/// In @p unit, one that exportText() knows: at most so many decimals, halves rounded to even, no
/// trailing zeros, or rounded up to a whole number. Without the sign. Nothing where exportText()
/// has nothing.
std::optional<QString> unitText(const ScaleStatement &statement, WeightUnit unit, int decimals,
                                ExportRounding rounding);

/// Metric units leave as kilograms, all others as pounds.
ExportForm exportForm(WeightUnit unit);

/// Grams, as near as a double gets to them; nothing where exportText() has nothing.
std::optional<double> gramsOf(const ScaleStatement &statement);

/// Pounds and ounces for a number of ounces; the ounces keep its decimals.
struct PoundsAndOunces
{
    std::uint32_t pounds = 0;
    ScaleNumber ounces; ///< below 16
};

/// Nothing where the exponent is above 0, so that not every pound could be told, or below -6.
std::optional<PoundsAndOunces> poundsAndOunces(const ScaleNumber &ounces);
