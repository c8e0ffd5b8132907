// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <chrono>
#include <cstdint>
#include <optional>

/// How it stands with the latest reading.
enum class WeightState : std::uint8_t {
    Settled,
    Moving,
    Empty,     ///< zero
    BelowZero, ///< the scale is to be tared
    Held,      ///< of the moment when Hold was pressed
    Silent,    ///< the scale does not answer, or what it has said is of before
    NoScale,
    Unclear, ///< no weight: overload, switched off, pan lifted, a unit that cannot be converted
};

/// One weight in each unit, with up to six decimals.
struct UnitNumbers
{
    QString pounds;
    QString ounces;
    QString kilograms;
    QString grams;

    bool operator==(const UnitNumbers &) const = default;
};

/// One weight in each unit that a field may want, as numbers that scripts understand.
struct UnitTexts
{
    QString pounds;
    QString ounces;
    QString kilograms;
    QString grams;
    // The same as a pair, where one field is for whole pounds and the next for the rest.
    QString wholePounds;
    QString restOunces; ///< 0 to 15, whole
    /// For a field that takes fewer decimals than the texts have, and would otherwise get what was
    /// rounded twice.
    UnitNumbers exact;

    bool operator==(const UnitTexts &) const = default;
};

/// The latest reading, for a field of whatever page.
struct BrowserWeight
{
    WeightState state = WeightState::NoScale;
    std::optional<UnitTexts> texts; ///< none where the state comes without a weight
    QString unit;                   ///< the panel's: "lb", "oz", "lb oz", "kg" or "g"
    std::chrono::milliseconds age{};
    /// Of a settled weight: which since the start, from 1. Two with the same weight are two
    /// parcels.
    std::optional<int> parcel;
    /// It goes into the fields that follow the scale; else it was asked for.
    bool isNews = false;

    bool operator==(const BrowserWeight &) const = default;
};

QByteArray browserWeightMessage(const BrowserWeight &weight);
