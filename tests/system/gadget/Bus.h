// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/system/gadget/ClassGadget.h"
#include "tests/system/gadget/GadgetScale.h"

/// The devices that the commands act on, each on a port of its own if not told otherwise.
struct Bus
{
    Bus();

    GadgetScale scale;
    GadgetScale second;
    UsbGadget mouse;
    // On the ports of the mouse and of the second scale
    ClassGadget classScale;
    ClassGadget otherClassScale;
};
