// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/CommandLine.h"

#include "console/RemoteControl.h"

#include <QCommandLineParser>
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace {

using Action = CommandLine::Action;

constexpr auto windowlessOptions = std::to_array<std::string_view>(
    {"--tare", "--hold", "--power", "--unit", "--capture", "--compact", "--print", "--follow",
     "--settled", CommandLine::sourceOption, "--json", "--doctor", "--help", "-h", "--version",
     "-v"});

/// The toolkit takes either.
constexpr auto platformOptions = std::to_array<std::string_view>({"-platform", "--platform"});
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
    const QCommandLineOption follow{
        QStringLiteral("follow"),
        QStringLiteral("Print a line for each change of the reading, until the reader of the lines "
                       "goes.")};
    const QCommandLineOption settled{
        QStringLiteral("settled"),
        QStringLiteral("With --follow: one line for each parcel, once its weight has settled.")};
    const QCommandLineOption tare{QStringLiteral("tare"),
                                  QStringLiteral("Have the running window tare the scale.")};
    const QCommandLineOption hold{QStringLiteral("hold"),
                                  QStringLiteral("Have it hold the reading: on, off or toggle."),
                                  QStringLiteral("WHAT")};
    const QCommandLineOption power{QStringLiteral("power"),
                                   QStringLiteral("Have it switch the scale on or off.")};
    const QCommandLineOption unit{QStringLiteral("unit"),
                                  QStringLiteral("Have it choose a unit: %1.")
                                      .arg(RemoteControl::units().join(QLatin1String(", "))),
                                  QStringLiteral("UNIT")};
    const QCommandLineOption capture{
        QStringLiteral("capture"),
        QStringLiteral("Have the settled weight leave now, once: onto the clipboard, and into the "
                       "pages of the carriers that are switched on.")};
    const QCommandLineOption compact{
        QStringLiteral("compact"),
        QStringLiteral("Have the window show its display alone: on, off or toggle."),
        QStringLiteral("WHAT")};
    const QCommandLineOption json{
        QStringLiteral("json"),
        QStringLiteral("With --print or --follow: JSON objects, one to a line.")};
    const QCommandLineOption source = [] {
        QCommandLineOption option(QString::fromLatin1(CommandLine::sourceOption).mid(2));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        return option;
    }();
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
        line.addOptions({info, print, follow, settled, json, tare, hold, power, unit, capture,
                         compact, doctor, record, replay, log, help, version, source});
    }

    bool has(const QCommandLineOption &option) const { return line.isSet(option); }
    /// Empty of one that takes none: Qt 6.8 warns who asks.
    QString valueOf(const QCommandLineOption &option) const
    {
        return option.valueName().isEmpty() ? QString() : line.value(option);
    }
};

QString exitStatuses()
{
    return QStringLiteral("Exit status of --print: 0 reading, 1 no scale, 2 not readable "
                          "(overload, under load, off), 3 no permission.\n");
}

/// Those that the line asks for, in the order of the help.
std::vector<std::pair<const QCommandLineOption *, Action>> wantedActions(const Parser &parser)
{
    std::vector<std::pair<const QCommandLineOption *, Action>> wanted;
    for (const auto &[option, action] :
         {std::pair(&parser.print, Action::PrintReading), std::pair(&parser.follow, Action::Follow),
          std::pair(&parser.source, Action::ReadForFollowers),
          std::pair(&parser.tare, Action::Operate), std::pair(&parser.hold, Action::Operate),
          std::pair(&parser.power, Action::Operate), std::pair(&parser.unit, Action::Operate),
          std::pair(&parser.capture, Action::Operate), std::pair(&parser.compact, Action::Operate),
          std::pair(&parser.doctor, Action::Diagnose)}) {
        if (parser.has(*option))
            wanted.emplace_back(option, action);
    }
    return wanted;
}

Action wantedAction(const Parser &parser)
{
    const auto wanted = wantedActions(parser);
    return wanted.empty() ? Action::ShowWindow : wanted.front().second;
}

QString actionRefusal(const Parser &parser)
{
    const auto wanted = wantedActions(parser);
    if (wanted.size() < 2)
        return {};
    return QStringLiteral("--%1 and --%2 exclude each other.")
        .arg(wanted[0].first->names().constFirst(), wanted[1].first->names().constFirst());
}

QString trafficRefusal(const Parser &parser)
{
    if (parser.has(parser.record) && parser.has(parser.replay))
        return QStringLiteral("--record and --replay exclude each other.");
    for (const QCommandLineOption *option : {&parser.record, &parser.replay, &parser.log}) {
        if (!parser.has(*option))
            continue;
        const QString name = option->names().constFirst();
        if (wantedAction(parser) != Action::ShowWindow)
            return QStringLiteral("--%1 needs the window.").arg(name);
        if (parser.line.value(*option).isEmpty())
            return QStringLiteral("--%1 needs the name of a file.").arg(name);
    }
    return {};
}

QString valueRefusal(const Parser &parser)
{
    for (const QCommandLineOption *option : {&parser.hold, &parser.unit, &parser.compact}) {
        const QString name = option->names().constFirst();
        const QString value = parser.line.value(*option);
        if (parser.has(*option) && !RemoteControl::isKnown(name, value))
            return QStringLiteral("--%1 does not know '%2'.").arg(name, value);
    }
    return {};
}

QString refusal(const Parser &parser)
{
    const QStringList surplus = parser.line.positionalArguments();
    if (!surplus.isEmpty())
        return QStringLiteral("Unexpected argument '%1'.").arg(surplus.constFirst());
    if (const QString reason = actionRefusal(parser); !reason.isEmpty())
        return reason;
    if (const QString reason = trafficRefusal(parser); !reason.isEmpty())
        return reason;
    if (parser.has(parser.json) && !parser.has(parser.print) && !parser.has(parser.follow))
        return QStringLiteral("--json goes with --print or --follow.");
    if (parser.has(parser.settled) && !parser.has(parser.follow))
        return QStringLiteral("--settled goes with --follow.");
    return valueRefusal(parser);
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
    const auto wanted = wantedActions(parser);
    const bool isVerb = !wanted.empty() && wanted.front().second == Action::Operate;
    return {.action = wantedAction(parser),
            .format = parser.has(parser.json) ? ReportFormat::Json : ReportFormat::Text,
            .settledOnly = parser.has(parser.settled),
            .verb = isVerb ? wanted.front().first->names().constFirst() : QString(),
            .value = isVerb ? parser.valueOf(*wanted.front().first) : QString(),
            .infoFile = parser.line.value(parser.info),
            .recordFile = parser.line.value(parser.record),
            .replayFile = parser.line.value(parser.replay),
            .logFile = parser.line.value(parser.log)};
}

ToolkitArguments::ToolkitArguments(int argc, char **argv, const DesktopEnvironment &environment)
    : m_platforms(platformsToTry(environment).toLatin1())
    , m_pointers(argv, argv + argc)
{
    const auto hasOneOf = [&](const auto &options) {
        return std::any_of(argv, argv + argc, [&](std::string_view argument) {
            const std::string_view option = argument.substr(0, argument.find('='));
            return std::find(options.begin(), options.end(), option) != options.end();
        });
    };
    // Last, so that it also wins over a platform that the user names.
    if (hasOneOf(windowlessOptions))
        m_pointers.insert(m_pointers.end(), {platformOption, platformWithoutDisplay});
    else if (!m_platforms.isEmpty() && !hasOneOf(platformOptions))
        m_pointers.insert(m_pointers.end(), {platformOption, m_platforms.data()});
    m_number = static_cast<int>(m_pointers.size());
    m_pointers.push_back(nullptr);
}
