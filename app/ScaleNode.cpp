// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ScaleNode.h"

#include "scale/DeviceWatcher.h"
#include "scale/ScaleIdentity.h"

#include <cerrno>
#include <unistd.h>

ScaleNode findScaleNode()
{
    const auto device = DeviceWatcher().find(scaleVendorId, scaleProductId);
    if (!device)
        return {};
    const bool refused = access(device->node.toUtf8().constData(), R_OK | W_OK) != 0 &&
                         (errno == EACCES || errno == EPERM);
    return {.access = refused ? ScaleAccess::Denied : ScaleAccess::Granted, .path = device->node};
}
