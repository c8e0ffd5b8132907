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
    void setType(Type type);
    /// Tare and a held reading are lost.
    void setCapacity(Capacity capacity);

    int load() const { return m_load; }
    int tare() const { return m_tare; }
    int net() const { return m_load - m_tare; }
    Type type() const { return m_type; }
    Capacity capacity() const { return m_capacity; }
    Power power() const { return m_power; }
    Button tareButton() const { return m_tareButton; }
    Button holdButton() const { return m_holdButton; }
    Unit unit() const { return m_unit; }

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

    Type m_type = Type::PackedDecimal;
    Capacity m_capacity = Capacity::Ordinary;
    int m_load = 0; ///< grams

    bool m_announcementDue = true;
    Power m_power = Power::On;
    Button m_tareButton = Button::Released;
    Button m_holdButton = Button::Released;
    Unit m_unit = Unit::Metric;
    int m_tare = 0; ///< grams
    std::optional<Weighing> m_held;
};

/// "grams", "pounds-ounces-a", "kilograms" and so on, as the scale of that type shows it.
std::string_view unitName(ScaleModel::Type type, ScaleModel::Unit unit);
