// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/FaultyWorld.h"
#include "tests/support/TestClasses.h"
#include "widgets/ConnectionLamp.h"

#include <QElapsedTimer>
#include <QStatusBar>

using namespace std::chrono_literals;

Q_DECLARE_METATYPE(std::function<void(FaultyWorld &)>)

namespace {

constexpr auto patience = HIDManager::answerPatience;
constexpr auto forEver = 24h;

const QString tick = QStringLiteral("readData");
const QString silenceNotice = QStringLiteral("The scale does not answer");
const QString silentWords = QStringLiteral(", the scale does not answer");

/// What a person does while the scale is silent, and what comes of it.
struct Act
{
    const char *name;
    void (*perform)(FaultyWorld &world);
    std::vector<int> commands; ///< sent at once
    const char *panel;         ///< once the scale has answered
    const char *exported;
};

void clickModel(FaultyWorld &world)
{
    world.app.delegate.modelMenu->actions().at(2)->trigger();
}

// The command byte is 0xFE after a poll in kilograms: unit bits 111, and no request to switch off.
const std::vector<Act> &acts()
{
    static const std::vector<Act> all{
        {"nothing", [](FaultyWorld &) {}, {}, "1234 grams", "1.234"},
        {"hold",
         [](FaultyWorld &world) { world.app.delegate.holdButton->click(); },
         {0xFA},
         "1234 grams, on hold",
         "1.234"},
        {"hold and release",
         [](FaultyWorld &world) {
             world.app.delegate.holdButton->click();
             world.app.delegate.holdButton->click();
         },
         {0xFA, 0xFE},
         "1234 grams",
         "1.234"},
        {"unit",
         [](FaultyWorld &world) { world.app.delegate.rg1->click(); },
         {0x76},
         "43.5 ounces",
         "2.72"},
        {"power",
         [](FaultyWorld &world) { world.app.delegate.powerButton->click(); },
         {0xFF},
         "off",
         "0"},
        {"tare",
         [](FaultyWorld &world) { world.app.delegate.tareButton->click(); },
         {0xFC},
         "0 grams",
         "0"},
        {"model", clickModel, {0x5E}, "2 pounds 11 1/2 ounces", "1.234"},
        {"option",
         [](FaultyWorld &world) { world.app.delegate.checkRoundTo->click(); },
         {},
         "1234 grams",
         "2"},
    };
    return all;
}

QString panelOf(const FaultyWorld &world)
{
    return world.app.delegate.imageBox->accessibleName();
}

bool showsSilence(const FaultyWorld &world)
{
    LaunchedApplication::turn();
    const PostalScaleAppDelegate &delegate = world.app.delegate;
    const bool isDimmed = delegate.imageBox->isDimmed();
    const bool isNoticed =
        delegate.window->statusBar()->findChild<QLabel *>()->text() == silenceNotice;
    const bool isLit = delegate.connectionLamp->accessibleName() == QStringLiteral("Trouble");
    const bool isTold = panelOf(world).endsWith(silentWords);
    if (isDimmed != isNoticed || isDimmed != isLit || isDimmed != isTold)
        qFatal("dimmed %d, noticed %d, lamp %d, words %d", isDimmed, isNoticed, isLit, isTold);
    return isDimmed;
}

/// Weighing 1234 g in grams; the next poll is due in an interval.
void weigh(FaultyWorld &world)
{
    world.plug();
    world.app.turn();
    pass(2 * interval);
    world.app.delegate.rg5->click();
    pass(3 * interval);
    world.app.forgetTraffic();
}

/// The next poll is answered that much later. Returns how long its reading holds the thread.
std::chrono::milliseconds readSilently(FaultyWorld &world, std::chrono::milliseconds silence)
{
    world.duringNextExchange([&world, silence] { world.fallSilent(silence); });
    pass(interval - step);
    QElapsedTimer held;
    held.start();
    pass(step);
    LaunchedApplication::turn();
    return std::chrono::milliseconds(held.elapsed()) - step;
}

QString wires(const FaultyWorld &world)
{
    return QStringLiteral("%1 timers, %2 handles, %3 misuses")
        .arg(world.app.timers().size())
        .arg(world.app.hidapi.openHandles)
        .arg(world.app.hidapi.misuses);
}

const QString oneOfEach = QStringLiteral("1 timers, 1 handles, 0 misuses");

} // namespace

/// A scale that does not answer, for so long, and what can be done meanwhile.
class SilentScaleTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void aScaleThatAnswersInTimeIsReadOnceForEachPoll()
    {
        FaultyWorld world;
        weigh(world);
        world.app.hidapi.waits = 0;
        readSilently(world, 1900ms);
        pass(4 * interval);
        QCOMPARE(world.app.polls().size(), std::size_t{5});
        QCOMPARE(world.app.hidapi.waits, 5);
        QCOMPARE(world.app.hidapi.looks, 0);
        QCOMPARE(world.app.logged(tick), 5);
    }

    void actsAtEachDistance_data()
    {
        QTest::addColumn<int>("silence");
        QTest::addColumn<std::size_t>("act");
        for (const int silence : {0, 1900, 2100, 3000, 30000}) {
            for (std::size_t act = 0; act < acts().size(); ++act)
                QTest::addRow("%d ms, %s", silence, acts().at(act).name) << silence << act;
        }
    }

    /// The state afterwards does not depend on how long the scale was silent.
    void actsAtEachDistance()
    {
        QFETCH(int, silence);
        QFETCH(std::size_t, act);
        const Act &done = acts().at(act);
        const bool isSilent = silence > patience.count();
        FaultyWorld world;
        weigh(world);
        QCOMPARE(readSilently(world, std::chrono::milliseconds(silence)),
                 std::min(std::chrono::milliseconds(silence), patience));
        QCOMPARE(showsSilence(world), isSilent);
        QCOMPARE(world.app.polls().size(), isSilent ? std::size_t{2} : std::size_t{1});
        QCOMPARE(world.app.delegate.connectionStatuslbl->text(), QStringLiteral("Scale connected"));

        done.perform(world);
        QCOMPARE(world.app.commands(), done.commands);
        QCOMPARE(showsSilence(world), isSilent);
        world.waitForTheEndOfSilence();
        pass(step);
        QVERIFY(!showsSilence(world));
        // The tare is released after two seconds.
        pass(7 * interval);
        QCOMPARE(panelOf(world), QString(done.panel));
        QCOMPARE(world.app.delegate.lbLBL->text(), QString(done.exported));
        QCOMPARE(wires(world), oneOfEach);
        world.app.forgetTraffic();
        pass(5 * interval);
        QCOMPARE(world.app.polls().size(), std::size_t{5});
        QCOMPARE(panelOf(world), QString(done.panel));
    }

    void ends_data()
    {
        QTest::addColumn<int>("silence");
        for (const int silence : {0, 1900, 2100, 3000, 30000, -1})
            QTest::addRow("%d ms", silence) << silence;
    }

    /// Closed while the scale is silent for ever, or shortly after it has spoken again.
    void ends()
    {
        QFETCH(int, silence);
        for (const bool quits : {false, true}) {
            FaultyWorld world;
            weigh(world);
            readSilently(world, silence < 0 ? forEver : std::chrono::milliseconds(silence));
            pass(step);
            if (quits)
                world.app.delegate.quitItem->trigger();
            else
                world.app.delegate.window->close();
            QVERIFY(world.app.delegate.applicationShouldTerminateAfterLastWindowClosed());
            QVERIFY(!world.app.delegate.window->isVisible());
            QCOMPARE(world.app.commands(), std::vector<int>{0xFF});
            QCOMPARE(world.app.hidapi.sent.back().at(1), 0xA0);
            QCOMPARE(world.model.power(), ScaleModel::Power::Off);
        }
    }

    void unplugging_data() { ends_data(); }

    void unplugging()
    {
        QFETCH(int, silence);
        FaultyWorld world;
        weigh(world);
        readSilently(world, silence < 0 ? forEver : std::chrono::milliseconds(silence));
        world.unplug();
        world.app.turn();
        QVERIFY(!showsSilence(world));
        QCOMPARE(panelOf(world), QStringLiteral("no scale connected"));
        QCOMPARE(world.app.delegate.connectionStatuslbl->text(),
                 QStringLiteral("Scale not connected"));
        QCOMPARE(world.app.delegate.lbLBL->text(), QString());
        world.app.forgetTraffic();
        pass(3 * interval);
        QVERIFY(world.app.hidapi.sent.empty());
        QCOMPARE(wires(world), QStringLiteral("0 timers, 0 handles, 0 misuses"));

        world.fallSilent(0ms);
        world.plug();
        pass(4 * interval);
        QCOMPARE(panelOf(world), QStringLiteral("1234 grams"));
        QCOMPARE(wires(world), oneOfEach);
    }

    /// Nothing else of a reading happens, and nothing happens twice.
    void theScaleIsAskedAgainEveryTwoSeconds()
    {
        FaultyWorld world;
        weigh(world);
        QElapsedTimer sincePoll;
        std::vector<qint64> times;
        world.app.hidapi.duringSend = [&, exchange = world.app.hidapi.duringSend] {
            if (!sincePoll.isValid())
                sincePoll.start();
            times.push_back(sincePoll.elapsed());
            exchange();
        };
        readSilently(world, forEver);
        pass(8s);
        QCOMPARE(times, (std::vector<qint64>{0, 2000, 4000, 6000, 8000, 10000}));
        QCOMPARE(world.app.logged(tick), 1);
        QCOMPARE(world.app.logged(QStringLiteral("Draw5DigitOverload")), 0);
        QVERIFY(showsSilence(world));
        QCOMPARE(wires(world), oneOfEach);
    }

    /// The report that was late was made before the unit was chosen.
    void aUnitChosenMeanwhileStands()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, 3s);
        world.app.delegate.rg1->click();
        QCOMPARE(world.app.commands(), std::vector<int>{0x76});
        world.waitForTheEndOfSilence();
        pass(step);
        // The late report is shown, and leaves, in the unit in which it was asked for.
        QCOMPARE(panelOf(world), QStringLiteral("1234 grams"));
        QCOMPARE(world.app.delegate.lbLBL->text(), QStringLiteral("1.234"));
        QCOMPARE(world.app.link.unitindex(), 2);
        QCOMPARE(world.app.link.unitnumber(), 1);
        world.app.forgetTraffic();
        pass(interval);
        // As after every choice of a unit, the first poll that carries it says so.
        QCOMPARE(world.app.polls(), std::vector<int>{0x76});
        QCOMPARE(panelOf(world), QStringLiteral("43.5 ounces"));
    }

    void aUnitChosenAtTheScaleStands_data()
    {
        QTest::addColumn<std::function<void(FaultyWorld &)>>("command");
        QTest::addColumn<int>("poll");
        using Command = std::function<void(FaultyWorld &)>;
        const auto row = [](const char *name, const Command &command, int poll) {
            QTest::newRow(name) << command << poll;
        };
        row("hold", [](FaultyWorld &world) { world.app.link.set_device_HOLD(); }, 0xF2);
        row("tare", [](FaultyWorld &world) { world.app.link.set_device_ON_TARE(); }, 0xF4);
        row("power off", [](FaultyWorld &world) { world.app.link.set_device_OFF(); }, 0xF7);
        // It begins in the unit of every start.
        row("power on", [](FaultyWorld &world) { world.app.link.set_device_ON(); }, 0xDE);
    }

    /// A command for something else is sent while the report is late.
    void aUnitChosenAtTheScaleStands()
    {
        QFETCH(std::function<void(FaultyWorld &)>, command);
        QFETCH(int, poll);
        FaultyWorld world;
        weigh(world);
        readSilently(world, forEver);
        command(world);
        world.app.hidapi.reports.push_back({reportstatus::ounces, 0x34, 0x12});
        pass(step);
        QVERIFY(!showsSilence(world));
        world.app.forgetTraffic();
        pass(interval);
        QCOMPARE(world.app.polls().at(0), poll);
    }

    /// Sixteen answers come at once, and one is enough.
    void noReadingIsOfAnEarlierPoll()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, 30s);
        world.waitForTheEndOfSilence();
        pass(step);
        QVERIFY(!showsSilence(world));
        for (const int grams : {500, 501, 502}) {
            world.model.setLoad(grams);
            pass(interval);
            QCOMPARE(panelOf(world), QStringLiteral("%1 grams").arg(grams));
        }
    }

    void aLostAnswerCostsTwoSeconds()
    {
        FaultyWorld world;
        weigh(world);
        for (int reset = 0; reset < 100; ++reset) {
            world.duringNextExchange([&world] { world.resetBus(); });
            while (world.awaitsExchange())
                pass(step);
            QVERIFY(showsSilence(world));
            pass(step);
            QVERIFY(!showsSilence(world));
            // The first answer after a reset tells the scale's type.
            pass(2 * interval);
            QCOMPARE(panelOf(world), QStringLiteral("1234 grams"));
            QCOMPARE(wires(world), oneOfEach);
        }
    }

    /// The reading of before it is given up for one of the new handle: nothing was read meanwhile.
    void theMachineSleeps()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, forEver);
        world.app.delegate.prepareForSleep();
        pass(10s);
        world.app.delegate.wakeUp();
        pass(step);
        QVERIFY(!showsSilence(world));
        QVERIFY(world.app.delegate.parcel().notes().isMarkedOld);
        world.fallSilent(0ms);
        pass(3 * interval);
        QVERIFY(!world.app.delegate.parcel().notes().isMarkedOld);
        QCOMPARE(panelOf(world), QStringLiteral("1234 grams"));
        QCOMPARE(wires(world), oneOfEach);
    }

    void aReadErrorEndsTheReading()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, forEver);
        world.deliver(FaultyWorld::Reports::None);
        pass(step);
        QVERIFY(!showsSilence(world));
        QCOMPARE(panelOf(world), QStringLiteral("off"));
        world.fallSilent(0ms);
        world.deliver(FaultyWorld::Reports::Whole);
        pass(2 * interval);
        QCOMPARE(panelOf(world), QStringLiteral("1234 grams"));
        QCOMPARE(wires(world), oneOfEach);
    }

    void aPollThatCannotBeSentIsSentAgain()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, 5s);
        world.failSending(true);
        pass(2500ms);
        QVERIFY(showsSilence(world));
        QCOMPARE(world.app.logged(QStringLiteral("io: Unable to read command()")), 1);
        world.failSending(false);
        world.waitForTheEndOfSilence();
        pass(3 * interval);
        QCOMPARE(panelOf(world), QStringLiteral("1234 grams"));
    }

    /// The reading that was open is given up for the new handle's own.
    void aFurtherAttachmentBeginsAnew()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, 5s);
        fakeudev::announce(world.device(), "add");
        world.app.turn();
        QVERIFY(!showsSilence(world));
        QCOMPARE(wires(world), QStringLiteral("2 timers, 2 handles, 0 misuses"));
        world.waitForTheEndOfSilence();
        pass(3 * interval);
        QCOMPARE(panelOf(world), QStringLiteral("1234 grams"));
        world.model.setLoad(500);
        pass(interval);
        QCOMPARE(panelOf(world), QStringLiteral("500 grams"));
    }

    void anotherDeviceThatGoesEndsIt()
    {
        FaultyWorld world;
        weigh(world);
        fakeudev::plug(mouse);
        readSilently(world, 5s);
        fakeudev::unplug(mouse.name);
        world.app.turn();
        QVERIFY(!showsSilence(world));
        QCOMPARE(panelOf(world), QStringLiteral("no scale connected"));
        world.waitForTheEndOfSilence();
        pass(3 * interval);
        QCOMPARE(panelOf(world), QStringLiteral("no scale connected"));
        QCOMPARE(world.app.delegate.lbLBL->text(), QString());
    }

    /// While a unit is being sent nothing is read.
    void thePauseIsKept()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, 3s);
        world.app.delegate.pausereadtimer = true;
        world.waitForTheEndOfSilence();
        world.app.hidapi.looks = 0;
        pass(1s);
        QCOMPARE(world.app.hidapi.looks, 0);
        QVERIFY(showsSilence(world));
        world.app.delegate.pausereadtimer = false;
        pass(step);
        QVERIFY(!showsSilence(world));
    }

    void theAgeIsTold()
    {
        FaultyWorld world;
        weigh(world);
        readSilently(world, forEver);
        QCOMPARE(world.app.delegate.settledLbl->text(), QStringLiteral("2 s old"));
        pass(10s);
        QCOMPARE(world.app.delegate.settledLbl->text(), QStringLiteral("12 s old"));
    }

    /// A weight that has left does not leave again because the scale was silent in between, and one
    /// that was settling settles anew.
    void silenceIsAPollWithoutAReport()
    {
        FaultyWorld world;
        weigh(world);
        QVERIFY(world.app.delegate.parcel().notes().isSettled());
        const QDateTime settled = world.app.delegate.parcel().notes().settledSince;
        readSilently(world, 3s);
        QVERIFY(!world.app.delegate.parcel().notes().isSettled());
        world.waitForTheEndOfSilence();
        pass(step);
        QVERIFY(!world.app.delegate.parcel().notes().isSettled());
        pass(2 * interval);
        QVERIFY(world.app.delegate.parcel().notes().isSettled());
        QVERIFY(world.app.delegate.parcel().notes().hasLeft);
        QCOMPARE(world.app.delegate.parcel().notes().settledSince, settled);
    }
};

TEST_CLASS(SilentScaleTest)
#include "SilentScaleTest.moc"
