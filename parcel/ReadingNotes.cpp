// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/ReadingNotes.h"

#include "parcel/RecentWeights.h"

using namespace std::chrono_literals;

namespace {

constexpr auto freshFor = 1000ms;

QString panWords(const ReadingNotes &notes)
{
    switch (notes.pan) {
    case PanReading::None: break;
    case PanReading::Weight:
        return notes.isSettled() ? QStringLiteral("Settled since ") +
                                       notes.settledSince.toString(QStringLiteral("HH:mm:ss"))
                                 : QStringLiteral("Settling");
    case PanReading::Zero: return QStringLiteral("At zero");
    case PanReading::BelowZero: return QStringLiteral("Below zero: ") + notes.advice();
    case PanReading::PanLifted: return QStringLiteral("Pan lifted");
    case PanReading::Missed: return QStringLiteral("No reading");
    }
    return {};
}

/// Before it has left. Each destination gets only what is of the weight.
QString comingWords(const LeavingSituation &leaving)
{
    const bool exportGoes = exportTells(leaving.texts, leaving.grams);
    const bool uspsGoes =
        leaving.toUsps && textsTell(Destination::Usps, leaving.texts, leaving.grams);
    if (!exportGoes && !uspsGoes) {
        const bool isShownInUnit =
            leaving.shown && leaving.shown->unit == exportUnit(leaving.texts.form);
        return isShownInUnit ? QStringLiteral("does not leave: too light for this unit")
                             : QStringLiteral("does not leave: choose a unit");
    }
    if (!exportGoes)
        return QStringLiteral("USPS page: %1, when it has settled; the rest does not leave: "
                              "choose a unit")
            .arg(uspsText(leaving.texts));
    const QString words = leavingWords(leaving);
    return words.isEmpty() ? QStringLiteral("leaves when it has settled")
                           : words + QStringLiteral(", when it has settled");
}

QString leftWords(const ReadingNotes &notes)
{
    const QString uspsPage = carrierPage(QStringLiteral("USPS"));
    const QString form = QStringLiteral("has left as %1: %2");
    const QString places = notes.places.join(QStringLiteral(", "));
    const LeavingTexts &texts = notes.leaving.texts;
    if (notes.places == QStringList(uspsPage))
        return form.arg(uspsText(texts), places);
    LeavingSituation gone = notes.leaving;
    gone.toUsps = notes.places.contains(uspsPage);
    gone.toUps = notes.places.contains(carrierPage(QStringLiteral("UPS")));
    gone.toFedex = notes.places.contains(carrierPage(QStringLiteral("FedEx")));
    const QString words =
        form.arg(texts.exported + QLatin1Char(' ') + exportUnit(texts.form), places);
    const QString carriers = carrierWords(gone);
    return carriers.isEmpty() ? words : words + QStringLiteral("; ") + carriers;
}

/// With the option on.
QString gatedWords(const ReadingNotes &notes)
{
    if (notes.pan != PanReading::Weight)
        return QStringLiteral("leaves when a weight has settled");
    if (!notes.places.isEmpty())
        return leftWords(notes);
    if (!notes.hasLeft || !exportTells(notes.leaving.texts, notes.leaving.grams))
        return comingWords(notes.leaving);
    return QStringLiteral("nothing has taken it; File, Recent weights keeps it");
}

} // namespace

PanReading panReading(const WeightReport &report)
{
    using namespace reportstatus;
    if (isWeight(report))
        return PanReading::Weight;
    const bool isNegative = (report.status & negativeBit) != 0;
    const bool isZero = report.low == 0 && report.high == 0;
    const int code = report.status & ~negativeBit;
    if (isWeightCode(code))
        return isNegative && !isZero ? PanReading::BelowZero : PanReading::Zero;
    const bool isUnderLoad = code == underLoad || code == binaryUnderLoad;
    return isUnderLoad ? PanReading::PanLifted : PanReading::None;
}

PanReading statedPanReading(const ScaleStatement &statement)
{
    if (isStatedWeight(statement))
        return PanReading::Weight;
    if (statement.status == ScaleStatus::Unknown)
        return PanReading::Missed;
    if (!statement.isWeighed())
        return PanReading::None;
    return statement.number.isNegative ? PanReading::BelowZero : PanReading::Zero;
}

bool ReadingNotes::isOld() const
{
    return isConnected && pan != PanReading::None && (isMarkedOld || age > freshFor);
}

QString ReadingNotes::advice() const
{
    if (!isConnected || pan != PanReading::BelowZero)
        return {};
    return canTare ? QStringLiteral("press Tare") : QStringLiteral("press the scale's zero key");
}

QString ReadingNotes::standing() const
{
    if (!isConnected)
        return {};
    // What lies on the pan by now is not known.
    if (isSilent && pan != PanReading::Missed)
        return isOld() ? QStringLiteral("%1 old").arg(durationWords(age)) : QString();
    if (!isConfirmed)
        return QStringLiteral("Not confirmed yet: may be of the weighing before");
    const QString words = panWords(*this);
    if (isOld() && isMarkedOld)
        return QStringLiteral("%1 \u00b7 from before the sleep").arg(words);
    if (isOld() && pan == PanReading::Missed)
        return QStringLiteral("%1 for %2").arg(words, durationWords(age));
    return isOld() ? QStringLiteral("%1 \u00b7 %2 old").arg(words, durationWords(age)) : words;
}

QString ReadingNotes::leaves() const
{
    if (!isConnected || !isConfirmed)
        return {};
    return settledOnly && leaving.goesSomewhere() ? gatedWords(*this) : leavingWords(leaving);
}

QString ReadingNotes::exportCaption() const
{
    const QString caption = QStringLiteral("Export");
    return isConnected && !leaving.texts.exported.isEmpty()
               ? caption + QStringLiteral(", ") + exportUnit(leaving.texts.form)
               : caption;
}

QString durationWords(std::chrono::milliseconds time)
{
    using namespace std::chrono;
    if (time < 1min)
        return QStringLiteral("%1 s").arg(duration_cast<seconds>(time).count());
    if (time < 1h)
        return QStringLiteral("%1 min").arg(duration_cast<minutes>(time).count());
    return QStringLiteral("%1 h").arg(duration_cast<hours>(time).count());
}
