// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/WeightConversion.h"

#include <algorithm>
#include <cstdint>

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int significantDigits = 7;
constexpr int mostWholeDigits = 15;
constexpr int mostLeadingZeros = 9;
constexpr unsigned ouncesPerPound = 16;

/// digits / divisor, times ten to the power of the exponent. The digits stay below 10^21.
struct Quotient
{
    Wide digits = 0;
    std::uint64_t divisor = 1;
    int exponent = 0;
};

struct Factor
{
    std::uint64_t digits = 0; ///< 0: none
    int exponent = 0;
};

/// One of the unit, in grams.
Factor gramsPerUnit(WeightUnit unit)
{
    switch (unit) {
    case WeightUnit::Milligram: return {1, -3};
    case WeightUnit::Gram: return {1, 0};
    case WeightUnit::Kilogram: return {1, 3};
    case WeightUnit::Carat: return {2, -1};
    case WeightUnit::Grain: return {6479891, -8};
    case WeightUnit::Pennyweight: return {155517384, -8};
    case WeightUnit::Tonne: return {1, 6};
    case WeightUnit::ShortTon: return {90718474, -2};
    case WeightUnit::TroyOunce: return {311034768, -7};
    case WeightUnit::Ounce: return {28349523125, -9};
    case WeightUnit::Pound: return {45359237, -5};
    case WeightUnit::Tael:
    case WeightUnit::Unknown: break;
    }
    return {};
}

Wide powerOfTen(int exponent)
{
    Wide power = 1;
    for (int i = 0; i < exponent; ++i)
        power *= 10;
    return power;
}

int lengthOf(Wide number)
{
    int digits = 0;
    for (; number != 0; number /= 10)
        ++digits;
    return digits;
}

/// Where the unit says a weight, and its size is one that things have.
std::optional<Quotient> inGrams(const ScaleStatement &statement)
{
    const Factor factor = gramsPerUnit(statement.unit);
    if (statement.number.isZero())
        return Quotient{};
    if (factor.digits == 0)
        return std::nullopt;
    const Quotient grams{.digits = Wide{statement.number.digits} * factor.digits,
                         .divisor = 1,
                         .exponent = statement.number.exponent + factor.exponent};
    // Digits before the point; below 1 the zeros behind it, negative.
    const int magnitude = lengthOf(grams.digits) + grams.exponent;
    if (magnitude > mostWholeDigits || magnitude < -mostLeadingZeros)
        return std::nullopt;
    return grams;
}

Quotient inUnit(Quotient grams, WeightUnit unit)
{
    const Factor factor = gramsPerUnit(unit);
    return {.digits = grams.digits,
            .divisor = factor.digits,
            .exponent = grams.exponent - factor.exponent};
}

Quotient inPounds(Quotient grams)
{
    return inUnit(grams, WeightUnit::Pound);
}

Quotient inForm(Quotient grams, ExportForm form)
{
    if (form == ExportForm::Pounds)
        return inPounds(grams);
    return {.digits = grams.digits, .divisor = 1, .exponent = grams.exponent - 3};
}

struct Whole
{
    Wide number = 0;
    bool isExact = true; ///< nothing was cut off
};

/// The size of the value was looked at before, so that no product here is too long.
Whole wholePart(const Quotient &value)
{
    if (value.exponent >= 0) {
        const Wide digits = value.digits * powerOfTen(value.exponent);
        return {digits / value.divisor, digits % value.divisor == 0};
    }
    // A digit after the other, as the whole divisor may be too long.
    Whole whole{value.digits / value.divisor, value.digits % value.divisor == 0};
    for (int i = value.exponent; i < 0; ++i) {
        whole.isExact = whole.isExact && whole.number % 10 == 0;
        whole.number /= 10;
    }
    return whole;
}

Wide roundedUp(const Whole &whole)
{
    return whole.isExact ? whole.number : whole.number + 1;
}

QString textOf(Wide number)
{
    const auto low = static_cast<quint64>(number);
    if (low == number)
        return QString::number(low);
    constexpr int digits = 18; // that surely fit
    const Wide limit = powerOfTen(digits);
    return textOf(number / limit) + textOf(number % limit).rightJustified(digits, QLatin1Char('0'));
}

/// Halves to even.
Wide rounded(Wide number, bool isExact, int dropped)
{
    if (dropped == 0)
        return number;
    const Wide unit = powerOfTen(dropped);
    const Wide rest = number % unit;
    const Wide kept = number / unit;
    const bool isHalf = isExact && rest * 2 == unit;
    const bool isUp = isHalf ? kept % 2 != 0 : rest * 2 >= unit;
    return isUp ? kept + 1 : kept;
}

QString decimalText(Wide digits, int exponent)
{
    while (digits % 10 == 0 && exponent < 0) {
        digits /= 10;
        ++exponent;
    }
    QString text = textOf(digits);
    if (exponent >= 0)
        return text + QString(exponent, QLatin1Char('0'));
    text = text.rightJustified(1 - exponent, QLatin1Char('0'));
    return text.insert(text.size() + exponent, QLatin1Char('.'));
}

QString fixedDecimals(Quotient value, int decimals)
{
    value.exponent += decimals + 1; // one more, to round by
    const Whole whole = wholePart(value);
    const QString digits = textOf(rounded(whole.number, whole.isExact, 1));
    const QString text = digits.rightJustified(decimals + 1, QLatin1Char('0'));
    return text.chopped(decimals) + QLatin1Char('.') + text.right(decimals);
}

QString withoutTrailingZeros(QString decimal)
{
    while (decimal.endsWith(QLatin1Char('0')))
        decimal.chop(1);
    if (decimal.endsWith(QLatin1Char('.')))
        decimal.chop(1);
    return decimal;
}

QString significantText(const Quotient &value)
{
    if (value.digits == 0)
        return QStringLiteral("0");
    // The quotient is to have more digits than are written.
    const int wanted = significantDigits + 3 + lengthOf(value.divisor);
    const int shift = std::max(wanted - lengthOf(value.digits), 0);
    const Wide digits = value.digits * powerOfTen(shift);
    const Wide quotient = digits / value.divisor;
    const int dropped = lengthOf(quotient) - significantDigits;
    const Wide written = rounded(quotient, digits % value.divisor == 0, dropped);
    return decimalText(written, value.exponent - shift + dropped);
}

} // namespace

std::optional<QString> exportText(const ScaleStatement &statement, ExportForm form,
                                  ExportRounding rounding)
{
    const auto grams = inGrams(statement);
    if (!grams)
        return std::nullopt;
    const Quotient value = inForm(*grams, form);
    if (rounding == ExportRounding::UpToWhole)
        return textOf(roundedUp(wholePart(value)));
    return significantText(value);
}

std::optional<WebStrings> webStrings(const ScaleStatement &statement)
{
    const auto grams = inGrams(statement);
    if (!grams)
        return std::nullopt;
    Quotient ounces = inPounds(*grams);
    ounces.digits *= ouncesPerPound;
    const Wide up = roundedUp(wholePart(ounces));
    return WebStrings{.pounds = textOf(up / ouncesPerPound),
                      .ounces = textOf(up % ouncesPerPound),
                      .basic = significantText(*grams),
                      .decimalPounds = fixedDecimals(inPounds(*grams), 3)};
}

std::optional<QString> unitText(const ScaleStatement &statement, WeightUnit unit, int decimals,
                                ExportRounding rounding)
{
    const auto grams = inGrams(statement);
    if (!grams || gramsPerUnit(unit).digits == 0)
        return std::nullopt;
    const Quotient value = inUnit(*grams, unit);
    if (rounding == ExportRounding::UpToWhole)
        return textOf(roundedUp(wholePart(value)));
    return withoutTrailingZeros(fixedDecimals(value, decimals));
}

ExportForm exportForm(WeightUnit unit)
{
    switch (unit) {
    case WeightUnit::Milligram:
    case WeightUnit::Gram:
    case WeightUnit::Kilogram:
    case WeightUnit::Tonne: return ExportForm::Kilograms;
    default: return ExportForm::Pounds;
    }
}

std::optional<double> gramsOf(const ScaleStatement &statement)
{
    const auto grams = inGrams(statement);
    if (!grams)
        return std::nullopt;
    return significantText(*grams).toDouble();
}

std::optional<PoundsAndOunces> poundsAndOunces(const ScaleNumber &ounces)
{
    constexpr int mostDecimals = 6;
    if (ounces.exponent > 0 || ounces.exponent < -mostDecimals)
        return std::nullopt;
    const std::uint64_t pound =
        ouncesPerPound * static_cast<std::uint64_t>(powerOfTen(-ounces.exponent));
    PoundsAndOunces both;
    both.pounds = static_cast<std::uint32_t>(ounces.digits / pound);
    both.ounces = ounces;
    both.ounces.digits = static_cast<std::uint32_t>(ounces.digits % pound);
    return both;
}
