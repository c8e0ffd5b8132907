// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/ScaleCodes.h"

/// A fraction of an ounce as the panel stacks it; 0/0 stands for none.
struct Fraction
{
    int numerator = 0;
    int denominator = 0;

    bool operator==(const Fraction &) const = default;
};

/// The nearest eighth to @p tenths of an ounce (0 to 9), the nearest quarter on models that count
/// in 10 g steps. Anything else is handed on as numerator over 0.
Fraction ounceFraction(int tenths, Capacity capacity);
