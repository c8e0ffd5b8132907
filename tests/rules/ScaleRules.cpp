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
        : status(statusByte)
        , low(lowByte)
        , high(highByte)
        , highCapacity(highCapacityModel)
    {
        outcome.state = before;
        outcome.count = 0;
        outcome.changeWebCalled = false;
        outcome.changeWebGrams = 0;
        outcome.weight = 0;
        outcome.poundsTimes10000 = 0;
    }

    Outcome run()
    {
        begin();
        weigh();
        handOverGrams();
        dispatch();
        state.scaleCommand = closeCommandByte(state.scaleCommand, state.unitindex);
        return outcome;
    }

private:
    void add(Step step, std::int64_t number = 0, double real = 0)
    {
        outcome.effects[static_cast<std::size_t>(outcome.count++)] = {step, number, real};
    }

    void begin()
    {
        if (state.currentScale == 0)
            state.currentStatue = true;
        state.OverloadFlag = false;
        add(Step::DrawOverload, 0);
        add(Step::ShowUnitLabel);
    }

    void weigh()
    {
        if (state.currentScale == 0)
            w = static_cast<float>((high >> 4) * 1000 + (high & 0x0F) * 100 + (low >> 4) * 10 +
                                   (low & 0x0F));
        if (highCapacity)
            w = w * 10;
        add(Step::LogWeight, state.currentScale, w);
    }

    void handOverGrams()
    {
        if (state.currentScale == 0)
            changeWebData(w);
        if (state.currentScale == 1) {
            w = hectogramsPlusHalf();
            changeWebData(static_cast<float>(static_cast<int>(w) * 100));
        }
    }

    void changeWebData(float grams)
    {
        outcome.changeWebCalled = true;
        outcome.changeWebGrams = grams;
        add(Step::ChangeWebData, 0, grams);
    }

    void dispatch()
    {
        switch (status) {
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
        case 134: state.currentScale = 0; break;
        case 13:
        case 141: state.currentScale = 1; break;
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
        state.currentStatue = false;
        add(Step::HideUnitLabel);
        add(Step::ClearAll);
    }

    void metric()
    {
        add(Step::ShowNegative, status == 129);
        correctToMetric();
        const int grams = static_cast<int>(w);
        add(Step::LogMetric, grams);
        add(Step::Draw5Digit, grams * (highCapacity ? 10 : 100));
        add(Step::DisplayUnit, 1);
    }

    void ounces()
    {
        countPounds();
        const int tenths = static_cast<int>(w / 2.835 + 0.5);
        add(Step::ShowNegative, status == 130);
        state.currentUnit = 2;
        state.unitnumber = 1;
        state.unitindex = 2;
        add(Step::Draw5Digit, tenths * 100);
        add(Step::DisplayUnit, 2);
    }

    void poundsOunces()
    {
        const int wholePounds = static_cast<int>(w / 453.6);
        countPounds();
        const double rest = w - wholePounds * 453.6;
        const int tenths = static_cast<int>(rest / 2.835 + 0.5);
        const int digit = tenths % 10;
        add(Step::LogTenthOfOunce, digit);
        if (state.currentScale == 1)
            w = ouncesType1();
        else
            showPoundsOunces(wholePounds, tenths / 10, fractionOf(digit));
        if (!state.currentStatue)
            add(Step::ClearAll);
    }

    Fraction fractionOf(int digit) const
    {
        if (digit < 0 || digit > 9)
            return {digit, 0};
        return highCapacity ? quarters[digit] : eighths[digit];
    }

    void showPoundsOunces(int wholePounds, int wholeOunces, Fraction fraction)
    {
        add(Step::ShowNegative, status == 131 || status == 135);
        state.currentUnit = 4;
        if (unitMayBeCorrected() && status == 3) {
            state.unitnumber = 2;
            state.unitindex = 3;
        } else if (unitMayBeCorrected() && status == 7) {
            state.unitnumber = 3;
            state.unitindex = 4;
        }
        add(Step::DisplayUnit, state.unitnumber == 4 ? 5 : 4);
        const int reading = state.unitnumber == 4
                                ? decimalPounds()
                                : wholePounds * 10000 + wholeOunces * 100 +
                                      fraction.numerator * 10 + fraction.denominator;
        add(Step::Draw5Digit, status == 135 ? -reading : reading);
    }

    int decimalPounds()
    {
        int &pounds = outcome.poundsTimes10000;
        if (highCapacity) {
            add(Step::LogDecimalPounds, pounds);
            pounds = static_cast<int>(std::lround(static_cast<float>(pounds / 1000.0)) * 100);
        }
        return pounds;
    }

    void overload()
    {
        state.OverloadFlag = true;
        add(Step::HideUnitLabel);
        add(Step::ClearAll);
        add(Step::DrawOverload, 1);
    }

    void kilogramsType1()
    {
        state.currentScale = 1;
        w = hectogramsPlusHalf();
        add(Step::LogHectograms, 0, w);
        add(Step::ShowNegative, status == 136);
        correctToMetric();
        const int hectograms = static_cast<int>(w);
        add(Step::LogMetric, hectograms);
        state.currentUnit = 1;
        state.currentStatue = true;
        add(Step::Draw5Digit, hectograms);
        add(Step::DisplayUnit, 1);
    }

    void poundsType1()
    {
        state.currentScale = 1;
        w = static_cast<float>((high << 4) | (low >> 4));
        if ((low & 0x0F) > 7)
            w = w + 1;
        add(Step::LogTenthsOfPound, 0, w);
        add(Step::ShowNegative, status == 137);
        state.currentUnit = 2;
        state.currentStatue = true;
        add(Step::Draw5Digit, static_cast<int>(w));
        add(Step::DisplayUnit, 2);
    }

    void poundsOuncesType1()
    {
        state.currentScale = 1;
        w = ouncesType1();
        const int wholePounds = static_cast<int>(w / 16);
        const int wholeOunces = static_cast<int>(w) % 16;
        add(Step::ShowNegative, status == 138);
        state.currentUnit = 3;
        state.currentStatue = true;
        const int reading = wholePounds * 100 + wholeOunces + ((low & 0x0F) > 7 ? 1 : 0);
        add(Step::Draw5Digit, status == 138 ? -reading : reading);
        add(Step::DisplayUnit, 3);
    }

    float hectogramsPlusHalf() const
    {
        return static_cast<float>(high * 7.2576 + low * 0.02835 + 0.5);
    }

    float ouncesType1() const { return static_cast<float>(high * 25.6 + (low / 10)); }

    void countPounds() { outcome.poundsTimes10000 = static_cast<int>(w / 0.4536 + 0.5) * 10; }

    /// Decimal pounds and kilograms are the user's own choice, which no report overrides.
    bool unitMayBeCorrected() const { return state.unitnumber != 4 && state.unitnumber != 5; }

    void correctToMetric()
    {
        if (!unitMayBeCorrected())
            return;
        state.currentUnit = 1;
        state.unitnumber = 0;
        state.unitindex = 1;
    }

    const std::uint8_t status;
    const std::uint8_t low;
    const std::uint8_t high;
    const bool highCapacity;
    Outcome outcome;
    LinkState &state = outcome.state;
    float &w = outcome.weight;
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
