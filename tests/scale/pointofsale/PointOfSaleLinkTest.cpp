// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/PointOfSaleLink.h"

#include "emulator/ClassScaleDescriptors.h"
#include "scale/HIDManager.h"
#include "scale/pointofsale/ScaleChoice.h"
#include "scale/pointofsale/ScaleReading.h"
#include "tests/rules/PointOfSaleRules.h"
#include "tests/support/ClassScaleDevices.h"
#include "tests/support/FakeClock.h"
#include "tests/support/LinkedScale.h"
#include "tests/support/TestClasses.h"

#include <cerrno>

using namespace std::chrono_literals;

namespace {

using Report = ClassScaleDevices::Report;

const fakeudev::Device firstDevice{"hidraw5", 0x1234, 0x0001};
const fakeudev::Device secondDevice{"hidraw6", 0x1234, 0x0001};
const fakeudev::Device someStranger{"hidraw8", scaleVendorId, 0x1234};
const fakeudev::Device someMouse{"hidraw7", 0x046D, 0xC077};

Report stable(std::uint8_t weight)
{
    return {3, 4, 11, 0xFF, weight, 0};
}

/// The interface with both links behind it.
class ClassScaleInterface : public RecordingDelegate
{
public:
    HidDevices &devices() override { return machine; }

    void useLink(ScaleLink &link, const QString &itsName) override
    {
        inUse = &link;
        name = itsName;
        calls.append(QStringLiteral("useLink"));
    }

    void takeReading(const ScaleReading &reading) override { readings.push_back(reading); }

    ClassScaleDevices machine;
    ScaleLink *inUse = nullptr;
    QString name;
    std::vector<ScaleReading> readings;
};

struct ClassScaleWorld
{
    ClassScaleWorld()
    {
        FakeHidapi::reset();
        fakeudev::reset();
        describe("/dev/hidraw5", "One Scale");
        describe("/dev/hidraw6", "Other Scale");
        link.get_device_handle();
        turn();
    }

    static void turn() { LinkedScale::turn(); }

    void describe(const char *node, const char *name)
    {
        ClassScaleDevices::Scale &scale = interface.machine.scales[QString::fromLatin1(node)];
        scale.descriptor = QByteArray(reinterpret_cast<const char *>(classScaleDescriptor.data()),
                                      static_cast<qsizetype>(classScaleDescriptor.size()));
        scale.name = QString::fromLatin1(name);
    }

    ClassScaleDevices::Scale &first() { return interface.machine.scales["/dev/hidraw5"]; }
    ClassScaleDevices::Scale &second() { return interface.machine.scales["/dev/hidraw6"]; }

    void plugFirst()
    {
        fakeudev::plug(firstDevice);
        turn();
    }

    /// Past the report that may be of another time.
    void plugAndBegin()
    {
        plugFirst();
        first().reports.push_back(stable(99));
        other.takeReading();
        interface.calls.clear();
    }

    bool isOtherInUse() const { return interface.inUse == &other; }

    LogCapture log;
    ClassScaleInterface interface;
    HIDManager link;
    PointOfSaleLink other{[this] { return link.SetRound(); }};
    ScaleChoice choice{link, other, nullptr};
};

} // namespace

/// The link to scales of the class, and which scale is taken.
class PointOfSaleLinkTest : public QObject
{
    Q_OBJECT

private slots:
    void aScaleOfTheClassIsFoundByItsDescriptor()
    {
        ClassScaleWorld world;
        fakeudev::plug(someMouse);
        ClassScaleWorld::turn();
        QVERIFY(world.interface.calls.isEmpty());
        world.plugFirst();
        QVERIFY(world.isOtherInUse());
        QCOMPARE(world.interface.name, QStringLiteral("One Scale"));
        QCOMPARE(world.interface.calls,
                 QStringList({"useLink", "setStatusString 1", "setIsDeviceAlive 1"}));
        QCOMPARE(world.first().opens, 1);
        QVERIFY(world.interface.connectionTrouble.isEmpty());
        QVERIFY(FakeHidapi::instance().opened.empty());
        QVERIFY(FakeHidapi::instance().sent.empty());
    }

    void theDescribedScaleComesFirst()
    {
        ClassScaleWorld world;
        fakeudev::place(scaleDevice);
        world.plugFirst();
        fakeudev::announce(scaleDevice, "add");
        ClassScaleWorld::turn();
        QVERIFY(world.interface.inUse == nullptr); // the first link, from the start
        QCOMPARE(world.first().opens, 0);
        QCOMPARE(FakeHidapi::instance().opened.size(), std::size_t{1});
    }

    void oneOfTheClassIsGivenUpWhenADescribedOneComesAndTakenAfterwards()
    {
        ClassScaleWorld world;
        world.plugFirst();
        for (int time = 1; time <= 3; ++time) {
            world.interface.calls.clear();
            fakeudev::plug(scaleDevice);
            ClassScaleWorld::turn();
            QCOMPARE(
                world.interface.calls,
                QStringList({"unitLBl setHidden 1", "setStatusString 0", "setIsDeviceAlive 0",
                             "clearAll", "useLink", "setStatusString 1", "setIsDeviceAlive 1"}));
            QVERIFY(world.interface.inUse == &world.link);
            QCOMPARE(world.first().openConnections, 0);
            world.interface.calls.clear();
            fakeudev::unplug("hidraw0");
            ClassScaleWorld::turn();
            QCOMPARE(
                world.interface.calls,
                QStringList({"unitLBl setHidden 1", "setStatusString 0", "setIsDeviceAlive 0",
                             "clearAll", "useLink", "setStatusString 1", "setIsDeviceAlive 1"}));
            QVERIFY(world.isOtherInUse());
            QCOMPARE(world.first().openConnections, 1);
        }
    }

    /// Neither another product of the scale's vendor, nor any removal, is news of it.
    void otherDevicesDoNotDisturbIt()
    {
        ClassScaleWorld world;
        fakeudev::plug(scaleDevice); // a removal counts once such a scale was there
        ClassScaleWorld::turn();
        fakeudev::unplug("hidraw0");
        ClassScaleWorld::turn();
        world.plugFirst();
        fakeudev::plug(someMouse);
        fakeudev::plug(someStranger);
        ClassScaleWorld::turn();
        world.interface.calls.clear();
        fakeudev::unplug("hidraw7");
        fakeudev::unplug("hidraw8");
        ClassScaleWorld::turn();
        QVERIFY2(world.interface.calls.isEmpty(), qPrintable(world.interface.calls.join(", ")));
        QVERIFY(world.isOtherInUse());
        QCOMPARE(world.first().openConnections, 1);
    }

    void aStrangerThatIsThereBeforeGivesWay()
    {
        ClassScaleWorld world;
        fakeudev::plug(someStranger);
        ClassScaleWorld::turn();
        world.plugFirst();
        QVERIFY(world.isOtherInUse());
        QVERIFY(world.interface.connectionTrouble.isEmpty());
    }

    void twoOfTheClass()
    {
        ClassScaleWorld world;
        fakeudev::plug(secondDevice);
        ClassScaleWorld::turn();
        world.plugFirst();
        QCOMPARE(world.interface.name, QStringLiteral("Other Scale")); // that was there first
        QCOMPARE(world.first().opens, 0);
        fakeudev::unplug("hidraw6");
        ClassScaleWorld::turn();
        QCOMPARE(world.interface.name, QStringLiteral("One Scale"));
        QCOMPARE(world.first().openConnections, 1);
        QCOMPARE(world.second().openConnections, 0);
    }

    void twoHundredReplugs()
    {
        ClassScaleWorld world;
        for (int time = 0; time < 200; ++time) {
            world.plugFirst();
            fakeudev::unplug("hidraw5");
            ClassScaleWorld::turn();
        }
        QCOMPARE(world.first().opens, 200);
        QCOMPARE(world.first().openConnections, 0);
        QVERIFY(world.interface.inUse == &world.link);
    }

    void oneThatMayNotBeOpenedIsOpenedOnceItMay()
    {
        ClassScaleWorld world;
        world.first().readingError = EACCES;
        world.plugFirst();
        QVERIFY(world.isOtherInUse());
        QVERIFY(world.interface.connectionTrouble.contains(
            QStringLiteral(R"(ATTRS{idVendor}=="1234", ATTRS{idProduct}=="0001")")));
        QVERIFY(!world.other.takeReading());
        world.first().readingError = 0;
        world.other.takeReading();
        QVERIFY(world.interface.connectionTrouble.isEmpty());
        QCOMPARE(world.first().opens, 1);
    }

    void whatItSendsFirstMayBeOfAnotherTime()
    {
        ClassScaleWorld world;
        world.plugFirst();
        world.first().reports.push_back(stable(99));
        QVERIFY(!world.other.takeReading());
        QVERIFY(world.interface.readings.empty());
        world.first().reports.push_back(stable(12));
        QVERIFY(world.other.takeReading());
        QCOMPARE(world.interface.readings.size(), std::size_t{1});
        QCOMPARE(world.interface.readings[0].statement.number.digits, 12U);
        QCOMPARE(world.interface.label, QStringLiteral("0.075"));
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
                    ClassScaleWorld world;
                    world.plugAndBegin();
                    std::optional<rules::Stated> expected;
                    for (const Report &report : {one, two, three}) {
                        if (const auto stated = rules::stated(report))
                            expected = stated;
                        world.first().reports.push_back(report);
                    }
                    world.other.takeReading();
                    QCOMPARE(world.interface.readings.size(), std::size_t{expected ? 1U : 0U});
                    if (!expected)
                        continue;
                    const ScaleStatement &taken = world.interface.readings[0].statement;
                    QCOMPARE(static_cast<int>(taken.status), expected->status);
                    QCOMPARE(taken.number.digits, expected->digits);
                    QCOMPARE(taken.number.exponent, expected->exponent);
                    QCOMPARE(taken.number.isNegative, expected->below);
                }
            }
        }
    }

    void aZeroWithoutUnitKeepsTheUnit()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back(stable(12));
        world.other.takeReading();
        world.first().reports.push_back({3, 2, 0, 0, 0, 0});
        world.other.takeReading();
        QVERIFY(world.interface.readings.back().statement.unit == WeightUnit::Ounce);
    }

    void silenceIsToldAfterTenSecondsAndEndsWithAReport()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        fakeclock::advance(9900ms);
        world.other.takeReading();
        QVERIFY(!world.other.isReadingOpen());
        fakeclock::advance(200ms);
        world.other.takeReading();
        QVERIFY(world.other.isReadingOpen());
        world.first().reports.push_back(stable(12));
        QVERIFY(world.other.continueReading());
        QVERIFY(!world.other.isReadingOpen());
    }

    void zeroIsOneBitOfTheReportThatTheDescriptorNames()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        QVERIFY(world.other.abilities().tare);
        QVERIFY(world.first().written.empty());
        world.other.pressTare();
        world.other.releaseTare();
        QVERIFY(world.first().written == (std::vector<Report>{{2, 2}}));
    }

    void withoutThatReportNothingIsSent()
    {
        ClassScaleWorld world;
        world.first().descriptor =
            QByteArray(reinterpret_cast<const char *>(oddScaleDescriptor.data()),
                       static_cast<qsizetype>(oddScaleDescriptor.size()));
        world.plugFirst();
        QVERIFY(world.isOtherInUse());
        QVERIFY(!world.other.abilities().tare);
        world.other.pressTare();
        QVERIFY(world.first().written.empty());
    }

    void holdIsOfTheProgram()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back(stable(12));
        world.other.takeReading();
        world.other.setHeld(true);
        world.first().reports.push_back(stable(50));
        world.other.takeReading();
        QVERIFY(world.interface.readings.back().isHeld);
        QCOMPARE(world.interface.readings.back().statement.number.digits, 12U);
        world.other.setHeld(false);
        world.first().reports.push_back(stable(50));
        world.other.takeReading();
        QVERIFY(!world.interface.readings.back().isHeld);
        QCOMPARE(world.interface.readings.back().statement.number.digits, 50U);
    }

    void theClipboardGetsWhatIsExported()
    {
        ClassScaleWorld world;
        world.interface.clip = true;
        world.plugAndBegin();
        world.first().reports.push_back(stable(16));
        world.other.takeReading();
        QCOMPARE(world.interface.clipboard, QStringList{"0.1"});
        world.link.setSetRound(true);
        world.first().reports.push_back(stable(16));
        world.other.takeReading();
        QCOMPARE(world.interface.clipboard.last(), QStringLiteral("1"));
        world.first().reports.push_back({3, 6, 11, 0xFF, 0, 0}); // over the limit
        QVERIFY(!world.other.takeReading());
        QCOMPARE(world.interface.clipboard.size(), 2);
        QCOMPARE(world.interface.label, QString());
    }

    void metricUnitsLeaveAsKilograms()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back({3, 4, 2, 0, 0xE8, 0x03});
        world.other.takeReading();
        QCOMPARE(world.interface.label, QStringLiteral("1"));
        QVERIFY(world.other.leavingForm().form == ExportForm::Kilograms);
        QCOMPARE(world.other.webTexts().basic, QStringLiteral("1000"));
    }
};

TEST_CLASS_INSIDE(QCoreApplication, PointOfSaleLinkTest)
#include "PointOfSaleLinkTest.moc"
