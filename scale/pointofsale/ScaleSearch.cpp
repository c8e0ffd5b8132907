// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleSearch.h"

#include "scale/ScaleIdentity.h"
#include "scale/pointofsale/ReportDescriptor.h"
#include "scale/udev/UdevRule.h"

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

std::optional<FoundScale> findClassScale(HidDevices &devices, const DeviceEvents &events)
{
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
        return FoundScale{.device = device,
                          .layout = *layout,
                          .name = name.isEmpty() ? QStringLiteral("USB scale ") + identity : name};
    }
    return std::nullopt;
}

AnyScale findAnyScale(HidDevices &devices)
{
    const std::unique_ptr<DeviceEvents> events = devices.events();
    if (const auto described = events->find(scaleVendorId, scaleProductId))
        return {.node = findScaleNode(devices), .device = *described, .name = {}};
    const auto found = findClassScale(devices, *events);
    if (!found)
        return {};
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
