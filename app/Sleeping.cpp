// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The sleep of the machine, and of the scale.

#include "app/PostalScaleAppDelegate.h"
#include "base/RepeatingTimer.h"

#include <chrono>
#include <optional>

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
        endPolling();
    m_search.start(searchInterval);
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
    if (m_rest.isOverdue()) {
        wakeUp();
        return;
    }
    if (!m_rest.isResting())
        return;
    const bool isFound = !m_rest.isAsleep() && link().reopenHandle();
    if (!isFound && (m_rest.isAsleep() || m_rest.isLooking())) {
        m_search.start(searchInterval);
        return;
    }
    // After some time without a word of it, whatever holds it up is for the polls to tell.
    m_rest.end();
    if (isFound && !isDeviceConnected) {
        setStatusString(true);
        setIsDeviceAlive(true);
    }
    if (!isDeviceConnected)
        forgetScalePower();
    setSilent(link().isReadingOpen()); // one of before the sleep ended with its handle
}

void PostalScaleAppDelegate::followAroundSleep(bool connected)
{
    if (!m_rest.isNear())
        return;
    endPolling();
    if (m_rest.isAsleep())
        return;
    if (connected) {
        m_rest.end();
        return;
    }
    // It may be there all the same: any device that goes is taken for it.
    m_rest.lookAgain();
    m_search.start(searchInterval);
}

void PostalScaleAppDelegate::endPolling()
{
    for (RepeatingTimer *timer :
         findChildren<RepeatingTimer *>(QString(), Qt::FindDirectChildrenOnly)) {
        timer->stop();
        timer->deleteLater();
    }
}

void PostalScaleAppDelegate::noticeScaleOff(const WeightReport &report, ReadOutcome outcome)
{
    const bool isLatest = hid_obj->TurnOff() && !hid_obj->TurnON();
    // The request rides on the poll, whatever comes back.
    const bool isUnderWay = (hid_obj->scaleCommand() & powerOffBit) != 0;
    m_isOffAsked = isLatest && (m_isOffAsked || isUnderWay);
    const auto isOn = outcome == ReadOutcome::Read ? toldDisplayOn(report) : std::nullopt;
    if (!isOn)
        return;
    if (*isOn)
        m_statusArea.setNotice(StatusArea::Notice::Scale, {});
    else if (m_scaleWasOn && !m_isOffAsked)
        m_statusArea.setNotice(StatusArea::Notice::Scale,
                               QStringLiteral("The scale has switched itself off. Ctrl+P switches "
                                              "it on; tare is lost"));
    m_scaleWasOn = *isOn;
    // Granted; whatever switches it off later is not that.
    m_isOffAsked = m_isOffAsked && *isOn;
}

void PostalScaleAppDelegate::forgetScalePower()
{
    m_scaleWasOn = false;
    m_statusArea.setNotice(StatusArea::Notice::Scale, {});
}
