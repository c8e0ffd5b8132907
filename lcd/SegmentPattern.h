// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/CommandByte.h"
#include "scale/LogLine.h"

#include <array>
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
    int currentScale = 0;
    int unitnumber = 0;
    CommandByte scaleCommand = 0;
    bool highCapacity = false;
};

class SegmentPlan
{
public:
    std::span<const SegmentStep> steps() const & { return {list.data(), count}; }
    std::span<const SegmentStep> steps() const && = delete; // would look into a plan that is gone

    void draw(const char *name, Segment action);
    void draw(std::initializer_list<const char *> names, Segment action);
    void log(const LogLine &line);

private:
    static constexpr std::size_t mostSteps = 16; ///< the ounce pattern takes 15
    std::array<SegmentStep, mostSteps> list;
    std::size_t count = 0;
};

/// The segments of a reading, in the order in which they are switched.
/// @param unit 1 metric, 2 ounces (binary scale: pounds), 3 and 4 pounds and ounces, 5 decimal
/// pounds; any other switches nothing
SegmentPlan segmentPattern(int unit, const SegmentContext &context);

/// Every segment off, in the order of a blanked panel.
std::span<const char *const> blankedSegments();
