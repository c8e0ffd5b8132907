// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/ScaleNode.h"

#include "scale/ScaleIdentity.h"

#include <cerrno>

ScaleNode findScaleNode(HidDevices &devices)
{
    const auto device = devices.events()->find(scaleVendorId, scaleProductId);
    if (!device)
        return {};
    const int error = devices.accessError(device->node);
    const bool refused = error == EACCES || error == EPERM;
    return {.access = refused ? ScaleAccess::Denied : ScaleAccess::Granted, .path = device->node};
}
