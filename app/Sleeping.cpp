// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The sleep of the machine, and of the scale.

#include "app/PostalScaleAppDelegate.h"
#include "base/RepeatingTimer.h"

#include <QTimer>
#include <chrono>

using namespace std::chrono_literals;

namespace {

/// Between two searches for a scale that is not there yet.
constexpr auto searchInterval = 250ms;

} // namespace

void PostalScaleAppDelegate::prepareForSleep()
{
    m_rest.begin();
    m_parcel.markOld();
    if (!isDeviceConnected)
        endPollingAroundSleep();
    showNotes();
}

void PostalScaleAppDelegate::wakeUp()
{
    if (!m_rest.isAsleep())
        return;
    m_parcel.noteSlept(m_rest.wakeUp());
    showNotes();
    lookForScaleAgain();
}

void PostalScaleAppDelegate::lookForScaleAgain()
{
    // The search of before one sleep is none of the next.
    if (!m_rest.isResting() || m_rest.isAsleep())
        return;
    // After some time without a word of it, whatever holds it up is for the polls to tell.
    const bool isFound = !isDeviceConnected || link().reopenHandle();
    if (isFound || !m_rest.isLooking()) {
        m_rest.end();
        setSilent(link().isReadingOpen()); // one of before the sleep ended with its handle
        return;
    }
    QTimer::singleShot(searchInterval, this, &PostalScaleAppDelegate::lookForScaleAgain);
}

void PostalScaleAppDelegate::endPollingAroundSleep()
{
    if (!m_rest.isNear())
        return;
    endPolling();
    m_rest.end();
}

void PostalScaleAppDelegate::endPolling()
{
    for (RepeatingTimer *timer :
         findChildren<RepeatingTimer *>(QString(), Qt::FindDirectChildrenOnly)) {
        timer->stop();
        timer->deleteLater();
    }
}

void PostalScaleAppDelegate::noticeScaleOff(ReadOutcome outcome)
{
    const bool isLatest = hid_obj->TurnOff() && !hid_obj->TurnON();
    // The request rides on the poll, whatever comes back.
    const bool isUnderWay = (hid_obj->scaleCommand() & powerOffBit) != 0;
    m_isOffAsked = isLatest && (m_isOffAsked || isUnderWay);
    if (outcome == ReadOutcome::Failed)
        return;
    const bool isOn = hid_obj->currentStatue();
    if (isOn)
        m_statusArea.setNotice(StatusArea::Notice::Scale, {});
    else if (m_scaleWasOn && !m_isOffAsked)
        m_statusArea.setNotice(StatusArea::Notice::Scale,
                               QStringLiteral("The scale has switched itself off. Ctrl+P switches "
                                              "it on; tare is lost"));
    m_scaleWasOn = isOn;
    // Granted; whatever switches it off later is not that.
    m_isOffAsked = m_isOffAsked && isOn;
}

void PostalScaleAppDelegate::forgetScalePower()
{
    // One that the sleep takes away and brings back is the same one.
    if (!m_rest.isNear())
        m_scaleWasOn = false;
    m_statusArea.setNotice(StatusArea::Notice::Scale, {});
}
