// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// A field, or a row of equal ones, that a HID report descriptor declares.
struct DeclaredFields
{
    enum class Kind : std::uint8_t { Input, Output, Feature };

    Kind kind = Kind::Input;
    std::uint8_t report = 0; ///< 0: the reports have no numbers
    std::size_t bit = 0;     ///< of the first, from behind the number
    unsigned size = 0;       ///< of each, in bits
    unsigned count = 0;
    bool isConstant = false;
    bool isArray = false;
    std::int64_t logicalMinimum = 0;
    std::int64_t logicalMaximum = 0;
    std::uint32_t application = 0;     ///< usage of the top-level collection
    std::vector<std::uint32_t> usages; ///< the page in the upper half
};

/// Walks through @p descriptor and tells of its fields in order. It ends where the descriptor ends,
/// or where it makes no sense any more.
/// @param collection is told the usage of each top-level collection, before what is in it
void forEachField(std::span<const std::uint8_t> descriptor,
                  const std::function<void(std::uint32_t usage)> &collection,
                  const std::function<void(const DeclaredFields &fields)> &field);
