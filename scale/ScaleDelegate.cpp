// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/ScaleDelegate.h"

namespace {

ScaleApplication *shared = nullptr;

} // namespace

// Most of what stands in for an interface has no use for it.
void ScaleDelegate::useLink(ScaleLink &, const QString &) {}

void ScaleDelegate::takeReading(const ScaleReading &) {}

void ScaleDelegate::takeReport(const WeightReport &, ReadOutcome) {}

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
