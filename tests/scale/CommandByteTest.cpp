// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/CommandByte.h"
#include "tests/rules/CommandRules.h"
#include "tests/support/TestClasses.h"

/// Every byte through every change, against the independent statement of the rules.
class CommandByteTest : public QObject
{
    Q_OBJECT

private slots:
    void everyChangeOfEveryByte()
    {
        for (int byte = 0; byte <= 0xFF; ++byte) {
            const auto command = static_cast<CommandByte>(byte);
            for (const int scale : {0, 1, 2}) {
                const rules::CommandState before{.scaleCommand = command, .currentScale = scale};
                const auto expected = [&](rules::Command which) {
                    return rules::command(which, 0, before).scaleCommand;
                };
                QCOMPARE(switchedOn(command, scale), expected(rules::Command::On));
                QCOMPARE(switchedOff(command), expected(rules::Command::Off));
                QCOMPARE(holding(command), expected(rules::Command::Hold));
                QCOMPARE(holdReleased(command), expected(rules::Command::HoldOff));
                QCOMPARE(taring(command), expected(rules::Command::OnTare));
                QCOMPARE(tareReleased(command), expected(rules::Command::OffTare));
            }
        }
    }

    void everyUnitIndexOfEveryByte()
    {
        for (int byte = 0; byte <= 0xFF; ++byte) {
            const auto command = static_cast<CommandByte>(byte);
            for (int unit = -1; unit <= 8; ++unit) {
                QCOMPARE(withUnitCode(command, unit), rules::withUnitCode(command, unit));
                QCOMPARE(afterPoll(command, unit), rules::closeCommandByte(command, unit));
                QCOMPARE(unitChanged(command, unit),
                         rules::command(rules::Command::SetUnit, unit, {.scaleCommand = command})
                             .scaleCommand);
            }
        }
    }

    void reports()
    {
        QCOMPARE(commandReport(0x9C), (FeatureReport{0x00, 0xA0, 0x9C, 0xA0, 0, 0, 0, 0, 0}));
        QCOMPARE(pollReport(0x3C), (FeatureReport{0x00, 0x90, 0x3C, 0x80, 0, 0, 0, 0, 0}));
    }

    void pollsAreToldByTheirSecondByte()
    {
        const auto isPoll = [](std::initializer_list<std::uint8_t> report) {
            return isPollReport({report.begin(), report.size()});
        };
        QVERIFY(isPollReport(pollReport(0xFF)));
        QVERIFY(!isPollReport(commandReport(0x90)));
        QVERIFY(isPoll({0x00, 0x90}));
        QVERIFY(!isPoll({0x90, 0x00}));
        const std::array<std::uint8_t, 2> poll{0x00, 0x90};
        QVERIFY(!isPollReport(std::span(poll).first(1)));
        QVERIFY(!isPollReport({}));
    }

    void workedBytes_data()
    {
        QTest::addColumn<CommandByte>("result");
        QTest::addColumn<CommandByte>("expected");
        const auto row = [](const char *name, CommandByte result, CommandByte expected) {
            QTest::newRow(name) << result << expected;
        };
        row("on from the start value, gram scale", switchedOn(0xFF, 0), 0xDE);
        row("on from nothing, gram scale", switchedOn(0x00, 0), 0x9C);
        row("on from nothing, tenth-ounce scale", switchedOn(0x00, 1), 0xB4);
        row("hold", holding(0x9C), 0x98);
        row("hold released", holdReleased(0x98), 0x9C);
        row("metric", unitChanged(0x9C, 1), 0x3C);
        row("metric, after its poll", afterPoll(0x3C, 1), 0xBC);
        row("off", switchedOff(0x9C), 0x9D);
        row("off, after its poll", afterPoll(0x9D, 4), 0x9C);
        row("tare released", tareReleased(0x9C), 0x9E);
        row("tare", taring(0x9E), 0x9C);
        row("no such unit", unitChanged(0x9C, 7), 0x1C);
    }

    void workedBytes()
    {
        QFETCH(CommandByte, result);
        QTEST(result, "expected");
    }
};

TEST_CLASS(CommandByteTest)
#include "CommandByteTest.moc"
