// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopEnvironment.h"

#include "tests/support/TestClasses.h"

namespace {

enum class X11Display { Absent, Present };
enum class WaylandDisplay { Absent, Present };
enum class WaylandPlugin { Absent, Present };

struct Session
{
    const char *name;
    Shell shell;
    X11Display x11;
    WaylandDisplay wayland;
    WaylandPlugin plugin;
    const char *wished; ///< QT_QPA_PLATFORM
    const char *tried;
    Desktop expected;
};

constexpr auto noX11 = X11Display::Absent;
constexpr auto x11 = X11Display::Present;
constexpr auto noWayland = WaylandDisplay::Absent;
constexpr auto wayland = WaylandDisplay::Present;
constexpr auto noPlugin = WaylandPlugin::Absent;
constexpr auto plugin = WaylandPlugin::Present;

constexpr Session sessions[] = {
    {"GNOME", Shell::Gnome, x11, wayland, plugin, "", "xcb;wayland", Desktop::X11},
    {"Plasma", Shell::Plasma, x11, wayland, plugin, "", "xcb;wayland", Desktop::X11},
    {"sway", Shell::Sway, x11, wayland, plugin, "", "wayland;xcb", Desktop::Wayland},
    {"labwc", Shell::Labwc, x11, wayland, plugin, "", "wayland;xcb", Desktop::Wayland},
    {"another", Shell::Other, x11, wayland, plugin, "", "wayland;xcb", Desktop::Wayland},
    {"GNOME without Xwayland", Shell::Gnome, noX11, wayland, plugin, "", "wayland",
     Desktop::Wayland},
    {"sway without Xwayland", Shell::Sway, noX11, wayland, plugin, "", "wayland", Desktop::Wayland},
    {"GNOME on X11", Shell::Gnome, x11, noWayland, plugin, "", "", Desktop::X11},
    {"a window manager", Shell::Other, x11, noWayland, plugin, "", "", Desktop::X11},
    {"without plugin", Shell::Sway, x11, wayland, noPlugin, "", "", Desktop::X11},
    {"without plugin and Xwayland", Shell::Sway, noX11, wayland, noPlugin, "", "", Desktop::None},
    {"no desktop", Shell::Other, noX11, noWayland, plugin, "", "", Desktop::None},
    {"Wayland wished for", Shell::Gnome, x11, wayland, plugin, "wayland", "", Desktop::Wayland},
    {"its other name", Shell::Plasma, x11, wayland, plugin, "wayland-egl", "", Desktop::Wayland},
    {"X11 wished for", Shell::Sway, x11, wayland, plugin, "xcb", "", Desktop::X11},
    {"what is not there, wished for", Shell::Sway, noX11, wayland, plugin, "xcb", "",
     Desktop::None},
    {"either wished for", Shell::Sway, noX11, wayland, plugin, "xcb;wayland", "", Desktop::Wayland},
    {"no window wished for", Shell::Gnome, x11, wayland, plugin, "offscreen", "", Desktop::None},
};

} // namespace

class DesktopEnvironmentTest : public QObject
{
    Q_OBJECT

private slots:
    void platforms_data()
    {
        QTest::addColumn<int>("index");
        for (int index = 0; index < int(std::size(sessions)); ++index)
            QTest::newRow(sessions[index].name) << index;
    }

    void platforms()
    {
        QFETCH(int, index);
        const Session &session = sessions[index];
        const DesktopEnvironment environment{
            .shell = session.shell,
            .hasX11Display = session.x11 == X11Display::Present,
            .hasWaylandDisplay = session.wayland == WaylandDisplay::Present,
            .hasWaylandPlugin = session.plugin == WaylandPlugin::Present,
            .wishedPlatform = QString::fromLatin1(session.wished)};
        QCOMPARE(platformsToTry(environment), QString::fromLatin1(session.tried));
        QCOMPARE(expectedDesktop(environment), session.expected);
    }

    void shells_data()
    {
        QTest::addColumn<QString>("currentDesktop");
        QTest::addColumn<int>("shell");
        const auto row = [](const char *currentDesktop, Shell shell) {
            QTest::newRow(currentDesktop) << QString::fromLatin1(currentDesktop) << int(shell);
        };
        row("GNOME", Shell::Gnome);
        row("ubuntu:GNOME", Shell::Gnome);
        row("GNOME-Classic:GNOME", Shell::Gnome);
        row("GNOME-Flashback", Shell::Other);
        row("KDE", Shell::Plasma);
        row("sway", Shell::Sway);
        row("labwc:wlroots", Shell::Labwc);
        row("XFCE", Shell::Other);
        row("", Shell::Other);
    }

    void shells()
    {
        QFETCH(QString, currentDesktop);
        QFETCH(int, shell);
        QCOMPARE(int(shellNamed(currentDesktop)), shell);
    }
};

TEST_CLASS(DesktopEnvironmentTest)
#include "DesktopEnvironmentTest.moc"
