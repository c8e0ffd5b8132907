// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/StatedContents.h"

#include "scale/pointofsale/UnitNames.h"
#include "scale/pointofsale/WeightConversion.h"

namespace {

/// Four, and the small one behind them.
constexpr int positionCount = 5;

PanelContents::Digit digitOfCharacter(QChar character)
{
    return character.digitValue();
}

void setPosition(PanelContents &panel, int position, QChar character)
{
    if (position == positionCount - 1)
        panel.numerator = digitOfCharacter(character);
    else
        panel.digits.at(static_cast<std::size_t>(position)) = digitOfCharacter(character);
}

/// Its last digit at @p last. False where it has no room from @p first on.
bool place(PanelContents &panel, const QString &number, int first, int last)
{
    const int pointAt = static_cast<int>(number.indexOf(QLatin1Char('.')));
    QString digits = number;
    digits.remove(QLatin1Char('.'));
    const int start = last + 1 - static_cast<int>(digits.size());
    if (start < first)
        return false;
    for (int i = 0; i < digits.size(); ++i)
        setPosition(panel, start + i, digits.at(i));
    if (pointAt > 0)
        panel.points.at(static_cast<std::size_t>(start + pointAt - 1)) = true;
    return true;
}

/// The small position, which reads as a part of what stands before it, is used where the large ones
/// do not suffice for the decimals.
bool placeNumber(PanelContents &panel, const QString &number)
{
    if (place(panel, number, 0, positionCount - 2))
        return true;
    return number.contains(QLatin1Char('.')) && place(panel, number, 0, positionCount - 1);
}

bool placePoundsAndOunces(PanelContents &panel, const ScaleNumber &ounces)
{
    const auto both = poundsAndOunces(ounces);
    if (!both)
        return false;
    const QString small = magnitudeText(both->ounces);
    // The tenths have their own position, whatever stands before them.
    const int last = small.contains(QLatin1Char('.')) ? positionCount - 1 : positionCount - 2;
    panel.colon = true;
    panel.pounds = true;
    panel.ounces = true;
    return place(panel, QString::number(both->pounds), 0, 1) && place(panel, small, 2, last);
}

bool hasPicture(WeightUnit unit)
{
    return unit == WeightUnit::Gram || unit == WeightUnit::Kilogram || unit == WeightUnit::Ounce ||
           unit == WeightUnit::Pound;
}

void setUnit(PanelContents &panel, WeightUnit unit)
{
    panel.grams = unit == WeightUnit::Gram;
    panel.kilograms = unit == WeightUnit::Kilogram;
    panel.pounds = unit == WeightUnit::Pound;
    panel.ounces = unit == WeightUnit::Ounce;
}

/// Nothing where pictures cannot show it.
std::optional<PanelContents> pictured(const ScaleReading &reading)
{
    const ScaleStatement &statement = reading.statement;
    const bool isBareZero = statement.unit == WeightUnit::Unknown && statement.number.isZero();
    if (!hasPicture(statement.unit) && !isBareZero)
        return std::nullopt;
    PanelContents panel;
    panel.minus = statement.number.isNegative;
    panel.hold = reading.isHeld;
    PanelContents both = panel;
    if (reading.asPoundsAndOunces && statement.unit == WeightUnit::Ounce &&
        placePoundsAndOunces(both, statement.number))
        return both;
    setUnit(panel, statement.unit);
    if (!placeNumber(panel, magnitudeText(statement.number)))
        return std::nullopt;
    return panel;
}

QString statusWords(ScaleStatus status)
{
    switch (status) {
    case ScaleStatus::Fault: return QStringLiteral("the scale has a fault");
    case ScaleStatus::ToBeCalibrated: return QStringLiteral("the scale has to be calibrated");
    case ScaleStatus::ToBeZeroed: return QStringLiteral("the scale has to be set to zero");
    case ScaleStatus::Unknown: return QStringLiteral("the scale sends what is no weight");
    default: return {};
    }
}

QString cure(const ScaleReading &reading)
{
    switch (reading.statement.status) {
    case ScaleStatus::ToBeCalibrated: return QStringLiteral("Its manual tells how that is done.");
    case ScaleStatus::ToBeZeroed:
        return reading.canTare ? QStringLiteral("Empty the pan and press Tare.")
                               : QStringLiteral("Empty the pan and press the scale's zero key.");
    default: return QStringLiteral("Switch it off and on, or plug it in again.");
    }
}

QString sentence(QString words)
{
    words[0] = words.at(0).toUpper();
    return words + QStringLiteral(". ");
}

} // namespace

PanelContents statedContents(const ScaleReading &reading)
{
    const ScaleStatement &statement = reading.statement;
    PanelContents panel;
    panel.hold = reading.isHeld;
    if (statement.status == ScaleStatus::OverLimit) {
        panel.overload = true;
        return panel;
    }
    if (!statement.isWeighed()) {
        panel.words = statusWords(statement.status);
        return panel;
    }
    if (const auto withPictures = pictured(reading))
        return *withPictures;
    panel.words = numberWords(statement);
    if (statement.unit == WeightUnit::Unknown)
        panel.words += QStringLiteral(" in a unit that the scale does not name");
    return panel;
}

ShownWeight statedWeight(const ScaleStatement &statement)
{
    const double number = magnitudeText(statement.number).toDouble();
    return {statement.number.isNegative ? -number : number, unitSymbol(statement.unit)};
}

namespace {

/// Without the weight.
QString contentsTrouble(const ScaleReading &reading)
{
    const QString words = statedContents(reading).words;
    if (words.isEmpty())
        return {};
    if (!reading.statement.isWeighed())
        return sentence(words) + cure(reading);
    return hasPicture(reading.statement.unit)
               ? QStringLiteral("The panel has no room for so many digits: choose another unit on "
                                "the scale.")
               : QStringLiteral("The panel does not have this unit: choose grams, kilograms, "
                                "ounces or pounds on the scale.");
}

QString withTareTrouble(const ScaleReading &reading, const QString &notice)
{
    if (!reading.hasTareFailed)
        return notice;
    const QString tare = QStringLiteral("The scale could not be told to take its load for zero: "
                                        "press its own zero key.");
    return notice.isEmpty() ? tare : notice + QLatin1Char(' ') + tare;
}

} // namespace

QString statedNotice(const ScaleReading &reading)
{
    QString notice = contentsTrouble(reading);
    if (!notice.isEmpty() && reading.statement.isWeighed())
        notice.prepend(QStringLiteral("The scale shows %1. ").arg(statedContents(reading).words));
    return withTareTrouble(reading, notice);
}

QString statedTrouble(const ScaleReading &reading)
{
    return withTareTrouble(reading, contentsTrouble(reading));
}
