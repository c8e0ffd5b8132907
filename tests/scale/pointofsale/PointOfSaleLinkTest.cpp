// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/PointOfSaleLink.h"

#include "tests/scale/pointofsale/ClassScaleWorld.h"
#include "tests/support/TestClasses.h"

#include <cerrno>

namespace {

using Report = ClassScaleDevices::Report;

const fakeudev::Device secondDevice{"hidraw6", 0x1234, 0x0001};
const fakeudev::Device someStranger{"hidraw8", scaleVendorId, 0x1234};
const fakeudev::Device someMouse{"hidraw7", 0x046D, 0xC077};

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
        QVERIFY(world.other.takeReading());
        QVERIFY(world.interface.readings.back().isHeld);
        world.first().reports.push_back(stable(50));
        world.other.takeReading();
        QVERIFY(world.interface.readings.back().isHeld);
        QCOMPARE(world.lastDigits(), 12U);
        // What lies there by now has been told meanwhile, and is not told again.
        world.other.setHeld(false);
        QVERIFY(world.other.takeReading());
        QVERIFY(!world.interface.readings.back().isHeld);
        QVERIFY(world.interface.readings.back().isRepeated);
        QCOMPARE(world.lastDigits(), 50U);
        QCOMPARE(world.interface.label, QStringLiteral("0.3125"));
    }

    void openedAnewItHoldsNothing()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back(stable(12));
        world.other.takeReading();
        world.other.setHeld(true);
        QVERIFY(world.other.isHolding());
        QVERIFY(world.other.reopenHandle());
        QVERIFY(!world.other.isHolding());
        world.other.setHeld(true);
        QVERIFY(!world.other.isHolding());
        world.first().reports.push_back(stable(50));
        world.other.takeReading();
        QCOMPARE(world.lastDigits(), 50U);
        QVERIFY(!world.interface.readings.back().isHeld);
    }

    void aChoiceIsFollowedWithoutAFurtherReport()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().reports.push_back(stable(12));
        world.other.takeReading();
        // The described scale's row is none that was chosen for this one.
        world.interface.radioButtonIndex = unittag::poundsOuncesA;
        QVERIFY(!world.other.takeReading());
        QVERIFY(!world.interface.readings.back().asPoundsAndOunces);
        world.other.chooseUnit(unittag::poundsOuncesA);
        QVERIFY(world.other.takeReading());
        QVERIFY(world.interface.readings.back().asPoundsAndOunces);
        world.link.setSetRound(true);
        world.other.readAgain();
        QVERIFY(world.other.takeReading());
        QCOMPARE(world.interface.label, QStringLiteral("1"));
        QVERIFY(!world.other.takeReading());
    }

    void zeroIsOfferedOnlyWhereItCanBeWritten()
    {
        ClassScaleWorld world;
        world.plugAndBegin();
        world.first().accessError = EACCES;
        QVERIFY(!world.other.abilities().tare);
        world.first().accessError = 0;
        world.first().isDeaf = true;
        world.other.pressTare();
        world.other.takeReading();
        QVERIFY(world.interface.readings.back().hasTareFailed);
        world.first().reports.push_back({3, 2, 11, 0xFF, 0, 0});
        world.other.takeReading();
        QVERIFY(!world.interface.readings.back().hasTareFailed);
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

    void whatIsZeroByItsStatusAloneDoesNotLeave()
    {
        ClassScaleWorld world;
        world.interface.clip = true;
        world.plugAndBegin();
        world.first().reports.push_back({3, 2, 11, 0xFF, 12, 0});
        QVERIFY(!world.other.takeReading());
        QCOMPARE(world.lastDigits(), 12U);
        QCOMPARE(world.interface.label, QString());
        QVERIFY(world.other.webTexts().basic.isNull());
        world.first().reports.push_back({3, 2, 11, 0xFF, 0, 0});
        QVERIFY(world.other.takeReading());
        QCOMPARE(world.interface.clipboard, QStringList{"0"});
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
