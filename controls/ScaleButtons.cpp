// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "controls/ScaleButtons.h"

#include "base/Log.h"
#include "base/RepeatingTimer.h"
#include "controls/UnitColumn.h"
#include "controls/UnitRows.h"
#include "lcd/Panel.h"
#include "scale/HIDManager.h"
#include "scale/ScaleLink.h"
#include "scale/ScaleSession.h"
#include "ui_MainWindow.h"

#include <QTimer>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto blinkInterval = 1000ms;

/// How long the scale is asked for its tare: five polls.
constexpr auto tareDuration = 2000ms;

} // namespace

ScaleButtons::ScaleButtons(const Ui::MainWindow &form, HIDManager &link, ScaleSession &session,
                           Panel &panel, UnitColumn &units, QObject *parent)
    : QObject(parent)
    , m_form(form)
    , m_link(link)
    , m_session(session)
    , m_panel(panel)
    , m_units(units)
{
    connectCommand(form.powerButton, form.powerItem, Qt::CTRL | Qt::Key_P,
                   &ScaleButtons::ON_Off_TareAction);
    connectCommand(form.tareButton, form.tareItem, Qt::CTRL | Qt::Key_T, &ScaleButtons::TareAction);
    connectCommand(form.holdButton, form.holdItem, Qt::CTRL | Qt::Key_H, &ScaleButtons::holdAction);
}

void ScaleButtons::connectCommand(QAbstractButton *button, QAction *item, QKeySequence shortcut,
                                  void (ScaleButtons::*action)())
{
    item->setShortcut(shortcut);
    // A key held down is one command.
    item->setAutoRepeat(false);
    button->setToolTip(QStringLiteral("%1 (%2)").arg(button->toolTip(),
                                                     shortcut.toString(QKeySequence::NativeText)));
    connect(button, &QAbstractButton::clicked, this, action);
    connect(item, &QAction::triggered, this, action);
}

void ScaleButtons::ON_Off_TareAction()
{
    if (!m_session.isDeviceConnected)
        return;
    logLine(QStringLiteral("Current Status of Device....... %1").arg(m_link.currentStatue()));
    if (m_link.currentStatue()) {
        m_link.set_device_OFF();
        m_form.unitLBl->setHidden(true);
        return;
    }
    m_link.set_device_ON();
    m_form.unitLBl->setHidden(false);
    m_units.showRow(powerOnRow(m_link.currentScale()));
}

void ScaleButtons::holdAction()
{
    logLine(QStringLiteral("HOLD Action"));
    if (!m_session.isDeviceConnected)
        return;
    m_session.link().setHeld(!m_session.onhold);
    m_session.onhold = m_session.link().isHolding(); // a link that has nothing to hold refuses
}

void ScaleButtons::follow(const ScaleAbilities &abilities)
{
    const auto enable = [](QAbstractButton *button, QAction *item, bool enabled) {
        button->setEnabled(enabled);
        item->setEnabled(enabled);
    };
    enable(m_form.powerButton, m_form.powerItem, abilities.power);
    enable(m_form.tareButton, m_form.tareItem, abilities.tare);
}

void ScaleButtons::TareAction()
{
    if (!m_session.isDeviceConnected)
        return;
    ScaleLink &scale = m_session.link();
    scale.pressTare();
    m_session.tareflashtime = 0;
    if (scale.abilities().blinksAtTare) {
        auto *timer = new RepeatingTimer(blinkInterval, this);
        connect(timer, &RepeatingTimer::fired, this, [this, timer] { TareTimer(timer); });
    }
    QTimer::singleShot(tareDuration, Qt::PreciseTimer, this, [&scale] { scale.releaseTare(); });
}

void ScaleButtons::TareTimer(QTimer *timer)
{
    if (m_session.tareflashtime >= 1) {
        timer->stop();
        timer->deleteLater();
    }
    for (const DigitView view : blinkingViews(m_link.currentScale(), m_link.unitnumber()))
        m_panel.setLit(view, !m_panel.isLit(view));
    ++m_session.tareflashtime;
}
