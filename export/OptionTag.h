// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

/// Tags of the six option boxes, which are also the keys under which they are saved.
namespace option {
inline constexpr int onTop = 100;
inline constexpr int roundTo = 200;
inline constexpr int clipboard = 300;
inline constexpr int usps = 400;
inline constexpr int ups = 500;
inline constexpr int fedex = 600;
} // namespace option
