// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/DarkStyle.h"

#include "desktop/DesktopEnvironment.h"
#include "session/BusConnection.h"

#include <QApplication>
#include <QPalette>
#include <cstdint>
#include <string_view>
#include <systemd/sd-bus.h>

namespace {

constexpr auto portal = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto settingsInterface = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance";
constexpr auto colourScheme = "color-scheme";

/// Of that setting, by the portal's documentation; 0 and 2 are no preference and light.
constexpr std::uint32_t prefersDark = 1;

QPalette darkPalette()
{
    const QColor window(53, 53, 53);
    const QColor field(36, 36, 36);
    const QColor button(69, 69, 69);
    const QColor faint(150, 150, 150);
    const QColor chosen(53, 132, 228);
    QPalette palette(Qt::white, button, button.lighter(), field, faint, Qt::white, Qt::white, field,
                     window);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Highlight, chosen);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, chosen.lighter());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

bool isLight(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() >
           palette.color(QPalette::WindowText).lightness();
}

} // namespace

bool DarkStyle::isNeeded()
{
    const bool isChosen = !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORMTHEME") ||
                          !qEnvironmentVariableIsEmpty("QT_STYLE_OVERRIDE");
    return !isChosen && DesktopEnvironment::ofSession().shell == Shell::Gnome &&
           isLight(QApplication::palette());
}

DarkStyle::DarkStyle()
    : m_connection(std::make_unique<BusConnection>(BusConnection::Bus::Session))
{
    sd_bus *bus = m_connection->bus();
    if (!bus)
        return;
    sd_bus_match_signal_async(
        bus, nullptr, portal, portalPath, settingsInterface, "SettingChanged",
        [](sd_bus_message *change, void *object, sd_bus_error *) {
            static_cast<DarkStyle *>(object)->takeChange(change);
            return 0;
        },
        nullptr, this);
    ask();
    m_connection->drive();
}

DarkStyle::~DarkStyle() = default;

void DarkStyle::ask()
{
    sd_bus_call_method_async(
        m_connection->bus(), nullptr, portal, portalPath, settingsInterface, "Read",
        [](sd_bus_message *answer, void *object, sd_bus_error *) {
            static_cast<DarkStyle *>(object)->takeAnswer(answer);
            return 0;
        },
        this, "ss", appearance, colourScheme);
}

void DarkStyle::takeAnswer(sd_bus_message *answer)
{
    // One variant inside of another: so this call has always answered.
    if (sd_bus_message_is_method_error(answer, nullptr) == 0 &&
        sd_bus_message_enter_container(answer, 'v', "v") > 0)
        takeScheme(answer);
}

void DarkStyle::takeChange(sd_bus_message *change)
{
    const char *space = nullptr;
    const char *key = nullptr;
    if (sd_bus_message_read(change, "ss", &space, &key) >= 0 &&
        std::string_view(space) == appearance && std::string_view(key) == colourScheme)
        takeScheme(change);
}

void DarkStyle::takeScheme(sd_bus_message *value)
{
    std::uint32_t scheme = 0;
    if (sd_bus_message_read(value, "v", "u", &scheme) < 0)
        return;
    QApplication::setPalette(scheme == prefersDark ? darkPalette() : QPalette());
}
