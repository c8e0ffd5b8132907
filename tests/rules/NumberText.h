// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace rules {

/// At most seven significant digits, no trailing zeros: 453.6, 1000, 9.599999. The point is a
/// point in every locale, here and below.
std::string numberText(double value);

/// Exactly `decimals` digits behind the point, halves to even; "inf" and "nan" carry no sign of
/// their own when the value is not a number.
std::string fixedText(double value, int decimals);

} // namespace rules
