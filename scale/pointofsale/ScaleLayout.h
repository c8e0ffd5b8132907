// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// Some bits of a report, counted from the first bit behind its number.
struct ReportField
{
    std::size_t bit = 0;
    unsigned size = 0; ///< in bits, 1 to 32
    bool isSigned = false;
};

/// A choice among usages of the class. Numbers are those of ScaleStatus and WeightUnit.
struct SelectorField
{
    ReportField field;
    /// An array holds the place of what is chosen in its list, counted from here.
    std::int64_t firstValue = 0;
    /// The chosen number by place; empty where the field holds the number itself.
    std::vector<std::uint8_t> numbers;
    /// One bit for this number alone; 0 where the field is an array.
    std::uint8_t flagOf = 0;
};

/// The bit by which a scale is told to take what is on its pan for zero.
struct ZeroCommand
{
    std::uint8_t report = 0; ///< its number
    std::size_t bit = 0;
    std::size_t bytes = 0; ///< without the number

    bool operator==(const ZeroCommand &) const = default;
};

/// Where a scale's reports have what.
struct ScaleLayout
{
    std::uint8_t dataReport = 0; ///< its number; 0: the device's reports have none
    std::size_t dataBytes = 0;   ///< without the number
    std::vector<SelectorField> status;
    std::vector<SelectorField> unit;
    std::optional<ReportField> exponent; ///< nothing: always 0
    ReportField weight;
    std::optional<ZeroCommand> zero; ///< nothing where the scale does not offer it

    /// As the class describes it: report 3, a byte each of status, unit and exponent, two of
    /// weight.
    static ScaleLayout ofClass();
};
