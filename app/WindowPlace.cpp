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
    m_window->restoreGeometry(stored());
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
    m_atRest.stop();
    const QByteArray geometry = m_window->saveGeometry();
    if (geometry == stored())
        return;
    if (m_form == WindowForm::Compact)
        m_settings.setCompactGeometry(geometry);
    else
        m_settings.setWindowGeometry(geometry);
}

QByteArray WindowPlace::stored() const
{
    const QByteArray geometry =
        m_form == WindowForm::Compact ? m_settings.compactGeometry() : m_settings.windowGeometry();
    // The toolkit takes what a cut-off text lacks for zeros.
    return geometry.size() == m_window->saveGeometry().size() ? geometry : QByteArray();
}

QByteArray WindowPlace::switchForm(WindowForm form)
{
    if (m_window->isVisible())
        remember();
    m_form = form;
    return stored();
}
