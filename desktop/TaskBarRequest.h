// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Has the compositor of WAYLAND_DISPLAY put the windows of a program in front, as a task bar does
/// when its button is pressed (wlr-foreign-toplevel-management). Three round trips.
/// @param applicationId by which compositors know the program
/// @return whether there was such a window, and somebody to have the focus
bool raiseAsTaskBar(const QString &applicationId);
