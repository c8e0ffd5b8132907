// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleChoice.h"

#include "base/Log.h"
#include "scale/HIDManager.h"
#include "scale/ScaleIdentity.h"
#include "scale/pointofsale/PointOfSaleLink.h"

#include <utility>

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
    if (m_other.isOpen() || events.find(scaleVendorId, scaleProductId))
        return;
    const auto scales = findClassScales(application().devices(), events);
    QString failedPath = m_other.systemPath();
    QString trouble = m_other.trouble();
    for (const FoundScale &scale : scales) {
        if (scale.device.systemPath == m_other.systemPath())
            continue; // it tries again by itself
        OpenedScale opened = openClassScale(application().devices(), scale.device);
        if (opened.connection) {
            take(scale, std::move(opened));
            passOver(failedPath, trouble);
            return;
        }
        if (failedPath.isEmpty()) {
            failedPath = scale.device.systemPath;
            trouble = opened.trouble;
        }
    }
    if (!m_other.isAttached() && !scales.empty())
        take(scales.front(), {.connection = nullptr, .trouble = trouble});
}

void ScaleChoice::take(const FoundScale &scale, OpenedScale opened)
{
    m_other.detach();
    m_described.standBack(true);
    application().delegate()->useLink(m_other, scale.name);
    m_other.attach(scale, std::move(opened));
}

void ScaleChoice::passOver(const QString &systemPath, const QString &trouble)
{
    m_passedOver = systemPath;
    if (systemPath.isEmpty())
        return;
    const QString told =
        QStringLiteral("Another scale is there and cannot be used. %1").arg(trouble);
    logLine(told);
    m_other.tellBesides(told);
}

void ScaleChoice::forgetPassedOver(const QString &systemPath)
{
    if (m_passedOver.isEmpty() || systemPath != m_passedOver)
        return;
    m_passedOver.clear();
    m_other.tellBesides({});
}

void ScaleChoice::noticeChange(const HidDeviceInfo &device)
{
    if (device.systemPath == m_other.systemPath()) {
        m_other.retry();
        return;
    }
    if (application().devices().readingError(device.node) == 0)
        forgetPassedOver(device.systemPath);
    look();
}

void ScaleChoice::noticeRemoval(const HidDeviceInfo &device)
{
    forgetPassedOver(device.systemPath);
    if (m_other.isAttached() && device.systemPath == m_other.systemPath())
        giveUp();
    look();
}

void ScaleChoice::giveUp()
{
    m_passedOver.clear();
    m_other.detach();
    m_described.standBack(false);
    application().delegate()->useLink(m_described, {});
}
