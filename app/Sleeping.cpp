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
    pausereadtimer = true;
    m_parcel.markOld();
    showNotes();
}

void PostalScaleAppDelegate::wakeUp()
{
    if (!m_rest.isResting())
        return;
    m_parcel.noteSlept(m_rest.wakeUp());
    showNotes();
    lookForScaleAgain();
}

void PostalScaleAppDelegate::lookForScaleAgain()
{
    if (!m_rest.isResting())
        return;
    // After some time without a word of it, whatever holds it up is for the polls to tell.
    const bool isFound = !isDeviceConnected || hid_obj->reopenHandle();
    if (isFound || !m_rest.isLooking()) {
        m_rest.end();
        setSilent(hid_obj->isReadingOpen()); // one of before the sleep ended with its handle
        pausereadtimer = false;
        return;
    }
    QTimer::singleShot(searchInterval, this, &PostalScaleAppDelegate::lookForScaleAgain);
}

void PostalScaleAppDelegate::endPollingAroundSleep()
{
    if (!m_rest.isNear())
        return;
    for (RepeatingTimer *timer :
         findChildren<RepeatingTimer *>(QString(), Qt::FindDirectChildrenOnly)) {
        timer->stop();
        timer->deleteLater();
    }
    if (!m_rest.isResting())
        return;
    m_rest.end();
    pausereadtimer = false;
}

void PostalScaleAppDelegate::noticeScaleOff()
{
    const bool isOn = hid_obj->currentStatue();
    const bool switchedOffHere = hid_obj->TurnOff() && !hid_obj->TurnON();
    if (isOn)
        forgetScalePower();
    else if (m_scaleWasOn && !switchedOffHere)
        m_statusArea.setNotice(StatusArea::Notice::Scale,
                               QStringLiteral("The scale has switched itself off. Ctrl+P switches "
                                              "it on; tare is lost"));
    m_scaleWasOn = isOn;
}

void PostalScaleAppDelegate::forgetScalePower()
{
    m_scaleWasOn = false;
    m_statusArea.setNotice(StatusArea::Notice::Scale, {});
}
