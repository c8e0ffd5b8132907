// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>

// Report descriptors of scales of the USB class for points of sale, page 0x8D of the HID usage
// tables.

/// As the class has it: attributes in report 1, zero in 2, the weight in 3, the status alone in 4,
/// the limit in 5.
inline constexpr std::array<std::uint8_t, 221> classScaleDescriptor = {
    0x05, 0x8D,                                     // usage page: weighing devices
    0x09, 0x20,                                     // usage: scale device
    0xA1, 0x01,                                     // collection: application
    0x15, 0x01, 0x75, 0x08, 0x95, 0x01,             //   logical minimum 1; one field of 8 bits
    0x85, 0x01,                                     //   report 1
    0x09, 0x30, 0xA1, 0x02,                         //   scale attributes
    0x19, 0x21, 0x29, 0x24,                         //     classes
    0x25, 0x04, 0xB1, 0x00,                         //     logical maximum 4; feature: array
    0x09, 0x50, 0xA1, 0x02,                         //     weight unit
    0x19, 0x51, 0x29, 0x5C, 0x25, 0x0C, 0xB1, 0x00, //       milligram to pound; feature: array
    0xC0, 0xC0,                                     //   end of both
    0x85, 0x02,                                     //   report 2
    0x09, 0x31, 0xA1, 0x02,                         //   scale control
    0x15, 0x00, 0x25, 0x01, 0x75, 0x01, 0x95, 0x02, //     two fields of one bit
    0x09, 0x81, 0x09, 0x80, 0x91, 0x02,             //     enforced zero return, zero scale; output
    0x95, 0x06, 0x91, 0x03,                         //     six bits of nothing
    0xC0,                                           //   end
    0x85, 0x03,                                     //   report 3
    0x09, 0x32, 0xA1, 0x02,                         //   scale data
    0x15, 0x01, 0x75, 0x08, 0x95, 0x01,             //     logical minimum 1; one field of 8 bits
    0x09, 0x70, 0xA1, 0x02,                         //     scale status
    0x09, 0x71, 0x09, 0x72, 0x09, 0x73, 0x09, 0x74, //       fault, at zero, in motion, stable
    0x09, 0x75, 0x09, 0x76, 0x09, 0x77, 0x09, 0x78, //       under zero, over limit, calibrate, zero
    0x25, 0x08, 0x81, 0x00,                         //       logical maximum 8; input: array
    0xC0,                                           //     end
    0x09, 0x50, 0xA1, 0x02,                         //     weight unit
    0x09, 0x51, 0x09, 0x52, 0x09, 0x53, 0x09, 0x54, //       milligram, gram, kilogram, carat
    0x09, 0x55, 0x09, 0x56, 0x09, 0x57, 0x09, 0x58, //       tael, grain, pennyweight, metric ton
    0x09, 0x59, 0x09, 0x5A, 0x09, 0x5B, 0x09, 0x5C, //       short ton, troy ounce, ounce, pound
    0x25, 0x0C, 0x81, 0x00,                         //       logical maximum 12; input: array
    0xC0,                                           //     end
    0x15, 0x81, 0x25, 0x7F,                         //     logical -127 to 127
    0x09, 0x41, 0x81, 0x02,                         //     data scaling; input: variable
    0x15, 0x00, 0x27, 0xFF, 0xFF, 0x00, 0x00,       //     logical 0 to 65535
    0x75, 0x10, 0x09, 0x40, 0x81, 0x02,             //     16 bits: data weight; input: variable
    0xC0,                                           //   end
    0x85, 0x04,                                     //   report 4
    0x09, 0x33, 0xA1, 0x02,                         //   scale status
    0x15, 0x01, 0x25, 0x08, 0x75, 0x08,             //     logical 1 to 8, 8 bits
    0x09, 0x70, 0xA1, 0x02,                         //     scale status
    0x19, 0x71, 0x29, 0x78, 0x81, 0x00,             //       fault to zero; input: array
    0xC0, 0xC0,                                     //   end of both
    0x85, 0x05,                                     //   report 5
    0x09, 0x34, 0xA1, 0x02,                         //   scale weight limit
    0x09, 0x50, 0xA1, 0x02,                         //     weight unit
    0x19, 0x51, 0x29, 0x5C, 0x25, 0x0C, 0xB1, 0x00, //       milligram to pound; feature: array
    0xC0,                                           //     end
    0x15, 0x81, 0x25, 0x7F, 0x09, 0x41, 0xB1, 0x02, //     data scaling; feature: variable
    0x15, 0x00, 0x26, 0xFF, 0x7F,                   //     logical 0 to 32767
    0x75, 0x10, 0x09, 0x40, 0xB1, 0x02,             //     16 bits: data weight; feature: variable
    0xC0,                                           //   end
    0xC0,                                           // end of collection
};

/// Lawful as well: another usage at the top, another number, the weight before everything else and
/// with 24 bits, its exponent in four of them, the status as flags, and units counted from 0 in an
/// order of its own: pound, ounce, kilogram, gram. No zero.
inline constexpr std::array<std::uint8_t, 73> oddScaleDescriptor = {
    0x05, 0x8D,                                     // usage page: weighing devices
    0x09, 0x01,                                     // usage: scales
    0xA1, 0x01,                                     // collection: application
    0x85, 0x09,                                     //   report 9
    0x15, 0x00, 0x27, 0xFF, 0xFF, 0xFF, 0x00,       //   logical 0 to 16777215
    0x75, 0x18, 0x95, 0x01,                         //   one field of 24 bits
    0x09, 0x40, 0x81, 0x02,                         //   data weight; input: variable
    0xA4,                                           //   push
    0x15, 0xF8, 0x25, 0x07, 0x75, 0x04,             //     logical -8 to 7, 4 bits
    0x0B, 0x41, 0x00, 0x8D, 0x00, 0x81, 0x02,       //     data scaling with its page; input
    0x05, 0x01, 0x15, 0x00, 0x25, 0x03,             //     another page; logical 0 to 3
    0x05, 0x8D,                                     //     weighing devices again
    0x09, 0x5C, 0x09, 0x5B, 0x09, 0x53, 0x09, 0x52, //     pound, ounce, kilogram, gram
    0x81, 0x00,                                     //     input: array
    0x25, 0x01, 0x75, 0x01, 0x95, 0x08,             //     eight fields of one bit
    0x19, 0x71, 0x29, 0x78, 0x81, 0x02,             //     fault to zero; input: variable
    0xB4,                                           //   pop
    0xFE, 0x01, 0xF0, 0x00,                         //   a long item, of a maker's own
    0xC0,                                           // end of collection
};
