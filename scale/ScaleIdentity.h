// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// USB identity of the scale. The udev rule and the metainfo are generated from this file.
inline constexpr std::uint16_t scaleVendorId = 0x04D9;
inline constexpr std::uint16_t scaleProductId = 0x8010;
