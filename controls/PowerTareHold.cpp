// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The three buttons that operate the scale from afar.

#include "app/PostalScaleAppDelegate.h"

#include "app/RepeatingTimer.h"
#include "controls/UnitRows.h"
#include "scale/HIDManager.h"
#include "scale/Log.h"

#include <QTimer>
#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto blinkInterval = 1000ms;

/// How long the scale is asked for its tare: five polls.
constexpr auto tareDuration = 2000ms;

ImageView *viewOf(const Ui::MainWindow &panel, BlinkView view)
{
    switch (view) {
    case BlinkView::digZero: return panel.digZero;
    case BlinkView::digOne: return panel.digOne;
    case BlinkView::digTwo: return panel.digTwo;
    case BlinkView::digThree: return panel.digThree;
    case BlinkView::numeratorImg: return panel.numeratorImg;
    }
    return panel.digZero;
}

} // namespace

void PostalScaleAppDelegate::ON_Off_TareAction()
{
    if (!isDeviceConnected)
        return;
    logLine(QStringLiteral("Current Status of Device....... %1").arg(hid_obj->currentStatue()));
    if (hid_obj->currentStatue()) {
        hid_obj->set_device_OFF();
        unitLBl->setHidden(true);
        return;
    }
    hid_obj->set_device_ON();
    unitLBl->setHidden(false);
    showUnitRow(powerOnRow(hid_obj->currentScale()));
}

void PostalScaleAppDelegate::holdAction()
{
    logLine(QStringLiteral("HOLD Action"));
    if (!isDeviceConnected)
        return;
    if (onhold)
        hid_obj->set_device_HOLDOFF();
    else
        hid_obj->set_device_HOLD();
    onhold = !onhold;
}

void PostalScaleAppDelegate::TareAction()
{
    if (!isDeviceConnected)
        return;
    hid_obj->set_device_ON_TARE();
    tareflashtime = 0;
    auto *timer = new RepeatingTimer(blinkInterval, this);
    connect(timer, &RepeatingTimer::fired, this, [this, timer] { TareTimer(timer); });
    QTimer::singleShot(tareDuration, Qt::PreciseTimer, hid_obj.get(),
                       &HIDManager::set_device_OFF_TARE);
}

void PostalScaleAppDelegate::TareTimer(QTimer *timer)
{
    if (tareflashtime >= 1) {
        timer->stop();
        timer->deleteLater();
    }
    for (const BlinkView blinking : blinkingViews(hid_obj->currentScale(), hid_obj->unitnumber())) {
        ImageView *view = viewOf(*this, blinking);
        view->setHidden(!view->isHidden());
    }
    ++tareflashtime;
}
