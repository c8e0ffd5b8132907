// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/FieldWeight.h"

#include "scale/pointofsale/WeightConversion.h"

namespace {

/// As fine as a scale that counts in grams.
constexpr int poundDecimals = 3;
constexpr int ounceDecimals = 2;
constexpr int kilogramDecimals = 3;
constexpr int gramDecimals = 1;
/// Of what the browser rounds itself: finer than any scale's step in any unit.
constexpr int exactDecimals = 6;

WeightState panState(const ReadingNotes &notes)
{
    switch (notes.pan) {
    case PanReading::Weight: return notes.isSettled() ? WeightState::Settled : WeightState::Moving;
    case PanReading::Missed: return WeightState::Moving;
    case PanReading::Zero: return WeightState::Empty;
    case PanReading::BelowZero: return WeightState::BelowZero;
    case PanReading::PanLifted:
    case PanReading::None: break;
    }
    return WeightState::Unclear;
}

WeightState stateOf(const ReadingNotes &notes, bool isHeld)
{
    if (!notes.isConnected)
        return WeightState::NoScale;
    if (notes.isSilent || notes.isMarkedOld || !notes.isConfirmed)
        return WeightState::Silent;
    return isHeld ? WeightState::Held : panState(notes);
}

bool comesWithWeight(WeightState state)
{
    return state == WeightState::Settled || state == WeightState::Moving ||
           state == WeightState::Empty || state == WeightState::Held;
}

QString textIn(WeightUnit unit, int decimals, const FieldWeightFacts &facts)
{
    return unitText(*facts.statement, unit, decimals, facts.rounding).value_or(QString());
}

UnitNumbers numbersOf(const FieldWeightFacts &facts)
{
    return {.pounds = textIn(WeightUnit::Pound, exactDecimals, facts),
            .ounces = textIn(WeightUnit::Ounce, exactDecimals, facts),
            .kilograms = textIn(WeightUnit::Kilogram, exactDecimals, facts),
            .grams = textIn(WeightUnit::Gram, exactDecimals, facts)};
}

std::optional<UnitTexts> textsOf(const FieldWeightFacts &facts)
{
    if (!facts.statement || facts.statement->number.isNegative)
        return std::nullopt;
    const auto pair = webStrings(*facts.statement);
    if (!pair)
        return std::nullopt;
    return UnitTexts{.pounds = textIn(WeightUnit::Pound, poundDecimals, facts),
                     .ounces = textIn(WeightUnit::Ounce, ounceDecimals, facts),
                     .kilograms = textIn(WeightUnit::Kilogram, kilogramDecimals, facts),
                     .grams = textIn(WeightUnit::Gram, gramDecimals, facts),
                     .wholePounds = pair->pounds,
                     .restOunces = pair->ounces,
                     .exact = numbersOf(facts)};
}

} // namespace

std::optional<ScaleStatement> statementOf(const WeightReport &report, int currentScale,
                                          Capacity capacity)
{
    const PanReading pan = panReading(report);
    if (pan != PanReading::Weight && pan != PanReading::Zero && pan != PanReading::BelowZero)
        return std::nullopt;
    ScaleStatement statement{.status = ScaleStatus::InMotion,
                             .unit = WeightUnit::Gram,
                             .number = {.isNegative = pan == PanReading::BelowZero}};
    if (currentScale == scaletype::packedDecimal) {
        const float grams = packedDecimalGrams(report, currentScale, capacity);
        statement.number.digits = static_cast<std::uint32_t>(grams);
    } else {
        statement.unit = WeightUnit::Ounce;
        statement.number.digits = static_cast<std::uint32_t>(report.high * 256 + report.low);
        statement.number.exponent = -1;
    }
    return statement;
}

BrowserWeight fieldWeight(const ReadingNotes &notes, const FieldWeightFacts &facts)
{
    BrowserWeight weight;
    weight.state = stateOf(notes, facts.isHeld);
    if (comesWithWeight(weight.state))
        weight.texts = textsOf(facts);
    if (weight.state == WeightState::Settled && !weight.texts)
        weight.state = WeightState::Unclear;
    weight.unit =
        notes.leaving.shown ? notes.leaving.shown->unit : exportUnit(notes.leaving.texts.form);
    weight.age = notes.age;
    if (weight.state == WeightState::Settled)
        weight.parcel = notes.parcel;
    return weight;
}
