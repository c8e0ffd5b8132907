// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/WeightDecoder.h"

#include "scale/OunceFraction.h"

#include <cmath>

namespace {

using Kind = ReadingEffect::Kind;

constexpr std::uint8_t negativeBit = 0x80;

constexpr double gramsPerPound = 453.6;
constexpr double gramsPerThousandthPound = 0.4536;
constexpr double gramsPerTenthOunce = 2.835;
constexpr double ouncesPerHighByte = 25.6; ///< 256 tenths of an ounce

/// The user's choice of decimal pounds or kilograms stands, whatever unit the scale reports.
bool isUnitPinned(const ReadingState &state)
{
    return state.unitnumber == 4 || state.unitnumber == 5;
}

bool isNegative(const WeightReport &report)
{
    return (report.status & negativeBit) != 0;
}

/// Pounds with four implied decimals, rounded to three.
int poundsTimes10000(float grams)
{
    return static_cast<int>(grams / gramsPerThousandthPound + 0.5) * 10;
}

float binaryOunces(const WeightReport &report)
{
    // The low byte's remainder is cut off before the sum, so that some readings are an ounce short.
    return static_cast<float>(report.high * ouncesPerHighByte + report.low / 10);
}

void selectMetric(ReadingState &state)
{
    if (isUnitPinned(state))
        return;
    state.currentUnit = 1;
    state.unitnumber = 0;
    state.unitindex = 1;
}

void displayOff(DecodedReport &decoded)
{
    decoded.log(LogLine::plain("LCD off"));
    decoded.state.currentStatue = false;
    decoded.add(Kind::HideUnitCaption);
    decoded.add(Kind::ClearAll);
}

void metric(DecodedReport &decoded, const WeightReport &report, bool highCapacity)
{
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    selectMetric(decoded.state);
    const int grams = static_cast<int>(decoded.weight);
    decoded.log(LogLine::number("wgm value is-->%1", grams));
    decoded.add(Kind::DrawDigits, grams * (highCapacity ? 10 : 100));
    decoded.add(Kind::DisplayUnit, 1);
}

void ounces(DecodedReport &decoded, const WeightReport &report)
{
    decoded.poundsTimes10000 = poundsTimes10000(decoded.weight);
    const int tenths = static_cast<int>(decoded.weight / gramsPerTenthOunce + 0.5);
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    decoded.state.currentUnit = 2;
    decoded.state.unitnumber = 1;
    decoded.state.unitindex = 2;
    decoded.add(Kind::DrawDigits, tenths * 100);
    decoded.add(Kind::DisplayUnit, 2);
}

void selectPoundsOunces(ReadingState &state, std::uint8_t status)
{
    state.currentUnit = 4;
    if (isUnitPinned(state))
        return;
    // The negative forms leave the unit as it was.
    if (status == 3) {
        state.unitnumber = 2;
        state.unitindex = 3;
    } else if (status == 7) {
        state.unitnumber = 3;
        state.unitindex = 4;
    }
}

int decimalPoundsToDraw(DecodedReport &decoded, bool highCapacity)
{
    if (highCapacity) {
        decoded.log(LogLine::number("wlbonly value is %1", decoded.poundsTimes10000));
        const auto tenths = std::lroundf(static_cast<float>(decoded.poundsTimes10000 / 1000.0));
        decoded.poundsTimes10000 = static_cast<int>(tenths * 100);
    }
    return decoded.poundsTimes10000;
}

void drawPoundsOunces(DecodedReport &decoded, const WeightReport &report, int pounds, int tenths,
                      bool highCapacity)
{
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    selectPoundsOunces(decoded.state, report.status);
    const bool decimalPounds = decoded.state.unitnumber == 4;
    decoded.add(Kind::DisplayUnit, decimalPounds ? 5 : 4);

    const Fraction fraction = ounceFraction(tenths % 10, highCapacity);
    const int magnitude = decimalPounds ? decimalPoundsToDraw(decoded, highCapacity)
                                        : pounds * 10000 + tenths / 10 * 100 +
                                              fraction.numerator * 10 + fraction.denominator;
    // Variant A shows the minus sign over a positive number; only variant B turns the number too.
    decoded.add(Kind::DrawDigits, report.status == 135 ? -magnitude : magnitude);
}

void poundsOunces(DecodedReport &decoded, const WeightReport &report, bool highCapacity)
{
    const int pounds = static_cast<int>(decoded.weight / gramsPerPound);
    decoded.poundsTimes10000 = poundsTimes10000(decoded.weight);
    const double gramsAbove = decoded.weight - pounds * gramsPerPound;
    const int tenths = static_cast<int>(gramsAbove / gramsPerTenthOunce + 0.5);
    decoded.log(LogLine::number("woz1 value is---------------------> %1", tenths % 10));
    if (decoded.state.currentScale == 1)
        decoded.weight = binaryOunces(report);
    else
        drawPoundsOunces(decoded, report, pounds, tenths, highCapacity);
    if (!decoded.state.currentStatue)
        decoded.add(Kind::ClearAll);
}

void overload(DecodedReport &decoded)
{
    decoded.state.OverloadFlag = true;
    decoded.add(Kind::HideUnitCaption);
    decoded.add(Kind::ClearAll);
    decoded.add(Kind::DrawOverload);
}

void binaryKilograms(DecodedReport &decoded, const WeightReport &report)
{
    decoded.state.currentScale = 1;
    decoded.weight = binaryHectograms(report);
    decoded.log(LogLine::withReal("Executed Case 8 fot w value %1", decoded.weight));
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    selectMetric(decoded.state);
    const int hectograms = static_cast<int>(decoded.weight);
    decoded.log(LogLine::number("wgm value is-->%1", hectograms));
    decoded.state.currentUnit = 1;
    decoded.state.currentStatue = true;
    decoded.add(Kind::DrawDigits, hectograms);
    decoded.add(Kind::DisplayUnit, 1);
}

void binaryPounds(DecodedReport &decoded, const WeightReport &report)
{
    decoded.state.currentScale = 1;
    // 16 tenths of an ounce are a tenth of a pound; the remainder rounds it.
    const int tenths = report.high << 4 | report.low >> 4;
    decoded.weight = static_cast<float>(tenths + ((report.low & 0x0F) > 7 ? 1 : 0));
    decoded.log(LogLine::withReal("w value is %1 for scale1 lb", decoded.weight));
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    decoded.state.currentUnit = 2;
    decoded.state.currentStatue = true;
    decoded.add(Kind::DrawDigits, static_cast<int>(decoded.weight));
    decoded.add(Kind::DisplayUnit, 2);
}

void binaryPoundsOunces(DecodedReport &decoded, const WeightReport &report)
{
    decoded.state.currentScale = 1;
    decoded.weight = binaryOunces(report);
    const int pounds = static_cast<int>(decoded.weight / 16);
    const int wholeOunces = static_cast<int>(decoded.weight) % 16;
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    decoded.state.currentUnit = 3;
    decoded.state.currentStatue = true;
    // Rounding may give 16 ounces; they are shown as such.
    const int value = pounds * 100 + wholeOunces + ((report.low & 0x0F) > 7 ? 1 : 0);
    decoded.add(Kind::DrawDigits, isNegative(report) ? -value : value);
    decoded.add(Kind::DisplayUnit, 3);
}

} // namespace

void DecodedReport::log(const LogLine &line)
{
    list.at(count++) = {.kind = Kind::Log, .line = line};
}

void DecodedReport::add(ReadingEffect::Kind kind, std::int64_t number)
{
    list.at(count++) = {.kind = kind, .number = number};
}

bool isHighCapacityModel(const QString &modelName)
{
    return modelName == QLatin1String("KV-A200") || modelName == QLatin1String("KV-C400");
}

float packedDecimalGrams(const WeightReport &report, int currentScale, bool highCapacity)
{
    if (currentScale != 0)
        return 0;
    const int count = (report.high >> 4) * 1000 + (report.high & 0x0F) * 100 +
                      (report.low >> 4) * 10 + (report.low & 0x0F);
    return static_cast<float>(highCapacity ? count * 10 : count);
}

float binaryHectograms(const WeightReport &report)
{
    // 0.02835 hg are a tenth of an ounce, 7.2576 hg are 256 of them.
    return static_cast<float>(report.high * 7.2576 + report.low * 0.02835 + 0.5);
}

DecodedReport decodeStatus(const WeightReport &report, float weight, const ReadingState &state,
                           bool highCapacity)
{
    DecodedReport decoded;
    decoded.state = state;
    decoded.weight = weight;
    switch (report.status & ~negativeBit) {
    case 0: displayOff(decoded); break;
    case 1: metric(decoded, report, highCapacity); break;
    case 2: ounces(decoded, report); break;
    case 3:
    case 7: poundsOunces(decoded, report, highCapacity); break;
    case 4:
    case 11: overload(decoded); break;
    case 5:
    case 12: decoded.log(LogLine::plain("under load")); break;
    case 6: decoded.state.currentScale = 0; break;
    case 8: binaryKilograms(decoded, report); break;
    case 9: binaryPounds(decoded, report); break;
    case 10: binaryPoundsOunces(decoded, report); break;
    case 13: decoded.state.currentScale = 1; break;
    default: break;
    }
    return decoded;
}
