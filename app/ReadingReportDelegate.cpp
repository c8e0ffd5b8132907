// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ReadingReportDelegate.h"

#include "lcd/ReadingWords.h"
#include "lcd/StatedContents.h"
#include "scale/pointofsale/ScaleSearch.h"

namespace {

/// In seconds; nothing while the reading is a present one.
std::optional<double> ageOf(const ReadingNotes &notes)
{
    if (!notes.isOld())
        return {};
    return static_cast<double>(notes.age.count()) / 1000;
}

void addNotes(ReadingReport &report, const ReadingNotes &notes)
{
    report.settled = notes.isSettled();
    if (notes.isSettled()) {
        report.parcel = notes.parcel;
        report.settledSince = notes.settledSince.toOffsetFromUtc(notes.settledSince.offsetFromUtc())
                                  .toString(Qt::ISODate);
    }
    report.age = ageOf(notes);
    report.advice = notes.advice();
    report.exported = notes.leaving.texts.exported;
    report.exportUnit = exportUnit(notes.leaving.texts.form);
    report.leaves = notes.leaves();
}

} // namespace

ReadingReportDelegate::ReadingReportDelegate(const BundleInformation &information,
                                             Settings &settings, BrowserBridge &browsers)
    : PostalScaleAppDelegate(information, settings, browsers)
{
    connect(&panel(), &Panel::readingAnnounced, this, [this] {
        m_awaitsAnnouncement = false;
        emit reportDue();
    });
    connect(this, &PostalScaleAppDelegate::notesShown, this, [this] {
        if (!m_awaitsAnnouncement)
            emit reportDue();
    });
}

void ReadingReportDelegate::setStatusString(bool connected)
{
    PostalScaleAppDelegate::setStatusString(connected);
    m_readings = 0;
    m_stated.reset();
}

void ReadingReportDelegate::Draw5Digit(qint64 nValue)
{
    PostalScaleAppDelegate::Draw5Digit(nValue);
    m_latest = Drawn::Weight;
}

void ReadingReportDelegate::Draw5DigitOverload()
{
    PostalScaleAppDelegate::Draw5DigitOverload();
    if (hid_obj->OverloadFlag()) {
        m_latest = Drawn::Overload;
        return;
    }
    // Each reading begins by taking an overload off the panel.
    m_beforeLatest = m_latest;
    m_latest = Drawn::Nothing;
    m_typeBeforeLatest = hid_obj->currentScale();
    ++m_readings;
    m_awaitsAnnouncement = true;
}

void ReadingReportDelegate::clearAll()
{
    PostalScaleAppDelegate::clearAll();
    m_latest = Drawn::Blank;
}

void ReadingReportDelegate::takeReading(const ScaleReading &reading)
{
    PostalScaleAppDelegate::takeReading(reading);
    m_stated = reading;
    m_awaitsAnnouncement = true;
}

ReadingReport ReadingReportDelegate::readingReport() const
{
    return reportOf(state());
}

ReadingReport ReadingReportDelegate::followedReport() const
{
    // Whether the scale is still there is a matter of its removal, and takes milliseconds to look.
    const bool isWell = isDeviceConnected && connectionTrouble().isEmpty();
    return reportOf(isWell ? stateOfReadings() : state());
}

ReadingReport ReadingReportDelegate::signOfLife() const
{
    ReadingReport report = followedReport();
    if (report.hasReading() && !report.age)
        report.age = static_cast<double>(parcel().notes().age.count()) / 1000;
    return report;
}

ReadingReport ReadingReportDelegate::reportOf(ReportState state) const
{
    ReadingReport report = ReadingReport::of(state);
    nameScale(report);
    if (report.state == ReportState::NoAnswer) {
        report.age = ageOf(parcel().notes());
        if (!report.device.isEmpty())
            report.words = link().silenceText();
    }
    if (report.state == ReportState::NotReady)
        report.words = statedNotice(*m_stated);
    if (report.state != ReportState::Weight)
        return report;
    const PanelContents &shown = panel().announced();
    report.words = readingWords(shown);
    report.shown = shownWeight(shown);
    // What the panel tells in words alone is a number all the same.
    if (!report.shown && m_stated)
        report.shown = statedWeight(m_stated->statement);
    if (!report.shown)
        return ReadingReport::of(ReportState::Waiting);
    const QString basic = link().webTexts().basic;
    const bool isBelow =
        m_stated ? m_stated->statement.number.isNegative : panel().contents().minus;
    if (!basic.isEmpty())
        report.grams = isBelow ? -basic.toDouble() : basic.toDouble();
    if (panel().contents().hold)
        report.state = ReportState::Hold;
    addNotes(report, parcel().notes());
    return report;
}

/// A model is chosen for a scale that does not name itself.
void ReadingReportDelegate::nameScale(ReadingReport &report) const
{
    report.device = scaleName();
    if (!report.device.isEmpty())
        return;
    report.model =
        selectedModelName().isEmpty() ? optionButton->currentText() : selectedModelName();
}

ReportState ReadingReportDelegate::state() const
{
    const ScaleAccess access =
        findAnyScale(ScaleApplication::sharedApplication()->devices()).node.access;
    if (!isDeviceConnected || access == ScaleAccess::Absent)
        return ReportState::NoScale;
    if (!connectionTrouble().isEmpty())
        return access == ScaleAccess::Denied ? ReportState::NoPermission : ReportState::NotOpened;
    return stateOfReadings();
}

ReportState ReadingReportDelegate::statedState() const
{
    if (m_awaitsAnnouncement || !m_stated->isConfirmed)
        return ReportState::Waiting;
    if (m_stated->statement.status == ScaleStatus::OverLimit)
        return ReportState::Overload;
    if (m_stated->statement.isWeighed())
        return ReportState::Weight;
    return m_stated->statement.status == ScaleStatus::Unknown ? ReportState::Waiting
                                                              : ReportState::NotReady;
}

ReportState ReadingReportDelegate::stateOfReadings() const
{
    if (link().isReadingOpen())
        return ReportState::NoAnswer;
    if (m_stated)
        return statedState();
    if (m_readings == 0 || m_awaitsAnnouncement)
        return ReportState::Waiting;
    // A reading that tells the scale's type for the first time was worked out for the other type.
    if (m_latest == Drawn::Weight && m_typeBeforeLatest == hid_obj->currentScale())
        return ReportState::Weight;
    // A scale that announces itself, or one that misses a report, does so once.
    if (m_readings < 2 || m_latest != m_beforeLatest)
        return ReportState::Waiting;
    switch (m_latest) {
    case Drawn::Weight: break;
    case Drawn::Nothing: return ReportState::UnderLoad;
    case Drawn::Blank: return ReportState::Off;
    case Drawn::Overload: return ReportState::Overload;
    }
    return ReportState::Waiting;
}
