// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The delegate's fixed segments: points, colon, unit words and status symbols.

#include "app/PostalScaleAppDelegate.h"

#include "lcd/SegmentPattern.h"
#include "scale/HIDManager.h"
#include "scale/Log.h"

#include <array>

void PostalScaleAppDelegate::DrawIcon(QLatin1String name, bool show)
{
    // The binary scale knows no grams: their word stays as an earlier scale left it.
    if (hid_obj->currentScale() == 1 && name == QLatin1String(segment::grams))
        return;
    const std::array<std::pair<const char *, ImageView *>, 13> views{{
        {segment::colon, colonImg},
        {segment::dot1, dot1Img},
        {segment::dot2, dot2Img},
        {segment::dot3, dot3Img},
        {segment::dot4, dot4Img},
        {segment::grams, gmImg},
        {segment::kilograms, kgImg},
        {segment::pounds, lbImg},
        {segment::ounces, ozImg},
        {segment::hold, lockImg},
        {segment::mains, plugImg},
        {segment::battery, batteryImg},
        {segment::usb, USBImg},
    }};
    for (const auto &[segmentName, view] : views) {
        if (name == QLatin1String(segmentName)) {
            view->setHidden(!show);
            return;
        }
    }
}

void PostalScaleAppDelegate::DisplayUnit(int unit)
{
    const SegmentPlan plan =
        segmentPattern(unit, {.currentScale = hid_obj->currentScale(),
                              .unitnumber = hid_obj->unitnumber(),
                              .scaleCommand = hid_obj->scaleCommand(),
                              .highCapacity = isHighCapacityModel(selectedModelName())});
    for (const SegmentStep &step : plan.steps()) {
        if (step.name == nullptr)
            logLine(step.line.toString());
        else
            DrawIcon(QLatin1String(step.name), step.action == Segment::Show);
    }
}
