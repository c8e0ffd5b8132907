// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "sockets/LocalServer.h"

#include "sockets/LocalAddress.h"
#include "sockets/LocalSocket.h"

#include <QFile>
#include <QTimer>
#include <cerrno>
#include <chrono>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// Peers that wait to be taken in while the thread is held.
constexpr int longestQueue = 50;

/// Until one is tried again that there was no descriptor or no memory for. It waits meanwhile.
constexpr auto shortagePause = 1000ms;

int newSocket()
{
    return ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

} // namespace

LocalServer::LocalServer(PeerHandler handler, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
{
}

LocalServer::~LocalServer()
{
    m_arrivals.reset();
    // Before nobody listens: the file that stands there then may be the next server's.
    if (!m_path.isEmpty())
        QFile::remove(m_path);
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool LocalServer::isServedAt(const QString &path)
{
    const int probe = newSocket();
    const int error = LocalAddress(path).connect(probe);
    ::close(probe);
    return error == 0 || error == EAGAIN;
}

bool LocalServer::listenAt(const QString &path)
{
    m_descriptor = newSocket();
    // The file gets the socket's own permissions when it is made: no moment is left to others.
    if (m_descriptor < 0 || fchmod(m_descriptor, S_IRUSR | S_IWUSR) != 0)
        return giveUp(errno);
    QFile::remove(path);
    if (const int error = LocalAddress(path).bind(m_descriptor); error != 0)
        return giveUp(error);
    m_path = path;
    if (::listen(m_descriptor, longestQueue) != 0)
        return giveUp(errno);
    m_arrivals = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_arrivals.get(), &QSocketNotifier::activated, this, &LocalServer::accept);
    return true;
}

bool LocalServer::giveUp(int error)
{
    m_trouble = qt_error_string(error);
    return false;
}

void LocalServer::accept()
{
    const int peer = ::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC);
    if (peer >= 0) {
        m_handler(new LocalSocket(peer, this));
        return;
    }
    // One that has gone again, or that waits on: the notifier would tell of it without end.
    if (isPassingError(errno) || errno == ECONNABORTED)
        return;
    m_arrivals->setEnabled(false);
    QTimer::singleShot(shortagePause, this, [this] { m_arrivals->setEnabled(true); });
}
