// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>

inline constexpr std::array<std::uint8_t, 39> mouseReportDescriptor = {
    0x05, 0x01, // usage page: generic desktop
    0x09, 0x02, // usage: mouse
    0xA1, 0x01, // collection: application
    0x05, 0x09, //   usage page: buttons
    0x19, 0x01, //   usage minimum 1
    0x29, 0x08, //   usage maximum 8
    0x15, 0x00, //   logical minimum 0
    0x25, 0x01, //   logical maximum 1
    0x95, 0x08, //   report count: 8
    0x75, 0x01, //   report size: 1 bit
    0x81, 0x02, //   input: data, variable, absolute
    0x05, 0x01, //   usage page: generic desktop
    0x09, 0x30, //   usage: X
    0x09, 0x31, //   usage: Y
    0x15, 0x81, //   logical minimum -127
    0x25, 0x7F, //   logical maximum 127
    0x75, 0x08, //   report size: 8 bits
    0x95, 0x02, //   report count: 2
    0x81, 0x06, //   input: data, variable, relative
    0xC0,       // end of collection
};
