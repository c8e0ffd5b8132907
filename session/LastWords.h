// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

/// What is still to be done where the toolkit ends the process on the spot, without a word to the
/// application: it does so when the X server or the Wayland compositor is gone. One object at a
/// time, made and destroyed by the main thread.
class LastWords
{
public:
    /// @param words said once at most; must be short, and need no desktop
    explicit LastWords(std::function<void()> words);
    ~LastWords();
    LastWords(const LastWords &) = delete;
    LastWords &operator=(const LastWords &) = delete;
};
