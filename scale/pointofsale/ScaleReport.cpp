// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleReport.h"

namespace {

constexpr std::uint8_t lastStatus = static_cast<std::uint8_t>(ScaleStatus::ToBeZeroed);
constexpr int leastExponent = -128;
constexpr std::uint8_t lastUnit = static_cast<std::uint8_t>(WeightUnit::Pound);

using Bytes = std::span<const std::uint8_t>;

/// Without the number. Nothing where it is not the report of the weight.
std::optional<Bytes> dataOf(Bytes report, const ScaleLayout &layout)
{
    std::size_t start = 0;
    if (layout.dataReport != 0) {
        const bool isPreceded = !report.empty() && report[0] == 0;
        start = isPreceded ? 2 : 1;
        if (report.size() < start || report[start - 1] != layout.dataReport)
            return std::nullopt;
    }
    if (report.size() < start + layout.dataBytes)
        return std::nullopt;
    return report.subspan(start, layout.dataBytes);
}

std::uint32_t bitsOf(Bytes data, const ReportField &field)
{
    std::uint32_t value = 0;
    for (unsigned i = 0; i < field.size; ++i) {
        const std::size_t bit = field.bit + i;
        if ((data[bit / 8] >> (bit % 8) & 1U) != 0)
            value |= std::uint32_t{1} << i;
    }
    return value;
}

bool hasSignBit(std::uint32_t bits, const ReportField &field)
{
    return (bits >> (field.size - 1) & 1U) != 0;
}

std::int64_t signedValue(std::uint32_t bits, const ReportField &field)
{
    const std::int64_t range = std::int64_t{1} << field.size;
    return hasSignBit(bits, field) ? std::int64_t{bits} - range : std::int64_t{bits};
}

/// 0 where nothing is chosen.
std::int64_t chosen(Bytes data, const SelectorField &selector)
{
    const std::uint32_t bits = bitsOf(data, selector.field);
    if (selector.flagOf != 0)
        return bits != 0 ? selector.flagOf : 0;
    const std::int64_t value =
        selector.field.isSigned ? signedValue(bits, selector.field) : std::int64_t{bits};
    if (selector.numbers.empty())
        return value;
    const std::int64_t place = value - selector.firstValue;
    const auto places = static_cast<std::int64_t>(selector.numbers.size());
    return place >= 0 && place < places ? selector.numbers[static_cast<std::size_t>(place)] : 0;
}

std::uint8_t firstChosen(Bytes data, const std::vector<SelectorField> &selectors, std::uint8_t last)
{
    for (const SelectorField &selector : selectors) {
        const std::int64_t number = chosen(data, selector);
        if (number > 0 && number <= last)
            return static_cast<std::uint8_t>(number);
    }
    return 0;
}

/// The status has the sign. What a scale sends with it below zero is the weight without its sign,
/// or with it, as two's complement.
ScaleNumber weightOf(Bytes data, const ReportField &field, ScaleStatus status)
{
    ScaleNumber weight;
    const std::uint32_t bits = bitsOf(data, field);
    const bool isBelow = status == ScaleStatus::UnderZero;
    const bool isComplement = (isBelow || field.isSigned) && hasSignBit(bits, field);
    weight.isNegative = isBelow || isComplement;
    weight.digits = isComplement ? static_cast<std::uint32_t>(-signedValue(bits, field)) : bits;
    return weight;
}

SelectorField numberedByte(std::size_t byte)
{
    SelectorField selector;
    selector.field = {.bit = byte * 8, .size = 8};
    return selector;
}

} // namespace

ScaleLayout ScaleLayout::ofClass()
{
    ScaleLayout layout;
    layout.dataReport = 3;
    layout.dataBytes = 5;
    layout.status = {numberedByte(0)};
    layout.unit = {numberedByte(1)};
    layout.exponent = ReportField{.bit = 16, .size = 8, .isSigned = true};
    layout.weight = {.bit = 24, .size = 16};
    return layout;
}

std::optional<ScaleStatement> readScaleReport(std::span<const std::uint8_t> report,
                                              const ScaleLayout &layout)
{
    const auto data = dataOf(report, layout);
    if (!data)
        return std::nullopt;
    ScaleStatement statement;
    statement.status = static_cast<ScaleStatus>(firstChosen(*data, layout.status, lastStatus));
    statement.unit = static_cast<WeightUnit>(firstChosen(*data, layout.unit, lastUnit));
    statement.number = weightOf(*data, layout.weight, statement.status);
    if (!layout.exponent)
        return statement;
    const std::int64_t exponent = signedValue(bitsOf(*data, *layout.exponent), *layout.exponent);
    // A field that has room for more than the class knows of has no weight in it then.
    if (exponent < leastExponent || exponent > -leastExponent)
        return ScaleStatement();
    statement.number.exponent = static_cast<int>(exponent);
    return statement;
}
