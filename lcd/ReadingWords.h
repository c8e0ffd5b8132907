// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <array>

/// What can be seen on the panel. A position that is hidden or holds no picture is empty.
struct PanelContents
{
    std::array<QString, 4> digits; ///< from the left, "7" for a seven
    QString numerator;             ///< the tenths while the bar is not shown
    QString denominator;
    std::array<bool, 4> points{}; ///< each behind its digit
    bool bar = false;
    bool colon = false;
    bool minus = false;
    bool overload = false;
    bool grams = false;
    bool kilograms = false;
    bool pounds = false;
    bool ounces = false;
    bool hold = false;
};

/// The panel as a person would read it out: "minus 12 grams", "2 pounds 11 1/2 ounces",
/// "overload", or "off" when it is blank.
QString readingWords(const PanelContents &panel);
