// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What draws the window.
enum class Desktop { None, X11, Wayland };

/// Whose desktop it is, where that makes a difference.
enum class Shell { Other, Gnome, Plasma, Sway, Labwc };

/// What a session says of itself, before there is an application object.
struct DesktopEnvironment
{
    Shell shell = Shell::Other;
    bool hasX11Display = false; ///< may be Xwayland's
    bool hasWaylandDisplay = false;
    bool hasWaylandPlugin = true; ///< the toolkit can draw there; false without a display
    QString wishedPlatform;       ///< the user's own QT_QPA_PLATFORM; empty if there is none

    static DesktopEnvironment ofSession();
};

/// @param currentDesktop names with colons between them, as in XDG_CURRENT_DESKTOP
Shell shellNamed(const QString &currentDesktop);

/// What the toolkit is to be told, its platforms in the order in which they are tried. Empty where
/// it needs no telling: the user has chosen, or there is but one display.
///
/// Under GNOME and Plasma a window on Xwayland can be kept on top, and under GNOME the clipboard be
/// written from behind too; Wayland itself lets no program do either. Where that is worth nothing,
/// the window is on Wayland, and sharp at each scale.
QString platformsToTry(const DesktopEnvironment &environment);

/// Whether windows may stand there in tiles, whatever their size.
bool mayTile(Desktop desktop, Shell shell);

/// Where a window started in that session appears.
Desktop expectedDesktop(const DesktopEnvironment &environment);
