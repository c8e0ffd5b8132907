// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "lcd/PanelContents.h"

#include <QString>

/// A weight as the panel shows it.
struct ShownWeight
{
    double weight = 0; ///< pounds where pounds and ounces are shown
    QString unit;      ///< "g", "kg", "oz", "lb", "lb oz" or that of a scale which tells its own

    bool operator==(const ShownWeight &) const = default;
};

/// Nothing where the panel shows no weight: it is blank, overloaded or without a unit.
std::optional<ShownWeight> shownWeight(const PanelContents &panel);
