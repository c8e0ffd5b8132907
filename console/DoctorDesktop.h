// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

enum class Desktop { None, X11, Wayland };

/// Where a window started from here would appear, by the toolkit's own rules.
Desktop expectedDesktop();

/// Whether the window manager of the X11 display keeps windows on top for programs that ask.
bool x11KeepsOnTop();
