// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// What the scale's firmware does: feature reports in, input reports out. It knows no carrier, so
/// the same scale answers on an emulated node and on an emulated USB port.
class ScaleModel
{
public:
    enum class Type {
        PackedDecimal,     ///< type 0: four packed decimal digits of grams
        BinaryTenthOunces, ///< type 1: 16-bit count of tenths of an ounce
    };
    /// Matters to type 0 only.
    enum class Capacity {
        Ordinary, ///< 1 g steps up to 9999 g
        High,     ///< 10 g steps up to 99,990 g
    };
    enum class Power { On, Off };
    /// Both buttons are "pressed" for as long as the command byte says so.
    enum class Button { Released, Pressed };
    /// By unit code; type 1 calls them kilograms, pounds, pounds and ounces, and lacks the fourth.
    enum class Unit { Metric, Ounces, PoundsOuncesA, PoundsOuncesB };

    using InputReport = std::array<std::uint8_t, 8>;

    static bool isPoll(std::span<const std::uint8_t> featureReport);

    /// The scale is powered by the bus, so this is also its power-up. The load stays on the pan.
    void plugIn();

    /// The eight bytes that reach the device, without the report number. Answers polls; obeys
    /// commands without an answer; ignores everything else.
    std::optional<InputReport> receive(std::span<const std::uint8_t> featureReport);

    /// What a poll would be answered now; does not use up the announcement of the type.
    InputReport reading() const;

    /// In grams; negative while the pan itself is taken off.
    void setLoad(int grams);
    /// As if the scale were exchanged for one of the other type: it announces itself anew.
    void setType(Type newType);
    /// Tare and a held reading are lost.
    void setCapacity(Capacity newCapacity);

    int load() const { return loadGrams; }
    int tare() const { return tareGrams; }
    int net() const { return loadGrams - tareGrams; }
    Type type() const { return scaleType; }
    Capacity capacity() const { return scaleCapacity; }
    Power power() const { return powerState; }
    Button tareButton() const { return tareState; }
    Button holdButton() const { return holdState; }
    Unit unit() const { return shownUnit; }

private:
    enum class Range { Normal, Overload, UnderLoad };

    struct Weighing
    {
        Range range = Range::Normal;
        int grams = 0; ///< net
    };

    Weighing weigh() const;
    int maximumLoad() const;
    void obeyPower(std::uint8_t command);
    void obeyButtons(std::uint8_t command);
    void obeyUnit(std::uint8_t command);
    InputReport announcement() const;
    InputReport report(const Weighing &weighing) const;
    std::uint8_t unitStatus() const;

    Type scaleType = Type::PackedDecimal;
    Capacity scaleCapacity = Capacity::Ordinary;
    int loadGrams = 0;

    bool announcementDue = true;
    Power powerState = Power::On;
    Button tareState = Button::Released;
    Button holdState = Button::Released;
    Unit shownUnit = Unit::Metric;
    int tareGrams = 0;
    std::optional<Weighing> held;
};

/// "grams", "pounds-ounces-a", "kilograms" and so on, as the scale of that type shows it.
std::string_view unitName(ScaleModel::Type type, ScaleModel::Unit unit);
