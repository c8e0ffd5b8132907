// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "lcd/ShownWeight.h"
#include "scale/WeightText.h"

#include <QString>
#include <cstdint>
#include <optional>

/// Where a weight can go.
enum class Destination : std::uint8_t { Clipboard, Usps, Ups, Fedex };

/// The texts of one reading, in which it leaves.
struct LeavingTexts
{
    QString exported; ///< the export label's; empty before the first reading
    ExportForm form = ExportForm::Pounds;
    bool fitsScale = true; ///< the export text is worked out of what the scale reports
    QString pounds;
    QString ounces;
    QString grams;
    QString decimalPounds = {}; ///< of the scale's own; empty: worked out of the grams

    bool operator==(const LeavingTexts &) const = default;
};

/// What a report weighs, without its sign. The link keeps no such figure of a binary scale: its
/// grams are rounded to 100.
double weighedGrams(const WeightReport &report, int currentScale, Capacity capacity);

/// The export text is of the weight. Before a unit is chosen it is 0 or far too low, as the unit
/// shown and the unit exported have nothing to do with each other then.
bool exportTells(const LeavingTexts &texts, double grams);

/// Whether everything that @p destination gets is of the weight.
bool textsTell(Destination destination, const LeavingTexts &texts, double grams);

/// "lb" or "kg".
QString exportUnit(ExportForm form);

/// What is known of the reading on the panel, and of where it goes.
struct LeavingSituation
{
    LeavingTexts texts;
    double grams = 0;
    std::optional<ShownWeight> shown; ///< nothing where the panel shows no weight
    bool toClipboard = false;
    bool toUsps = false;
    bool toUps = false;
    bool toFedex = false;

    bool goesSomewhere() const { return toClipboard || toUsps || toUps || toFedex; }

    bool operator==(const LeavingSituation &) const = default;
};

/// "2 lb 12 oz", as the USPS page gets it.
QString uspsText(const LeavingTexts &texts);

/// What single carriers get that is not what the panel shows. Empty where there is none.
QString carrierWords(const LeavingSituation &situation);

/// What clipboard and fields get, where that is not what the panel shows: "leaves as 0: choose a
/// unit". Empty where it is.
QString leavingWords(const LeavingSituation &situation);
