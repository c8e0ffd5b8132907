// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>
#include <vector>

enum class ReportFormat { Text, Json };

/// What the program was started for.
struct CommandLine
{
    enum class Action { ShowWindow, PrintReading, Diagnose, ShowVersion, ShowHelp, Refuse };

    Action action = Action::ShowWindow;
    ReportFormat format = ReportFormat::Text;
    QString infoFile;   ///< empty if not given
    QString recordFile; ///< empty if not given
    QString replayFile; ///< empty if not given
    QString text;       ///< the help, or why the line is refused

    /// @param arguments the program's name first, without the toolkit's own options
    static CommandLine parse(const QStringList &arguments);
};

/// The arguments as the toolkit takes them: what is started without a window must not need a
/// display, whatever the environment says.
class ToolkitArguments
{
public:
    ToolkitArguments(int argc, char **argv);

    /// Both stay the toolkit's for as long as its application lives.
    int &count() { return number; }
    char **values() { return pointers.data(); }

private:
    std::vector<char *> pointers; ///< closed by a null
    int number = 0;
};
