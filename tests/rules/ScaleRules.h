// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace rules {

/// What the link remembers from one report to the next, as it stands once watching has begun.
struct LinkState
{
    int currentScale = 0;
    int currentUnit = 4;
    int unitnumber = 3;
    int unitindex = 0;
    int dotunit = 0;
    bool currentStatue = false;
    bool lbOZlast = false;
    bool OverloadFlag = false;
    bool SetRound = false;
    std::uint8_t scaleCommand = 0xFF;
};

enum class Step {
    HideUnitLabel,
    ShowUnitLabel,
    DrawOverload, ///< number: the overload flag at the call
    ClearAll,
    ShowNegative,  ///< number: 0 or 1
    Draw5Digit,    ///< number: the reading
    DisplayUnit,   ///< number: the display unit code
    ChangeWebData, ///< real: grams
    LogWeight,     ///< number: scale type, real: working weight
    LogLcdOff,
    LogMetric,        ///< number: grams, or hectograms of a type-1 scale
    LogTenthOfOunce,  ///< number: the last digit of the tenths of an ounce
    LogDecimalPounds, ///< number: ten-thousandths of a pound
    LogUnderLoad,
    LogHectograms,   ///< real: hectograms plus one half
    LogTenthsOfPound ///< real: tenths of a pound
};

struct Effect
{
    Step step;
    std::int64_t number;
    double real;
};

struct Outcome
{
    LinkState state;
    /// In order of occurrence; those from `count` on are not initialised.
    std::array<Effect, 12> effects;
    int count;
    bool changeWebCalled;
    /// Grams; meaningless unless changeWebCalled.
    float changeWebGrams;
    /// The working weight when the export starts, in the unit of the handler that ran last.
    float weight;
    int poundsTimes10000;
};

/// From the received bytes to the next command byte, without the report's trace lines and without
/// the export. Allocates nothing.
Outcome readReport(std::uint8_t status, std::uint8_t low, std::uint8_t high,
                   const LinkState &before, bool highCapacityModel);

/// Empty for a step that is not a log line.
std::string logText(const Effect &effect);

} // namespace rules
