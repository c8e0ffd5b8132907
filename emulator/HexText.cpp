// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/HexText.h"

#include <charconv>

std::string hexText(std::span<const std::uint8_t> bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> bytesFromHex(std::string_view text)
{
    if (text.size() % 2 != 0)
        return std::nullopt;
    std::vector<std::uint8_t> bytes;
    for (const char *pair = text.data(); pair != text.data() + text.size(); pair += 2) {
        std::uint8_t byte = 0;
        const auto result = std::from_chars(pair, pair + 2, byte, 16);
        if (result.ec != std::errc() || result.ptr != pair + 2)
            return std::nullopt;
        bytes.push_back(byte);
    }
    return bytes;
}
