// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Two lower-case digits a byte, nothing between.
std::string hexText(std::span<const std::uint8_t> bytes);

/// Nothing when @p text is not pairs of hexadecimal digits.
std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view text);
