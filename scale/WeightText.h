// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/WeightDecoder.h"

#include <QString>
#include <optional>

/// A weight as the carriers' pages want it.
struct WebStrings
{
    QString pounds; ///< whole pounds
    QString ounces; ///< 0 to 15, any fraction rounded up
    QString basic;  ///< grams, at most seven significant digits
    /// With three decimals, of a scale whose pounds are not to be worked out of those grams; empty
    /// of others.
    QString decimalPounds = {};
};

WebStrings webStrings(float grams);

/// What a reading leaves behind for its export text.
struct ExportValues
{
    WeightReport report;
    float weight = 0; ///< grams of a packed-decimal scale; a binary scale's is worked out anew
    int poundsTimes10000 = 0;
    int currentScale = scaletype::packedDecimal;
    int currentUnit = 0;
    int unitnumber = 0;
    Capacity capacity = Capacity::Standard;
};

enum class ExportForm { Pounds, Kilograms };
enum class ExportRounding { AsRead, UpToWhole };

struct ExportText
{
    QString text;
    /// Set where the reading is in a binary scale's kilograms, with two decimals.
    std::optional<QString> twoDecimalKilograms;
};

/// Grams and kilograms export kilograms, all others pounds.
ExportForm exportForm(int selectedRadioButtonIndex);

ExportText exportText(const ExportValues &values, ExportForm form, ExportRounding rounding);
