// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>

/// Passes bytes from one descriptor to another. It takes in no more before the last is passed on,
/// so that a side that does not read slows the other down instead of filling the memory.
class BytePump
{
public:
    enum class State { Open, Closed };

    BytePump(int from, int to)
        : m_source(from)
        , m_target(to)
    {
    }

    /// The descriptor that must become ready next, and for what (poll's POLLIN or POLLOUT).
    int awaited() const { return isEmpty() ? m_source : m_target; }
    short awaitedEvent() const;

    /// To be called when awaited() is ready.
    State step();

private:
    bool isEmpty() const { return m_begin == m_end; }

    int m_source;
    int m_target;
    std::array<std::byte, 16384> m_buffer{};
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
};

/// Waits until one of the two can go on, and lets it. Closed as soon as one is.
BytePump::State pumpBoth(BytePump &one, BytePump &other);
