// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

// The numbers that the scale and the link go by. They are kept as int: a value that has no name
// here is lawful, and each rule says what it makes of one.

/// What a scale counts in; its reports tell.
namespace scaletype {
inline constexpr int packedDecimal = 0; ///< grams, or steps of 10 g, in packed decimal
inline constexpr int binary = 1;        ///< tenths of an ounce
} // namespace scaletype

/// The unit that was chosen, also the tag of its row.
namespace unittag {
inline constexpr int grams = 0;
inline constexpr int ounces = 1;
inline constexpr int poundsOuncesA = 2; ///< with tenths of an ounce
inline constexpr int poundsOuncesB = 3; ///< with a stacked fraction
inline constexpr int decimalPounds = 4;
inline constexpr int kilograms = 5;
inline constexpr int poundsWholeOunces = 6;
} // namespace unittag

/// The unit that the scale is asked for, also the unit of the reading shown. 0 before the first
/// choice.
namespace unitindex {
inline constexpr int metric = 1;
inline constexpr int ounces = 2;        ///< the binary scale: pounds with one decimal
inline constexpr int poundsOuncesA = 3; ///< the binary scale: pounds and ounces
inline constexpr int poundsOuncesB = 4;
} // namespace unitindex

/// The pattern of points and unit words that a reading is shown with.
namespace displaycode {
inline constexpr int metric = 1;
inline constexpr int ounces = 2; ///< the binary scale: pounds with one decimal
inline constexpr int poundsOuncesBinary = 3;
inline constexpr int poundsOunces = 4;
inline constexpr int decimalPounds = 5;
} // namespace displaycode

/// The set of units that a model has; also the model's place in the lists.
namespace modelindex {
inline constexpr int a100 = 0;
inline constexpr int a200 = 1;
inline constexpr int b100 = 2;
inline constexpr int b200 = 3;
inline constexpr int b300 = 4;
inline constexpr int c100 = 5; ///< KV-C400 too
inline constexpr int c200 = 6;
inline constexpr int c300 = 7;
} // namespace modelindex

/// Status byte of a report.
namespace reportstatus {
inline constexpr std::uint8_t negativeBit = 0x80;

// Without that bit. Those from 8 are the binary scale's, 0 either's, the others the packed-decimal
// one's.
inline constexpr int displayOff = 0;
inline constexpr int metric = 1;
inline constexpr int ounces = 2;
inline constexpr int poundsOuncesA = 3;
inline constexpr int overload = 4;
inline constexpr int underLoad = 5;
inline constexpr int packedDecimalScale = 6; ///< announces its type
inline constexpr int poundsOuncesB = 7;
inline constexpr int binaryKilograms = 8;
inline constexpr int binaryPounds = 9;
inline constexpr int binaryPoundsOunces = 10;
inline constexpr int binaryOverload = 11;
inline constexpr int binaryUnderLoad = 12;
inline constexpr int binaryScale = 13; ///< announces its type
} // namespace reportstatus

/// The steps in which a model counts.
enum class Capacity : std::uint8_t {
    Standard, ///< 1 g
    High,     ///< 10 g
};
