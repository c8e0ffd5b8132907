// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <memory>

class BusConnection;

/// What logind announces: that the machine goes to sleep, wakes up, shuts down. It is asked to wait
/// with the first and the last until they have been dealt with, which it does for some seconds.
/// Without a system bus, or without logind on it, nothing is ever announced.
class LoginManager : public QObject
{
    Q_OBJECT

public:
    explicit LoginManager(QObject *parent = nullptr);
    ~LoginManager() override;

    /// Never waits for anything.
    void start();

signals:
    /// The machine stays awake until the slots have returned.
    void goingToSleep();
    /// Also where nobody is left to announce it; not necessarily after a sleep.
    void wokeUp();
    /// The machine stays up until the process ends.
    void shuttingDown();

private:
    /// Has logind wait from now on.
    void holdUp();
    void hold(int inhibitor);
    void letGo();
    void hangUp();
    void takeSleep(bool begins);

    std::unique_ptr<BusConnection> m_connection;
    int m_inhibitor = -1; ///< logind waits while it is open
};
