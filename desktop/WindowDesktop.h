// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/DesktopTrouble.h"

/// What the application's windows are on, by the platform that the toolkit really uses.
Desktop desktopOfWindows();

/// As far as the process knows by itself: nothing is asked of the desktop.
DesktopSituation situationOfWindows();

/// Of the application's windows; the window manager is asked, see x11KeepsOnTop().
DesktopTrouble onTopTroubleOfWindows();
