// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/ScaleIdentity.h"
#include "tests/support/FakeUdev.h"

inline const fakeudev::Device scaleDevice{"hidraw0", scaleVendorId, scaleProductId};
inline const fakeudev::Device mouse{"hidraw7", 0x046D, 0xC077};
