// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/SessionFollower.h"

#include "app/PostalScaleAppDelegate.h"
#include "session/EndSignals.h"

#include <QCoreApplication>
#include <QTimer>
#include <chrono>

using namespace std::chrono_literals;

namespace {

/// The window comes first; nobody shuts the machine down in its first second.
constexpr auto afterFirstFrame = 1000ms;

} // namespace

SessionFollower::SessionFollower(PostalScaleAppDelegate &delegate, EndSignals &endSignals)
    : m_delegate(delegate)
    , m_endSignals(endSignals)
    , m_lastWords([&delegate] { delegate.switchScaleOff(); })
{
    m_endSignals.listen(this, [this] { leave(); });
    connect(&m_loginManager, &LoginManager::shuttingDown, this, &SessionFollower::leave);
    connect(&m_loginManager, &LoginManager::goingToSleep, this,
            [this] { m_delegate.prepareForSleep(); });
    connect(&m_loginManager, &LoginManager::wokeUp, this, [this] { m_delegate.wakeUp(); });
    // The session manager of an X11 desktop has the toolkit quit.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [this] { m_delegate.switchScaleOff(); });
    QTimer::singleShot(afterFirstFrame, &m_loginManager, &LoginManager::start);
}

SessionFollower::~SessionFollower()
{
    m_endSignals.stopListening();
}

void SessionFollower::leave()
{
    m_delegate.window->close();
    // A window that was closed already says nothing.
    QCoreApplication::quit();
}
