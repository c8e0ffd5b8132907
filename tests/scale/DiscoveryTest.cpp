// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeClock.h"
#include "tests/support/LinkedScale.h"
#include "tests/support/TestClasses.h"

#include <cerrno>
#include <chrono>

namespace {

const fakeudev::Device stranger{"hidraw8", scaleVendorId, 0x1234};

/// Where devices are found and cannot be opened.
class RefusingMachine : public SystemHidDevices
{
public:
    std::unique_ptr<HidConnection> open(const QString &) override { return nullptr; }
    QString lastError() const override { return QStringLiteral("out of order"); }
    int accessError(const QString &) const override { return error; }

    int error = 0;
};

class RefusedDelegate : public RecordingDelegate
{
public:
    HidDevices &devices() override { return machine; }

    RefusingMachine machine;
};

/// Where logind gives the scale to whose seat it is, and takes it away, without any event.
class SharedMachine : public SystemHidDevices
{
public:
    std::unique_ptr<HidConnection> open(const QString &node) override
    {
        return error == 0 ? SystemHidDevices::open(node) : nullptr;
    }
    int accessError(const QString &) const override { return error; }

    int error = 0;
};

class SharedDelegate : public RecordingDelegate
{
public:
    HidDevices &devices() override { return machine; }

    SharedMachine machine;
};

/// The real link, watching, where there is a scale.
struct SharedScale
{
    /// @param error of the scale's node; 0 where it is this user's
    explicit SharedScale(int error = 0)
    {
        FakeHidapi::reset();
        fakeudev::reset();
        fakeudev::place(scaleDevice);
        interface.machine.error = error;
        link.get_device_handle();
        LinkedScale::turn();
    }

    LogCapture log;
    SharedDelegate interface;
    HIDManager link;
};

const QStringList attached{"DeviceAdded", "go forward", "our device"};
const QStringList removed{"DeviceRemoved", "hid_device_removal_callback"};
const QStringList toldConnected{"setStatusString 1", "setIsDeviceAlive 1"};
const QStringList toldGone{"unitLBl setHidden 1", "setStatusString 0", "setIsDeviceAlive 0",
                           "clearAll"};

} // namespace

/// How the real link meets devices that come and go.
class DiscoveryTest : public QObject
{
    Q_OBJECT

private slots:
    void presentScaleIsFoundOnceTheLoopRuns()
    {
        FakeHidapi::reset();
        fakeudev::reset();
        fakeudev::place(scaleDevice);
        LogCapture log;
        RecordingDelegate interface;
        HIDManager link;
        link.get_device_handle();
        QCOMPARE(link.scaleCommand(), 0xFF);
        QCOMPARE(link.unitnumber(), 3);
        QCOMPARE(link.currentUnit(), 4);
        QVERIFY(interface.calls.isEmpty());
        LinkedScale::turn();
        QCOMPARE(interface.calls, toldConnected);
        QCOMPARE(log.lines(), attached);
        QCOMPARE(FakeHidapi::instance().opened, std::vector<std::string>{"/dev/hidraw0"});
    }

    void pluggedScaleIsOpened()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        QVERIFY(scale.interface.calls.isEmpty());
        fakeudev::plug(scaleDevice);
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected);
    }

    void otherVendorsAreOnlyLogged()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        fakeudev::plug(mouse);
        scale.turn();
        QCOMPARE(scale.log.lines(), QStringList{"DeviceAdded"});
        QVERIFY(scale.interface.calls.isEmpty());
    }

    void unpluggingTellsTheInterfaceAndReleasesTheHandle()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.calls.clear();
        scale.log.lines().clear();
        fakeudev::unplug("hidraw0");
        scale.turn();
        QCOMPARE(scale.log.lines(), removed);
        QCOMPARE(scale.interface.calls, toldGone);
        QCOMPARE(scale.hidapi.openHandles, 0);
        scale.log.lines().clear();
        scale.link.set_device_ON_TARE(); // the handle stays set, and answers that it is gone
        QVERIFY(scale.log.lines().contains(QStringLiteral("io: Unable to read()")));
    }

    void anyRemovalCountsOnceAScaleWasOpen()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        fakeudev::plug(mouse);
        scale.turn();
        scale.interface.calls.clear();
        fakeudev::unplug("hidraw7");
        scale.turn();
        QCOMPARE(scale.interface.calls, toldGone);
        QCOMPARE(scale.hidapi.openHandles, 1); // the scale itself is still there
        fakeudev::unplug("hidraw0");
        scale.turn();
        QCOMPARE(scale.hidapi.openHandles, 0);
    }

    void strangerOfTheSameVendorGetsANullHandle()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        fakeudev::plug(stranger);
        scale.turn();
        QCOMPARE(scale.log.lines(), attached);
        QCOMPARE(scale.interface.calls, toldConnected);
        QVERIFY(scale.hidapi.opened.empty());
        QVERIFY(scale.interface.connectionTrouble.startsWith("No scale was found"));
        scale.interface.calls.clear();
        scale.log.lines().clear();
        fakeudev::unplug("hidraw8");
        scale.turn();
        // Nothing was ever opened, so no removal is taken for the scale's.
        QCOMPARE(scale.interface.calls, QStringList{"unitLBl setHidden 1"});
        QCOMPARE(scale.log.lines(), QStringList{"DeviceRemoved"});
    }

    void strangerBesideAScaleOpensTheScaleAgain()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        fakeudev::plug(stranger);
        scale.turn();
        QCOMPARE(scale.hidapi.opened.size(), std::size_t{2});
        QCOMPARE(scale.interface.calls, toldConnected + toldConnected);
        fakeudev::unplug("hidraw0");
        scale.turn();
        QCOMPARE(scale.hidapi.openHandles, 0); // both handles of the vanished scale are released
    }

    void secondAttachWithoutRemovalConnectsAgain()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        fakeudev::announce(scaleDevice, "add");
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected + toldConnected);
    }

    void hookRunsOncePerRemovalHoweverManyOpens()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        fakeudev::announce(scaleDevice, "add");
        scale.turn();
        scale.interface.calls.clear();
        fakeudev::unplug("hidraw0");
        scale.turn();
        QCOMPARE(scale.interface.calls, toldGone);
    }

    void replugOpensAgain()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        for (int i = 0; i < 200; ++i) {
            fakeudev::unplug("hidraw0");
            fakeudev::plug(scaleDevice);
            scale.turn();
        }
        QCOMPARE(scale.hidapi.opened.size(), std::size_t{201});
        QCOMPARE(scale.hidapi.openHandles, 1);
    }

    void otherEventsAreIgnored()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.calls.clear();
        fakeudev::announce(scaleDevice, "change");
        fakeudev::announce(scaleDevice, "bind");
        scale.turn();
        QVERIFY(scale.interface.calls.isEmpty());
    }

    /// The rule is put in place and udev told to apply it: no further attachment, one handle.
    void permissionThatArrivesLaterIsUsed()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        scale.hidapi.openFails = true;
        fakeudev::plug(scaleDevice);
        scale.turn();
        fakeudev::announce(scaleDevice, "change");
        scale.turn();
        QVERIFY(!scale.interface.connectionTrouble.isEmpty());
        scale.hidapi.openFails = false;
        fakeudev::announce(mouse, "change");
        scale.turn();
        QVERIFY(!scale.interface.connectionTrouble.isEmpty());
        for (int event = 0; event < 3; ++event)
            fakeudev::announce(scaleDevice, "change");
        scale.turn();
        QCOMPARE(scale.interface.connectionTrouble, QString());
        QCOMPARE(scale.interface.calls, toldConnected);
        QCOMPARE(scale.hidapi.openHandles, 1);
        scale.poll({0x01, 0x34, 0x12});
        QCOMPARE(scale.link.sWebDataBasic(), QStringLiteral("1234"));
    }

    /// What is gone, or no longer counts as connected, is not opened.
    void permissionThatArrivesTooLateIsLeftAlone()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        fakeudev::unplug("hidraw0");
        scale.hidapi.openFails = true;
        fakeudev::plug(scaleDevice);
        fakeudev::plug(mouse);
        fakeudev::unplug("hidraw7");
        scale.turn();
        scale.hidapi.openFails = false;
        fakeudev::announce(scaleDevice, "change");
        scale.turn();
        QCOMPARE(scale.hidapi.openHandles, 0);
        QCOMPARE(scale.interface.calls.last(4), toldGone);
    }

    void theScaleIsWhoseSeatItIs()
    {
        SharedScale scale(EACCES);
        auto &[log, interface, link] = scale;
        FakeHidapi &hidapi = FakeHidapi::instance();
        for (int change = 0; change < 3; ++change) {
            link.get_device_rawdata();
            QVERIFY(interface.connectionTrouble.startsWith(QStringLiteral("No permission")));
            QCOMPARE(hidapi.openHandles, 0);
            QVERIFY(hidapi.sent.empty());

            interface.machine.error = 0;
            hidapi.reports = {{0x01, 0x34, 0x12}};
            link.get_device_rawdata();
            QCOMPARE(interface.connectionTrouble, QString());
            QCOMPARE(hidapi.openHandles, 1);
            QCOMPARE(hidapi.sent.size(), 1U);
            QCOMPARE(link.sWebDataBasic(), QStringLiteral("1234"));

            interface.machine.error = EACCES;
            hidapi.sent.clear();
        }
        QCOMPARE(interface.calls.filter(QStringLiteral("setStatusString")),
                 QStringList{"setStatusString 1"});
        QCOMPARE(hidapi.misuses, 0);
    }

    void theSeatGoesWhileTheScaleIsSilent()
    {
        SharedScale scale;
        auto &[log, interface, link] = scale;
        FakeHidapi &hidapi = FakeHidapi::instance();
        hidapi.duringWait = [](int patience) {
            fakeclock::advance(std::chrono::milliseconds(patience));
        };
        link.get_device_rawdata();
        QVERIFY(link.isReadingOpen());
        interface.machine.error = EACCES;
        QVERIFY(!link.continueReading());
        QVERIFY(!link.isReadingOpen());
        QCOMPARE(hidapi.openHandles, 0);
        QVERIFY(interface.connectionTrouble.startsWith(QStringLiteral("No permission")));
    }

    /// For which the polls wait.
    void aScaleThatIsThereAgainWithoutPermission()
    {
        SharedScale scale;
        auto &[log, interface, link] = scale;
        interface.machine.error = EACCES;
        for (int search = 0; search < 2; ++search)
            QVERIFY(link.reopenHandle());
        interface.machine.error = 0;
        FakeHidapi::instance().reports = {{0x01, 0x34, 0x12}};
        link.get_device_rawdata();
        QCOMPARE(FakeHidapi::instance().openHandles, 1);
        QCOMPARE(link.sWebDataBasic(), QStringLiteral("1234"));
        fakeudev::unplug(scaleDevice.name);
        LinkedScale::turn();
        QVERIFY(!link.reopenHandle());
    }

    void lateAnnouncements_data()
    {
        QTest::addColumn<bool>("opensAtFirst");
        QTest::newRow("of a node that was open to the user") << true;
        QTest::newRow("of one that was not") << false;
    }

    /// udev is through with a device after it was found in a list: one attachment, one handle.
    void lateAnnouncements()
    {
        QFETCH(bool, opensAtFirst);
        LinkedScale scale(LinkedScale::Scale::Absent);
        fakeudev::Device late = scaleDevice;
        late.isInitialized = false;
        scale.hidapi.openFails = !opensAtFirst;
        fakeudev::place(late);
        fakeudev::overflow();
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected);
        scale.hidapi.openFails = false;
        fakeudev::announceLate(late.name);
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected);
        QCOMPARE(scale.interface.connectionTrouble, QString());
        QCOMPARE(scale.hidapi.openHandles, 1);
        // Announced once more, it is a further attachment as ever.
        fakeudev::announce(late, "add");
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected + toldConnected);
    }

    void failedOpenIsExplained()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        scale.hidapi.openFails = true;
        fakeudev::plug(scaleDevice);
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected);
        QVERIFY(!scale.interface.connectionTrouble.isEmpty());
        fakeudev::unplug("hidraw0");
        scale.turn();
        QVERIFY(scale.interface.connectionTrouble.isEmpty());
    }

    void reasonsWhyAnOpenFailed_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("trouble");
        const auto broken =
            QStringLiteral("The scale at /dev/hidraw0 could not be opened: out of order");
        QTest::newRow("the library's own") << 0 << broken;
        QTest::newRow("the node is gone") << ENOENT << broken;
        QTest::newRow("no permission")
            << EACCES
            << QStringLiteral("No permission to open the scale at /dev/hidraw0. Put this line into "
                              "/etc/udev/rules.d/60-postal-scale.rules and plug the scale in "
                              "again: ACTION!=\"remove\", SUBSYSTEM==\"hidraw\", "
                              "ATTRS{idVendor}==\"04d9\", ATTRS{idProduct}==\"8010\", "
                              "TAG+=\"uaccess\"");
    }

    void reasonsWhyAnOpenFailed()
    {
        QFETCH(int, error);
        QFETCH(QString, trouble);
        FakeHidapi::reset();
        fakeudev::reset();
        fakeudev::place(scaleDevice);
        LogCapture log;
        RefusedDelegate interface;
        interface.machine.error = error;
        HIDManager link;
        link.get_device_handle();
        LinkedScale::turn();
        QCOMPARE(interface.connectionTrouble, trouble);
        QCOMPARE(log.lines(), (QStringList{"DeviceAdded", "go forward", trouble, "our device"}));
    }

    void theReasonStandsForAsLongAsTheScaleDoes()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        scale.hidapi.openFails = true;
        fakeudev::plug(scaleDevice);
        fakeudev::plug(mouse);
        scale.turn();
        const QString trouble = scale.interface.connectionTrouble;
        QVERIFY(trouble.startsWith(QStringLiteral("The scale at /dev/hidraw0")));
        fakeudev::unplug("hidraw7");
        scale.turn();
        QCOMPARE(scale.interface.connectionTrouble, trouble);
        scale.hidapi.openFails = false;
        fakeudev::announce(scaleDevice, "add");
        scale.turn();
        QCOMPARE(scale.interface.connectionTrouble, QString());
    }

    /// The link goes by the latest attempt, although the scale opened before would still answer.
    void failedOpenTakesTheFormerHandlesPlace()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.hidapi.openFails = true;
        fakeudev::announce(scaleDevice, "add");
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected + toldConnected);
        QCOMPARE(scale.hidapi.openHandles, 1);
        scale.log.lines().clear();
        scale.link.set_Unit(1);
        scale.link.get_device_rawdata();
        QVERIFY(scale.hidapi.sent.empty());
        QCOMPARE(scale.log.lines().filter(QStringLiteral("Unable")),
                 (QStringList{"io: Unable to read()", "io: Unable to read command()",
                              "io: Unable to read()"}));
    }

    void aHandleIsClosedOnce()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.link.closeHandle();
        QCOMPARE(scale.hidapi.openHandles, 0);
        scale.link.closeHandle();
        scale.hidapi.reports.push_back({0x01, 0x34, 0x12});
        scale.log.lines().clear();
        scale.link.set_Unit(1);
        scale.link.get_device_rawdata();
        QVERIFY(scale.hidapi.sent.empty());
        QCOMPARE(scale.hidapi.misuses, 0);
        QCOMPARE(scale.log.lines().filter(QStringLiteral("Unable")),
                 (QStringList{"io: Unable to read()", "io: Unable to read command()",
                              "io: Unable to read()"}));
    }

    /// Or every replugging would leave one behind.
    void theLibraryForgetsTheHandlesOfVanishedDevicesOnly()
    {
        FakeHidapi::reset();
        SystemHidDevices machine;
        HidLibrary library(machine, [] {});
        const std::weak_ptr gone = library.open("/dev/hidraw0", "/sys/one");
        const std::weak_ptr kept = library.open("/dev/hidraw1", "/sys/other");
        library.deviceRemoved("/sys/one");
        QVERIFY(gone.expired());
        QVERIFY(!kept.expired());
        QCOMPARE(FakeHidapi::instance().openHandles, 1);
    }

    void withoutAHandleThereIsNothingToClose()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        scale.link.closeHandle();
        QCOMPARE(scale.hidapi.misuses, 0);
    }

    /// What is known of the scale and of the chosen unit outlives it.
    void removalChangesNothingOfTheReadingsState()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.link.setUnitnumber(5);
        scale.link.setDotunit(5);
        scale.link.setLbOZlast(true);
        scale.link.setSetRound(true);
        scale.link.set_Unit(3);
        scale.poll({0x8B, 0x34, 0x12}); // overload
        scale.link.set_device_ON();
        scale.link.setCurrentScale(1);
        fakeudev::unplug("hidraw0");
        scale.turn();
        QCOMPARE(scale.interface.calls.last(), QStringLiteral("clearAll"));
        QVERIFY(scale.link.currentStatue());
        QVERIFY(scale.link.OverloadFlag());
        QVERIFY(scale.link.TurnON());
        QVERIFY(!scale.link.TurnOff());
        QVERIFY(scale.link.lbOZlast());
        QVERIFY(scale.link.SetRound());
        QCOMPARE(scale.link.currentScale(), 1);
        QCOMPARE(scale.link.unitnumber(), 5);
        QCOMPARE(scale.link.dotunit(), 5);
        QCOMPARE(scale.link.unitindex(), 3);
        QCOMPARE(scale.link.currentUnit(), 3);
        QCOMPARE(scale.link.scaleCommand(), 0xDE);
        QCOMPARE(scale.link.sWebDataBasic(), QStringLiteral("1234"));
    }

    void droppedEventsAreMadeUpFor()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.calls.clear();
        fakeudev::unplug("hidraw0");
        fakeudev::place(mouse);
        fakeudev::overflow();
        scale.turn();
        QCOMPARE(scale.interface.calls, toldGone);
        scale.interface.calls.clear();
        fakeudev::place(scaleDevice);
        fakeudev::overflow();
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected);
    }

    /// Listed because news was dropped, and announced all the same: one attachment.
    void whatIsListedMayStillBeAnnounced()
    {
        LinkedScale scale(LinkedScale::Scale::Absent);
        fakeudev::place(scaleDevice);
        fakeudev::overflow();
        fakeudev::announce(scaleDevice, "add");
        scale.turn();
        QCOMPARE(scale.interface.calls, toldConnected);
        QCOMPARE(scale.hidapi.openHandles, 1);
    }

    /// It reaches whoever started the program.
    void deafnessIsAWarning()
    {
        FakeHidapi::reset();
        fakeudev::reset();
        fakeudev::failing().monitor = true;
        const RecordingDelegate interface;
        HIDManager link;
        QTest::ignoreMessage(QtWarningMsg,
                             "No device events: a scale plugged in from now on is not noticed");
        link.get_device_handle();
        fakeudev::reset();
    }
};

TEST_CLASS_INSIDE(QCoreApplication, DiscoveryTest)
#include "DiscoveryTest.moc"
