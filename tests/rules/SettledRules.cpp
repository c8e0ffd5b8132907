// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/SettledRules.h"

namespace {

using History = std::span<const rules::PanEvent>;
using rules::PanEvent;

/// The seven codes that come with a weight, by the scale's table; with bit 7 it is negative.
bool positiveWeight(const PanEvent &event)
{
    if (event.kind != PanEvent::Report || (event.bytes[1] == 0 && event.bytes[2] == 0))
        return false;
    for (const int code : {1, 2, 3, 7, 8, 9, 10}) {
        if (event.bytes[0] == code)
            return true;
    }
    return false;
}

/// The last event is the third of three equal positive reports without anything in between.
bool threeInARow(History history)
{
    const std::size_t count = history.size();
    return count >= 3 && positiveWeight(history[count - 1]) &&
           history[count - 2] == history[count - 1] && history[count - 3] == history[count - 1];
}

/// The report that the pan is known by, as the place behind it: 0 where there is none.
std::size_t behindLatestReport(History history)
{
    std::size_t place = history.size();
    while (place > 0 && history[place - 1].kind != PanEvent::Report) {
        if (history[place - 1].kind == PanEvent::ScaleLost)
            return 0;
        --place;
    }
    return place;
}

} // namespace

bool rules::leavesAtEndOf(History history)
{
    if (!threeInARow(history))
        return false;
    // It may have left before; then it stays with that for as long as nothing else was reported,
    // no unit was chosen and the scale was not lost.
    const PanEvent parcel = history.back();
    for (History earlier = history.first(history.size() - 1); !earlier.empty();
         earlier = earlier.first(earlier.size() - 1)) {
        if (threeInARow(earlier) && earlier.back() == parcel)
            return false;
        const PanEvent &event = earlier.back();
        const bool interruption =
            event.kind == PanEvent::FailedRead || event.kind == PanEvent::HoldChange;
        if (event != parcel && !interruption)
            return true;
    }
    return true;
}

rules::Pan rules::panAtEndOf(History history)
{
    if (threeInARow(history))
        return Pan::Settled;
    const std::size_t place = behindLatestReport(history);
    if (place == 0)
        return Pan::Empty;
    const PanEvent &latest = history[place - 1];
    const int code = latest.bytes[0] % 128;
    const bool tooMuch = code == 4 || code == 11;
    return tooMuch || positiveWeight(latest) ? Pan::Settling : Pan::Empty;
}
