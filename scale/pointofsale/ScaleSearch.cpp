// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleSearch.h"

#include "scale/ScaleIdentity.h"
#include "scale/pointofsale/ReportDescriptor.h"
#include "scale/udev/UdevRule.h"

#include <algorithm>
#include <cerrno>

namespace {

bool isDescribedScale(const HidDeviceInfo &device)
{
    return device.vendorId == scaleVendorId && device.productId == scaleProductId;
}

QString hexId(std::uint16_t id)
{
    return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0'));
}

QString quoted(std::uint16_t id)
{
    return QLatin1Char('"') + hexId(id) + QLatin1Char('"');
}

} // namespace

std::vector<FoundScale> findClassScales(HidDevices &devices, const DeviceEvents &events)
{
    std::vector<FoundScale> found;
    for (const HidDeviceInfo &device : events.present()) {
        if (isDescribedScale(device))
            continue;
        const QByteArray descriptor = devices.reportDescriptor(device);
        const auto layout =
            scaleLayout({reinterpret_cast<const std::uint8_t *>(descriptor.constData()),
                         static_cast<std::size_t>(descriptor.size())});
        if (!layout)
            continue;
        const QString name = devices.nameOf(device);
        const QString identity =
            hexId(device.vendorId) + QLatin1Char(':') + hexId(device.productId);
        found.push_back({.device = device,
                         .layout = *layout,
                         .name = name.isEmpty() ? QStringLiteral("USB scale ") + identity : name});
    }
    return found;
}

OpenedScale openClassScale(HidDevices &devices, const HidDeviceInfo &device)
{
    OpenedScale opened{.connection = devices.openToRead(device.node), .trouble = {}};
    if (opened.connection)
        return opened;
    if (devices.readingError(device.node) == EACCES)
        opened.trouble =
            QStringLiteral("No permission to open the scale at %1. Put this line into %2 and plug "
                           "the scale in again: %3")
                .arg(device.node, QLatin1String(udevRuleFile), udevRuleFor(device));
    else
        opened.trouble = QStringLiteral("The scale at %1 could not be opened: %2. It is tried "
                                        "again every two seconds. If that goes on, unplug it and "
                                        "plug it in again.")
                             .arg(device.node, devices.lastError());
    return opened;
}

AnyScale findAnyScale(HidDevices &devices)
{
    const std::unique_ptr<DeviceEvents> events = devices.events();
    if (const auto described = events->find(scaleVendorId, scaleProductId))
        return {.node = findScaleNode(devices), .device = *described, .name = {}};
    const std::vector<FoundScale> all = findClassScales(devices, *events);
    if (all.empty())
        return {};
    auto found = std::find_if(all.begin(), all.end(), [&](const FoundScale &scale) {
        return devices.readingError(scale.device.node) == 0;
    });
    if (found == all.end())
        found = all.begin();
    const int error = devices.readingError(found->device.node);
    const bool isRefused = error == EACCES || error == EPERM;
    return {.node = {.access = isRefused ? ScaleAccess::Denied : ScaleAccess::Granted,
                     .path = found->device.node},
            .device = found->device,
            .name = found->name};
}

QString udevRuleFor(const HidDeviceInfo &device)
{
    return QString(QLatin1String(udevRuleLine))
        .replace(quoted(scaleVendorId), quoted(device.vendorId))
        .replace(quoted(scaleProductId), quoted(device.productId));
}
