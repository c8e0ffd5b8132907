// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/WeightText.h"

#include "base/NumberText.h"
#include "base/SinglePrecision.h"

namespace {

// The figure behind all exported texts. A more exact one would change them.
constexpr double poundsPerKilogram = 2.2045;

struct ExportWeight
{
    float pounds;
    float kilograms;
};

ExportWeight packedDecimalWeight(const ExportValues &values)
{
    return {.pounds = static_cast<float>(values.poundsTimes10000) / 10000,
            .kilograms = values.weight / 1000};
}

ExportWeight exportWeight(const ExportValues &values)
{
    ExportWeight weight = packedDecimalWeight(values);
    // Their decimal pounds were cut to one decimal, with three implied ones left.
    if (values.capacity == Capacity::High && values.unitnumber == unittag::decimalPounds)
        weight.pounds *= 10;
    if (values.currentScale != scaletype::binary)
        return weight;
    if (values.currentUnit == unitindex::metric) {
        weight.kilograms = binaryHectograms(values.report) / 10;
    } else {
        const int tenths = values.report.high * 16 + (values.report.low >> 4);
        weight.pounds = static_cast<float>(tenths + 0.5) / 10;
    }
    return weight;
}

QString roundedUp(float value)
{
    const auto whole = static_cast<long>(value);
    return QString::number(value > static_cast<float>(whole) ? whole + 1 : whole);
}

} // namespace

WebStrings webStrings(float grams)
{
    const float kilograms = grams / 1000;
    const auto pounds = static_cast<float>(kilograms * poundsPerKilogram);
    const int wholePounds = static_cast<int>(pounds);
    const float ounces = (pounds - static_cast<float>(wholePounds)) * 16;
    const int wholeOunces = static_cast<int>(ounces);
    const int ouncesUp = ounces == static_cast<float>(wholeOunces) ? wholeOunces : wholeOunces + 1;
    if (ouncesUp == 16)
        return {QString::number(wholePounds + 1), QStringLiteral("0"), floatText(grams)};
    return {QString::number(wholePounds), QString::number(ouncesUp), floatText(grams)};
}

ExportForm exportForm(int selectedRadioButtonIndex)
{
    switch (selectedRadioButtonIndex) {
    case unittag::grams:
    case unittag::kilograms: return ExportForm::Kilograms;
    default: return ExportForm::Pounds;
    }
}

ExportText exportText(const ExportValues &values, ExportForm form, ExportRounding rounding)
{
    const ExportWeight weight = exportWeight(values);
    const float shown = form == ExportForm::Kilograms ? weight.kilograms : weight.pounds;
    if (rounding == ExportRounding::UpToWhole)
        return {roundedUp(shown), {}};
    if (form == ExportForm::Kilograms && values.currentScale == scaletype::binary &&
        values.currentUnit == unitindex::metric) {
        const QString text = fixedText(shown, 2);
        return {text, text};
    }
    return {floatText(shown), {}};
}
