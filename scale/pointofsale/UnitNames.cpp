// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/UnitNames.h"

#include <array>

namespace {

struct Names
{
    QLatin1String symbol;
    QLatin1String singular;
    QLatin1String plural;
};

Names namesOf(WeightUnit unit)
{
    static constexpr std::array<Names, 13> names{{
        {},
        {QLatin1String("mg"), QLatin1String("milligram"), QLatin1String("milligrams")},
        {QLatin1String("g"), QLatin1String("gram"), QLatin1String("grams")},
        {QLatin1String("kg"), QLatin1String("kilogram"), QLatin1String("kilograms")},
        {QLatin1String("ct"), QLatin1String("carat"), QLatin1String("carats")},
        {QLatin1String("tael"), QLatin1String("tael"), QLatin1String("taels")},
        {QLatin1String("gr"), QLatin1String("grain"), QLatin1String("grains")},
        {QLatin1String("dwt"), QLatin1String("pennyweight"), QLatin1String("pennyweights")},
        {QLatin1String("t"), QLatin1String("metric ton"), QLatin1String("metric tons")},
        {QLatin1String("ton"), QLatin1String("short ton"), QLatin1String("short tons")},
        {QLatin1String("ozt"), QLatin1String("troy ounce"), QLatin1String("troy ounces")},
        {QLatin1String("oz"), QLatin1String("ounce"), QLatin1String("ounces")},
        {QLatin1String("lb"), QLatin1String("pound"), QLatin1String("pounds")},
    }};
    return names.at(static_cast<std::size_t>(unit));
}

} // namespace

QString unitSymbol(WeightUnit unit)
{
    return namesOf(unit).symbol;
}

QString shortMagnitudeText(const ScaleNumber &number)
{
    constexpr int readable = 12;
    const QString text = magnitudeText(number);
    if (text.size() <= readable)
        return text;
    return QStringLiteral("%1e%2%3")
        .arg(number.digits)
        .arg(number.exponent < 0 ? QString() : QStringLiteral("+"))
        .arg(number.exponent);
}

QString numberWords(const ScaleStatement &statement)
{
    const QString number = shortMagnitudeText(statement.number);
    const QString signedNumber =
        statement.number.isNegative ? QStringLiteral("minus ") + number : number;
    if (statement.unit == WeightUnit::Unknown)
        return signedNumber;
    const Names names = namesOf(statement.unit);
    return signedNumber + QLatin1Char(' ') +
           (number == QLatin1String("1") ? names.singular : names.plural);
}
