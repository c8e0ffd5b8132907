// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/DesktopEnvironment.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

enum class ReportFormat { Text, Json };

/// What the program was started for.
struct CommandLine
{
    enum class Action {
        ShowWindow,
        PrintReading,
        Follow,
        Operate,
        ReadForFollowers,
        Diagnose,
        ShowVersion,
        ShowHelp,
        Refuse
    };

    /// Given by the program itself to the process that reads for those that follow.
    static constexpr auto sourceOption = "--for-followers";

    Action action = Action::ShowWindow;
    ReportFormat format = ReportFormat::Text;
    bool settledOnly = false; ///< with Follow
    QString verb;             ///< with Operate
    QString value;            ///< of the verb; may be empty
    QString infoFile;         ///< empty if not given
    QString recordFile;       ///< empty if not given
    QString replayFile;       ///< empty if not given
    QString logFile;          ///< empty if not given
    QString text;             ///< the help, or why the line is refused

    /// @param arguments the program's name first, without the toolkit's own options
    static CommandLine parse(const QStringList &arguments);
};

/// The arguments as the toolkit takes them: on the platform that the session's desktop calls for.
/// What is started without a window must not need a display, whatever the environment says.
class ToolkitArguments
{
public:
    /// @param environment of the session; decides where a window is drawn, unless the arguments do
    ToolkitArguments(int argc, char **argv, const DesktopEnvironment &environment = {});

    /// Both stay the toolkit's for as long as its application lives.
    int &count() { return m_number; }
    char **values() { return m_pointers.data(); }

private:
    QByteArray m_platforms;
    std::vector<char *> m_pointers; ///< closed by a null
    int m_number = 0;
};
