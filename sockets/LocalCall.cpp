// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "sockets/LocalCall.h"

#include "sockets/LocalAddress.h"

#include <QThread>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// The system tells nobody when there is a place in the queue of one that listens.
constexpr auto queueInterval = 10ms;

} // namespace

LocalCall::LocalCall(const QString &path, std::chrono::milliseconds patience)
    : m_descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
{
    connectTo(path, QDeadlineTimer(patience));
}

LocalCall::~LocalCall()
{
    hangUp();
}

void LocalCall::connectTo(const QString &path, const QDeadlineTimer &deadline)
{
    const LocalAddress address(path);
    for (;;) {
        const int error = address.connect(m_descriptor);
        if (error == 0) {
            m_isBusy = false;
            return;
        }
        m_isBusy = isPassingError(error);
        if (!m_isBusy || deadline.hasExpired())
            break;
        QThread::msleep(queueInterval.count());
    }
    hangUp();
}

bool LocalCall::waitFor(short events, const QDeadlineTimer &deadline) const
{
    pollfd awaited{.fd = m_descriptor, .events = events, .revents = 0};
    for (;;) {
        const int ready = ::poll(&awaited, 1, static_cast<int>(deadline.remainingTime()));
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

void LocalCall::send(const QByteArray &bytes, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    for (qsizetype sent = 0; sent < bytes.size() && isConnected();) {
        const ssize_t count = ::send(m_descriptor, bytes.constData() + sent,
                                     static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count >= 0)
            sent += count;
        else if (!isPassingError(errno) || !waitFor(POLLOUT, deadline))
            hangUp();
    }
}

std::optional<QByteArray> LocalCall::line(std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    for (;;) {
        if (const auto complete = completeLine())
            return complete;
        if (!isConnected() || !waitFor(POLLIN, deadline))
            return {};
        if (!receive() || m_received.size() > longestLine)
            hangUp();
    }
}

bool LocalCall::receive()
{
    std::array<char, 4096> bytes;
    const ssize_t count = recv(m_descriptor, bytes.data(), bytes.size(), 0);
    if (count > 0)
        m_received.append(bytes.data(), count);
    return count > 0 || (count < 0 && isPassingError(errno));
}

std::optional<QByteArray> LocalCall::completeLine()
{
    const qsizetype end = m_received.indexOf('\n');
    if (end < 0)
        return {};
    QByteArray complete = m_received.left(end + 1);
    m_received.remove(0, end + 1);
    return complete;
}

void LocalCall::hangUp()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}
