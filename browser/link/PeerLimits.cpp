// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/PeerLimits.h"

#include "browser/link/BrowserFrame.h"
#include "sockets/LocalSocket.h"

#include <QTimer>
#include <chrono>

namespace {

/// A peer that does not introduce itself is none.
constexpr std::chrono::seconds introductionTime{5};

constexpr qsizetype mostUnread = longestBrowserMessage;

} // namespace

PeerLimits::PeerLimits(LocalSocket *socket)
    : QObject(socket)
    , m_socket(*socket)
{
    QTimer::singleShot(introductionTime, this, [this] {
        if (!m_isAdmitted)
            m_socket.abort();
    });
}

bool PeerLimits::isFull() const
{
    return m_socket.bytesToRead() >= LocalSocket::mostReceived;
}

bool PeerLimits::isOverdue() const
{
    return m_socket.bytesToWrite() > mostUnread;
}
