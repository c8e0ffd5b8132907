// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/system/gadget/GadgetScale.h"

/// The devices that the commands act on, each on a port of its own.
struct Bus
{
    Bus();

    GadgetScale scale;
    GadgetScale second;
    UsbGadget mouse;
};
