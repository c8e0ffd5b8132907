// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/BrowserWeight.h"
#include "parcel/ReadingNotes.h"
#include "scale/WeightText.h"
#include "scale/pointofsale/ScaleStatement.h"

#include <optional>

/// What a report of the described scale says, as another scale would state it. Nothing where it
/// comes without a weight.
std::optional<ScaleStatement> statementOf(const WeightReport &report, int currentScale,
                                          Capacity capacity);

/// What is known of the latest reading beside its notes.
struct FieldWeightFacts
{
    std::optional<ScaleStatement> statement;
    ExportRounding rounding = ExportRounding::AsRead;
    bool isHeld = false;
};

/// The latest reading as it is told to a field of whatever page. Each unit is converted from what
/// the scale has reported, so no unit need be chosen for it.
BrowserWeight fieldWeight(const ReadingNotes &notes, const FieldWeightFacts &facts);
