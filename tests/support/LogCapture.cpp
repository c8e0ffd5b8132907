// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LogCapture.h"

#include <QtGlobal>
#include <cstring>

namespace {

QtMessageHandler previous = nullptr;

void collect(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool system = std::strcmp(context.category, "postalscale") == 0;
    const bool io = std::strcmp(context.category, "postalscale.io") == 0;
    if (system)
        LogCapture::lines().append(message);
    else if (io)
        LogCapture::lines().append(QStringLiteral("io: ") + message);
    else if (previous != nullptr)
        previous(type, context, message);
}

} // namespace

LogCapture::LogCapture()
{
    lines().clear();
    previous = qInstallMessageHandler(collect);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previous);
}

QStringList &LogCapture::lines()
{
    static QStringList collected;
    return collected;
}
