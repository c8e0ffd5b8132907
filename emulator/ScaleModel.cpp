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
    m_announcementDue = true;
    m_power = Power::On;
    m_tareButton = Button::Released;
    m_holdButton = Button::Released;
    m_unit = Unit::Metric;
    m_tare = 0;
    m_held.reset();
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
    return std::exchange(m_announcementDue, false) ? announcement() : reading();
}

// Commands only: the first poll after the host starts carries 0xFF, whose power-off bit nobody
// has asked for.
void ScaleModel::obeyPower(std::uint8_t command)
{
    const Power wanted = (command & powerOffBit) != 0 ? Power::Off : Power::On;
    if (wanted == m_power)
        return;
    m_power = wanted;
    m_tare = 0;
    m_held.reset();
}

void ScaleModel::obeyButtons(std::uint8_t command)
{
    const Button tareNow = (command & tareReleasedBit) != 0 ? Button::Released : Button::Pressed;
    const bool tareEdge = m_tareButton == Button::Released && tareNow == Button::Pressed;
    if (tareEdge && weigh().range == Range::Normal)
        m_tare = m_load;
    m_tareButton = tareNow;

    const Button holdNow = (command & holdReleasedBit) != 0 ? Button::Released : Button::Pressed;
    if (holdNow == Button::Released)
        m_held.reset();
    else if (m_holdButton == Button::Released)
        m_held = weigh();
    m_holdButton = holdNow;
}

void ScaleModel::obeyUnit(std::uint8_t command)
{
    switch (command & unitCodeMask) {
    case 0x38: m_unit = Unit::Metric; break;
    case 0x30: m_unit = Unit::Ounces; break;
    case 0x28: m_unit = Unit::PoundsOuncesA; break;
    case 0x18:
        if (m_type == Type::PackedDecimal)
            m_unit = Unit::PoundsOuncesB;
        break;
    default: break;
    }
}

ScaleModel::InputReport ScaleModel::reading() const
{
    if (m_power == Power::Off)
        return {displayOffStatus};
    return report(m_held.value_or(weigh()));
}

void ScaleModel::setLoad(int grams)
{
    m_load = grams;
}

void ScaleModel::setType(Type type)
{
    if (type == m_type)
        return;
    m_type = type;
    plugIn();
}

void ScaleModel::setCapacity(Capacity capacity)
{
    if (capacity == m_capacity)
        return;
    m_capacity = capacity;
    m_tare = 0; // A tare of the larger scale would not fit the digits of the smaller one.
    m_held.reset();
}

ScaleModel::Weighing ScaleModel::weigh() const
{
    if (m_load < 0)
        return {Range::UnderLoad, 0};
    if (m_load > maximumLoad())
        return {Range::Overload, 0};
    return {Range::Normal, net()};
}

int ScaleModel::maximumLoad() const
{
    if (m_type == Type::BinaryTenthOunces)
        return tenthOunceCapacity;
    return m_capacity == Capacity::High ? packedDecimalHighCapacity : packedDecimalCapacity;
}

ScaleModel::InputReport ScaleModel::announcement() const
{
    return {statusCodes(m_type).announcement};
}

ScaleModel::InputReport ScaleModel::report(const Weighing &weighing) const
{
    if (weighing.range == Range::Overload)
        return {statusCodes(m_type).overload};
    if (weighing.range == Range::UnderLoad)
        return {statusCodes(m_type).underLoad};

    const int magnitude = std::abs(weighing.grams);
    std::uint16_t weight = 0;
    if (m_type == Type::BinaryTenthOunces)
        weight = static_cast<std::uint16_t>(std::lround(magnitude / gramsPerTenthOunce));
    else if (m_capacity == Capacity::High)
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
    const auto index = static_cast<std::size_t>(m_unit);
    return m_type == Type::PackedDecimal ? packedDecimalUnits.at(index) : tenthOunceUnits.at(index);
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
