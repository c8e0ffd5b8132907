// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/LogLine.h"
#include "base/StepList.h"
#include "scale/ScaleCodes.h"

#include <cstdint>

enum class DigitView : std::uint8_t {
    digZero,
    digOne,
    digTwo,
    digThree,
    numeratorImg,
    lineImg,
    denomImg,
};

/// What decides, beside the number, which positions show a digit.
struct DigitContext
{
    int currentScale = scaletype::packedDecimal; ///< binary: four positions; any other: six
    int currentUnit = 0;
    int unitnumber = 0;
    int dotunit = 0;
    bool lbOZlast = false;
    Capacity capacity = Capacity::Standard;
};

/// One thing done to the panel to show a number.
struct DigitStep
{
    enum class Kind : std::uint8_t {
        Log,
        Show, ///< un-hide the view and set the picture of number
        Hide,
        Unhide,
        SetDigit,           ///< the picture of number, hidden or not
        SetRoundedDigit,    ///< the picture of rounded, halves to even
        ClearFractionField, ///< pounds with whole ounces
    };
    Kind kind = Kind::Log;
    DigitView view = DigitView::digZero;
    std::int64_t number = 0;
    float rounded = 0; ///< may be infinite or not a number: there is no such picture
    LogLine line;
};

/// Views that no step names keep what they show. The longest plan takes 31 steps.
class DigitPlan : public StepList<DigitStep, 40>
{
public:
    void show(DigitView view, std::int64_t digit);
    void hide(DigitView view);
    void unhide(DigitView view);
    void setDigit(DigitView view, std::int64_t digit);
    void setRoundedDigit(DigitView view, float value);
    void clearFractionField();
    void log(const LogLine &line);
};

/// How the panel shows the magnitude of @p nValue; the sign is shown apart.
DigitPlan layoutDigits(std::int64_t nValue, const DigitContext &context);

/// Picture of a digit, "7.bmp". Values beyond 9 name pictures that do not exist: the view is then
/// empty.
QString digitPicture(std::int64_t digit);
/// The same for a value that is not whole; halves are rounded to even.
QString roundedDigitPicture(float value);
