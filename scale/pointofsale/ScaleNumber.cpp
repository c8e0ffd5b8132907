// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleNumber.h"

QString magnitudeText(const ScaleNumber &number)
{
    QString text = QString::number(number.digits);
    if (number.exponent >= 0)
        return number.isZero() ? text : text + QString(number.exponent, QLatin1Char('0'));
    const int decimals = -number.exponent;
    // One more, for the digit before the point.
    text = text.rightJustified(decimals + 1, QLatin1Char('0'));
    return text.insert(text.size() - decimals, QLatin1Char('.'));
}
