// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/LeavingTexts.h"

#include "base/NumberText.h"
#include "base/SinglePrecision.h"
#include "export/AutofillScripts.h"

#include <QStringList>
#include <cmath>

namespace {

constexpr double gramsPerKilogram = 1000;
constexpr double gramsPerPound = 453.6;
constexpr double gramsPerTenthOunce = 2.835;

/// The coarsest export text is a tenth of its unit, and never less than half of its weight.
constexpr double leastShare = 0.5;

/// Far below any step of a display.
constexpr double sameNumber = 1e-4;

double exportedGrams(const LeavingTexts &texts)
{
    const double perUnit = texts.form == ExportForm::Kilograms ? gramsPerKilogram : gramsPerPound;
    return floatValue(texts.exported) * perUnit;
}

bool poundsAndOuncesTell(const LeavingTexts &texts)
{
    return floatValue(texts.pounds) != 0 || floatValue(texts.ounces) != 0;
}

bool isShown(const LeavingSituation &situation, double number, const QString &unit)
{
    const auto &shown = situation.shown;
    if (!shown)
        return false;
    const bool same = std::abs(shown->weight - number) < sameNumber;
    // Nothing is nothing in any unit.
    return same && (shown->unit == unit || number == 0);
}

QString exportWords(const LeavingSituation &situation)
{
    const LeavingTexts &texts = situation.texts;
    const float number = floatValue(texts.exported);
    if (texts.exported.isEmpty() || isShown(situation, number, exportUnit(texts.form)))
        return {};
    const QString words =
        number == 0 ? QStringLiteral("leaves as %1").arg(texts.exported)
                    : QStringLiteral("leaves as %1 %2").arg(texts.exported, exportUnit(texts.form));
    const bool isWeighed = situation.shown && situation.shown->weight != 0;
    if (isWeighed && situation.shown->weight < 0)
        return words + QStringLiteral(", without the minus sign");
    return isWeighed && !exportTells(texts, situation.grams)
               ? words + QStringLiteral(": choose a unit")
               : words;
}

QString uspsWords(const LeavingSituation &situation)
{
    const LeavingTexts &texts = situation.texts;
    const float pounds = totalPounds(texts.pounds, texts.ounces);
    if (!situation.toUsps || texts.pounds.isEmpty() ||
        isShown(situation, pounds, QStringLiteral("lb oz")))
        return {};
    return QStringLiteral("USPS page: ") + uspsText(texts);
}

QString upsWords(const LeavingSituation &situation)
{
    const LeavingTexts &texts = situation.texts;
    if (!situation.toUps || texts.pounds == texts.exported)
        return {};
    return QStringLiteral("some UPS fields: %1 lb").arg(texts.pounds);
}

QString joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(QStringLiteral("; "));
}

QString fedexWords(const LeavingSituation &situation)
{
    const LeavingTexts &texts = situation.texts;
    const QString pounds = texts.decimalPounds.isEmpty()
                               ? fixedText(poundsFromGrams(texts.grams), 3)
                               : texts.decimalPounds;
    const bool same = texts.form == ExportForm::Pounds &&
                      fixedText(static_cast<double>(floatValue(texts.exported)), 3) == pounds;
    if (!situation.toFedex || same)
        return {};
    return QStringLiteral("a FedEx field: %1 lb").arg(pounds);
}

} // namespace

double weighedGrams(const WeightReport &report, int currentScale, Capacity capacity)
{
    if (currentScale == scaletype::packedDecimal)
        return static_cast<double>(packedDecimalGrams(report, currentScale, capacity));
    return (report.high * 256 + report.low) * gramsPerTenthOunce;
}

bool exportTells(const LeavingTexts &texts, double grams)
{
    return texts.fitsScale && exportedGrams(texts) > grams * leastShare;
}

bool textsTell(Destination destination, const LeavingTexts &texts, double grams)
{
    switch (destination) {
    case Destination::Usps: return poundsAndOuncesTell(texts);
    case Destination::Fedex: return exportTells(texts, grams) && floatValue(texts.grams) != 0;
    case Destination::Clipboard:
    case Destination::Ups: break;
    }
    return exportTells(texts, grams);
}

QString exportUnit(ExportForm form)
{
    return form == ExportForm::Kilograms ? QStringLiteral("kg") : QStringLiteral("lb");
}

QString uspsText(const LeavingTexts &texts)
{
    return QStringLiteral("%1 lb %2 oz").arg(texts.pounds, texts.ounces);
}

QString carrierWords(const LeavingSituation &situation)
{
    return joined({uspsWords(situation), upsWords(situation), fedexWords(situation)});
}

QString leavingWords(const LeavingSituation &situation)
{
    return joined({exportWords(situation), carrierWords(situation)});
}
