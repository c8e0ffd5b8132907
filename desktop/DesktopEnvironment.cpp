// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopEnvironment.h"

#include <QDir>
#include <QLibraryInfo>
#include <QStringList>
#include <algorithm>

namespace {

bool isSet(const char *variable)
{
    return !qEnvironmentVariableIsEmpty(variable);
}

bool waylandPluginIsThere()
{
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                       QStringLiteral("/platforms"));
    // A pattern would cost the start the compilation of a regular expression.
    const QStringList names = plugins.entryList(QDir::Files, QDir::NoSort);
    return std::any_of(names.begin(), names.end(), [](const QString &name) {
        return name.startsWith(QLatin1String("libqwayland"));
    });
}

/// A compositor that was started by hand names itself in a variable of its own only.
Shell shellOfSession()
{
    const Shell named = shellNamed(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    if (named != Shell::Other)
        return named;
    if (isSet("SWAYSOCK"))
        return Shell::Sway;
    return isSet("LABWC_PID") ? Shell::Labwc : Shell::Other;
}

bool prefersXwayland(Shell shell)
{
    return shell == Shell::Gnome || shell == Shell::Plasma;
}

Desktop desktopOf(const QString &platform, const DesktopEnvironment &environment)
{
    if (platform.startsWith(QLatin1String("xcb")))
        return environment.hasX11Display ? Desktop::X11 : Desktop::None;
    if (platform.startsWith(QLatin1String("wayland")))
        return environment.hasWaylandDisplay && environment.hasWaylandPlugin ? Desktop::Wayland
                                                                             : Desktop::None;
    return Desktop::None;
}

} // namespace

DesktopEnvironment DesktopEnvironment::ofSession()
{
    return {.shell = shellOfSession(),
            .hasX11Display = isSet("DISPLAY"),
            .hasWaylandDisplay = isSet("WAYLAND_DISPLAY"),
            .hasWaylandPlugin = isSet("WAYLAND_DISPLAY") && waylandPluginIsThere(),
            .wishedPlatform = qEnvironmentVariable("QT_QPA_PLATFORM")};
}

Shell shellNamed(const QString &currentDesktop)
{
    const QStringList names = currentDesktop.toLower().split(QLatin1Char(':'));
    const auto isNamed = [&](const char *name) { return names.contains(QLatin1String(name)); };
    if (isNamed("gnome"))
        return Shell::Gnome;
    if (isNamed("kde"))
        return Shell::Plasma;
    if (isNamed("sway"))
        return Shell::Sway;
    return isNamed("labwc") ? Shell::Labwc : Shell::Other;
}

QString platformsToTry(const DesktopEnvironment &environment)
{
    if (!environment.wishedPlatform.isEmpty() || !environment.hasWaylandDisplay ||
        !environment.hasWaylandPlugin)
        return {};
    if (!environment.hasX11Display)
        return QStringLiteral("wayland");
    return prefersXwayland(environment.shell) ? QStringLiteral("xcb;wayland")
                                              : QStringLiteral("wayland;xcb");
}

bool mayTile(Desktop desktop, Shell shell)
{
    // What is not known may do anything. On X11 the window manager is told of the proportion.
    return desktop == Desktop::Wayland && (shell == Shell::Sway || shell == Shell::Other);
}

Desktop expectedDesktop(const DesktopEnvironment &environment)
{
    QString tried = environment.wishedPlatform;
    if (tried.isEmpty())
        tried = platformsToTry(environment);
    // The toolkit's own default.
    if (tried.isEmpty())
        tried = QStringLiteral("xcb");
    const QStringList platforms = tried.split(QLatin1Char(';'));
    for (const QString &platform : platforms) {
        const Desktop desktop = desktopOf(platform, environment);
        if (desktop != Desktop::None)
            return desktop;
    }
    return Desktop::None;
}
