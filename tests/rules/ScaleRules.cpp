// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/ScaleRules.h"

#include "tests/rules/CommandRules.h"
#include "tests/rules/NumberText.h"

#include <cmath>

namespace rules {

namespace {

struct Fraction
{
    int numerator;
    int denominator;
};

constexpr Fraction eighths[10] = {{0, 0}, {1, 8}, {1, 4}, {1, 4}, {3, 8},
                                  {1, 2}, {5, 8}, {3, 4}, {3, 4}, {7, 8}};
constexpr Fraction quarters[10] = {{0, 0}, {1, 4}, {1, 4}, {1, 4}, {1, 2},
                                   {1, 2}, {1, 2}, {3, 4}, {3, 4}, {3, 4}};

class Reading
{
public:
    Reading(std::uint8_t statusByte, std::uint8_t lowByte, std::uint8_t highByte,
            const LinkState &before, bool highCapacityModel)
        : m_status(statusByte)
        , m_low(lowByte)
        , m_high(highByte)
        , m_highCapacity(highCapacityModel)
    {
        m_outcome.state = before;
        m_outcome.count = 0;
        m_outcome.changeWebCalled = false;
        m_outcome.changeWebGrams = 0;
        m_outcome.weight = 0;
        m_outcome.poundsTimes10000 = 0;
    }

    Outcome run()
    {
        begin();
        weigh();
        handOverGrams();
        dispatch();
        m_state.scaleCommand = closeCommandByte(m_state.scaleCommand, m_state.unitindex);
        return m_outcome;
    }

private:
    void add(Step step, std::int64_t number = 0, double real = 0)
    {
        m_outcome.effects[static_cast<std::size_t>(m_outcome.count++)] = {step, number, real};
    }

    void begin()
    {
        if (m_state.currentScale == 0)
            m_state.currentStatue = true;
        m_state.OverloadFlag = false;
        add(Step::DrawOverload, 0);
        add(Step::ShowUnitLabel);
    }

    void weigh()
    {
        if (m_state.currentScale == 0)
            m_w = static_cast<float>((m_high >> 4) * 1000 + (m_high & 0x0F) * 100 +
                                     (m_low >> 4) * 10 + (m_low & 0x0F));
        if (m_highCapacity)
            m_w = m_w * 10;
        add(Step::LogWeight, m_state.currentScale, m_w);
    }

    void handOverGrams()
    {
        if (m_state.currentScale == 0)
            changeWebData(m_w);
        if (m_state.currentScale == 1) {
            m_w = hectogramsPlusHalf();
            changeWebData(static_cast<float>(static_cast<int>(m_w) * 100));
        }
    }

    void changeWebData(float grams)
    {
        m_outcome.changeWebCalled = true;
        m_outcome.changeWebGrams = grams;
        add(Step::ChangeWebData, 0, grams);
    }

    void dispatch()
    {
        switch (m_status) {
        case 0:
        case 128: lcdOff(); break;
        case 1:
        case 129: metric(); break;
        case 2:
        case 130: ounces(); break;
        case 3:
        case 7:
        case 131:
        case 135: poundsOunces(); break;
        case 4:
        case 11:
        case 132:
        case 139: overload(); break;
        case 5:
        case 12:
        case 133:
        case 140: add(Step::LogUnderLoad); break;
        case 6:
        case 134: m_state.currentScale = 0; break;
        case 13:
        case 141: m_state.currentScale = 1; break;
        case 8:
        case 136: kilogramsType1(); break;
        case 9:
        case 137: poundsType1(); break;
        case 10:
        case 138: poundsOuncesType1(); break;
        default: break;
        }
    }

    void lcdOff()
    {
        add(Step::LogLcdOff);
        m_state.currentStatue = false;
        add(Step::HideUnitLabel);
        add(Step::ClearAll);
    }

    void metric()
    {
        add(Step::ShowNegative, m_status == 129);
        correctToMetric();
        const int grams = static_cast<int>(m_w);
        add(Step::LogMetric, grams);
        add(Step::Draw5Digit, grams * (m_highCapacity ? 10 : 100));
        add(Step::DisplayUnit, 1);
    }

    void ounces()
    {
        countPounds();
        const int tenths = static_cast<int>(m_w / 2.835 + 0.5);
        add(Step::ShowNegative, m_status == 130);
        m_state.currentUnit = 2;
        m_state.unitnumber = 1;
        m_state.unitindex = 2;
        add(Step::Draw5Digit, tenths * 100);
        add(Step::DisplayUnit, 2);
    }

    void poundsOunces()
    {
        const int wholePounds = static_cast<int>(m_w / 453.6);
        countPounds();
        const double rest = m_w - wholePounds * 453.6;
        const int tenths = static_cast<int>(rest / 2.835 + 0.5);
        const int digit = tenths % 10;
        add(Step::LogTenthOfOunce, digit);
        if (m_state.currentScale == 1)
            m_w = ouncesType1();
        else
            showPoundsOunces(wholePounds, tenths / 10, fractionOf(digit));
        if (!m_state.currentStatue)
            add(Step::ClearAll);
    }

    Fraction fractionOf(int digit) const
    {
        if (digit < 0 || digit > 9)
            return {digit, 0};
        return m_highCapacity ? quarters[digit] : eighths[digit];
    }

    void showPoundsOunces(int wholePounds, int wholeOunces, Fraction fraction)
    {
        add(Step::ShowNegative, m_status == 131 || m_status == 135);
        m_state.currentUnit = 4;
        if (unitMayBeCorrected() && m_status == 3) {
            m_state.unitnumber = 2;
            m_state.unitindex = 3;
        } else if (unitMayBeCorrected() && m_status == 7) {
            m_state.unitnumber = 3;
            m_state.unitindex = 4;
        }
        add(Step::DisplayUnit, m_state.unitnumber == 4 ? 5 : 4);
        const int reading = m_state.unitnumber == 4
                                ? decimalPounds()
                                : wholePounds * 10000 + wholeOunces * 100 +
                                      fraction.numerator * 10 + fraction.denominator;
        add(Step::Draw5Digit, m_status == 135 ? -reading : reading);
    }

    int decimalPounds()
    {
        int &pounds = m_outcome.poundsTimes10000;
        if (m_highCapacity) {
            add(Step::LogDecimalPounds, pounds);
            pounds = static_cast<int>(std::lround(static_cast<float>(pounds / 1000.0)) * 100);
        }
        return pounds;
    }

    void overload()
    {
        m_state.OverloadFlag = true;
        add(Step::HideUnitLabel);
        add(Step::ClearAll);
        add(Step::DrawOverload, 1);
    }

    void kilogramsType1()
    {
        m_state.currentScale = 1;
        m_w = hectogramsPlusHalf();
        add(Step::LogHectograms, 0, m_w);
        add(Step::ShowNegative, m_status == 136);
        correctToMetric();
        const int hectograms = static_cast<int>(m_w);
        add(Step::LogMetric, hectograms);
        m_state.currentUnit = 1;
        m_state.currentStatue = true;
        add(Step::Draw5Digit, hectograms);
        add(Step::DisplayUnit, 1);
    }

    void poundsType1()
    {
        m_state.currentScale = 1;
        m_w = static_cast<float>((m_high << 4) | (m_low >> 4));
        if ((m_low & 0x0F) > 7)
            m_w = m_w + 1;
        add(Step::LogTenthsOfPound, 0, m_w);
        add(Step::ShowNegative, m_status == 137);
        m_state.currentUnit = 2;
        m_state.currentStatue = true;
        add(Step::Draw5Digit, static_cast<int>(m_w));
        add(Step::DisplayUnit, 2);
    }

    void poundsOuncesType1()
    {
        m_state.currentScale = 1;
        m_w = ouncesType1();
        const int wholePounds = static_cast<int>(m_w / 16);
        const int wholeOunces = static_cast<int>(m_w) % 16;
        add(Step::ShowNegative, m_status == 138);
        m_state.currentUnit = 3;
        m_state.currentStatue = true;
        const int reading = wholePounds * 100 + wholeOunces + ((m_low & 0x0F) > 7 ? 1 : 0);
        add(Step::Draw5Digit, m_status == 138 ? -reading : reading);
        add(Step::DisplayUnit, 3);
    }

    float hectogramsPlusHalf() const
    {
        return static_cast<float>(m_high * 7.2576 + m_low * 0.02835 + 0.5);
    }

    float ouncesType1() const { return static_cast<float>(m_high * 25.6 + (m_low / 10)); }

    void countPounds() { m_outcome.poundsTimes10000 = static_cast<int>(m_w / 0.4536 + 0.5) * 10; }

    /// Decimal pounds and kilograms are the user's own choice, which no report overrides.
    bool unitMayBeCorrected() const { return m_state.unitnumber != 4 && m_state.unitnumber != 5; }

    void correctToMetric()
    {
        if (!unitMayBeCorrected())
            return;
        m_state.currentUnit = 1;
        m_state.unitnumber = 0;
        m_state.unitindex = 1;
    }

    const std::uint8_t m_status;
    const std::uint8_t m_low;
    const std::uint8_t m_high;
    const bool m_highCapacity;
    Outcome m_outcome;
    LinkState &m_state = m_outcome.state;
    float &m_w = m_outcome.weight;
};

} // namespace

Outcome readReport(std::uint8_t status, std::uint8_t low, std::uint8_t high,
                   const LinkState &before, bool highCapacityModel)
{
    return Reading(status, low, high, before, highCapacityModel).run();
}

std::string logText(const Effect &effect)
{
    const std::string number = std::to_string(effect.number);
    switch (effect.step) {
    case Step::LogWeight:
        return "W Value for Scale " + number + " is " + numberText(effect.real) + " ";
    case Step::LogLcdOff: return "LCD off";
    case Step::LogMetric: return "wgm value is-->" + number;
    case Step::LogTenthOfOunce: return "woz1 value is---------------------> " + number;
    case Step::LogDecimalPounds: return "wlbonly value is " + number;
    case Step::LogUnderLoad: return "under load";
    case Step::LogHectograms: return "Executed Case 8 fot w value " + fixedText(effect.real, 6);
    case Step::LogTenthsOfPound:
        return "w value is " + fixedText(effect.real, 6) + " for scale1 lb";
    case Step::HideUnitLabel:
    case Step::ShowUnitLabel:
    case Step::DrawOverload:
    case Step::ClearAll:
    case Step::ShowNegative:
    case Step::Draw5Digit:
    case Step::DisplayUnit:
    case Step::ChangeWebData: break;
    }
    return {};
}

} // namespace rules
