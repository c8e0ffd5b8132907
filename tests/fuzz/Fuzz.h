// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Ends the run, with the input kept, where what must hold does not.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

/// Hands out an input bit by bit; zeros once it is used up.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *bytes, std::size_t size)
        : next(bytes)
        , end(bytes + size)
    {
    }

    bool isEmpty() const { return next == end; }
    std::uint8_t byte() { return isEmpty() ? std::uint8_t{0} : *next++; }

private:
    const std::uint8_t *next;
    const std::uint8_t *end;
};
