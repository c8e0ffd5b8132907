// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/DigitLayout.h"

#include "base/NumberText.h"
#include "base/SinglePrecision.h"

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
    SixPositions(DigitPlan &plan, std::int64_t nValue, const DigitContext &context)
        : m_plan(plan)
        , m_context(context)
        , m_rest(std::abs(nValue))
    {
        logInput(nValue);
    }

    void layout()
    {
        layoutDigZero();
        layoutDigOne();
        layoutDigTwo();
        const std::int64_t digit = m_rest / 100;
        m_plan.show(digThree, digit);
        layoutFractionField(m_rest - digit * 100);
    }

private:
    void logInput(std::int64_t nValue)
    {
        m_plan.log(LogLine::number("nvalue is ------------>%1", nValue));
        m_plan.log(LogLine::plain("Now drawing 5 digits"));
        m_plan.log(LogLine::number("Current unit is %1", m_context.currentUnit));
        m_plan.log(LogLine::number("Unit Number is %1", m_context.unitnumber));
        m_plan.log(LogLine::number("nValue %1", nValue));
    }

    void layoutDigZero()
    {
        const auto digit = static_cast<std::int32_t>(m_rest / 100000);
        m_plan.log(LogLine::number("temp1 value is ------------>%1", digit));
        m_wide = digit >= 1 && m_rest != allEights;
        if (digit < 1) {
            m_plan.hide(digZero);
            return;
        }
        m_plan.log(LogLine::plain("temp is greater than 0"));
        m_plan.show(digZero, digit);
        m_leadShown = true;
    }

    void layoutDigOne()
    {
        const std::int64_t digits = m_rest / 10000;
        if (!m_leadShown && digits < 1 && m_context.dotunit != unittag::poundsOuncesB &&
            m_context.unitnumber != unittag::kilograms) {
            m_plan.hide(digOne);
            if (isPoundsAndOunces())
                m_plan.show(digOne, digits);
            return;
        }
        if (m_context.dotunit == unittag::decimalPounds && (m_rest == allEights || m_rest == 0)) {
            m_plan.hide(digOne);
        } else {
            m_plan.show(digOne, digits % 10);
            m_leadShown = true;
        }
        m_rest -= digits * 10000;
    }

    void layoutDigTwo()
    {
        const std::int64_t digit = m_rest / 1000;
        // Whole ounces below ten keep a blank before them, also behind pounds.
        const bool shown = (m_leadShown && m_context.currentUnit < unitindex::poundsOuncesA) ||
                           digit > 0 || m_context.currentUnit == unitindex::ounces ||
                           m_context.unitnumber == unittag::decimalPounds ||
                           m_context.unitnumber == unittag::kilograms;
        if (!shown) {
            m_plan.hide(digTwo);
            return;
        }
        m_plan.show(digTwo, digit);
        m_rest -= digit * 1000;
        m_leadShown = true;
    }

    void layoutFractionField(std::int64_t rest)
    {
        const std::int64_t numerator = rest / 10;
        if ((numerator >= 1 || m_context.currentUnit == unitindex::poundsOuncesA) && !m_wide)
            showFraction(numerator, rest % 10);
        else
            showNoFraction(numerator);
        if (!isPoundsAndOunces())
            hideFractionField();
        if (m_context.unitnumber == unittag::decimalPounds)
            m_plan.unhide(numeratorImg);
        if (m_context.capacity == Capacity::High &&
            m_context.unitnumber == unittag::decimalPounds) {
            m_plan.hide(numeratorImg);
            m_plan.hide(denomImg);
        }
    }

    void showFraction(std::int64_t numerator, std::int64_t denominator)
    {
        if (m_context.dotunit != unittag::decimalPounds)
            m_plan.show(numeratorImg, numerator);
        else
            m_plan.hide(numeratorImg);
        if (m_context.currentUnit == unitindex::poundsOuncesB &&
            m_context.unitnumber != unittag::decimalPounds) {
            m_plan.unhide(lineImg);
            m_plan.show(denomImg, denominator);
        } else {
            m_plan.hide(lineImg);
            m_plan.hide(denomImg);
        }
        if (showsTenths() || m_context.unitnumber == unittag::decimalPounds)
            showAsTenths(numerator, denominator);
        if (m_context.lbOZlast)
            m_plan.clearFractionField();
    }

    void showAsTenths(std::int64_t numerator, std::int64_t denominator)
    {
        m_plan.log(LogLine::numbers("numerator=%1,denomenator=%2", numerator, denominator));
        m_plan.unhide(numeratorImg);
        m_plan.hide(lineImg);
        m_plan.hide(denomImg);
        m_plan.setRoundedDigit(numeratorImg, static_cast<float>(numerator) /
                                                 static_cast<float>(denominator) * 10);
        if (m_context.unitnumber == unittag::decimalPounds && numerator != 0) {
            m_plan.setDigit(numeratorImg, numerator);
            m_plan.log(LogLine::number("Image to print %1.bmp", numerator));
        }
    }

    void showNoFraction(std::int64_t numerator)
    {
        if (showsTenths()) {
            m_plan.setRoundedDigit(numeratorImg, static_cast<float>(numerator) * 10);
            m_plan.unhide(numeratorImg);
            m_plan.hide(lineImg);
            m_plan.hide(denomImg);
        } else {
            hideFractionField();
        }
        if (m_context.lbOZlast)
            m_plan.clearFractionField();
    }

    void hideFractionField()
    {
        m_plan.hide(numeratorImg);
        m_plan.hide(lineImg);
        m_plan.hide(denomImg);
    }

    bool isPoundsAndOunces() const
    {
        return m_context.unitnumber == unittag::poundsOuncesA ||
               m_context.unitnumber == unittag::poundsOuncesB;
    }
    bool showsTenths() const
    {
        return m_context.unitnumber == unittag::poundsOuncesA && !m_context.lbOZlast;
    }

    static constexpr std::int64_t allEights = 88888;

    DigitPlan &m_plan;
    const DigitContext &m_context;
    std::int64_t m_rest; ///< what is still to be shown
    bool m_leadShown = false;
    bool m_wide = false;
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
