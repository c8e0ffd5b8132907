// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/ParcelWatch.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;

constexpr auto restStep = 100ms;

/// From the latest reading on, while the machine goes to sleep.
bool isPolledWithin(LaunchedApplication &app, std::chrono::milliseconds time)
{
    app.forgetTraffic();
    app.pass(time, restStep);
    return !app.polls().empty();
}

QString wires(LaunchedApplication &app)
{
    app.forgetTraffic();
    app.pass(2s, restStep);
    return QStringLiteral("%1, %2 timers, %3 polls, %4 handles")
        .arg(app.delegate.connectionStatuslbl->text())
        .arg(app.timers().size())
        .arg(app.polls().size())
        .arg(app.hidapi.openHandles);
}

const QString oneOfEachAgain = QStringLiteral("Scale connected, 1 timers, 5 polls, 1 handles");

void comeAndGo(LaunchedApplication &app)
{
    app.unplug();
    app.pass(100ms, restStep);
    app.plug();
    app.pass(100ms, restStep);
}

} // namespace

/// Between the news of a sleep and the first reading after it.
class RestTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void unitsAndModelsDoNotEndIt_data()
    {
        QTest::addColumn<bool>("isUnit");
        QTest::newRow("unit") << true;
        QTest::newRow("model") << false;
    }

    void unitsAndModelsDoNotEndIt()
    {
        QFETCH(bool, isUnit);
        LaunchedApplication app(Scale::Present);
        app.delegate.prepareForSleep();
        app.forgetTraffic();
        if (isUnit)
            app.delegate.rg5->click();
        else
            app.delegate.modelSelectionAction();
        QCOMPARE(app.commands().size(), std::size_t{1}); // sent all the same
        QVERIFY(!isPolledWithin(app, 3s));
        app.delegate.wakeUp();
        QVERIFY(isPolledWithin(app, 3s));
    }

    /// Whoever announces it may be gone.
    void itEndsWithoutNewsOfTheEnd()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.prepareForSleep();
        QVERIFY(!isPolledWithin(app, 29s));
        QVERIFY(isPolledWithin(app, 2s));
        app.delegate.wakeUp(); // late, and no news
        QVERIFY(isPolledWithin(app, 1s));
        QCOMPARE(app.hidapi.openHandles, 1);
    }

    void theSearchOfBeforeEndsWithTheNextSleep()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.prepareForSleep();
        fakeudev::reset(); // gone, and nothing is announced yet
        app.delegate.wakeUp();
        fakeudev::place(scaleDevice);
        app.delegate.prepareForSleep();
        QVERIFY(!isPolledWithin(app, 3s));
        app.delegate.wakeUp();
        QVERIFY(isPolledWithin(app, 3s));
    }

    void anotherDeviceGoes_data()
    {
        QTest::addColumn<bool>("isAwake");
        QTest::newRow("asleep") << false;
        QTest::newRow("awake") << true;
    }

    /// The scale stays, though it is taken for gone.
    void anotherDeviceGoes()
    {
        QFETCH(bool, isAwake);
        LaunchedApplication app(Scale::Present);
        app.plug(mouse);
        app.delegate.prepareForSleep();
        if (isAwake) {
            app.delegate.wakeUp();
            app.pass(1s, restStep);
        }
        app.unplug(mouse);
        QCOMPARE(app.delegate.connectionStatuslbl->text(), QStringLiteral("Scale not connected"));
        if (!isAwake) {
            QVERIFY(!isPolledWithin(app, 3s));
            app.delegate.wakeUp();
        }
        app.pass(1s, restStep);
        QCOMPARE(wires(app), oneOfEachAgain);
    }

    void anotherDeviceGoesAndTheEndIsNoNews()
    {
        LaunchedApplication app(Scale::Present);
        app.plug(mouse);
        app.delegate.prepareForSleep();
        app.unplug(mouse);
        QVERIFY(!isPolledWithin(app, 29s));
        app.pass(2s, restStep);
        QCOMPARE(wires(app), oneOfEachAgain);
    }

    /// Beyond the time in which a sleep has to do with it, it is as ever.
    void anotherDeviceGoesLater()
    {
        LaunchedApplication app(Scale::Present);
        app.plug(mouse);
        app.delegate.prepareForSleep();
        app.delegate.wakeUp();
        app.pass(11s, restStep);
        app.unplug(mouse);
        QVERIFY(!isPolledWithin(app, 11s));
        QCOMPARE(app.delegate.connectionStatuslbl->text(), QStringLiteral("Scale not connected"));
    }

    void theScaleIsAnnouncedAnewBeforeTheEnd()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.prepareForSleep();
        comeAndGo(app);
        QVERIFY(!isPolledWithin(app, 3s));
        QCOMPARE(app.hidapi.sent.size(), std::size_t{0});
        app.delegate.wakeUp();
        app.pass(1s, restStep);
        QCOMPARE(wires(app), oneOfEachAgain);
    }

    void theScaleBouncesAroundTheEnd()
    {
        for (const int before : {0, 1, 2}) {
            LaunchedApplication app(Scale::Present);
            app.delegate.prepareForSleep();
            for (int times = 0; times < 2; ++times) {
                if (times == before)
                    app.delegate.wakeUp();
                comeAndGo(app);
            }
            if (before == 2)
                app.delegate.wakeUp();
            app.pass(1s, restStep);
            QCOMPARE(wires(app), oneOfEachAgain);
        }
    }

    /// It is there again before anything is announced.
    void theScaleThatIsFoundIsNotYetAnnounced()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.prepareForSleep();
        app.unplug();
        fakeudev::place(scaleDevice);
        app.delegate.wakeUp();
        QVERIFY(!isPolledWithin(app, 1s));
        fakeudev::announce(scaleDevice, "add");
        app.turn();
        QCOMPARE(wires(app), oneOfEachAgain);
    }

    void aScaleThatCannotBeOpenedYet()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.prepareForSleep();
        app.hidapi.openFails = true;
        app.delegate.wakeUp();
        QVERIFY(!isPolledWithin(app, 3s));
        app.hidapi.openFails = false;
        app.pass(500ms, restStep);
        QCOMPARE(wires(app), oneOfEachAgain);
    }

    /// Only a reading of what lies on the pan now makes the age a new one.
    void theReadingStaysOldUntilThereIsAnother()
    {
        LaunchedApplication app(Scale::Present);
        ParcelWatch parcel({.link = app.link,
                            .session = app.delegate,
                            .state = app.delegate,
                            .panel = app.delegate.panel(),
                            .exportLabel = *app.delegate.lbLBL});
        const WeightReport weight{.status = 0x01, .low = 0x34, .high = 0x12};
        parcel.takeReport(weight, ReadOutcome::Read);
        for (const auto time : {1h, 2h}) {
            parcel.markOld();
            parcel.noteSlept(time);
        }
        const auto bothSleeps = std::optional<std::chrono::milliseconds>(3h);
        QVERIFY(parcel.notes().age == bothSleeps);
        parcel.takeReport({}, ReadOutcome::Failed);
        QVERIFY(parcel.notes().isMarkedOld);
        QVERIFY(parcel.notes().age == bothSleeps);
        app.link.set_device_HOLD();
        parcel.takeReport(weight, ReadOutcome::Read);
        QVERIFY(parcel.notes().isMarkedOld);
        app.link.set_device_HOLDOFF();
        parcel.takeReport(weight, ReadOutcome::Read);
        QVERIFY(!parcel.notes().isMarkedOld);
        QVERIFY(parcel.notes().age == std::optional(0ms));
    }
};

TEST_CLASS(RestTest)
#include "RestTest.moc"
