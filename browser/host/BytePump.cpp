// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/host/BytePump.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace {

bool isPassing(int error)
{
    return error == EINTR || error == EAGAIN;
}

} // namespace

short BytePump::awaitedEvent() const
{
    return isEmpty() ? POLLIN : POLLOUT;
}

BytePump::State BytePump::step()
{
    if (isEmpty()) {
        const ssize_t count = read(m_source, m_buffer.data(), m_buffer.size());
        if (count == 0 || (count < 0 && !isPassing(errno)))
            return State::Closed;
        m_begin = 0;
        m_end = count < 0 ? 0 : static_cast<std::size_t>(count);
        return State::Open;
    }
    const ssize_t count = write(m_target, m_buffer.data() + m_begin, m_end - m_begin);
    if (count < 0)
        return isPassing(errno) ? State::Open : State::Closed;
    m_begin += static_cast<std::size_t>(count);
    return State::Open;
}

BytePump::State pumpBoth(BytePump &one, BytePump &other)
{
    std::array<pollfd, 2> awaited = {
        pollfd{.fd = one.awaited(), .events = one.awaitedEvent(), .revents = 0},
        pollfd{.fd = other.awaited(), .events = other.awaitedEvent(), .revents = 0},
    };
    if (poll(awaited.data(), awaited.size(), -1) < 0)
        return isPassing(errno) ? BytePump::State::Open : BytePump::State::Closed;
    if (awaited[0].revents != 0 && one.step() == BytePump::State::Closed)
        return BytePump::State::Closed;
    if (awaited[1].revents != 0 && other.step() == BytePump::State::Closed)
        return BytePump::State::Closed;
    return BytePump::State::Open;
}
