// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/ReadingFeed.h"

#include "app/ReadingReportDelegate.h"
#include "console/SingleInstanceRequest.h"
#include "sockets/LocalSocket.h"

#include <algorithm>
#include <chrono>
#include <sys/socket.h>

using namespace std::chrono_literals;

namespace {

constexpr auto longestSilence = 10s;

/// Of a socket's queue, in bytes: about ten lines, four seconds. What lies there is no longer new.
constexpr int queueSize = 4608;

void shortenQueue(const LocalSocket &socket)
{
    setsockopt(socket.descriptor(), SOL_SOCKET, SO_SNDBUF, &queueSize, sizeof queueSize);
}

} // namespace

ReadingFeed::ReadingFeed(const ReadingReportDelegate &source)
    : m_source(source)
{
    m_silence.setInterval(longestSilence);
    m_silence.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_silence, &QTimer::timeout, this, &ReadingFeed::tellAgain);
}

bool ReadingFeed::adopt(const QJsonObject &request, LocalSocket &peer)
{
    if (requestOf(request) != InstanceRequest::Follow || m_followers.size() >= mostFollowers)
        return false;
    add(peer);
    return true;
}

void ReadingFeed::add(LocalSocket &peer)
{
    shortenQueue(peer);
    connect(&peer, &LocalSocket::sent, this, [this, &peer] { catchUp(&peer); });
    // Later: a peer may be found to be gone while all are being told.
    connect(&peer, &LocalSocket::closed, this, &ReadingFeed::removeTheGone, Qt::QueuedConnection);
    if (m_followers.isEmpty()) {
        connect(&m_source, &ReadingReportDelegate::reportDue, this, &ReadingFeed::tellNews);
        m_silence.start();
    }
    peer.write(greeting());
    m_followers.append({.socket = &peer});
    emit followersChanged();
}

QByteArray ReadingFeed::greeting()
{
    // The others are told when the reading under way has ended, and this one with them.
    if (m_followers.isEmpty()) {
        const ReadingReport report = m_source.followedReport();
        m_newest = m_lines.next(report).value_or(m_lines.present(report));
    }
    return m_newest;
}

void ReadingFeed::tellNews()
{
    if (const auto line = m_lines.next(m_source.followedReport()))
        tellAll(*line);
}

void ReadingFeed::tellAgain()
{
    tellAll(m_lines.again(m_source.signOfLife()));
}

void ReadingFeed::tellAll(const QByteArray &line)
{
    m_newest = line;
    m_silence.start();
    for (Follower &follower : m_followers)
        tell(follower);
}

void ReadingFeed::tell(Follower &follower)
{
    if (!follower.socket)
        return;
    follower.isBehind = follower.socket->bytesToWrite() > 0;
    if (!follower.isBehind)
        follower.socket->write(m_newest);
}

void ReadingFeed::catchUp(const LocalSocket *socket)
{
    for (Follower &follower : m_followers) {
        if (follower.socket == socket && follower.isBehind)
            tell(follower);
    }
}

void ReadingFeed::removeTheGone()
{
    m_followers.removeIf([](const Follower &follower) {
        return !follower.socket || !follower.socket->isConnected();
    });
    if (m_followers.isEmpty()) {
        m_source.disconnect(this);
        m_silence.stop();
    }
    emit followersChanged();
}
