// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/LogLine.h"
#include "base/StepList.h"
#include "scale/CommandByte.h"
#include "scale/ScaleCodes.h"

#include <initializer_list>
#include <span>

/// The short names of the panel's fixed segments.
namespace segment {
inline constexpr auto colon = ":";
inline constexpr auto dot1 = ".1";
inline constexpr auto dot2 = ".2";
inline constexpr auto dot3 = ".3";
inline constexpr auto dot4 = ".4";
inline constexpr auto grams = "GM";
inline constexpr auto kilograms = "KG0";
inline constexpr auto pounds = "LB";
inline constexpr auto ounces = "OZ";
inline constexpr auto hold = "HOLD";
inline constexpr auto mains = "AC";
inline constexpr auto battery = "BAT";
inline constexpr auto usb = "USB";
} // namespace segment

enum class Segment { Hide, Show };

/// One segment to be switched, or a line to be logged.
struct SegmentStep
{
    const char *name = nullptr; ///< null for a log line
    Segment action = Segment::Hide;
    LogLine line;
};

struct SegmentContext
{
    int currentScale = scaletype::packedDecimal;
    int unitnumber = unittag::grams;
    CommandByte scaleCommand = 0;
    Capacity capacity = Capacity::Standard;
};

/// The ounce pattern takes 15 steps.
class SegmentPlan : public StepList<SegmentStep, 16>
{
public:
    void draw(const char *name, Segment action);
    void draw(std::initializer_list<const char *> names, Segment action);
    void log(const LogLine &line);
};

/// The segments of a reading, in the order in which they are switched.
/// @param unit one of displaycode::; any other switches nothing
SegmentPlan segmentPattern(int unit, const SegmentContext &context);

/// Every segment off, in the order of a blanked panel.
std::span<const char *const> blankedSegments();
