// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/CommandLine.h"

#include <QCommandLineParser>
#include <algorithm>
#include <array>
#include <string_view>

namespace {

using Action = CommandLine::Action;

constexpr std::array<std::string_view, 7> windowlessOptions{
    "--print", "--json", "--doctor", "--help", "-h", "--version", "-v"};

char platformOption[] = "-platform";
char platformWithoutDisplay[] = "offscreen";

struct Parser
{
    QCommandLineParser line;
    const QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help and end.")};
    const QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version and end.")};
    const QCommandLineOption info{
        QStringLiteral("info"),
        QStringLiteral("Read branding and model lists from FILE instead of the installed or "
                       "built-in ones."),
        QStringLiteral("FILE")};
    const QCommandLineOption print{
        QStringLiteral("print"),
        QStringLiteral("Print one reading and end: from the running window if there is one, else "
                       "from the scale.")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  QStringLiteral("With --print: as one JSON object.")};
    const QCommandLineOption doctor{
        QStringLiteral("doctor"),
        QStringLiteral("Look for what keeps the program from working, with a cure for each.")};

    const QCommandLineOption record{
        QStringLiteral("record"),
        QStringLiteral("Write everything that passes between the program and USB devices of its "
                       "kind into FILE, as text for a bug report."),
        QStringLiteral("FILE")};
    const QCommandLineOption replay{
        QStringLiteral("replay"),
        QStringLiteral("Show what was recorded in FILE instead of a scale. At its end the last "
                       "state stays."),
        QStringLiteral("FILE")};

    const QCommandLineOption log{
        QStringLiteral("log"),
        QStringLiteral("Write what the program does, line by line, into FILE."),
        QStringLiteral("FILE")};

    Parser()
    {
        line.setApplicationDescription(
            QStringLiteral("Shows, copies and fills in the weight of a USB postal scale."));
        line.addOptions({info, print, json, doctor, record, replay, log, help, version});
    }

    bool has(const QCommandLineOption &option) const { return line.isSet(option); }
};

QString exitStatuses()
{
    return QStringLiteral("Exit status of --print: 0 reading, 1 no scale, 2 not readable "
                          "(overload, under load, off), 3 no permission.\n");
}

QString trafficRefusal(const Parser &parser)
{
    if (parser.has(parser.record) && parser.has(parser.replay))
        return QStringLiteral("--record and --replay exclude each other.");
    for (const QCommandLineOption *option : {&parser.record, &parser.replay, &parser.log}) {
        if (!parser.has(*option))
            continue;
        const QString name = option->names().constFirst();
        if (parser.has(parser.print) || parser.has(parser.doctor))
            return QStringLiteral("--%1 needs the window.").arg(name);
        if (parser.line.value(*option).isEmpty())
            return QStringLiteral("--%1 needs the name of a file.").arg(name);
    }
    return {};
}

QString refusal(const Parser &parser)
{
    const QStringList surplus = parser.line.positionalArguments();
    if (!surplus.isEmpty())
        return QStringLiteral("Unexpected argument '%1'.").arg(surplus.constFirst());
    if (parser.has(parser.print) && parser.has(parser.doctor))
        return QStringLiteral("--print and --doctor exclude each other.");
    if (const QString reason = trafficRefusal(parser); !reason.isEmpty())
        return reason;
    if (parser.has(parser.json) && !parser.has(parser.print))
        return QStringLiteral("--json goes with --print.");
    return {};
}

Action wantedAction(const Parser &parser)
{
    if (parser.has(parser.print))
        return Action::PrintReading;
    if (parser.has(parser.doctor))
        return Action::Diagnose;
    return Action::ShowWindow;
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    Parser parser;
    if (!parser.line.parse(arguments))
        return {.action = Action::Refuse, .text = parser.line.errorText()};
    if (parser.has(parser.help))
        return {.action = Action::ShowHelp,
                .text = parser.line.helpText() + QLatin1Char('\n') + exitStatuses()};
    if (parser.has(parser.version))
        return {.action = Action::ShowVersion};
    if (const QString reason = refusal(parser); !reason.isEmpty())
        return {.action = Action::Refuse, .text = reason};
    return {.action = wantedAction(parser),
            .format = parser.has(parser.json) ? ReportFormat::Json : ReportFormat::Text,
            .infoFile = parser.line.value(parser.info),
            .recordFile = parser.line.value(parser.record),
            .replayFile = parser.line.value(parser.replay),
            .logFile = parser.line.value(parser.log)};
}

ToolkitArguments::ToolkitArguments(int argc, char **argv)
    : m_pointers(argv, argv + argc)
{
    const bool windowless = std::any_of(argv, argv + argc, [](std::string_view argument) {
        return std::find(windowlessOptions.begin(), windowlessOptions.end(), argument) !=
               windowlessOptions.end();
    });
    // Last, so that it also wins over a platform that the user names.
    if (windowless)
        m_pointers.insert(m_pointers.end(), {platformOption, platformWithoutDisplay});
    m_number = static_cast<int>(m_pointers.size());
    m_pointers.push_back(nullptr);
}
