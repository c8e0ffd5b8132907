// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/ParcelWatch.h"

#include "base/NumberText.h"
#include "export/ExportState.h"
#include "lcd/Panel.h"
#include "lcd/StatedContents.h"
#include "scale/HIDManager.h"
#include "scale/ScaleLink.h"
#include "scale/ScaleSession.h"
#include "scale/pointofsale/ScaleReading.h"
#include "scale/pointofsale/WeightConversion.h"

#include <QLabel>

namespace {

/// Whether a report of a weight is one of the scale type that the link takes it for. A type is
/// known only once a report has told of it.
bool fitsScale(const WeightReport &report, int currentScale)
{
    const int code = report.status & ~reportstatus::negativeBit;
    const bool isBinary = code >= reportstatus::binaryKilograms;
    return !isWeight(report) || isBinary == (currentScale == scaletype::binary);
}

} // namespace

ParcelWatch::ParcelWatch(const Surroundings &surroundings)
    : m_around(surroundings)
{
}

void ParcelWatch::takeReport(const WeightReport &report, ReadOutcome outcome)
{
    beginReading();
    m_canTare = true;
    m_isConfirmed = true;
    m_sendsByItself = false;
    m_statement.reset();
    if (outcome == ReadOutcome::Failed) {
        m_pan = PanReading::Missed;
        m_weight.missReport();
        return;
    }
    m_pan = panReading(report);
    const auto scale = m_around.link.currentScale();
    const auto capacity = capacityOf(m_around.session.selectedModelName());
    const bool fits = fitsScale(report, scale);
    m_grams = weighedGrams(report, scale, capacity);
    if (fits)
        m_statement = statementOf(report, scale, capacity);
    noteWeighed(m_pan != PanReading::PanLifted && !isHolding());
    // The request rides on the next poll; what comes with it was weighed before.
    if ((m_around.link.scaleCommand() & powerOffBit) != 0)
        m_weight.loseScale();
    // A held report repeats what was, and one of the other type is not read as what it is: neither
    // tells of the pan.
    if (!fits)
        m_weight.missReport();
    else if (!isHolding())
        settle(m_weight.take(report));
}

void ParcelWatch::takeReading(const ScaleReading &reading)
{
    const ScaleStatement &statement = reading.statement;
    beginReading();
    m_canTare = reading.canTare;
    m_isConfirmed = reading.isConfirmed;
    m_sendsByItself = true;
    m_pan = statedPanReading(statement);
    m_statement = statement;
    if (m_pan == PanReading::Missed) {
        m_weight.missReport();
        return;
    }
    const auto grams = gramsOf(statement);
    m_grams = grams.value_or(0);
    noteWeighed(!reading.isHeld && !reading.isRepeated);
    // What lies on the pan while the scale is silent is not known.
    if (!reading.isConfirmed || (reading.isRepeated && m_isSilent))
        m_weight.missReport();
    else if (!reading.isHeld)
        settleStated(reading, grams.has_value());
}

void ParcelWatch::settleStated(const ScaleReading &reading, bool hasTexts)
{
    settle(m_weight.takeStated(reading.statement, hasTexts));
    // What cannot leave settles all the same.
    if (!hasTexts && m_weight.hasJustSettled())
        countParcel();
}

void ParcelWatch::beginReading()
{
    m_leaves = false;
    m_isCopied = false;
    m_isRead = true;
    noticeChoices();
}

void ParcelWatch::noteWeighed(bool isWeighed)
{
    if (!isWeighed && m_sinceWeighed.isValid())
        return;
    m_sinceWeighed.start();
    m_isMarkedOld = false;
    m_slept = {};
}

void ParcelWatch::settle(SettledWeight::Leaves leaves)
{
    m_leaves = leaves == SettledWeight::Leaves::Yes;
    if (m_leaves)
        countParcel();
}

void ParcelWatch::countParcel()
{
    m_settledSince = QDateTime::currentDateTime();
    ++m_parcels;
}

ParcelWatch::Choice ParcelWatch::choice() const
{
    return {.unitTag = m_around.session.selectedRadioButtonIndex(),
            .pointUnit = m_around.link.dotunit(),
            .model = m_around.session.selectedModelName(),
            .roundsUp = m_around.link.SetRound()};
}

ParcelWatch::Places ParcelWatch::places() const
{
    const ExportState &state = m_around.state;
    return {.clipboard = state.SetClip(),
            .usps = state.SendtoUSPS == 1,
            .ups = state.SendtoUPS == 1,
            .fedex = state.SendtoFedex == 1};
}

bool ParcelWatch::hasNewChoices() const
{
    return choice() != m_choice || places().hasMoreThan(m_places);
}

void ParcelWatch::noticeChoices()
{
    const Choice chosen = choice();
    const Places open = places();
    // Whoever chooses a destination wants the parcel on the pan to go there.
    if (chosen != m_choice || open.hasMoreThan(m_places))
        m_weight.changeUnit();
    m_choice = chosen;
    m_places = open;
    if (m_wasHolding && !isHolding())
        m_weight.changeHold();
    m_wasHolding = isHolding();
}

bool ParcelWatch::Places::hasMoreThan(const Places &before) const
{
    return (clipboard && !before.clipboard) || (usps && !before.usps) || (ups && !before.ups) ||
           (fedex && !before.fedex);
}

bool ParcelWatch::isHolding() const
{
    return m_around.session.link().isHolding();
}

void ParcelWatch::setSilent(bool silent)
{
    m_isSilent = silent;
    if (silent)
        m_weight.missReport();
}

void ParcelWatch::loseScale()
{
    m_weight.loseScale();
    m_leaves = false;
    m_isRead = false;
    m_pan = PanReading::None;
    m_statement.reset();
    m_sinceWeighed.invalidate();
    m_isMarkedOld = false;
    m_slept = {};
}

LeavingTexts ParcelWatch::texts() const
{
    const ScaleLink &link = m_around.session.link();
    const LeavingForm leaving = link.leavingForm();
    const WebStrings web = link.webTexts();
    return {.exported = m_around.exportLabel.text(),
            .form = leaving.form,
            .fitsScale = leaving.fitsScale,
            .pounds = web.pounds,
            .ounces = web.ounces,
            .grams = web.basic,
            .decimalPounds = web.decimalPounds};
}

std::optional<ShownWeight> ParcelWatch::shown() const
{
    const PanelContents &contents = m_around.panel.contents();
    if (contents.words.isEmpty())
        return shownWeight(contents);
    if (m_sendsByItself && m_statement && m_statement->isWeighed())
        return statedWeight(*m_statement);
    return std::nullopt;
}

bool ParcelWatch::lets(Destination destination) const
{
    return !m_settledOnly || (m_leaves && textsTell(destination, texts(), m_grams));
}

bool ParcelWatch::mayLeaveNow(Destination destination) const
{
    const bool isPresent =
        m_around.session.isDeviceConnected && m_isConfirmed && !m_isSilent && !m_isMarkedOld;
    return isPresent && !isHolding() && m_weight.state() == SettledWeight::State::Settled &&
           textsTell(destination, texts(), m_grams);
}

BrowserWeight ParcelWatch::fieldWeight() const
{
    using enum ExportRounding;
    return ::fieldWeight(notes(), {.statement = m_statement,
                                   .rounding = m_around.link.SetRound() ? UpToWhole : AsRead,
                                   .isHeld = isHolding()});
}

void ParcelWatch::noteCopied()
{
    m_isCopied = true;
}

void ParcelWatch::noteFill()
{
    m_fillIsOfLatest = hasPresentParcel();
}

void ParcelWatch::noteSent(bool sent)
{
    m_isSent = m_isSent || sent;
    m_fillIsOfLatest = m_fillIsOfLatest && m_isSent;
}

void ParcelWatch::notePageFilled(const QString &carrier)
{
    if (m_fillIsOfLatest)
        m_recent.addPlace(carrierPage(carrier));
}

void ParcelWatch::endReport()
{
    m_isSent = false;
    if (!m_leaves)
        return;
    m_fillIsOfLatest = false;
    const auto parcel = presentParcel();
    m_isRemembered = parcel.has_value();
    if (parcel)
        m_recent.add(*parcel);
}

bool ParcelWatch::hasPresentParcel() const
{
    return m_isRemembered && m_weight.hasLeft();
}

std::optional<RecentWeight> ParcelWatch::presentParcel() const
{
    RecentWeight parcel{.text = {}, .unit = {}, .time = m_settledSince, .places = {}};
    const LeavingTexts leaving = texts();
    if (exportTells(leaving, m_grams)) {
        parcel.text = leaving.exported;
        parcel.unit = exportUnit(leaving.form);
    } else if (const auto shown = shownWeight(m_around.panel.contents());
               shown && shown->weight != 0) {
        // Nobody who clicks it wants the 0 that the export makes of it.
        parcel.text = floatText(static_cast<float>(shown->weight));
        parcel.unit = shown->unit;
    } else {
        return {};
    }
    if (m_isCopied)
        parcel.places.append(QStringLiteral("clipboard"));
    return parcel;
}

bool ParcelWatch::isStillValid() const
{
    return m_sendsByItself && !m_isSilent && !isHolding() && m_pan != PanReading::Missed;
}

ReadingNotes ParcelWatch::notes() const
{
    ReadingNotes notes;
    notes.isConnected = m_around.session.isDeviceConnected && m_isRead;
    notes.isSilent = m_isSilent;
    notes.pan = m_pan;
    notes.state = m_weight.state();
    notes.hasLeft = m_weight.hasLeft();
    notes.settledSince = m_settledSince;
    notes.parcel = m_parcels;
    notes.isConfirmed = m_isConfirmed;
    if (m_sinceWeighed.isValid() && !isStillValid())
        notes.age = std::chrono::milliseconds(m_sinceWeighed.elapsed()) + m_slept;
    notes.isMarkedOld = m_isMarkedOld;
    notes.settledOnly = m_settledOnly;
    notes.leaving = {.texts = texts(),
                     .grams = m_grams,
                     .shown = shown(),
                     .toClipboard = m_places.clipboard,
                     .toUsps = m_places.usps,
                     .toUps = m_places.ups,
                     .toFedex = m_places.fedex};
    notes.canTare = m_canTare;
    if (hasPresentParcel())
        notes.places = m_recent.all().constFirst().places;
    return notes;
}
