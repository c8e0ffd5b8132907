// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/traffic/TrafficLine.h"

#include <vector>

/// A whole run of the program, as its --record writes it.
struct Traffic
{
    std::vector<TrafficLine> lines;

    /// The first line of the file; tells the format.
    static const QByteArray heading;

    /// Empty lines and those that start with # are remarks. Nothing where a line is damaged or
    /// cannot stand where it does; @p trouble then has its number and what is wrong with it.
    static std::optional<Traffic> parse(const QByteArray &text, QString *trouble);
};
