// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/ShownWeight.h"

namespace {

constexpr int ouncesPerPound = 16;

/// Digits from the left with a point among them. Their quotient is rounded once, as a number that
/// is read from a text is.
class Decimal
{
public:
    void addPositions(const PanelContents &panel, std::size_t first, std::size_t last)
    {
        for (std::size_t i = first; i <= last; ++i) {
            addDigit(panel.digits[i]);
            if (panel.points[i])
                ++m_points;
        }
    }

    void addDigit(PanelContents::Digit digit)
    {
        if (!digit)
            return;
        m_digits = m_digits * 10 + *digit;
        if (m_points > 0)
            m_divisor *= 10;
        ++m_count;
    }

    bool isReadable() const { return m_points <= 1; }
    bool isWhole() const { return isReadable() && m_count > 0 && m_divisor == 1; }
    double value() const { return m_digits / m_divisor; }

private:
    double m_digits = 0;
    double m_divisor = 1;
    int m_points = 0;
    int m_count = 0;
};

/// The positions from @p first on, with what stands in the fraction's place.
std::optional<double> numberFrom(const PanelContents &panel, std::size_t first)
{
    Decimal number;
    number.addPositions(panel, first, panel.digits.size() - 1);
    if (!panel.bar)
        number.addDigit(panel.numerator);
    if (!number.isReadable())
        return std::nullopt;
    if (!panel.bar)
        return number.value();
    if (!panel.numerator || !panel.denominator)
        return std::nullopt;
    const double denominator = *panel.denominator;
    return denominator == 0 ? number.value() : number.value() + *panel.numerator / denominator;
}

std::optional<ShownWeight> poundsAndOunces(const PanelContents &panel)
{
    Decimal pounds;
    pounds.addPositions(panel, 0, 1);
    const auto ounces = numberFrom(panel, 2);
    if (!pounds.isWhole() || !ounces)
        return std::nullopt;
    return ShownWeight{pounds.value() + *ounces / ouncesPerPound, QStringLiteral("lb oz")};
}

QString unitOf(const PanelContents &panel)
{
    if (panel.kilograms)
        return QStringLiteral("kg");
    if (panel.grams)
        return QStringLiteral("g");
    if (panel.pounds)
        return QStringLiteral("lb");
    return panel.ounces ? QStringLiteral("oz") : QString();
}

std::optional<ShownWeight> numberAndUnit(const PanelContents &panel)
{
    if (panel.colon)
        return poundsAndOunces(panel);
    const auto number = numberFrom(panel, 0);
    const QString unit = unitOf(panel);
    if (!number || unit.isEmpty())
        return std::nullopt;
    return ShownWeight{*number, unit};
}

} // namespace

std::optional<ShownWeight> shownWeight(const PanelContents &panel)
{
    if (panel.overload || panel.isBlank())
        return std::nullopt;
    std::optional<ShownWeight> shown = numberAndUnit(panel);
    if (shown && panel.minus)
        shown->weight = -shown->weight;
    return shown;
}
