// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "session/LastWords.h"
#include "session/LoginManager.h"

#include <QObject>

class EndSignals;
class PostalScaleAppDelegate;

/// Has the program end in order whenever the session asks it to, and rest while the machine sleeps.
class SessionFollower : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object.
    SessionFollower(PostalScaleAppDelegate &delegate, EndSignals &endSignals);
    ~SessionFollower() override;

private:
    /// As by the window's own close button.
    void leave();

    PostalScaleAppDelegate &m_delegate;
    EndSignals &m_endSignals;
    LoginManager m_loginManager;
    LastWords m_lastWords;
};
