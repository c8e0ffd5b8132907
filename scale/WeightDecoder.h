// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/LogLine.h"

#include <array>
#include <cstdint>
#include <span>

/// The three bytes of an input report that mean something.
struct WeightReport
{
    std::uint8_t status = 0; ///< bit 7: negative; below it the mode code 0 to 13
    std::uint8_t low = 0;    ///< packed decimal tens and units, or the count's low byte
    std::uint8_t high = 0;   ///< packed decimal thousands and hundreds, or the count's high byte
};

/// What the link knows of the scale and of the chosen unit; it outlives the single report.
struct ReadingState
{
    int currentScale = 0; ///< 0 packed-decimal grams, 1 binary tenths of an ounce
    int unitnumber = 0;   ///< 0 to 6, the unit chosen (or reported by the scale)
    int unitindex = 0;    ///< 1 to 4, the unit code that polls carry; 0 before the first choice
    int currentUnit = 0;  ///< 1 to 4, the unit of the reading shown; 1 is metric
    bool currentStatue = false; ///< the scale's own display is on
    bool OverloadFlag = false;  ///< the latest report was an overload

    bool operator==(const ReadingState &) const = default;
};

/// One thing that a report makes the interface do.
struct ReadingEffect
{
    enum class Kind : std::uint8_t {
        Log,
        HideUnitCaption,
        ClearAll,
        DrawOverload,
        ShowNegativeSign, ///< number: 0 or 1
        DrawDigits,       ///< number: the value with the implied decimals of its unit
        DisplayUnit,      ///< number: 1 to 5
    };
    Kind kind = Kind::Log;
    std::int64_t number = 0;
    LogLine line;
};

struct DecodedReport
{
    ReadingState state;
    float weight = 0;         ///< in the unit that the export expects
    int poundsTimes10000 = 0; ///< 0 unless the handler works it out

    std::span<const ReadingEffect> effects() const { return {list.data(), count}; }

    void log(const LogLine &line);
    void add(ReadingEffect::Kind kind, std::int64_t number = 0);

private:
    static constexpr std::size_t mostEffects = 8; ///< decimal pounds of a 10 g model take six
    std::array<ReadingEffect, mostEffects> list;
    std::size_t count = 0;
};

/// The models that count in steps of 10 g.
bool isHighCapacityModel(const QString &modelName);

/// Grams of a packed-decimal report; nibbles above 9 are taken at face value. 0 for scale type 1,
/// whose bytes are no packed decimals.
float packedDecimalGrams(const WeightReport &report, int currentScale, bool highCapacity);

/// Hectograms plus one half, so that cutting off the decimals rounds to the nearest 100 g.
float binaryHectograms(const WeightReport &report);

/// What the report's status byte asks for. @p weight is the weight worked out before the status
/// was looked at. Statuses that no scale sends have no effect.
DecodedReport decodeStatus(const WeightReport &report, float weight, const ReadingState &state,
                           bool highCapacity);
