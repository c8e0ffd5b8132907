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

WindowPlace::WindowPlace(QWidget *window, Settings &settings)
    : QObject(window)
    , m_window(window)
    , m_settings(settings)
{
    // The toolkit takes what a cut-off text lacks for zeros.
    const QByteArray stored = m_settings.windowGeometry();
    if (stored.size() == m_window->saveGeometry().size())
        m_window->restoreGeometry(stored);
    m_window->installEventFilter(this);
    m_atRest.setSingleShot(true);
    m_atRest.setInterval(restAfterChange);
    connect(&m_atRest, &QTimer::timeout, this, &WindowPlace::remember);
}

bool WindowPlace::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize)
        m_atRest.start();
    if (event->type() == QEvent::Close)
        remember();
    return QObject::eventFilter(watched, event);
}

void WindowPlace::remember()
{
    const QByteArray geometry = m_window->saveGeometry();
    if (geometry != m_settings.windowGeometry())
        m_settings.setWindowGeometry(geometry);
}
