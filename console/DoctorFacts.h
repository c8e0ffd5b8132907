// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UserFolder.h"
#include "console/WindowSituation.h"
#include "desktop/DesktopEnvironment.h"
#include "scale/ScaleNode.h"

#include <QString>
#include <QStringList>
#include <optional>

class SingleInstance;

/// What --doctor has found out about this machine and session.
struct DoctorFacts
{
    enum class Running { No, Yes, ForScript, NotAnswering };

    ScaleNode node;
    QString rule;       ///< the udev rules file that names the scale; empty if there is none
    QString unreadRule; ///< that of this installation, where udev does not look; empty without one
    std::optional<int> seats; ///< where the user is in front; nothing where no logind tells
    QStringList otherHolders; ///< programs that have the scale open, without Postal Scale itself
    Running running = Running::No;
    qint64 runningProcess = 0;       ///< 0 if there is none
    Desktop desktop = Desktop::None; ///< that the window is on, or would be
    Shell shell = Shell::Other;
    bool hasX11Display = true;
    bool controlsClipboard = false; ///< the compositor lets programs write it from behind
    std::optional<bool> keepsOnTop; ///< nothing where its display cannot be asked
    QStringList unreadLinks;    ///< what to type where browsers do not look into this installation
    QStringList linkedBrowsers; ///< those whose extension can reach the program
    WindowSituation window;     ///< empty if none answers
    UserFolder runtimeFolder;   ///< where the sockets are, or should be
    QString instanceTrouble;    ///< why starts do not find each other; empty if they do
    QString instanceCure;       ///< of it
    QString scaleName;     ///< what the scale says of itself; empty where a model is chosen for it
    QString applicationId; ///< by which the desktop knows the window
    QString ruleLine;      ///< of the udev rule for this scale; empty for the described one's

    static DoctorFacts gather(HidDevices &devices, SingleInstance &instance);
};

/// The first rules file that lets a user open the scale. A file takes the place of those of the
/// same name in later folders, as for udev.
QString findRule(const QStringList &folders);
/// The same for a scale with that identity.
QString findRule(const QStringList &folders, std::uint16_t vendorId, std::uint16_t productId);

/// How each browser finds what is installed at @p programFolder, where it does not look by itself.
/// Empty where nothing is installed there, or whoever built it gave the browsers' folders.
QStringList linksFor(const QString &programFolder);

/// The programs that have @p node open. Those of other users show themselves to root only.
QStringList holdersOf(const QString &node, qint64 exceptProcess);
