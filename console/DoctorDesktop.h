// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

enum class Desktop { None, X11, Wayland };

/// Where a window started from here would appear, by the toolkit's own rules.
Desktop expectedDesktop();

/// Whether the window manager of the X11 display keeps windows on top for programs that ask.
/// Nothing where this session has no such display.
std::optional<bool> x11KeepsOnTop();
