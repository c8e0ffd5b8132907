// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/CommandRules.h"
#include "tests/support/LinkedScale.h"
#include "tests/support/TestClasses.h"

#include <QTimer>

namespace {

void send(HIDManager &link, rules::Command command, int unit)
{
    switch (command) {
    case rules::Command::On: link.set_device_ON(); break;
    case rules::Command::Off: link.set_device_OFF(); break;
    case rules::Command::Hold: link.set_device_HOLD(); break;
    case rules::Command::HoldOff: link.set_device_HOLDOFF(); break;
    case rules::Command::OnTare: link.set_device_ON_TARE(); break;
    case rules::Command::OffTare: link.set_device_OFF_TARE(); break;
    case rules::Command::SetUnit: link.set_Unit(unit); break;
    }
}

rules::CommandState commandStateOf(const HIDManager &link)
{
    return {.scaleCommand = link.scaleCommand(),
            .currentScale = link.currentScale(),
            .unitindex = link.unitindex(),
            .currentUnit = link.currentUnit(),
            .currentStatue = link.currentStatue(),
            .TurnON = link.TurnON(),
            .TurnOff = link.TurnOff()};
}

constexpr std::array commands{rules::Command::On,     rules::Command::Off,
                              rules::Command::Hold,   rules::Command::HoldOff,
                              rules::Command::OnTare, rules::Command::OffTare,
                              rules::Command::SetUnit};

} // namespace

/// The real link's seven commands over fake libraries.
class CommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCommandFromEveryByte()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
        for (int byte = 0; byte <= 0xFF; ++byte) {
            for (const rules::Command command : commands) {
                for (int unit = -1; unit <= 8; ++unit) {
                    scale.link.setScaleCommand(static_cast<CommandByte>(byte));
                    scale.link.setCurrentScale(byte % 2);
                    const auto expected = rules::command(command, unit, commandStateOf(scale.link));
                    scale.hidapi.sent.clear();
                    send(scale.link, command, unit);
                    QCOMPARE(scale.hidapi.sent.size(), std::size_t{1});
                    QCOMPARE(scale.hidapi.sent.front(), expected.report);
                    QCOMPARE(scale.link.scaleCommand(), expected.scaleCommand);
                    QCOMPARE(scale.link.currentStatue(), expected.currentStatue);
                    QCOMPARE(scale.link.TurnON(), expected.TurnON);
                    QCOMPARE(scale.link.TurnOff(), expected.TurnOff);
                    QCOMPARE(scale.link.unitindex(), expected.unitindex);
                    QCOMPARE(scale.link.currentUnit(), expected.currentUnit);
                }
            }
        }
        QLoggingCategory::setFilterRules({});
    }

    void logLines()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        for (const rules::Command command : commands) {
            scale.log.lines().clear();
            send(scale.link, command, 1);
            QStringList expected;
            if (const std::string name = rules::commandLogText(command); !name.empty())
                expected.append(QString::fromStdString(name));
            const QString channel = rules::traceChannel(command) == rules::TraceChannel::Print
                                        ? QStringLiteral("io: ")
                                        : QString();
            for (int i = 0; i < 9; ++i)
                expected.append(channel + QString::fromStdString(rules::traceText(command, i, 0)));
            QCOMPARE(scale.log.lines(), expected);
        }
    }

    void failedSendChangesTheFlagsAllTheSame()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.link.set_device_ON();
        scale.hidapi.sendFails = true;
        scale.log.lines().clear();
        scale.link.set_device_OFF();
        QVERIFY(!scale.link.currentStatue());
        QCOMPARE(scale.log.lines(), (QStringList{"set_device_OFF", "io: Unable to read()"}));
    }

    void nothingSentIsNoFailure()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.hidapi.sentBytes = 0;
        scale.log.lines().clear();
        scale.link.set_device_OFF();
        scale.link.set_Unit(1);
        QCOMPARE(scale.log.lines(), QStringList{"set_device_OFF"});
    }

    void withoutAScaleEveryCommandFailsQuietly()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        scale.log.lines().clear();
        for (const rules::Command command : commands)
            send(scale.link, command, 2);
        QVERIFY(scale.hidapi.sent.empty());
        QCOMPARE(scale.log.lines().filter(QStringLiteral("Unable to read()")).size(), 7);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, CommandsTest)
#include "CommandsTest.moc"
