// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/SegmentPattern.h"

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
    if (context.unitnumber == 0) {
        plan.draw(grams, Show);
        plan.draw(kilograms, Hide);
    } else {
        plan.draw(grams, Hide);
        plan.draw(kilograms, Show);
        plan.draw(context.highCapacity ? dot2 : dot1, Show);
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
    plan.draw(dot4, shownIf(context.unitnumber != 3));
    plan.draw({dot2, dot1}, Hide);
    plan.draw(dot3, thirdPoint);
    plan.draw(kilograms, Hide);
    plan.draw(colon, Show);
    plan.draw(grams, Hide);
    plan.draw({pounds, usb}, Show);
    plan.draw(ounces, shownIf(context.unitnumber != 4));
    plan.draw(battery, Hide);
    plan.draw(mains, Show);
    plan.draw(hold, holdAction(context));
}

void decimalPounds(SegmentPlan &plan, const SegmentContext &context)
{
    plan.draw({dot4, dot1, dot3}, Hide);
    plan.draw(dot2, shownIf(!context.highCapacity));
    plan.draw(dot3, shownIf(context.highCapacity));
    plan.draw({colon, kilograms, grams}, Hide);
    plan.draw(pounds, Show);
    plan.draw({ounces, battery}, Hide);
    plan.draw({mains, usb}, Show);
    plan.draw(hold, holdAction(context));
}

void packedDecimalScale(SegmentPlan &plan, int unit, const SegmentContext &context)
{
    switch (unit) {
    case 1: metric(plan, context); break;
    case 2: ouncesOnly(plan, context); break;
    case 3: poundsOunces(plan, context, Show); break;
    case 4: poundsOunces(plan, context, Hide); break;
    case 5: decimalPounds(plan, context); break;
    default: break;
    }
}

/// Grams are not known to this scale: metric readings are kilograms with the third point.
void binaryScale(SegmentPlan &plan, int unit, const SegmentContext &context)
{
    switch (unit) {
    case 1: plan.log(LogLine::plain("rechaed under case 1")); break;
    case 2: plan.log(LogLine::plain("rechaed under case 2")); break;
    case 3: plan.log(LogLine::plain("rechaed under case 3")); break;
    default: return;
    }
    plan.draw({dot1, dot2}, Hide);
    plan.draw(dot3, shownIf(unit != 3));
    plan.draw(dot4, Hide);
    plan.draw(colon, shownIf(unit == 3));
    plan.draw(usb, Show);
    plan.draw(grams, Hide);
    plan.draw(kilograms, shownIf(unit == 1));
    plan.draw(pounds, shownIf(unit != 1));
    plan.draw(ounces, shownIf(unit == 3));
    plan.draw(battery, Hide);
    plan.draw(mains, Show);
    plan.draw(hold, holdAction(context));
}

} // namespace

void SegmentPlan::draw(const char *name, Segment action)
{
    list.at(count++) = {.name = name, .action = action};
}

void SegmentPlan::draw(std::initializer_list<const char *> names, Segment action)
{
    for (const char *name : names)
        draw(name, action);
}

void SegmentPlan::log(const LogLine &line)
{
    list.at(count++) = {.line = line};
}

SegmentPlan segmentPattern(int unit, const SegmentContext &context)
{
    SegmentPlan plan;
    plan.log(LogLine::numbers("Inside Display unit=%1 unitnumber=%2 ", unit, context.unitnumber));
    if (context.currentScale == 1)
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
