// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>

/// Unnumbered reports: eight bytes in, eight bytes of feature report out.
inline constexpr std::array<std::uint8_t, 27> scaleReportDescriptor = {
    0x06, 0xA0, 0xFF, // usage page: vendor defined
    0x09, 0x01,       // usage
    0xA1, 0x01,       // collection: application
    0x15, 0x00,       //   logical minimum 0
    0x26, 0xFF, 0x00, //   logical maximum 255
    0x75, 0x08,       //   report size: 8 bits
    0x95, 0x08,       //   report count: 8
    0x09, 0x02,       //   usage
    0x81, 0x02,       //   input: data, variable, absolute
    0x95, 0x08,       //   report count: 8
    0x09, 0x03,       //   usage
    0xB1, 0x02,       //   feature: data, variable, absolute
    0xC0,             // end of collection
};
