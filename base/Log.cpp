// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/Log.h"

Q_LOGGING_CATEGORY(systemLog, "postalscale", QtInfoMsg)
Q_LOGGING_CATEGORY(ioLog, "postalscale.io", QtInfoMsg)

void logLine(const QString &text)
{
    qCInfo(systemLog).noquote().nospace() << text;
}

void traceLine(const QString &text)
{
    qCInfo(ioLog).noquote().nospace() << text;
}
