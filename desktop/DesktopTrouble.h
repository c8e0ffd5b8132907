// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/DesktopEnvironment.h"

#include <QString>
#include <optional>

/// What decides on the services that a desktop may refuse to a program.
struct DesktopSituation
{
    Desktop desktop = Desktop::None; ///< that the window is on
    Shell shell = Shell::Other;
    bool hasX11Display = false;
    bool controlsClipboard = false; ///< see ClipboardControl
    std::optional<bool> keepsOnTop; ///< see x11KeepsOnTop()
};

/// What a desktop does not do, and what helps: a sentence each. Both empty where it does it.
struct DesktopTrouble
{
    QString what;
    QString cure;

    bool isEmpty() const { return what.isEmpty(); }
    /// For the user to read.
    QString text() const;
};

/// Of writing the clipboard while another window is in front.
DesktopTrouble clipboardTrouble(const DesktopSituation &situation);

/// Of keeping the window above all others.
/// @param applicationId by which compositors know the window
DesktopTrouble onTopTrouble(const DesktopSituation &situation, const QString &applicationId);
