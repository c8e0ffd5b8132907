// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/PeerLimits.h"

#include "browser/link/BrowserFrame.h"

#include <QLocalSocket>
#include <QTimer>
#include <chrono>

namespace {

/// A peer that does not introduce itself is none.
constexpr std::chrono::seconds introductionTime{5};

constexpr qint64 mostUnread = longestBrowserMessage;

} // namespace

PeerLimits::PeerLimits(QLocalSocket *socket)
    : QObject(socket)
    , m_socket(*socket)
{
    m_socket.setReadBufferSize(longestBrowserMessage);
    QTimer::singleShot(introductionTime, this, [this] {
        if (!m_isAdmitted)
            m_socket.abort();
    });
}

bool PeerLimits::isFull() const
{
    return m_socket.bytesAvailable() >= longestBrowserMessage;
}

bool PeerLimits::isOverdue() const
{
    return m_socket.bytesToWrite() > mostUnread;
}
