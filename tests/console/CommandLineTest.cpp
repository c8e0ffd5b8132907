// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/CommandLine.h"
#include "tests/support/TestClasses.h"

#include <string>
#include <vector>

using Action = CommandLine::Action;

Q_DECLARE_METATYPE(CommandLine::Action)
Q_DECLARE_METATYPE(ReportFormat)

namespace {

/// Writable, as a process gets them.
class Arguments
{
public:
    explicit Arguments(const QStringList &line)
    {
        for (const QString &argument : line)
            m_texts.push_back(argument.toStdString());
        for (std::string &text : m_texts)
            m_pointers.push_back(text.data());
    }

    QStringList asToolkitTakesThem()
    {
        ToolkitArguments arguments(static_cast<int>(m_pointers.size()), m_pointers.data());
        QStringList line;
        for (int i = 0; i < arguments.count(); ++i)
            line.append(QString::fromUtf8(arguments.values()[i]));
        if (arguments.values()[arguments.count()] != nullptr)
            line.append(QStringLiteral("(not closed)"));
        return line;
    }

private:
    std::vector<std::string> m_texts;
    std::vector<char *> m_pointers;
};

QStringList words(const char *line)
{
    return QStringLiteral("postal-scale %1")
        .arg(QLatin1String(line))
        .split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

class CommandLineTest : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhatIsWanted_data()
    {
        QTest::addColumn<Action>("action");
        QTest::addColumn<ReportFormat>("format");
        QTest::addColumn<QString>("infoFile");

        const auto row = [](const char *line, Action action,
                            ReportFormat format = ReportFormat::Text, const char *file = "") {
            QTest::newRow(line) << action << format << QString::fromLatin1(file);
        };
        row("", Action::ShowWindow);
        row("--info my.json", Action::ShowWindow, ReportFormat::Text, "my.json");
        row("--info=my.json", Action::ShowWindow, ReportFormat::Text, "my.json");
        row("--print", Action::PrintReading);
        row("--print --json", Action::PrintReading, ReportFormat::Json);
        row("--json --print", Action::PrintReading, ReportFormat::Json);
        row("--print --info my.json", Action::PrintReading, ReportFormat::Text, "my.json");
        row("--doctor", Action::Diagnose);
        row("--record scale.txt", Action::ShowWindow);
        row("--replay scale.txt --info my.json", Action::ShowWindow, ReportFormat::Text, "my.json");
        row("--version", Action::ShowVersion);
        row("-v", Action::ShowVersion);
        row("--json", Action::Refuse);
        row("--print --doctor", Action::Refuse);
        row("--info", Action::Refuse);
        row("--weigh", Action::Refuse);
        row("--record", Action::Refuse);
        row("--replay=", Action::Refuse);
        row("--record one.txt --replay two.txt", Action::Refuse);
        row("--print --record scale.txt", Action::Refuse);
        row("--doctor --replay scale.txt", Action::Refuse);
        row("--follow", Action::Follow);
        row("--follow --json --settled", Action::Follow, ReportFormat::Json);
        row("--follow --info my.json", Action::Follow, ReportFormat::Text, "my.json");
        row("--for-followers --info my.json", Action::ReadForFollowers, ReportFormat::Text,
            "my.json");
        row("--settled", Action::Refuse);
        row("--settled --print", Action::Refuse);
        row("--follow --print", Action::Refuse);
        row("--follow --log log.txt", Action::Refuse);
        for (const char *verb :
             {"--tare", "--power", "--capture", "--hold on", "--hold off", "--hold toggle",
              "--hold=on", "--unit oz", "--unit lboz", "--unit lboz-fraction", "--unit lb",
              "--unit g", "--unit kg", "--unit lboz-whole"})
            row(verb, Action::Operate);
        row("--hold", Action::Refuse);
        row("--hold maybe", Action::Refuse);
        row("--unit stone", Action::Refuse);
        row("--tare --power", Action::Refuse);
        row("--tare --print", Action::Refuse);
        row("parcel", Action::Refuse);
        row("--print parcel", Action::Refuse);
    }

    void tellsWhatIsWanted()
    {
        QFETCH(Action, action);
        QFETCH(ReportFormat, format);
        QFETCH(QString, infoFile);
        const CommandLine line = CommandLine::parse(words(QTest::currentDataTag()));
        QCOMPARE(line.action, action);
        QCOMPARE(line.format, format);
        QCOMPARE(line.infoFile, infoFile);
        QCOMPARE(line.text.isEmpty(), action != Action::Refuse);
    }

    void tellsTheVerb()
    {
        const CommandLine tare = CommandLine::parse(words("--tare"));
        QCOMPARE(tare.verb, QStringLiteral("tare"));
        QCOMPARE(tare.value, QString());
        const CommandLine unit = CommandLine::parse(words("--unit=kg"));
        QCOMPARE(unit.verb, QStringLiteral("unit"));
        QCOMPARE(unit.value, QStringLiteral("kg"));
        QVERIFY(CommandLine::parse(words("--follow --settled")).settledOnly);
        QVERIFY(!CommandLine::parse(words("--follow")).settledOnly);
    }

    void tellsWhichFileTheTrafficIsIn()
    {
        const CommandLine recording = CommandLine::parse(words("--record scale.txt"));
        QCOMPARE(recording.recordFile, QStringLiteral("scale.txt"));
        QCOMPARE(recording.replayFile, QString());
        const CommandLine replaying = CommandLine::parse(words("--replay scale.txt"));
        QCOMPARE(replaying.recordFile, QString());
        QCOMPARE(replaying.replayFile, QStringLiteral("scale.txt"));
    }

    void aRefusalNamesTheCause()
    {
        QVERIFY(CommandLine::parse(words("--weigh")).text.contains(QStringLiteral("weigh")));
        QVERIFY(CommandLine::parse(words("parcel")).text.contains(QStringLiteral("parcel")));
    }

    void theHelpNamesEveryOptionAndTheExitStatuses()
    {
        const CommandLine line = CommandLine::parse(words("--help"));
        QCOMPARE(line.action, Action::ShowHelp);
        for (const char *part :
             {"--info <FILE>", "--print", "--json", "--doctor", "--help", "--record <FILE>",
              "--replay <FILE>", "last state stays", "--version", "--follow", "--settled", "--tare",
              "--hold <WHAT>", "--power", "--unit <UNIT>", "--capture", "0 reading", "1 no scale",
              "3 no permission"})
            QVERIFY2(line.text.contains(QLatin1String(part)), part);
    }

    void whatNeedsNoWindowNeedsNoDisplay_data()
    {
        QTest::addColumn<bool>("needsNoDisplay");
        for (const char *line :
             {"--print", "--print --json", "--json", "--doctor", "--help", "-h", "--version", "-v",
              "--info my.json --print", "--follow", "--settled --follow", "--for-followers",
              "--tare", "--hold on", "--hold=on", "--unit=kg", "--power", "--capture"})
            QTest::newRow(line) << true;
        for (const char *line :
             {"", "--info my.json", "--replay scale.txt", "--weigh", "-platform xcb"})
            QTest::newRow(line) << false;
    }

    void whatNeedsNoWindowNeedsNoDisplay()
    {
        QFETCH(bool, needsNoDisplay);
        const QStringList given = words(QTest::currentDataTag());
        QStringList expected = given;
        if (needsNoDisplay)
            expected += {QStringLiteral("-platform"), QStringLiteral("offscreen")};
        QCOMPARE(Arguments(given).asToolkitTakesThem(), expected);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, CommandLineTest)
#include "CommandLineTest.moc"
