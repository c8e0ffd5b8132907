// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

/// Whether the window manager of the X11 display keeps windows on top for programs that ask.
/// Nothing where this session has no such display. A connection and three round trips.
std::optional<bool> x11KeepsOnTop();
