// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/rules/ScaleRules.h"

#include <cstdint>
#include <string>

namespace rules {

struct WebTexts
{
    std::string LB;
    std::string OZ;
    std::string Basic;
};

WebTexts webTexts(float grams);

/// The line logged ahead of the web texts.
std::string webTextsLog(float grams);

struct ExportOutcome
{
    std::string text;
    bool kgLogged;
    /// Two decimals; empty unless kgLogged.
    std::string kgText;
};

/// `w` and `poundsTimes10000` as the handler left them: in which unit `w` is depends on it.
ExportOutcome exportText(const LinkState &afterHandler, float w, int poundsTimes10000,
                         std::uint8_t hi, std::uint8_t lo, bool highCapacityModel,
                         int selectedRadioButtonIndex, bool setRound);

/// The line logged with the two-decimal text of an outcome with kgLogged.
std::string kgLogText(const ExportOutcome &outcome);

} // namespace rules
