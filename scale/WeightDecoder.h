// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/LogLine.h"
#include "base/StepList.h"
#include "scale/ScaleCodes.h"

#include <cstdint>
#include <optional>

/// The three bytes of an input report that mean something.
struct WeightReport
{
    std::uint8_t status = 0; ///< one of reportstatus::, with the sign in its highest bit
    std::uint8_t low = 0;    ///< packed decimal tens and units, or the count's low byte
    std::uint8_t high = 0;   ///< packed decimal thousands and hundreds, or the count's high byte

    bool operator==(const WeightReport &) const = default;
};

/// What the link knows of the scale and of the chosen unit; it outlives the single report.
struct ReadingState
{
    int currentScale = scaletype::packedDecimal;
    int unitnumber = unittag::grams; ///< the unit chosen, or reported by the scale
    int unitindex = 0;               ///< the unit that polls ask for; 0 before the first choice
    int currentUnit = 0;             ///< the unit of the reading shown, a unit index
    bool currentStatue = false;      ///< the scale's own display is on
    bool OverloadFlag = false;       ///< the latest report was an overload

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
        DisplayUnit,      ///< number: one of displaycode::
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

    StepList<ReadingEffect, 8> effects; ///< decimal pounds of a 10 g model take six

    void log(const LogLine &line);
    void add(ReadingEffect::Kind kind, std::int64_t number = 0);
};

Capacity capacityOf(const QString &modelName);

/// Grams of a packed-decimal report; nibbles above 9 are taken at face value. 0 for scale type 1,
/// whose bytes are no packed decimals.
float packedDecimalGrams(const WeightReport &report, int currentScale, Capacity capacity);

/// Hectograms plus one half, so that cutting off the decimals rounds to the nearest 100 g.
float binaryHectograms(const WeightReport &report);

/// Whether the report shows the scale's display on or off. Nothing where it says neither: the
/// announcement of a type comes from a scale that is off as well.
std::optional<bool> toldDisplayOn(const WeightReport &report);

/// What the report's status byte asks for. @p weight is the weight worked out before the status
/// was looked at. Statuses without a name have no effect.
DecodedReport decodeStatus(const WeightReport &report, float weight, const ReadingState &state,
                           Capacity capacity);
