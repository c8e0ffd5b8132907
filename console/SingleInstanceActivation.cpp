// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/SingleInstanceActivation.h"

#include "widgets/X11Atom.h"

#include <QApplication>
#include <QWidget>
#include <QtGui/qguiapplication_platform.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr auto startupIdVariable = "DESKTOP_STARTUP_ID";
constexpr auto activationTokenVariable = "XDG_ACTIVATION_TOKEN";

const QLatin1String startupIdKey("startupId");
const QLatin1String activationTokenKey("activationToken");

class X11Desktop
{
public:
    explicit X11Desktop(xcb_connection_t *x11Connection)
        : m_connection(x11Connection)
        , m_root(x11RootWindow(m_connection))
    {
    }

    void activate(xcb_window_t window, quint32 time) const
    {
        xcb_client_message_event_t event = message(window, "_NET_ACTIVE_WINDOW", 32);
        constexpr quint32 fromApplication = 1;
        event.data.data32[0] = fromApplication;
        event.data.data32[1] = time;
        send(event, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
    }

    /// The busy pointer of a start ends with this.
    void endStart(xcb_window_t window, const QByteArray &startupId) const
    {
        const QByteArray text = "remove: ID=" + quoted(startupId);
        xcb_client_message_event_t event = message(window, "_NET_STARTUP_INFO_BEGIN", 8);
        constexpr qsizetype chunk = sizeof event.data.data8;
        // The terminating zero goes along.
        for (qsizetype sent = 0; sent <= text.size(); sent += chunk) {
            const qsizetype left = std::min(chunk, text.size() + 1 - sent);
            std::memset(event.data.data8, 0, chunk);
            std::memcpy(event.data.data8, text.constData() + sent, static_cast<size_t>(left));
            send(event, XCB_EVENT_MASK_PROPERTY_CHANGE);
            event.type = x11Atom(m_connection, "_NET_STARTUP_INFO");
        }
    }

private:
    static QByteArray quoted(QByteArray text)
    {
        return '"' + text.replace('\\', "\\\\").replace('"', "\\\"") + '"';
    }

    xcb_client_message_event_t message(xcb_window_t window, const char *type, uint8_t format) const
    {
        xcb_client_message_event_t event = {};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = format;
        event.window = window;
        event.type = x11Atom(m_connection, type);
        return event;
    }

    void send(const xcb_client_message_event_t &event, uint32_t mask) const
    {
        xcb_send_event(m_connection, 0, m_root, mask, reinterpret_cast<const char *>(&event));
        xcb_flush(m_connection);
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};

/// Null on other platforms.
xcb_connection_t *x11Connection()
{
    // The offscreen platform claims to be X11, and has no connection.
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

/// A box that is open has the keyboard; not every window manager gives it to the box itself.
xcb_window_t windowToActivate(const QWidget &window)
{
    const QWidget *box = QApplication::activeModalWidget();
    return static_cast<xcb_window_t>((box != nullptr ? *box : window).internalWinId());
}

void activateOnX11(const X11Desktop &desktop, xcb_window_t id, const ActivationRight &right)
{
    // The toolkit would name the time when this window was last used, which counts as long ago.
    desktop.activate(id, startTime(right.startupId));
    if (!right.startupId.isEmpty())
        desktop.endStart(id, right.startupId.toUtf8());
}

} // namespace

ActivationRight ActivationRight::fromEnvironment()
{
    return {.startupId = qEnvironmentVariable(startupIdVariable),
            .activationToken = qEnvironmentVariable(activationTokenVariable)};
}

ActivationRight ActivationRight::fromJson(const QJsonObject &object)
{
    return {.startupId = object.value(startupIdKey).toString(),
            .activationToken = object.value(activationTokenKey).toString()};
}

QJsonObject ActivationRight::toJson() const
{
    return {{startupIdKey, startupId}, {activationTokenKey, activationToken}};
}

quint32 startTime(const QString &startupId)
{
    const QLatin1String mark("_TIME");
    const auto place = startupId.lastIndexOf(mark);
    return place < 0 ? 0 : startupId.mid(place + mark.size()).toUInt();
}

void bringToFront(QWidget *window, const ActivationRight &right)
{
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    if (xcb_connection_t *connection = x11Connection()) {
        activateOnX11(X11Desktop(connection), windowToActivate(*window), right);
        return;
    }
    // The Wayland plugin takes the token from here.
    qputenv(activationTokenVariable, right.activationToken.toUtf8());
    window->activateWindow();
}

bool isBroughtToFront(const QWidget &window)
{
    if (QApplication::activeWindow() != nullptr)
        return true;
    xcb_connection_t *connection = x11Connection();
    return connection != nullptr &&
           x11ListsAtom(connection, windowToActivate(window), "_NET_WM_STATE",
                        "_NET_WM_STATE_DEMANDS_ATTENTION");
}
