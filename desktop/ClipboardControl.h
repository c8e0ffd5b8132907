// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QObject>
#include <memory>
#include <vector>

class DataControlProtocol;
class QSocketNotifier;
struct wl_display;
struct wl_proxy;

/// The clipboard of a Wayland desktop that lets programs write it from behind other windows
/// (wlr-data-control or ext-data-control), on a connection of its own: it works for a window on
/// Xwayland too. Lives on the main thread.
class ClipboardControl : public QObject
{
    Q_OBJECT

public:
    /// Asks the compositor of WAYLAND_DISPLAY: a connection and two round trips.
    explicit ClipboardControl(QObject *parent = nullptr);
    ~ClipboardControl() override;

    /// False where the session has no such desktop, and from the loss of the compositor on.
    bool isOffered() const { return m_device != nullptr; }
    /// Whether nobody has written the clipboard since this text was.
    bool holds(const QString &text) const;
    /// False unless it is offered.
    bool write(const QString &text);

private:
    struct Source;
    struct Events;
    struct Disconnect
    {
        void operator()(wl_display *display) const;
    };

    bool findDevice();
    void readEvents();
    void forget(wl_proxy *source);
    void lose();

    std::unique_ptr<wl_display, Disconnect> m_display;
    const DataControlProtocol *m_protocol = nullptr;
    wl_proxy *m_seat = nullptr;
    wl_proxy *m_manager = nullptr;
    wl_proxy *m_device = nullptr;
    QSocketNotifier *m_readable = nullptr;
    /// What may still be asked for.
    std::vector<std::unique_ptr<Source>> m_sources;
    const Source *m_current = nullptr; ///< null once somebody else has written the clipboard
};
