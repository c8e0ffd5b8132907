// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/SegmentPattern.h"

#include <array>

namespace {

using namespace segment;
using enum Segment;

Segment shownIf(bool condition)
{
    return condition ? Show : Hide;
}

Segment holdAction(const SegmentContext &context)
{
    return shownIf((context.scaleCommand & holdReleasedBit) == 0);
}

// No report tells of the power supply: mains and USB are always shown, the battery never.

void metric(SegmentPlan &plan, const SegmentContext &context)
{
    plan.draw({dot1, dot2, dot3, dot4, colon}, Hide);
    plan.draw(usb, Show);
    if (context.unitnumber == unittag::grams) {
        plan.draw(grams, Show);
        plan.draw(kilograms, Hide);
    } else {
        plan.draw(grams, Hide);
        plan.draw(kilograms, Show);
        plan.draw(context.capacity == Capacity::High ? dot2 : dot1, Show);
    }
    plan.draw({pounds, ounces, battery}, Hide);
    plan.draw(mains, Show);
    plan.draw(hold, holdAction(context));
}

void ouncesOnly(SegmentPlan &plan, const SegmentContext &context)
{
    plan.draw(dot3, Show);
    plan.draw({dot2, dot4, dot1, colon}, Hide);
    plan.draw(usb, Show);
    plan.draw({kilograms, grams, pounds}, Hide);
    plan.draw(ounces, Show);
    plan.draw(battery, Hide);
    plan.draw({mains, usb}, Show);
    plan.draw(hold, holdAction(context));
}

void poundsOunces(SegmentPlan &plan, const SegmentContext &context, Segment thirdPoint)
{
    // With the stacked fraction there are no tenths to set apart.
    plan.draw(dot4, shownIf(context.unitnumber != unittag::poundsOuncesB));
    plan.draw({dot2, dot1}, Hide);
    plan.draw(dot3, thirdPoint);
    plan.draw(kilograms, Hide);
    plan.draw(colon, Show);
    plan.draw(grams, Hide);
    plan.draw({pounds, usb}, Show);
    plan.draw(ounces, shownIf(context.unitnumber != unittag::decimalPounds));
    plan.draw(battery, Hide);
    plan.draw(mains, Show);
    plan.draw(hold, holdAction(context));
}

void decimalPounds(SegmentPlan &plan, const SegmentContext &context)
{
    plan.draw({dot4, dot1, dot3}, Hide);
    plan.draw(dot2, shownIf(context.capacity != Capacity::High));
    plan.draw(dot3, shownIf(context.capacity == Capacity::High));
    plan.draw({colon, kilograms, grams}, Hide);
    plan.draw(pounds, Show);
    plan.draw({ounces, battery}, Hide);
    plan.draw({mains, usb}, Show);
    plan.draw(hold, holdAction(context));
}

void packedDecimalScale(SegmentPlan &plan, int unit, const SegmentContext &context)
{
    switch (unit) {
    case displaycode::metric: metric(plan, context); break;
    case displaycode::ounces: ouncesOnly(plan, context); break;
    case displaycode::poundsOuncesBinary: poundsOunces(plan, context, Show); break;
    case displaycode::poundsOunces: poundsOunces(plan, context, Hide); break;
    case displaycode::decimalPounds: decimalPounds(plan, context); break;
    default: break;
    }
}

/// Grams are not known to this scale: metric readings are kilograms with the third point.
void binaryScale(SegmentPlan &plan, int unit, const SegmentContext &context)
{
    switch (unit) {
    case displaycode::metric: plan.log(LogLine::plain("rechaed under case 1")); break;
    case displaycode::ounces: plan.log(LogLine::plain("rechaed under case 2")); break;
    case displaycode::poundsOuncesBinary: plan.log(LogLine::plain("rechaed under case 3")); break;
    default: return;
    }
    const bool isMetric = unit == displaycode::metric;
    const bool isPoundsOunces = unit == displaycode::poundsOuncesBinary;
    plan.draw({dot1, dot2}, Hide);
    plan.draw(dot3, shownIf(!isPoundsOunces));
    plan.draw(dot4, Hide);
    plan.draw(colon, shownIf(isPoundsOunces));
    plan.draw(usb, Show);
    plan.draw(grams, Hide);
    plan.draw(kilograms, shownIf(isMetric));
    plan.draw(pounds, shownIf(!isMetric));
    plan.draw(ounces, shownIf(isPoundsOunces));
    plan.draw(battery, Hide);
    plan.draw(mains, Show);
    plan.draw(hold, holdAction(context));
}

} // namespace

void SegmentPlan::draw(const char *name, Segment action)
{
    add({.name = name, .action = action});
}

void SegmentPlan::draw(std::initializer_list<const char *> names, Segment action)
{
    for (const char *name : names)
        draw(name, action);
}

void SegmentPlan::log(const LogLine &line)
{
    add({.line = line});
}

SegmentPlan segmentPattern(int unit, const SegmentContext &context)
{
    SegmentPlan plan;
    plan.log(LogLine::numbers("Inside Display unit=%1 unitnumber=%2 ", unit, context.unitnumber));
    if (context.currentScale == scaletype::binary)
        binaryScale(plan, unit, context);
    else
        packedDecimalScale(plan, unit, context);
    return plan;
}

std::span<const char *const> blankedSegments()
{
    static constexpr std::array<const char *, 13> order{
        dot1, dot2, dot3, dot4, colon, usb, battery, mains, hold, ounces, pounds, grams, kilograms};
    return order;
}
