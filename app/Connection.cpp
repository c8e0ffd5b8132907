// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Connection status, the poll timer and the disconnect alert.

#include "app/PostalScaleAppDelegate.h"

#include "base/Log.h"
#include "base/RepeatingTimer.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 400ms;

/// The report of a silent scale is looked for so often.
constexpr auto lookInterval = 100ms;

/// Return code of an alert that its first button ended.
constexpr int firstButtonReturn = 1000;

} // namespace

void PostalScaleAppDelegate::setStatusString(bool connected)
{
    isDeviceConnected = connected;
    connectionStatuslbl->setText(connected ? QStringLiteral("Scale connected")
                                           : QStringLiteral("Scale not connected"));
    unitLBl->setHidden(true);
    m_isUnconfirmed = false;
    showStaleness();
    setSilent(false);
    showConnectionLamp();
    m_panel.announceReading();
    m_parcel.loseScale();
    m_carrierPages.forgetWaiting();
    showNotes();
    // The panel is emptied after this.
    QMetaObject::invokeMethod(this, &PostalScaleAppDelegate::tellExport, Qt::QueuedConnection);
    if (!connected && !m_rest.isNear())
        forgetScalePower();
    followAroundSleep(connected);
    if (!connected)
        return;
    auto *timer = new RepeatingTimer(pollInterval, this);
    connect(timer, &RepeatingTimer::fired, this, [this, timer] { readData(timer); });
}

void PostalScaleAppDelegate::setConnectionTrouble(const QString &trouble)
{
    m_connectionTrouble = trouble;
    connectionStatuslbl->setToolTip(trouble);
    m_statusArea.setNotice(StatusArea::Notice::Connection, trouble);
    showConnectionLamp();
}

void PostalScaleAppDelegate::showConnectionLamp()
{
    using Light = ConnectionLamp::Light;
    const bool isWell = m_connectionTrouble.isEmpty() && !m_look.isActive();
    const Light lit = isWell ? Light::Connected : Light::Trouble;
    connectionLamp->setLight(isDeviceConnected ? lit : Light::Out);
}

void PostalScaleAppDelegate::readData(QTimer *timer)
{
    if (pausereadtimer || m_rest.isResting() || link().isReadingOpen()) {
        showNotes();
        return;
    }
    logLine(QStringLiteral("readData"));
    if (!isDeviceConnected) {
        timer->stop();
        timer->deleteLater();
        return;
    }
    // A scale that is polled is read again anyway.
    if (!m_scaleName.isEmpty() && m_parcel.hasNewChoices())
        link().readAgain();
    const bool leaves = link().takeReading();
    if (link().isReadingOpen())
        setSilent(true);
    else if (leaves)
        endReading();
    else
        showNotes();
}

void PostalScaleAppDelegate::setSilent(bool silent)
{
    if (silent == m_look.isActive())
        return;
    if (silent)
        m_look.start(lookInterval);
    else
        m_look.stop();
    showStaleness();
    m_parcel.setSilent(silent);
    m_statusArea.setNotice(StatusArea::Notice::Silence, silent ? link().silenceText() : QString());
    showConnectionLamp();
    showNotes();
}

void PostalScaleAppDelegate::showStaleness()
{
    if (m_look.isActive())
        m_panel.setDoubt(Panel::Doubt::Silence);
    else
        m_panel.setDoubt(m_isUnconfirmed ? Panel::Doubt::Unconfirmed : Panel::Doubt::None);
}

void PostalScaleAppDelegate::lookForReport()
{
    if (pausereadtimer || m_rest.isResting())
        return;
    const bool leaves = link().continueReading();
    if (link().isReadingOpen())
        return;
    setSilent(false);
    if (leaves)
        endReading();
}

void PostalScaleAppDelegate::endReading()
{
    m_panel.announceReading();
    m_parcel.endReport();
    if (SendtoUSPS == 1)
        Autofill(carrier::usps);
    if (SendtoUPS == 1)
        Autofill(carrier::ups);
    if (SendtoFedex == 1)
        Autofill(carrier::fedex);
    if (m_parcel.letsReading())
        emit readingLeaves();
    showNotes();
}

void PostalScaleAppDelegate::showAlert()
{
    auto *alert = new QMessageBox(QMessageBox::Warning, {}, QStringLiteral("Scale Alert"),
                                  QMessageBox::NoButton, window.get());
    alert->setInformativeText(QStringLiteral("Scale disconnected"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    const QPushButton *first = alert->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    connect(alert, &QMessageBox::finished, this, [this, alert, first] {
        someMethodDidEnd(alert->clickedButton() == first ? firstButtonReturn : 0);
    });
    alert->open();
}

void PostalScaleAppDelegate::someMethodDidEnd(int returnCode)
{
    if (returnCode == firstButtonReturn)
        logLine(QStringLiteral("First Button"));
}
