// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// How the scale link finds, opens and loses the scale.

#include "scale/HIDManager.h"

#include "base/Log.h"
#include "scale/DeafDelegate.h"
#include "scale/ScaleIdentity.h"
#include "scale/udev/UdevRule.h"

#include <cerrno>

HIDManager::HIDManager()
    : m_devices(ScaleApplication::sharedApplication()->devices())
    , m_watcher(m_devices.events())
    , m_library(m_devices, [this] { hid_device_removal_callback(); })
{
    // Whichever link is in use: it is about all scales.
    connect(m_watcher.get(), &DeviceEvents::unwatched, this, [] {
        ScaleApplication::sharedApplication()->delegate()->showWatchTrouble(QStringLiteral(
            "A scale that is plugged in or unplugged now is not noticed. Start the program again "
            "once it is plugged in."));
    });
    connect(m_watcher.get(), &DeviceEvents::added, this, &HIDManager::DeviceAdded);
    connect(m_watcher.get(), &DeviceEvents::changed, this, &HIDManager::DeviceChanged);
    connect(m_watcher.get(), &DeviceEvents::removed, this, &HIDManager::DeviceRemoved);
}

ScaleDelegate *HIDManager::delegate() const
{
    static DeafDelegate deaf;
    if (m_isStandingBack)
        return &deaf;
    return ScaleApplication::sharedApplication()->delegate();
}

void HIDManager::get_device_handle()
{
    m_scaleCommand = initialCommandByte;
    m_state.unitnumber = unittag::poundsOuncesB;
    m_state.currentUnit = unitindex::poundsOuncesB;
    m_watcher->start();
}

void HIDManager::DeviceAdded(const HidDeviceInfo &device)
{
    logLine(QStringLiteral("DeviceAdded"));
    if (device.vendorId != scaleVendorId)
        return;
    logLine(QStringLiteral("go forward"));
    handleMatchingDevice();
    logLine(QStringLiteral("our device"));
}

void HIDManager::handleMatchingDevice()
{
    openHandle();
    delegate()->setStatusString(true);
    delegate()->setIsDeviceAlive(true);
}

void HIDManager::openHandle()
{
    const auto device = m_watcher->find(scaleVendorId, scaleProductId);
    if (device && m_isStandingBack)
        emit scaleCame();
    giveReadingUp();
    m_handle = device ? m_library.open(device->node, device->systemPath) : nullptr;
    m_refusedPath = device && !m_handle ? device->systemPath : QString();
    m_device = device.value_or(HidDeviceInfo());
    m_isForbidden = !m_refusedPath.isEmpty() && m_devices.accessError(m_device.node) == EACCES;
    if (m_handle)
        delegate()->setConnectionTrouble({});
    else if (device)
        reportOpenFailure(*device);
    else
        delegate()->setConnectionTrouble(
            QStringLiteral("No scale was found. The device that was plugged in is gone again, or "
                           "is another product with the scale's vendor id."));
}

void HIDManager::closeHandle()
{
    if (m_handle)
        m_handle->close();
}

bool HIDManager::reopenHandle()
{
    const auto device = m_watcher->find(scaleVendorId, scaleProductId);
    if (!device || device->systemPath != m_device.systemPath)
        return false;
    m_library.release(m_handle);
    openHandle();
    return m_handle || m_isForbidden;
}

void HIDManager::reportOpenFailure(const HidDeviceInfo &device)
{
    const QString trouble = troubleWith(device);
    logLine(trouble);
    delegate()->setConnectionTrouble(trouble);
}

QString HIDManager::troubleWith(const HidDeviceInfo &device) const
{
    if (m_devices.accessError(device.node) != EACCES)
        return QStringLiteral("The scale at %1 could not be opened: %2")
            .arg(device.node, m_library.lastError());
    return QStringLiteral("No permission to open the scale at %1. Put this line into %2 and plug "
                          "the scale in again: %3")
        .arg(device.node, QLatin1String(udevRuleFile), QLatin1String(udevRuleLine));
}

void HIDManager::DeviceChanged(const HidDeviceInfo &device)
{
    // An attachment once told of stays the same one: no further timer is to run.
    if (!m_refusedPath.isEmpty() && device.systemPath == m_refusedPath)
        openHandle();
}

void HIDManager::followPermission()
{
    if (!m_handle && !m_isForbidden)
        return;
    const bool isForbidden = m_devices.accessError(m_device.node) == EACCES;
    if (isForbidden == m_isForbidden)
        return;
    if (!isForbidden) {
        openHandle();
        return;
    }
    m_library.release(m_handle);
    giveReadingUp();
    m_handle.reset();
    m_refusedPath = m_device.systemPath;
    m_isForbidden = true;
    reportOpenFailure(m_device);
}

void HIDManager::forgetRefusal()
{
    m_refusedPath.clear();
    m_isForbidden = false;
}

void HIDManager::DeviceRemoved(const HidDeviceInfo &device)
{
    logLine(QStringLiteral("DeviceRemoved"));
    delegate()->setUnitCaptionHidden(true);
    if (device.systemPath == m_refusedPath)
        forgetRefusal();
    // Another one may come under its name.
    if (device.systemPath == m_device.systemPath)
        m_device = {};
    if (!m_watcher->find(scaleVendorId, scaleProductId))
        delegate()->setConnectionTrouble({});
    m_library.deviceRemoved(device.systemPath);
}

void HIDManager::hid_device_removal_callback()
{
    logLine(QStringLiteral("hid_device_removal_callback"));
    m_open.reset();
    m_owedReports = 0;
    forgetRefusal();
    delegate()->setStatusString(false);
    delegate()->setIsDeviceAlive(false);
    delegate()->clearAll();
}
