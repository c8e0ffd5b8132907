// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// Collects what the program logs while it lives; only one at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /// Lines of both categories in order; those of "postalscale.io" start with "io: ".
    static QStringList &lines();
};
