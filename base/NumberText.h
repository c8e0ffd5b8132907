// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Numbers as they leave the program: always with a point, whatever the desktop's locale says, and
// with exact halves rounded to even.

/// At most seven significant digits, no trailing zeros, no point for a whole number.
QString floatText(float value);

/// Exactly @p decimals digits behind the point.
QString fixedText(double value, int decimals);
