// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/ExportRules.h"

#include "tests/rules/NumberText.h"

namespace rules {

WebTexts webTexts(float grams)
{
    WebTexts texts;
    texts.Basic = numberText(grams);
    const float kilograms = grams / 1000.0F;
    const float pounds = static_cast<float>(static_cast<double>(kilograms) * 2.2045);
    const int wholePounds = static_cast<int>(pounds);
    texts.LB = std::to_string(wholePounds);
    const float ounces = (pounds - static_cast<float>(wholePounds)) * 16.0F;
    const int wholeOunces = static_cast<int>(ounces);
    if (ounces != static_cast<float>(wholeOunces))
        texts.OZ = std::to_string(wholeOunces + 1);
    else
        texts.OZ = numberText(ounces);
    if (texts.OZ == "16") {
        texts.OZ = "0";
        texts.LB = std::to_string(wholePounds + 1);
    }
    return texts;
}

std::string webTextsLog(float grams)
{
    return "Basic weight is " + numberText(grams);
}

namespace {

struct Forms
{
    float pounds;
    float kilograms;
};

Forms adjustedForms(const LinkState &state, Forms forms, std::uint8_t hi, std::uint8_t lo,
                    bool highCapacityModel)
{
    if (highCapacityModel && state.unitnumber == 4)
        forms.pounds = forms.pounds * 10.0F;
    if (state.currentScale == 1 && state.currentUnit != 1) {
        const float w = static_cast<float>(static_cast<double>(hi * 16 + (lo >> 4)) + 0.5);
        forms.pounds = w / 10.0F;
    }
    if (state.currentScale == 1 && state.currentUnit == 1) {
        const float w = static_cast<float>(hi * 7.2576 + lo * 0.02835 + 0.5);
        forms.kilograms = w / 10.0F;
    }
    return forms;
}

std::string roundedUp(float value)
{
    int whole = static_cast<int>(value);
    if (value > static_cast<float>(whole))
        ++whole;
    return std::to_string(whole);
}

} // namespace

ExportOutcome exportText(const LinkState &afterHandler, float w, int poundsTimes10000,
                         std::uint8_t hi, std::uint8_t lo, bool highCapacityModel,
                         int selectedRadioButtonIndex, bool setRound)
{
    const Forms raw{static_cast<float>(poundsTimes10000) / 10000.0F, w / 1000.0F};
    const Forms forms = adjustedForms(afterHandler, raw, hi, lo, highCapacityModel);
    const bool kilogramForm = selectedRadioButtonIndex == 0 || selectedRadioButtonIndex == 5;
    const float value = kilogramForm ? forms.kilograms : forms.pounds;
    if (setRound)
        return {roundedUp(value), false, {}};
    if (kilogramForm && afterHandler.currentScale == 1 && afterHandler.currentUnit == 1) {
        const std::string text = fixedText(value, 2);
        return {text, true, text};
    }
    return {numberText(value), false, {}};
}

std::string kgLogText(const ExportOutcome &outcome)
{
    return "kg value is " + outcome.kgText;
}

} // namespace rules
