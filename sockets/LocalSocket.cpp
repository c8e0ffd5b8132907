// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "sockets/LocalSocket.h"

#include "sockets/LocalAddress.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

LocalSocket::LocalSocket(int descriptor, QObject *parent)
    : QObject(parent)
    , m_descriptor(descriptor)
    , m_readable(descriptor, QSocketNotifier::Read)
    , m_writable(descriptor, QSocketNotifier::Write)
{
    m_writable.setEnabled(false);
    connect(&m_readable, &QSocketNotifier::activated, this, &LocalSocket::receive);
    connect(&m_writable, &QSocketNotifier::activated, this, &LocalSocket::goOn);
}

LocalSocket::~LocalSocket()
{
    const QSignalBlocker unheard(this);
    abort();
}

QByteArray LocalSocket::readAll()
{
    return take(m_received.size());
}

QByteArray LocalSocket::readLine()
{
    const qsizetype end = m_received.indexOf('\n');
    return take(end < 0 ? m_received.size() : end + 1);
}

QByteArray LocalSocket::take(qsizetype size)
{
    QByteArray taken = m_received.left(size);
    m_received.remove(0, size);
    listenForMore();
    return taken;
}

void LocalSocket::listenForMore()
{
    m_readable.setEnabled(isConnected() && m_received.size() < mostReceived);
}

void LocalSocket::receive()
{
    std::array<char, mostReceived / 4> bytes;
    const auto room = static_cast<std::size_t>(mostReceived - m_received.size());
    const ssize_t count =
        recv(m_descriptor, bytes.data(), std::min(room, bytes.size()), MSG_DONTWAIT);
    if (count < 0 && isPassingError(errno))
        return;
    if (count <= 0) {
        abort();
        return;
    }
    m_received.append(bytes.data(), count);
    listenForMore();
    emit received();
}

void LocalSocket::write(const QByteArray &bytes)
{
    if (!isConnected())
        return;
    m_unsent.append(bytes);
    send();
}

void LocalSocket::send()
{
    while (!m_unsent.isEmpty()) {
        const ssize_t count =
            ::send(m_descriptor, m_unsent.constData(), static_cast<std::size_t>(m_unsent.size()),
                   MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count >= 0) {
            m_unsent.remove(0, count);
        } else if (!isPassingError(errno)) {
            abort();
            return;
        } else if (errno != EINTR) {
            break;
        }
    }
    m_writable.setEnabled(!m_unsent.isEmpty());
}

void LocalSocket::goOn()
{
    send();
    if (!m_unsent.isEmpty() || m_descriptor < 0)
        return;
    if (m_isClosing)
        abort();
    else
        emit sent();
}

void LocalSocket::closeWhenSent()
{
    m_isClosing = true;
    if (m_unsent.isEmpty())
        abort();
    else
        listenForMore();
}

void LocalSocket::abort()
{
    const int open = std::exchange(m_descriptor, -1);
    if (open < 0)
        return;
    m_unsent.clear();
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    ::close(open);
    emit closed();
}
