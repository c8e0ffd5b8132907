// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/WeightDecoder.h"

#include "base/SinglePrecision.h"
#include "scale/OunceFraction.h"

#include <cmath>

namespace {

using Kind = ReadingEffect::Kind;

constexpr std::uint8_t negativePoundsOuncesB =
    reportstatus::poundsOuncesB | reportstatus::negativeBit;

constexpr double gramsPerPound = 453.6;
constexpr double gramsPerThousandthPound = 0.4536;
constexpr double gramsPerTenthOunce = 2.835;
constexpr double ouncesPerHighByte = 25.6; ///< 256 tenths of an ounce

/// The user's choice of decimal pounds or kilograms stands, whatever unit the scale reports.
bool isUnitPinned(const ReadingState &state)
{
    return state.unitnumber == unittag::decimalPounds || state.unitnumber == unittag::kilograms;
}

bool isNegative(const WeightReport &report)
{
    return (report.status & reportstatus::negativeBit) != 0;
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
    state.currentUnit = unitindex::metric;
    state.unitnumber = unittag::grams;
    state.unitindex = unitindex::metric;
}

void showDisplayOff(DecodedReport &decoded)
{
    decoded.log(LogLine::plain("LCD off"));
    decoded.state.currentStatue = false;
    decoded.add(Kind::HideUnitCaption);
    decoded.add(Kind::ClearAll);
}

void showMetric(DecodedReport &decoded, const WeightReport &report, Capacity capacity)
{
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    selectMetric(decoded.state);
    const int grams = static_cast<int>(decoded.weight);
    decoded.log(LogLine::number("wgm value is-->%1", grams));
    decoded.add(Kind::DrawDigits, grams * (capacity == Capacity::High ? 10 : 100));
    decoded.add(Kind::DisplayUnit, displaycode::metric);
}

void showOunces(DecodedReport &decoded, const WeightReport &report)
{
    decoded.poundsTimes10000 = poundsTimes10000(decoded.weight);
    const int tenths = static_cast<int>(decoded.weight / gramsPerTenthOunce + 0.5);
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    decoded.state.currentUnit = unitindex::ounces;
    decoded.state.unitnumber = unittag::ounces;
    decoded.state.unitindex = unitindex::ounces;
    decoded.add(Kind::DrawDigits, tenths * 100);
    decoded.add(Kind::DisplayUnit, displaycode::ounces);
}

void selectPoundsOunces(ReadingState &state, std::uint8_t status)
{
    state.currentUnit = unitindex::poundsOuncesB;
    if (isUnitPinned(state))
        return;
    // The negative forms leave the unit as it was.
    if (status == reportstatus::poundsOuncesA) {
        state.unitnumber = unittag::poundsOuncesA;
        state.unitindex = unitindex::poundsOuncesA;
    } else if (status == reportstatus::poundsOuncesB) {
        state.unitnumber = unittag::poundsOuncesB;
        state.unitindex = unitindex::poundsOuncesB;
    }
}

int decimalPoundsToDraw(DecodedReport &decoded, Capacity capacity)
{
    if (capacity == Capacity::High) {
        decoded.log(LogLine::number("wlbonly value is %1", decoded.poundsTimes10000));
        const auto tenths = std::lroundf(static_cast<float>(decoded.poundsTimes10000 / 1000.0));
        decoded.poundsTimes10000 = static_cast<int>(tenths * 100);
    }
    return decoded.poundsTimes10000;
}

void drawPoundsOunces(DecodedReport &decoded, const WeightReport &report, int pounds, int tenths,
                      Capacity capacity)
{
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    selectPoundsOunces(decoded.state, report.status);
    const bool decimalPounds = decoded.state.unitnumber == unittag::decimalPounds;
    decoded.add(Kind::DisplayUnit,
                decimalPounds ? displaycode::decimalPounds : displaycode::poundsOunces);

    const Fraction fraction = ounceFraction(tenths % 10, capacity);
    const int magnitude = decimalPounds ? decimalPoundsToDraw(decoded, capacity)
                                        : pounds * 10000 + tenths / 10 * 100 +
                                              fraction.numerator * 10 + fraction.denominator;
    // Variant A shows the minus sign over a positive number; only variant B turns the number too.
    decoded.add(Kind::DrawDigits, report.status == negativePoundsOuncesB ? -magnitude : magnitude);
}

void showPoundsOunces(DecodedReport &decoded, const WeightReport &report, Capacity capacity)
{
    const int pounds = static_cast<int>(decoded.weight / gramsPerPound);
    decoded.poundsTimes10000 = poundsTimes10000(decoded.weight);
    const double gramsAbove = decoded.weight - pounds * gramsPerPound;
    // Rounding may give 160 tenths; they are shown as 16 ounces.
    const int tenths = static_cast<int>(gramsAbove / gramsPerTenthOunce + 0.5);
    decoded.log(LogLine::number("woz1 value is---------------------> %1", tenths % 10));
    if (decoded.state.currentScale == scaletype::binary)
        decoded.weight = binaryOunces(report);
    else
        drawPoundsOunces(decoded, report, pounds, tenths, capacity);
    if (!decoded.state.currentStatue)
        decoded.add(Kind::ClearAll);
}

void showOverload(DecodedReport &decoded)
{
    decoded.state.OverloadFlag = true;
    decoded.add(Kind::HideUnitCaption);
    decoded.add(Kind::ClearAll);
    decoded.add(Kind::DrawOverload);
}

void showBinaryKilograms(DecodedReport &decoded, const WeightReport &report)
{
    decoded.state.currentScale = scaletype::binary;
    decoded.weight = binaryHectograms(report);
    decoded.log(LogLine::withReal("Executed Case 8 fot w value %1", decoded.weight));
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    selectMetric(decoded.state);
    const int hectograms = static_cast<int>(decoded.weight);
    decoded.log(LogLine::number("wgm value is-->%1", hectograms));
    decoded.state.currentUnit = unitindex::metric;
    decoded.state.currentStatue = true;
    decoded.add(Kind::DrawDigits, hectograms);
    decoded.add(Kind::DisplayUnit, displaycode::metric);
}

void showBinaryPounds(DecodedReport &decoded, const WeightReport &report)
{
    decoded.state.currentScale = scaletype::binary;
    // 16 tenths of an ounce are a tenth of a pound; the remainder rounds it.
    const int tenths = report.high << 4 | report.low >> 4;
    decoded.weight = static_cast<float>(tenths + ((report.low & 0x0F) > 7 ? 1 : 0));
    decoded.log(LogLine::withReal("w value is %1 for scale1 lb", decoded.weight));
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    decoded.state.currentUnit = unitindex::ounces;
    decoded.state.currentStatue = true;
    decoded.add(Kind::DrawDigits, static_cast<int>(decoded.weight));
    decoded.add(Kind::DisplayUnit, displaycode::ounces);
}

void showBinaryPoundsOunces(DecodedReport &decoded, const WeightReport &report)
{
    decoded.state.currentScale = scaletype::binary;
    decoded.weight = binaryOunces(report);
    const int pounds = static_cast<int>(decoded.weight / 16);
    const int wholeOunces = static_cast<int>(decoded.weight) % 16;
    decoded.add(Kind::ShowNegativeSign, isNegative(report));
    decoded.state.currentUnit = unitindex::poundsOuncesA;
    decoded.state.currentStatue = true;
    // Rounding may give 16 ounces; they are shown as such.
    const int value = pounds * 100 + wholeOunces + ((report.low & 0x0F) > 7 ? 1 : 0);
    decoded.add(Kind::DrawDigits, isNegative(report) ? -value : value);
    decoded.add(Kind::DisplayUnit, displaycode::poundsOuncesBinary);
}

} // namespace

void DecodedReport::log(const LogLine &line)
{
    effects.add({.kind = Kind::Log, .line = line});
}

void DecodedReport::add(ReadingEffect::Kind kind, std::int64_t number)
{
    effects.add({.kind = kind, .number = number});
}

Capacity capacityOf(const QString &modelName)
{
    const bool countsTenGrams =
        modelName == QLatin1String("KV-A200") || modelName == QLatin1String("KV-C400");
    return countsTenGrams ? Capacity::High : Capacity::Standard;
}

float packedDecimalGrams(const WeightReport &report, int currentScale, Capacity capacity)
{
    if (currentScale != scaletype::packedDecimal)
        return 0;
    const int count = (report.high >> 4) * 1000 + (report.high & 0x0F) * 100 +
                      (report.low >> 4) * 10 + (report.low & 0x0F);
    return static_cast<float>(capacity == Capacity::High ? count * 10 : count);
}

float binaryHectograms(const WeightReport &report)
{
    // 0.02835 hg are a tenth of an ounce, 7.2576 hg are 256 of them.
    return static_cast<float>(report.high * 7.2576 + report.low * 0.02835 + 0.5);
}

std::optional<bool> toldDisplayOn(const WeightReport &report)
{
    using namespace reportstatus;
    const int status = report.status & ~negativeBit;
    if (status == displayOff)
        return false;
    if (status == packedDecimalScale || status >= binaryScale)
        return {};
    return true;
}

DecodedReport decodeStatus(const WeightReport &report, float weight, const ReadingState &state,
                           Capacity capacity)
{
    DecodedReport decoded;
    decoded.state = state;
    decoded.weight = weight;
    using namespace reportstatus;
    switch (report.status & ~negativeBit) {
    case displayOff: showDisplayOff(decoded); break;
    case metric: showMetric(decoded, report, capacity); break;
    case ounces: showOunces(decoded, report); break;
    case poundsOuncesA:
    case poundsOuncesB: showPoundsOunces(decoded, report, capacity); break;
    case overload:
    case binaryOverload: showOverload(decoded); break;
    case underLoad:
    case binaryUnderLoad: decoded.log(LogLine::plain("under load")); break;
    case packedDecimalScale: decoded.state.currentScale = scaletype::packedDecimal; break;
    case binaryKilograms: showBinaryKilograms(decoded, report); break;
    case binaryPounds: showBinaryPounds(decoded, report); break;
    case binaryPoundsOunces: showBinaryPoundsOunces(decoded, report); break;
    case binaryScale: decoded.state.currentScale = scaletype::binary; break;
    default: break;
    }
    return decoded;
}
