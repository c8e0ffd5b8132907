// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "sockets/LocalServer.h"

#include <QString>

/// The socket that browsers attach to. Only the user's own programs can open it, and a peer that
/// runs as somebody else is turned away all the same.
class BrowserServer
{
public:
    /// @param handler takes over each connected peer
    explicit BrowserServer(LocalServer::PeerHandler handler);

    /// In the user's runtime folder; empty if there is none.
    static QString defaultPath();

    /// False, with a line in the log, where @p path cannot be used; among the reasons is another
    /// running program that uses it. What a crashed one left behind is replaced.
    bool listenAt(const QString &path);
    /// Why it cannot, in one clause without a full stop; empty if it can.
    const QString &trouble() const { return m_trouble; }

private:
    void greet(LocalSocket *peer);

    LocalServer m_server;
    LocalServer::PeerHandler m_handler;
    QString m_trouble;
};
