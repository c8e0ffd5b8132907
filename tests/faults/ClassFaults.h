// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/faults/ClassFaultyWorld.h"
#include "tests/faults/Faults.h"

#include <span>

/// What can go wrong with a scale of the class. All of it ends by itself.
struct ClassFault
{
    const char *name;
    Sight sight;
    void (*begin)(ClassFaultyWorld &world);
    void (*end)(ClassFaultyWorld &world);
};

std::span<const ClassFault> classFaults();
