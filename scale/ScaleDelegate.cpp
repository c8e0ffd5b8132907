// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/ScaleDelegate.h"

namespace {

ScaleApplication *shared = nullptr;

} // namespace

ScaleApplication::ScaleApplication()
{
    shared = this;
}

ScaleApplication::~ScaleApplication()
{
    shared = nullptr;
}

ScaleApplication *ScaleApplication::sharedApplication()
{
    return shared;
}
