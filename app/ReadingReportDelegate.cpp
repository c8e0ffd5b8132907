// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ReadingReportDelegate.h"

#include "app/ScaleNode.h"
#include "scale/HIDManager.h"

ReadingReportDelegate::ReadingReportDelegate(const BundleInformation &bundleInformation,
                                             Settings &userSettings)
    : PostalScaleAppDelegate(bundleInformation, userSettings)
{
    turn.setSingleShot(true);
    connect(&turn, &QTimer::timeout, this, [this] {
        if (--turnsToAnnouncement > 0)
            turn.start();
    });
}

void ReadingReportDelegate::setStatusString(bool connected)
{
    PostalScaleAppDelegate::setStatusString(connected);
    readings = 0;
}

void ReadingReportDelegate::Draw5Digit(qint64 nValue)
{
    PostalScaleAppDelegate::Draw5Digit(nValue);
    latest = Drawn::Weight;
}

void ReadingReportDelegate::Draw5DigitOverload()
{
    PostalScaleAppDelegate::Draw5DigitOverload();
    if (hid_obj->OverloadFlag()) {
        latest = Drawn::Overload;
        return;
    }
    // Each reading begins by taking an overload off the panel.
    beforeLatest = latest;
    latest = Drawn::Nothing;
    typeBeforeLatest = hid_obj->currentScale();
    ++readings;
    awaitAnnouncement();
}

/// The panel is read out in the turn of the event loop that follows the reading.
void ReadingReportDelegate::awaitAnnouncement()
{
    turnsToAnnouncement = 2;
    turn.start();
}

void ReadingReportDelegate::clearAll()
{
    PostalScaleAppDelegate::clearAll();
    latest = Drawn::Blank;
}

ReadingReport ReadingReportDelegate::readingReport() const
{
    ReadingReport report = ReadingReport::of(state());
    report.model =
        selectedModelName().isEmpty() ? optionButton->currentText() : selectedModelName();
    if (report.state != ReportState::Weight)
        return report;
    report.words = imageBox->readingText();
    report.shown = shownWeight(report.words);
    if (!report.shown)
        return ReadingReport::of(ReportState::Waiting);
    const double grams = hid_obj->sWebDataBasic().toDouble();
    report.grams = minusIMg->isHidden() ? grams : -grams;
    if (!lockImg->isHidden())
        report.state = ReportState::Hold;
    return report;
}

ReportState ReadingReportDelegate::state() const
{
    const ScaleAccess access = findScaleNode().access;
    if (!isDeviceConnected || access == ScaleAccess::Absent)
        return ReportState::NoScale;
    if (!connectionStatuslbl->toolTip().isEmpty())
        return access == ScaleAccess::Denied ? ReportState::NoPermission : ReportState::NotOpened;
    return stateOfReadings();
}

ReportState ReadingReportDelegate::stateOfReadings() const
{
    if (readings == 0 || turnsToAnnouncement > 0)
        return ReportState::Waiting;
    // A reading that tells the scale's type for the first time was worked out for the other type.
    if (latest == Drawn::Weight && typeBeforeLatest == hid_obj->currentScale())
        return ReportState::Weight;
    // A scale that announces itself, or one that misses a report, does so once.
    if (readings < 2 || latest != beforeLatest)
        return ReportState::Waiting;
    switch (latest) {
    case Drawn::Weight: break;
    case Drawn::Nothing: return ReportState::UnderLoad;
    case Drawn::Blank: return ReportState::Off;
    case Drawn::Overload: return ReportState::Overload;
    }
    return ReportState::Waiting;
}
