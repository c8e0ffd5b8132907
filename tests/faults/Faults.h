// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/faults/FaultyWorld.h"

#include <span>

/// What the user meets while a fault lasts, after a reading of 1234 g.
struct Sight
{
    const char *status;
    const char *panel; ///< in words
    const char *exported;
    const char *notice; ///< the line along the window's edge holds these words; empty: no line
};

struct Fault
{
    /// Whether the program weighs again by itself, or once the scale is plugged in anew.
    enum class Cure { ItsEnd, Replug };

    const char *name;
    Cure cure;
    Sight sight;
    void (*begin)(FaultyWorld &world);
    void (*end)(FaultyWorld &world);
};

std::span<const Fault> faults();
