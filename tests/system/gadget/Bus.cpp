// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/Bus.h"

#include "emulator/MouseReportDescriptor.h"

Bus::Bus()
    : scale("scale", "dummy_udc.0")
    , second("second", "dummy_udc.1")
    , mouse({.name = "mouse",
             .vendorId = 0x1209,
             .productId = 0x0001,
             .manufacturer = "Generic",
             .product = "Optical Mouse",
             .reportDescriptor = mouseReportDescriptor,
             .reportLength = 3},
            "dummy_udc.2")
    , classScale("class", "dummy_udc.2")
    , otherClassScale("class-two", "dummy_udc.1")
{
}
