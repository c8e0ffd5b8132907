// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What leaves the program, and what is said of it.

#include "app/PostalScaleAppDelegate.h"

namespace {

std::optional<Destination> destinationOf(int carrierNumber)
{
    switch (carrierNumber) {
    case carrier::usps: return Destination::Usps;
    case carrier::ups: return Destination::Ups;
    case carrier::fedex: return Destination::Fedex;
    default: return {};
    }
}

} // namespace

void PostalScaleAppDelegate::takeReport(const WeightReport &report, ReadOutcome outcome)
{
    m_parcel.takeReport(report, outcome);
    noticeScaleOff(report, outcome);
}

void PostalScaleAppDelegate::copyToClipboard(const QString &text)
{
    if (m_parcel.lets(Destination::Clipboard) && m_clipboard.copy(text))
        m_parcel.noteCopied();
}

void PostalScaleAppDelegate::Autofill(int carrier)
{
    const auto destination = destinationOf(carrier);
    if (destination && !m_parcel.lets(*destination))
        return;
    fillPage(carrier);
}

void PostalScaleAppDelegate::fillPage(int carrier)
{
    m_parcel.noteFill();
    m_carrierPages.Autofill(carrier);
    m_parcel.noteSent(safari->hasSent());
}

CaptureOutcome PostalScaleAppDelegate::captureReading()
{
    if (!m_parcel.mayLeaveNow(Destination::Clipboard))
        return CaptureOutcome::NotAllowed;
    const bool isCopied = m_clipboard.copy(exportLabelText());
    if (isCopied)
        m_parcel.noteCopied();
    const std::initializer_list<std::pair<int, int>> carriers{
        {carrier::usps, SendtoUSPS}, {carrier::ups, SendtoUPS}, {carrier::fedex, SendtoFedex}};
    for (const auto &[number, isOn] : carriers) {
        if (isOn == 1 && m_parcel.mayLeaveNow(*destinationOf(number)))
            fillPage(number);
    }
    emit readingLeaves();
    showNotes();
    return isCopied ? CaptureOutcome::Left : CaptureOutcome::ClipboardRefused;
}

void PostalScaleAppDelegate::notePageFilled(const QString &carrier)
{
    m_parcel.notePageFilled(carrier);
    showNotes();
}

void PostalScaleAppDelegate::tellExport()
{
    // By itself the label would tell of each writing: an overload empties and fills it at each
    // poll.
    if (lbLBL->accessibleName() != lbLBL->text())
        lbLBL->setAccessibleName(lbLBL->text());
}

void PostalScaleAppDelegate::showNotes()
{
    tellExport();
    m_noteLabels.show(m_parcel.notes());
    m_recentWeightsMenu.show(m_parcel.recentWeights().all());
    emit notesShown();
}
