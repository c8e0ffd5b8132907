// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"

#include <QString>

enum class ScaleAccess { Absent, Denied, Granted };

/// The device node of the scale, and whether this process may open it.
struct ScaleNode
{
    ScaleAccess access = ScaleAccess::Absent;
    QString path; ///< for example /dev/hidraw0
};

/// Looked up afresh; nothing is opened.
ScaleNode findScaleNode(HidDevices &devices);
