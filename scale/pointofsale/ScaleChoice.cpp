// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleChoice.h"

#include "scale/HIDManager.h"
#include "scale/ScaleIdentity.h"
#include "scale/pointofsale/PointOfSaleLink.h"

namespace {

ScaleApplication &application()
{
    return *ScaleApplication::sharedApplication();
}

} // namespace

ScaleChoice::ScaleChoice(HIDManager &described, PointOfSaleLink &other, QObject *parent)
    : QObject(parent)
    , m_described(described)
    , m_other(other)
{
    // The described scale's link hears of every device before this does.
    const DeviceEvents *events = &described.deviceEvents();
    connect(events, &DeviceEvents::added, this, &ScaleChoice::look);
    connect(events, &DeviceEvents::changed, this, &ScaleChoice::noticeChange);
    connect(events, &DeviceEvents::removed, this, &ScaleChoice::noticeRemoval);
    connect(&described, &HIDManager::scaleCame, this, &ScaleChoice::giveUp);
}

void ScaleChoice::look()
{
    const DeviceEvents &events = m_described.deviceEvents();
    if (m_other.isAttached() || events.find(scaleVendorId, scaleProductId))
        return;
    const auto found = findClassScale(application().devices(), events);
    if (!found)
        return;
    m_described.standBack(true);
    application().delegate()->useLink(m_other, found->name);
    m_other.attach(*found);
}

void ScaleChoice::noticeChange(const HidDeviceInfo &device)
{
    if (device.systemPath == m_other.systemPath())
        m_other.retry();
    else
        look();
}

void ScaleChoice::noticeRemoval(const HidDeviceInfo &device)
{
    if (m_other.isAttached() && device.systemPath == m_other.systemPath())
        giveUp();
    look();
}

void ScaleChoice::giveUp()
{
    m_other.detach();
    m_described.standBack(false);
    application().delegate()->useLink(m_described, {});
}
