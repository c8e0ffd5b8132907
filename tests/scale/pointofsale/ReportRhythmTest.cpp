// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/PointOfSaleRules.h"
#include "tests/scale/pointofsale/ClassScaleWorld.h"
#include "tests/support/FakeClock.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

using Report = ClassScaleDevices::Report;

/// What the next report is the first one after.
enum class RowBegin { Plugged, Pause, Reopened };

void beginRow(ClassScaleWorld &world, RowBegin begin)
{
    world.plugFirst();
    if (begin == RowBegin::Plugged)
        return;
    for (int time = 0; time < 3; ++time) {
        world.first().reports.push_back(stable(50));
        world.other.takeReading();
        fakeclock::advance(200ms);
    }
    fakeclock::advance(11s);
    world.other.takeReading();
    if (begin == RowBegin::Reopened)
        world.other.reopenHandle();
}

/// What is taken after these reports, all of which have come before it is looked for them, or each
/// of which is looked for.
void compareRow(const std::vector<Report> &row, bool atOnce)
{
    ClassScaleWorld world;
    world.plugAndBegin();
    std::size_t readings = world.interface.readings.size();
    int unit = 11; // of the first report
    std::optional<rules::Stated> expected;
    const auto compare = [&] {
        world.other.takeReading();
        readings += expected ? 1 : 0;
        QCOMPARE(world.interface.readings.size(), readings);
        if (!expected)
            return;
        const ScaleStatement &taken = world.interface.readings.back().statement;
        QCOMPARE(static_cast<int>(taken.status), expected->status);
        QCOMPARE(static_cast<int>(taken.unit), expected->unit);
        QCOMPARE(taken.number.digits, expected->digits);
        QCOMPARE(taken.number.exponent, expected->exponent);
        QCOMPARE(taken.number.isNegative, expected->below);
        QVERIFY(world.interface.readings.back().isConfirmed);
        expected.reset();
    };
    for (const Report &report : row) {
        if (auto stated = rules::stated(report)) {
            unit = stated->unit != 0 ? stated->unit : unit;
            if (stated->digits == 0)
                stated->unit = unit;
            expected = stated;
        }
        world.first().reports.push_back(report);
        if (!atOnce)
            compare();
    }
    if (atOnce)
        compare();
}

} // namespace

Q_DECLARE_METATYPE(RowBegin)

/// Which reports of a scale of the class count, and when it is silent.
class ReportRhythmTest : public QObject
{
    Q_OBJECT

private slots:
    void whatItSendsFirstIsShownButDoesNotLeave()
    {
        ClassScaleWorld world;
        world.interface.clip = true;
        world.plugFirst();
        world.first().reports.push_back(stable(99));
        QVERIFY(!world.other.takeReading());
        QCOMPARE(world.lastDigits(), 99U);
        QVERIFY(!world.interface.readings.back().isConfirmed);
        world.other.setHeld(true);
        QVERIFY(!world.other.isHolding());
        world.first().reports.push_back(stable(12));
        QVERIFY(world.other.takeReading());
        QCOMPARE(world.interface.readings.size(), std::size_t{2});
        QCOMPARE(world.lastDigits(), 12U);
        QVERIFY(world.interface.readings.back().isConfirmed);
        QCOMPARE(world.interface.label, QStringLiteral("0.075"));
        QCOMPARE(world.interface.clipboard, QStringList{"0.075"});
    }

    void oneThatSendsOnlyOnceIsTakenAtItsWord()
    {
        ClassScaleWorld world;
        world.interface.clip = true;
        world.plugFirst();
        world.first().reports.push_back(stable(12));
        QVERIFY(!world.other.takeReading());
        fakeclock::advance(9900ms);
        QVERIFY(!world.other.takeReading());
        fakeclock::advance(200ms);
        QVERIFY(world.other.takeReading());
        QVERIFY(world.interface.readings.back().isConfirmed);
        QCOMPARE(world.interface.clipboard, QStringList{"0.075"});
        fakeclock::advance(1h);
        QVERIFY(!world.other.takeReading());
        QVERIFY(!world.other.isReadingOpen());
        QCOMPARE(world.interface.readings.size(), std::size_t{2});
    }

    void whatASlowScaleSendsFirstNeverLeaves_data()
    {
        QTest::addColumn<RowBegin>("begin");
        QTest::addColumn<int>("gap");
        for (const int gap : {400, 2900, 4000, 5000, 9000, 9900}) {
            QTest::addRow("plugged in, %d ms", gap) << RowBegin::Plugged << gap;
            QTest::addRow("after a pause, %d ms", gap) << RowBegin::Pause << gap;
            QTest::addRow("opened anew, %d ms", gap) << RowBegin::Reopened << gap;
        }
    }

    void whatASlowScaleSendsFirstNeverLeaves()
    {
        QFETCH(RowBegin, begin);
        QFETCH(int, gap);
        ClassScaleWorld world;
        beginRow(world, begin);
        world.interface.clip = true;
        world.first().reports.push_back({3, 4, 2, 0, 0xD2, 0x04}); // of the weighing before
        for (int time = 0; time < gap; time += 100) {
            QVERIFY(!world.other.takeReading());
            QVERIFY(!world.interface.readings.back().isConfirmed);
            fakeclock::advance(100ms);
        }
        QCOMPARE(world.lastDigits(), 1234U);
        world.first().reports.push_back(stable(12));
        QVERIFY(world.other.takeReading());
        QVERIFY(world.interface.readings.back().isConfirmed);
        QCOMPARE(world.interface.clipboard, QStringList{"0.075"});
    }

    /// It used to repeat itself, or its load was in motion: what it sent last is not of now.
    void silenceOfAScaleThatShouldSendConfirmsNothing()
    {
        for (const Report &last : {stable(13), Report{3, 3, 11, 0xFF, 13, 0}}) {
            ClassScaleWorld world;
            beginRow(world, RowBegin::Pause);
            world.interface.clip = true;
            world.first().reports.push_back(last);
            for (int time = 0; time < 300; ++time) {
                QVERIFY(!world.other.takeReading());
                fakeclock::advance(100ms);
            }
            QVERIFY(world.other.isReadingOpen());
            QVERIFY(!world.interface.readings.back().isConfirmed);
            QCOMPARE(world.interface.clipboard, QStringList());
        }
    }

    void afterMoreReportsThanTheKernelKeepsTheLastIsInDoubt_data()
    {
        QTest::addColumn<int>("reports");
        QTest::addColumn<int>("stall");
        QTest::addColumn<bool>("isConfirmed");
        QTest::newRow("there was room for more") << 62 << 6200 << true;
        QTest::newRow("full") << 63 << 6300 << false;
        QTest::newRow("full long since") << 63 << 60000 << false;
        QTest::newRow("full, and one came meanwhile") << 64 << 6300 << false;
        QTest::newRow("a quick scale that is read in time") << 64 << 400 << true;
    }

    void afterMoreReportsThanTheKernelKeepsTheLastIsInDoubt()
    {
        QFETCH(int, reports);
        QFETCH(int, stall);
        QFETCH(bool, isConfirmed);
        ClassScaleWorld world;
        world.plugAndBegin();
        fakeclock::advance(std::chrono::milliseconds(stall));
        world.first().reports.assign(static_cast<std::size_t>(reports), stable(99));
        QCOMPARE(world.other.takeReading(), isConfirmed);
        QCOMPARE(world.interface.readings.back().isConfirmed, isConfirmed);
        fakeclock::advance(400ms);
        world.first().reports.push_back(stable(12));
        QVERIFY(world.other.takeReading());
        QVERIFY(world.interface.readings.back().isConfirmed);
    }

    void afterALongSilenceTheFirstOneIsInDoubtAgain()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back(stable(12));
        QVERIFY(world.other.takeReading());
        fakeclock::advance(60s);
        world.first().reports.push_back(stable(13));
        QVERIFY(!world.other.takeReading());
        QCOMPARE(world.lastDigits(), 13U);
        QVERIFY(!world.interface.readings.back().isConfirmed);
        world.first().reports.push_back(stable(14));
        QVERIFY(world.other.takeReading());
    }

    void oneThatSendsEveryFourSecondsIsNeverSilentNorInDoubt()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        for (int time = 0; time < 20; ++time) {
            fakeclock::advance(4s);
            world.first().reports.push_back(stable(12));
            QVERIFY(world.other.takeReading());
            QVERIFY(!world.other.isReadingOpen());
        }
        fakeclock::advance(11900ms);
        world.other.takeReading();
        QVERIFY(!world.other.isReadingOpen());
        fakeclock::advance(200ms);
        world.other.takeReading();
        QVERIFY(world.other.isReadingOpen());
    }

    /// Every row of three reports, after what is sent first, gives the last one of them that has a
    /// weight; others are let pass, whatever their length.
    void everyRowOfThreeReports()
    {
        const std::vector<Report> alphabet{
            stable(12),
            {3, 3, 11, 0xFF, 13, 0},       // in motion
            {3, 2, 0, 0, 0, 0},            // at zero, without a unit
            {3, 5, 11, 0xFF, 0xFE, 0xFF},  // below zero, as two's complement
            {3, 5, 11, 0xFF, 0, 0},        // and without a weight
            {3, 6, 11, 0xFF, 0, 0},        // over the limit
            {4, 1},                        // another report
            {0, 3, 4, 2, 0, 14, 0},        // a 0 in front
            {3, 4, 12, 0xFE, 15, 0, 0, 0}, // eight bytes
            [] {
                Report report = stable(16);
                report.resize(128);
                return report;
            }(),
            {3, 4, 11, 0xFF, 17},    // too short
            {},                      // nothing at all
            {3, 0, 11, 0xFF, 18, 0}, // a status that is none
        };
        for (const Report &one : alphabet) {
            for (const Report &two : alphabet) {
                for (const Report &three : alphabet) {
                    compareRow({one, two, three}, true);
                    compareRow({one, two, three}, false);
                    if (QTest::currentTestFailed())
                        return;
                }
            }
        }
    }

    void aRhythmThatStopsIsSilenceAfterTenSeconds()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        for (int time = 0; time < 3; ++time) {
            fakeclock::advance(400ms);
            world.first().reports.push_back(stable(12));
            world.other.takeReading();
        }
        fakeclock::advance(9900ms);
        world.other.takeReading();
        QVERIFY(!world.other.isReadingOpen());
        fakeclock::advance(200ms);
        world.other.takeReading();
        QVERIFY(world.other.isReadingOpen());
        QVERIFY(!world.other.silenceText().contains(QStringLiteral("switched")));
        world.first().reports.push_back(stable(12));
        QVERIFY(!world.other.continueReading()); // it may be of the weighing before
        QVERIFY(!world.other.isReadingOpen());
        world.first().reports.push_back(stable(12));
        QVERIFY(world.other.takeReading());
    }

    void oneThatSendsOnlyWhenSomethingChangesIsNotSilent()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back({3, 3, 11, 0xFF, 13, 0}); // in motion
        world.other.takeReading();
        world.first().reports.push_back(stable(12));
        world.other.takeReading();
        fakeclock::advance(1h);
        QVERIFY(!world.other.takeReading());
        QVERIFY(!world.other.isReadingOpen());
    }

    void motionThatNeverEndsIsSilence()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back({3, 3, 11, 0xFF, 13, 0});
        world.other.takeReading();
        fakeclock::advance(10100ms);
        world.other.takeReading();
        QVERIFY(world.other.isReadingOpen());
    }

    void oneThatHasSentNothingIsSilentInOtherWords()
    {
        ClassScaleWorld world;
        world.plugFirst();
        world.other.takeReading();
        QVERIFY(!world.other.isReadingOpen());
        fakeclock::advance(10100ms);
        world.other.takeReading();
        QVERIFY(world.other.isReadingOpen());
        QVERIFY(world.other.silenceText().contains(QStringLiteral("nothing yet")));
    }

    void readsThatFailTellNothing()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back(stable(12));
        world.other.takeReading();
        world.first().readFailure = -1;
        world.first().reports.push_back(stable(13));
        QVERIFY(!world.other.takeReading());
        QCOMPARE(world.lastDigits(), 12U);
        fakeudev::unplug("hidraw5");
        ClassScaleWorld::turn();
        QVERIFY(!world.other.takeReading());
        QVERIFY(world.interface.inUse == &world.link);
        QCOMPARE(world.first().openConnections, 0);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, ReportRhythmTest)
#include "ReportRhythmTest.moc"
