// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/SegmentPattern.h"
#include "tests/rules/IconRules.h"
#include "tests/support/TestClasses.h"

/// Every unit code in every state, against the independent statement of the rules.
class SegmentPatternTest : public QObject
{
    Q_OBJECT

private slots:
    void everyPattern()
    {
        for (int code = -1; code <= 8; ++code) {
            for (int scale = 0; scale <= 2; ++scale) {
                for (int unitnumber = -1; unitnumber <= 7; ++unitnumber) {
                    for (int byte = 0; byte <= 0xFF; ++byte) {
                        for (const Capacity capacity : {Capacity::Standard, Capacity::High})
                            comparePattern(code, {scale, unitnumber, static_cast<CommandByte>(byte),
                                                  capacity});
                    }
                }
            }
        }
    }

    void blankedPanel()
    {
        std::vector<std::string_view> order;
        for (const char *name : blankedSegments())
            order.emplace_back(name);
        const auto &expected = rules::clearAllOrder();
        QVERIFY(std::equal(order.begin(), order.end(), expected.begin(), expected.end()));
    }

private:
    static void comparePattern(int code, const SegmentContext &context)
    {
        const SegmentPlan plan = segmentPattern(code, context);
        const rules::IconOutcome expected =
            rules::displayUnit(code, context.currentScale, context.unitnumber, context.scaleCommand,
                               context.capacity == Capacity::High);
        std::size_t call = 0;
        std::size_t line = 0;
        for (const SegmentStep &step : plan) {
            if (step.name == nullptr) {
                QVERIFY(line < expected.log.size());
                QCOMPARE(call, std::size_t{0}); // lines come before any segment is switched
                QCOMPARE(step.line.toString().toStdString(), expected.log.at(line++));
                continue;
            }
            QVERIFY(call < expected.calls.size());
            QVERIFY(expected.calls.at(call).name == step.name);
            QCOMPARE(step.action == Segment::Show, expected.calls.at(call).show);
            ++call;
        }
        QCOMPARE(call, expected.calls.size());
        QCOMPARE(line, expected.log.size());
    }
};

TEST_CLASS(SegmentPatternTest)
#include "SegmentPatternTest.moc"
