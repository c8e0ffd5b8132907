// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Asks the compositor of WAYLAND_DISPLAY for a token with which a window may want to be looked at
/// (xdg-activation); empty where there is none. Nobody has acted on a window of this process, so a
/// compositor takes it for less than a person's wish, and marks the window rather than raise it. A
/// connection and two round trips.
/// @param applicationId by which compositors know the program
QString requestActivationToken(const QString &applicationId);
