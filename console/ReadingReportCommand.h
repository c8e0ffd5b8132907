// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ReadingReport.h"
#include "console/CommandLine.h"

#include <QDeadlineTimer>

class Application;
class SingleInstance;

/// --print: one reading, from the running window or else by a window of its own that is not shown.
class ReadingReportCommand
{
public:
    ReadingReportCommand(Application &application, SingleInstance &instance);

    /// The exit status.
    int run(const CommandLine &line);

private:
    ReadingReport fromWindowOrScale(const QString &infoFile);
    ReadingReport fromScale(const QString &infoFile);

    Application &m_application;
    SingleInstance &m_instance;
    QDeadlineTimer m_deadline;
};
