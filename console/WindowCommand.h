// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "console/CommandLine.h"
#include "console/SingleInstanceActivation.h"

class Application;
class EndSignals;
class LogOutput;
class SingleInstance;
struct WindowSituation;

/// The program as it is mostly started: shows the window, or has the one that is there come to the
/// front, and answers later starts.
class WindowCommand
{
public:
    /// All must outlive the object.
    WindowCommand(Application &application, SingleInstance &instance, EndSignals &endSignals,
                  LogOutput &log);

    /// Until the window is closed. The exit status.
    int run(const CommandLine &line, const ActivationRight &right);

private:
    /// False, and the reason on standard error, where the file that is asked for cannot be written.
    bool openLog(const CommandLine &line);
    int weigh(const CommandLine &line);
    QJsonObject answer(const QJsonObject &laterStart);
    WindowSituation situation() const;

    Application &m_application;
    SingleInstance &m_instance;
    EndSignals &m_endSignals;
    LogOutput &m_log;
};
