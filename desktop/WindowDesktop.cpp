// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/WindowDesktop.h"

#include "desktop/OnTopSupport.h"

#include <QGuiApplication>

Desktop desktopOfWindows()
{
    const QString platform = QGuiApplication::platformName();
    if (platform.startsWith(QLatin1String("wayland")))
        return Desktop::Wayland;
    return platform == QLatin1String("xcb") ? Desktop::X11 : Desktop::None;
}

DesktopSituation situationOfWindows()
{
    const DesktopEnvironment environment = DesktopEnvironment::ofSession();
    return {.desktop = desktopOfWindows(),
            .shell = environment.shell,
            .hasX11Display = environment.hasX11Display};
}

DesktopTrouble onTopTroubleOfWindows()
{
    DesktopSituation situation = situationOfWindows();
    if (situation.desktop == Desktop::X11)
        situation.keepsOnTop = x11KeepsOnTop();
    return onTopTrouble(situation, QGuiApplication::desktopFileName());
}
