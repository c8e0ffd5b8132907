// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/ReadingWords.h"

namespace {

/// A number as it is written: no point without a digit behind it, none without one before it.
QString tidied(QString number)
{
    if (number.endsWith(QLatin1Char('.')))
        number.chop(1);
    if (number.startsWith(QLatin1Char('.')))
        number.prepend(QLatin1Char('0'));
    return number;
}

QString digitText(PanelContents::Digit digit)
{
    return digit ? QString(QLatin1Char(static_cast<char>('0' + *digit))) : QString();
}

QString positions(const PanelContents &panel, std::size_t first, std::size_t last)
{
    QString text;
    for (std::size_t i = first; i <= last; ++i) {
        text += digitText(panel.digits[i]);
        if (panel.points[i])
            text += QLatin1Char('.');
    }
    return text;
}

QString withFraction(const PanelContents &panel, const QString &number)
{
    if (!panel.bar)
        return tidied(number + digitText(panel.numerator));
    return QStringLiteral("%1 %2/%3")
        .arg(tidied(number), digitText(panel.numerator), digitText(panel.denominator));
}

QString counted(const QString &number, const char *unit)
{
    const QString plural = number == QLatin1String("1") ? QString() : QStringLiteral("s");
    return number + QLatin1Char(' ') + QLatin1String(unit) + plural;
}

QString unitless(const PanelContents &panel)
{
    return withFraction(panel, positions(panel, 0, 3));
}

QString magnitude(const PanelContents &panel)
{
    if (panel.colon)
        return counted(tidied(positions(panel, 0, 1)), "pound") + QLatin1Char(' ') +
               counted(withFraction(panel, positions(panel, 2, 3)), "ounce");
    if (panel.kilograms)
        return counted(unitless(panel), "kilogram");
    if (panel.grams)
        return counted(unitless(panel), "gram");
    if (panel.pounds)
        return counted(unitless(panel), "pound");
    if (panel.ounces)
        return counted(unitless(panel), "ounce");
    return unitless(panel);
}

} // namespace

QString readingWords(const PanelContents &panel)
{
    if (panel.overload)
        return QStringLiteral("overload");
    if (!panel.words.isEmpty())
        return panel.hold ? panel.words + QStringLiteral(", on hold") : panel.words;
    if (panel.isBlank())
        return QStringLiteral("off");
    const QString sign = panel.minus ? QStringLiteral("minus ") : QString();
    const QString held = panel.hold ? QStringLiteral(", on hold") : QString();
    return sign + magnitude(panel) + held;
}
