// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/pointofsale/ScaleLayout.h"

#include <optional>
#include <span>

/// The layout of the device that @p descriptor, a HID report descriptor of any make, is of. Nothing
/// where none of its top-level collections is on the page of weighing devices, 0x8D, whatever their
/// usage. A scale that does not say where its weight stands is taken for one of the class's own
/// layout.
std::optional<ScaleLayout> scaleLayout(std::span<const std::uint8_t> descriptor);
