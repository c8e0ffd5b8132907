// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/pointofsale/ScaleStatement.h"

#include <QString>

/// "oz"; empty where the unit is not known.
QString unitSymbol(WeightUnit unit);

/// The number in full, with its sign and the unit's name: "minus 0.5 ounces".
QString numberWords(const ScaleStatement &statement);

/// The number in full, or, where hardly anybody would read it to its end, as digits and a power of
/// ten: "12.50", "65535e+40".
QString shortMagnitudeText(const ScaleNumber &number);
