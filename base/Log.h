// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLoggingCategory>

/// What the program does ("postalscale"), one record per line. Where the records go is not decided
/// here; by default nowhere, but for warnings.
Q_DECLARE_LOGGING_CATEGORY(systemLog)

/// What goes over the wire ("postalscale.io"), likewise.
Q_DECLARE_LOGGING_CATEGORY(ioLog)

/// Writes one line as it stands, without the quotes and blanks that streaming a text would add.
void logLine(const QString &text);
void traceLine(const QString &text);
