// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLoggingCategory>

/// What the program does ("postalscale"), on by default, one record per line.
Q_DECLARE_LOGGING_CATEGORY(systemLog)

/// What goes over the wire ("postalscale.io"), on by default, one record per line.
Q_DECLARE_LOGGING_CATEGORY(ioLog)

/// Writes one line as it stands, without the quotes and blanks that streaming a text would add.
void logLine(const QString &text);
void traceLine(const QString &text);
