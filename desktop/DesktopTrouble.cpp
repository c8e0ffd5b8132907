// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopTrouble.h"

namespace {

QString swayCure(Desktop desktop, const QString &applicationId)
{
    return QStringLiteral("Put this line into ~/.config/sway/config and reload it: for_window "
                          "[%1] floating enable, sticky enable")
        .arg(desktop == Desktop::X11 ? QStringLiteral("class=\"postal-scale\"")
                                     : QStringLiteral("app_id=\"%1\"").arg(applicationId));
}

QString labwcCure(Desktop desktop, const QString &applicationId)
{
    return QStringLiteral("Put this into ~/.config/labwc/rc.xml, between <windowRules> and "
                          "</windowRules>, and log in anew: <windowRule identifier=\"%1\"><action "
                          "name=\"ToggleAlwaysOnTop\"/></windowRule>")
        .arg(desktop == Desktop::X11 ? QStringLiteral("postal-scale") : applicationId);
}

QString menuOf(Shell shell)
{
    switch (shell) {
    case Shell::Gnome: return QStringLiteral("Press Alt+Space and choose Always on Top");
    case Shell::Plasma:
        return QStringLiteral("Press Alt+F3 and choose More Actions, Keep Above Others");
    case Shell::Sway:
    case Shell::Labwc:
    case Shell::Other: break;
    }
    return QStringLiteral("Choose it in the window's own menu");
}

QString waylandOnTopCure(const DesktopSituation &situation)
{
    return menuOf(situation.shell) + (situation.hasX11Display
                                          ? QStringLiteral(", or start with QT_QPA_PLATFORM=xcb "
                                                           "postal-scale.")
                                          : QStringLiteral("."));
}

} // namespace

QString DesktopTrouble::text() const
{
    return isEmpty() ? QString() : QStringLiteral("%1 %2").arg(what, cure);
}

DesktopTrouble clipboardTrouble(const DesktopSituation &situation)
{
    if (situation.desktop != Desktop::Wayland || situation.controlsClipboard)
        return {};
    return {.what = QStringLiteral("This desktop lets only the front window write the clipboard."),
            .cure = situation.hasX11Display
                        ? QStringLiteral("Start with QT_QPA_PLATFORM=xcb postal-scale.")
                        : QStringLiteral("Install Xwayland (in Debian, the package xwayland), log "
                                         "in anew, and start with QT_QPA_PLATFORM=xcb "
                                         "postal-scale.")};
}

DesktopTrouble onTopTrouble(const DesktopSituation &situation, const QString &applicationId)
{
    if (situation.desktop == Desktop::None)
        return {};
    const bool isX11 = situation.desktop == Desktop::X11;
    if (isX11 && situation.keepsOnTop.value_or(true))
        return {};
    const QString refused =
        QStringLiteral("This desktop does not let programs keep a window on top.");
    if (situation.shell == Shell::Sway)
        return {.what = refused, .cure = swayCure(situation.desktop, applicationId)};
    if (situation.shell == Shell::Labwc)
        return {.what = refused, .cure = labwcCure(situation.desktop, applicationId)};
    if (isX11)
        return {.what = QStringLiteral("The window manager does not keep windows on top."),
                .cure = QStringLiteral("Use one that knows _NET_WM_STATE_ABOVE, as most do.")};
    return {.what = refused, .cure = waylandOnTopCure(situation)};
}
