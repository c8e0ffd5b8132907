// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class LocalSocket;

/// Sees to it that a peer of one of the program's sockets cannot make the program grow, nor keep a
/// place for nothing: one that is not admitted in time is disconnected.
class PeerLimits : public QObject
{
    Q_OBJECT

public:
    /// Peers of one socket at a time.
    static constexpr qsizetype mostPeers = 16;

    /// @param socket connected; becomes the parent
    explicit PeerLimits(LocalSocket *socket);

    /// It has introduced itself, and may stay.
    void admit() { m_isAdmitted = true; }
    bool isAdmitted() const { return m_isAdmitted; }
    /// It has sent more at once than anything that makes sense.
    bool isFull() const;
    /// It no longer takes in what it is sent.
    bool isOverdue() const;

private:
    LocalSocket &m_socket;
    bool m_isAdmitted = false;
};
