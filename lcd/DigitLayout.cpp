// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/DigitLayout.h"

#include "base/NumberText.h"

#include <cmath>

namespace {

using enum DigitView;

/// The binary scale's panel: four positions, no fraction.
void layoutFourPositions(DigitPlan &plan, std::int64_t m, const DigitContext &context)
{
    const int unit = context.currentUnit;
    bool leadShown = false;

    const auto take = [&](DigitView view, std::int64_t digit, std::int64_t step) {
        plan.show(view, digit);
        m -= digit * step;
        plan.log(LogLine::number("%1", digit));
    };

    std::int64_t k = m / 1000;
    if (k >= 1) {
        take(digZero, k, 1000);
        leadShown = true;
    } else {
        plan.hide(digZero);
    }

    k = m / 100;
    if (!leadShown && k < 1 && unit != unitindex::poundsOuncesA)
        plan.hide(digOne);
    else
        take(digOne, k, 100); // does not count as a leading digit

    k = m / 10;
    // An empty remainder keeps the tens: the panel reads "00" rather than "0".
    if (!leadShown && k < 1 && unit != unitindex::metric && m >= 1 && unit != unitindex::ounces)
        plan.hide(digTwo);
    else
        take(digTwo, k, 10);

    if (!leadShown && m < 1 && unit != unitindex::metric && unit != unitindex::poundsOuncesA &&
        unit != unitindex::ounces) {
        plan.hide(digThree);
        return;
    }
    plan.log(LogLine::number("Reched under for that case with temp=%1 ", m));
    plan.show(digThree, m);
}

/// The packed-decimal scale's panel: four positions and the fraction field.
class SixPositions
{
public:
    SixPositions(DigitPlan &digitPlan, std::int64_t nValue, const DigitContext &digitContext)
        : plan(digitPlan)
        , context(digitContext)
        , m(std::abs(nValue))
    {
        logInput(nValue);
    }

    void layout()
    {
        layoutDigZero();
        layoutDigOne();
        layoutDigTwo();
        const std::int64_t digit = m / 100;
        plan.show(digThree, digit);
        layoutFractionField(m - digit * 100);
    }

private:
    void logInput(std::int64_t nValue)
    {
        plan.log(LogLine::number("nvalue is ------------>%1", nValue));
        plan.log(LogLine::plain("Now drawing 5 digits"));
        plan.log(LogLine::number("Current unit is %1", context.currentUnit));
        plan.log(LogLine::number("Unit Number is %1", context.unitnumber));
        plan.log(LogLine::number("nValue %1", nValue));
    }

    void layoutDigZero()
    {
        const auto digit = static_cast<std::int32_t>(m / 100000);
        plan.log(LogLine::number("temp1 value is ------------>%1", digit));
        wide = digit >= 1 && m != allEights;
        if (digit < 1) {
            plan.hide(digZero);
            return;
        }
        plan.log(LogLine::plain("temp is greater than 0"));
        plan.show(digZero, digit);
        leadShown = true;
    }

    void layoutDigOne()
    {
        const std::int64_t digits = m / 10000;
        if (!leadShown && digits < 1 && context.dotunit != unittag::poundsOuncesB &&
            context.unitnumber != unittag::kilograms) {
            plan.hide(digOne);
            if (isPoundsAndOunces())
                plan.show(digOne, digits);
            return;
        }
        if (context.dotunit == unittag::decimalPounds && (m == allEights || m == 0)) {
            plan.hide(digOne);
        } else {
            plan.show(digOne, digits % 10);
            leadShown = true;
        }
        m -= digits * 10000;
    }

    void layoutDigTwo()
    {
        const std::int64_t digit = m / 1000;
        // Whole ounces below ten keep a blank before them, also behind pounds.
        const bool shown = (leadShown && context.currentUnit < unitindex::poundsOuncesA) ||
                           digit > 0 || context.currentUnit == unitindex::ounces ||
                           context.unitnumber == unittag::decimalPounds ||
                           context.unitnumber == unittag::kilograms;
        if (!shown) {
            plan.hide(digTwo);
            return;
        }
        plan.show(digTwo, digit);
        m -= digit * 1000;
        leadShown = true;
    }

    void layoutFractionField(std::int64_t rest)
    {
        const std::int64_t numerator = rest / 10;
        if ((numerator >= 1 || context.currentUnit == unitindex::poundsOuncesA) && !wide)
            showFraction(numerator, rest % 10);
        else
            showNoFraction(numerator);
        if (!isPoundsAndOunces())
            hideFractionField();
        if (context.unitnumber == unittag::decimalPounds)
            plan.unhide(numeratorImg);
        if (context.capacity == Capacity::High && context.unitnumber == unittag::decimalPounds) {
            plan.hide(numeratorImg);
            plan.hide(denomImg);
        }
    }

    void showFraction(std::int64_t numerator, std::int64_t denominator)
    {
        if (context.dotunit != unittag::decimalPounds)
            plan.show(numeratorImg, numerator);
        else
            plan.hide(numeratorImg);
        if (context.currentUnit == unitindex::poundsOuncesB &&
            context.unitnumber != unittag::decimalPounds) {
            plan.unhide(lineImg);
            plan.show(denomImg, denominator);
        } else {
            plan.hide(lineImg);
            plan.hide(denomImg);
        }
        if (showsTenths() || context.unitnumber == unittag::decimalPounds)
            showAsTenths(numerator, denominator);
        if (context.lbOZlast)
            plan.clearFractionField();
    }

    void showAsTenths(std::int64_t numerator, std::int64_t denominator)
    {
        plan.log(LogLine::numbers("numerator=%1,denomenator=%2", numerator, denominator));
        plan.unhide(numeratorImg);
        plan.hide(lineImg);
        plan.hide(denomImg);
        plan.setRoundedDigit(numeratorImg,
                             static_cast<float>(numerator) / static_cast<float>(denominator) * 10);
        if (context.unitnumber == unittag::decimalPounds && numerator != 0) {
            plan.setDigit(numeratorImg, numerator);
            plan.log(LogLine::number("Image to print %1.bmp", numerator));
        }
    }

    void showNoFraction(std::int64_t numerator)
    {
        if (showsTenths()) {
            plan.setRoundedDigit(numeratorImg, static_cast<float>(numerator) * 10);
            plan.unhide(numeratorImg);
            plan.hide(lineImg);
            plan.hide(denomImg);
        } else {
            hideFractionField();
        }
        if (context.lbOZlast)
            plan.clearFractionField();
    }

    void hideFractionField()
    {
        plan.hide(numeratorImg);
        plan.hide(lineImg);
        plan.hide(denomImg);
    }

    bool isPoundsAndOunces() const
    {
        return context.unitnumber == unittag::poundsOuncesA ||
               context.unitnumber == unittag::poundsOuncesB;
    }
    bool showsTenths() const
    {
        return context.unitnumber == unittag::poundsOuncesA && !context.lbOZlast;
    }

    static constexpr std::int64_t allEights = 88888;

    DigitPlan &plan;
    const DigitContext &context;
    std::int64_t m; ///< what is still to be shown
    bool leadShown = false;
    bool wide = false;
};

} // namespace

void DigitPlan::show(DigitView view, std::int64_t digit)
{
    add({.kind = DigitStep::Kind::Show, .view = view, .number = digit});
}

void DigitPlan::hide(DigitView view)
{
    add({.kind = DigitStep::Kind::Hide, .view = view});
}

void DigitPlan::unhide(DigitView view)
{
    add({.kind = DigitStep::Kind::Unhide, .view = view});
}

void DigitPlan::setDigit(DigitView view, std::int64_t digit)
{
    add({.kind = DigitStep::Kind::SetDigit, .view = view, .number = digit});
}

void DigitPlan::setRoundedDigit(DigitView view, float value)
{
    add({.kind = DigitStep::Kind::SetRoundedDigit, .view = view, .rounded = value});
}

void DigitPlan::clearFractionField()
{
    add({.kind = DigitStep::Kind::ClearFractionField});
}

void DigitPlan::log(const LogLine &line)
{
    add({.kind = DigitStep::Kind::Log, .line = line});
}

DigitPlan layoutDigits(std::int64_t nValue, const DigitContext &context)
{
    DigitPlan plan;
    plan.log(LogLine::number("Current Scale is %1 ", context.currentScale));
    plan.log(LogLine::number("nValue sent is %1 ", nValue));
    if (context.currentScale == scaletype::binary)
        layoutFourPositions(plan, std::abs(nValue), context);
    else
        SixPositions(plan, nValue, context).layout();
    return plan;
}

QString digitPicture(std::int64_t digit)
{
    return QStringLiteral("%1.bmp").arg(digit);
}

QString roundedDigitPicture(float value)
{
    return fixedText(std::abs(value), 0) + QStringLiteral(".bmp");
}
