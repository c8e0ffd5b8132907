// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ScaleModel.h"

#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

constexpr std::uint8_t pollMarker = 0x90;
constexpr std::uint8_t pollTrailer = 0x80;
constexpr std::uint8_t commandMarker = 0xA0;
constexpr std::uint8_t commandTrailer = 0xA0;
constexpr std::size_t meaningfulBytes = 3;

constexpr std::uint8_t powerOffBit = 0x01;
constexpr std::uint8_t tareReleasedBit = 0x02;
constexpr std::uint8_t holdReleasedBit = 0x04;
constexpr std::uint8_t unitCodeMask = 0x38;

constexpr std::uint8_t displayOffStatus = 0;
constexpr std::uint8_t negativeBit = 0x80;

constexpr double gramsPerTenthOunce = 2.8349523125;
/// A common size for the tenth-ounce scales; the 16-bit count would reach 185 kg.
constexpr int tenthOunceCapacity = 35000;
constexpr int packedDecimalCapacity = 9999;
constexpr int packedDecimalHighCapacity = 99990;
constexpr int highCapacityStep = 10;

/// The statuses of one type of scale.
struct StatusCodes
{
    std::uint8_t overload;
    std::uint8_t underLoad;
    std::uint8_t announcement;
};

constexpr StatusCodes packedDecimalStatus = {4, 5, 6};
constexpr StatusCodes tenthOunceStatus = {11, 12, 13};

const StatusCodes &statusCodes(ScaleModel::Type type)
{
    return type == ScaleModel::Type::PackedDecimal ? packedDecimalStatus : tenthOunceStatus;
}

bool hasMarkers(std::span<const std::uint8_t> report, std::uint8_t first, std::uint8_t third)
{
    return report.size() >= meaningfulBytes && report[0] == first && report[2] == third;
}

/// Four digits, the low pair in the first byte.
std::uint16_t packedDecimal(int count)
{
    std::uint16_t packed = 0;
    for (int shift = 0; shift < 16; shift += 4, count /= 10)
        packed = static_cast<std::uint16_t>(packed | (count % 10) << shift);
    return packed;
}

} // namespace

void ScaleModel::plugIn()
{
    announcementDue = true;
    powerState = Power::On;
    tareState = Button::Released;
    holdState = Button::Released;
    shownUnit = Unit::Metric;
    tareGrams = 0;
    held.reset();
}

bool ScaleModel::isPoll(std::span<const std::uint8_t> featureReport)
{
    return hasMarkers(featureReport, pollMarker, pollTrailer);
}

std::optional<ScaleModel::InputReport>
ScaleModel::receive(std::span<const std::uint8_t> featureReport)
{
    const bool poll = isPoll(featureReport);
    if (!poll && !hasMarkers(featureReport, commandMarker, commandTrailer))
        return std::nullopt;
    const std::uint8_t command = featureReport[1];
    if (!poll)
        obeyPower(command);
    obeyButtons(command);
    obeyUnit(command);
    if (!poll)
        return std::nullopt;
    return std::exchange(announcementDue, false) ? announcement() : reading();
}

// Commands only: the first poll after the host starts carries 0xFF, whose power-off bit nobody
// has asked for.
void ScaleModel::obeyPower(std::uint8_t command)
{
    const Power wanted = (command & powerOffBit) != 0 ? Power::Off : Power::On;
    if (wanted == powerState)
        return;
    powerState = wanted;
    tareGrams = 0;
    held.reset();
}

void ScaleModel::obeyButtons(std::uint8_t command)
{
    const Button tareNow = (command & tareReleasedBit) != 0 ? Button::Released : Button::Pressed;
    const bool tareEdge = tareState == Button::Released && tareNow == Button::Pressed;
    if (tareEdge && weigh().range == Range::Normal)
        tareGrams = loadGrams;
    tareState = tareNow;

    const Button holdNow = (command & holdReleasedBit) != 0 ? Button::Released : Button::Pressed;
    if (holdNow == Button::Released)
        held.reset();
    else if (holdState == Button::Released)
        held = weigh();
    holdState = holdNow;
}

void ScaleModel::obeyUnit(std::uint8_t command)
{
    switch (command & unitCodeMask) {
    case 0x38: shownUnit = Unit::Metric; break;
    case 0x30: shownUnit = Unit::Ounces; break;
    case 0x28: shownUnit = Unit::PoundsOuncesA; break;
    case 0x18:
        if (scaleType == Type::PackedDecimal)
            shownUnit = Unit::PoundsOuncesB;
        break;
    default: break;
    }
}

ScaleModel::InputReport ScaleModel::reading() const
{
    if (powerState == Power::Off)
        return {displayOffStatus};
    return report(held.value_or(weigh()));
}

void ScaleModel::setLoad(int grams)
{
    loadGrams = grams;
}

void ScaleModel::setType(Type newType)
{
    if (newType == scaleType)
        return;
    scaleType = newType;
    plugIn();
}

void ScaleModel::setCapacity(Capacity newCapacity)
{
    if (newCapacity == scaleCapacity)
        return;
    scaleCapacity = newCapacity;
    tareGrams = 0; // A tare of the larger scale would not fit the digits of the smaller one.
    held.reset();
}

ScaleModel::Weighing ScaleModel::weigh() const
{
    if (loadGrams < 0)
        return {Range::UnderLoad, 0};
    if (loadGrams > maximumLoad())
        return {Range::Overload, 0};
    return {Range::Normal, net()};
}

int ScaleModel::maximumLoad() const
{
    if (scaleType == Type::BinaryTenthOunces)
        return tenthOunceCapacity;
    return scaleCapacity == Capacity::High ? packedDecimalHighCapacity : packedDecimalCapacity;
}

ScaleModel::InputReport ScaleModel::announcement() const
{
    return {statusCodes(scaleType).announcement};
}

ScaleModel::InputReport ScaleModel::report(const Weighing &weighing) const
{
    if (weighing.range == Range::Overload)
        return {statusCodes(scaleType).overload};
    if (weighing.range == Range::UnderLoad)
        return {statusCodes(scaleType).underLoad};

    const int magnitude = std::abs(weighing.grams);
    std::uint16_t weight = 0;
    if (scaleType == Type::BinaryTenthOunces)
        weight = static_cast<std::uint16_t>(std::lround(magnitude / gramsPerTenthOunce));
    else if (scaleCapacity == Capacity::High)
        weight = packedDecimal((magnitude + highCapacityStep / 2) / highCapacityStep);
    else
        weight = packedDecimal(magnitude);

    const bool showsMinus = weighing.grams < 0 && weight != 0;
    return {static_cast<std::uint8_t>(unitStatus() | (showsMinus ? negativeBit : 0)),
            static_cast<std::uint8_t>(weight & 0xFF), static_cast<std::uint8_t>(weight >> 8)};
}

std::uint8_t ScaleModel::unitStatus() const
{
    constexpr std::array<std::uint8_t, 4> packedDecimalUnits = {1, 2, 3, 7};
    constexpr std::array<std::uint8_t, 3> tenthOunceUnits = {8, 9, 10};
    const auto index = static_cast<std::size_t>(shownUnit);
    return scaleType == Type::PackedDecimal ? packedDecimalUnits.at(index)
                                            : tenthOunceUnits.at(index);
}

std::string_view unitName(ScaleModel::Type type, ScaleModel::Unit unit)
{
    const bool packedDecimal = type == ScaleModel::Type::PackedDecimal;
    switch (unit) {
    case ScaleModel::Unit::Metric: return packedDecimal ? "grams" : "kilograms";
    case ScaleModel::Unit::Ounces: return packedDecimal ? "ounces" : "pounds";
    case ScaleModel::Unit::PoundsOuncesA:
        return packedDecimal ? "pounds-ounces-a" : "pounds-ounces";
    case ScaleModel::Unit::PoundsOuncesB: return "pounds-ounces-b";
    }
    return {};
}
