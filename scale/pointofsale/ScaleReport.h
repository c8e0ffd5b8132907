// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/pointofsale/ScaleLayout.h"
#include "scale/pointofsale/ScaleStatement.h"

#include <optional>
#include <span>

/// What an input report says. Nothing where it is another report than the one with the weight, or
/// is too short for it. Bytes behind it are let be, and so is a 0 in front of its number.
std::optional<ScaleStatement> readScaleReport(std::span<const std::uint8_t> report,
                                              const ScaleLayout &layout);
