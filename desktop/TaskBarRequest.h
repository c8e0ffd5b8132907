// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Has the compositor of WAYLAND_DISPLAY put the windows of a program in front, as a task bar does
/// when its button is pressed (wlr-foreign-toplevel-management). Three round trips.
/// @param applicationId by which compositors know the program
void raiseAsTaskBar(const QString &applicationId);
