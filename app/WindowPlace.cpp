// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/WindowPlace.h"

#include "settings/Settings.h"

#include <QEvent>
#include <QWidget>
#include <chrono>

using namespace std::chrono_literals;

namespace {

/// Longer than the pauses of a drag, so that one drag is written once.
constexpr auto restAfterChange = 500ms;

} // namespace

WindowPlace::WindowPlace(QWidget *watchedWindow, Settings &userSettings)
    : QObject(watchedWindow)
    , window(watchedWindow)
    , settings(userSettings)
{
    // The toolkit takes what a cut-off text lacks for zeros.
    const QByteArray stored = settings.windowGeometry();
    if (stored.size() == window->saveGeometry().size())
        window->restoreGeometry(stored);
    window->installEventFilter(this);
    atRest.setSingleShot(true);
    atRest.setInterval(restAfterChange);
    connect(&atRest, &QTimer::timeout, this, &WindowPlace::remember);
}

bool WindowPlace::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        atRest.start();
    if (event->type() == QEvent::Close)
        remember();
    return QObject::eventFilter(watched, event);
}

void WindowPlace::remember()
{
    const QByteArray geometry = window->saveGeometry();
    if (geometry != settings.windowGeometry())
        settings.setWindowGeometry(geometry);
}
