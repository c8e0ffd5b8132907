// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/UnitRules.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;

QList<ImageView *> digitViews(const Ui::MainWindow &form)
{
    return {form.digZero, form.digOne, form.digTwo, form.digThree, form.numeratorImg};
}

/// Object names of the digit views that are hidden, from the left.
QStringList hiddenDigits(const LaunchedApplication &app)
{
    QStringList names;
    for (const ImageView *view : digitViews(app.delegate)) {
        if (view->isHidden())
            names.append(view->objectName());
    }
    return names;
}

void lightAllDigits(const LaunchedApplication &app, bool lit)
{
    using enum DigitView;
    for (const DigitView view : {digZero, digOne, digTwo, digThree, numeratorImg})
        app.delegate.panel().setLit(view, lit);
}

} // namespace

/// The three buttons, on the clock that stands still but for what a test lets pass.
class PowerTareHoldTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void powerOn_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("commandBefore");
        QTest::addColumn<int>("command");
        QTest::addColumn<int>("row");
        QTest::newRow("gram scale, after start") << 0 << 0xFF << 0xDE << 2;
        QTest::newRow("gram scale, all bits clear") << 0 << 0x00 << 0x9C << 2;
        QTest::newRow("tenth-ounce scale, after start") << 1 << 0xFF << 0xF6 << 5;
        QTest::newRow("tenth-ounce scale, all bits clear") << 1 << 0x00 << 0xB4 << 5;
    }

    /// The row is the radio's alone: what the user chose last stays chosen for the readings.
    void powerOn()
    {
        QFETCH(int, type);
        QFETCH(int, commandBefore);
        QFETCH(int, command);
        QFETCH(int, row);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.rg5->click();
        app.link.setCurrentScale(type);
        app.link.setCurrentStatue(false);
        app.link.setScaleCommand(static_cast<CommandByte>(commandBefore));
        app.delegate.unitLBl->setHidden(true);
        app.forgetTraffic();
        app.delegate.powerButton->click();

        QCOMPARE(app.commands(), std::vector{command});
        QCOMPARE(app.log.lines().first(), QStringLiteral("Current Status of Device....... 0"));
        QVERIFY(!app.delegate.unitLBl->isHidden());
        QVERIFY(app.delegate.radiogroup->buttons().at(row)->isChecked());
        QVERIFY(app.link.currentStatue());
        QVERIFY(app.link.TurnON());
        QCOMPARE(app.link.unitnumber(), 0);
        QCOMPARE(app.link.unitindex(), 1);
        QCOMPARE(app.delegate.selectedRadioButtonIndex(), 0);
        QVERIFY(!app.log.lines().contains(
            QStringLiteral("---------------------->Done radioSelection!!!!!")));
    }

    void powerOnSelectsARowThatTheModelLacks()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.enableDisableWeight(7);
        app.mark(app.delegate.rg4, true);
        app.delegate.powerButton->click();
        QVERIFY(app.delegate.rg3->isChecked());
        QVERIFY(!app.delegate.rg3->isEnabled());
    }

    void powerOff_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("gram scale") << 0;
        QTest::newRow("tenth-ounce scale") << 1;
    }

    void powerOff()
    {
        QFETCH(int, type);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.link.setCurrentScale(type);
        app.link.setCurrentStatue(true);
        app.link.setScaleCommand(0x1C);
        app.delegate.unitLBl->setHidden(false);
        app.mark(app.delegate.rg1, true);
        app.forgetTraffic();
        app.delegate.powerButton->click();

        QCOMPARE(app.commands(), std::vector{0x9D});
        QCOMPARE(app.log.lines().first(2),
                 (QStringList{"Current Status of Device....... 1", "set_device_OFF"}));
        QVERIFY(app.delegate.unitLBl->isHidden());
        QVERIFY(app.delegate.rg1->isChecked());
        QVERIFY(!app.link.currentStatue());
        QVERIFY(app.link.TurnOff());
        QVERIFY(!app.link.TurnON());
    }

    /// The scale's reports decide what the next press does, not the press before.
    void powerFollowsTheReports()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read({0x01, 0x34, 0x12});
        app.delegate.powerButton->click();
        app.read({0x01, 0x34, 0x12}); // switched on again at the scale itself
        app.delegate.powerButton->click();
        app.read({0x00, 0x00, 0x00});
        app.delegate.powerButton->click();
        const std::vector<int> sent = app.commands();
        QCOMPARE(sent.size(), std::size_t{3});
        QVERIFY((sent.at(0) & powerOffBit) != 0);
        QVERIFY((sent.at(1) & powerOffBit) != 0);
        QVERIFY((sent.at(2) & powerOffBit) == 0);
    }

    void holdAlternates()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.link.setScaleCommand(0x9C);
        app.forgetTraffic();
        for (int press = 0; press < 4; ++press)
            app.delegate.holdButton->click();
        QCOMPARE(app.commands(), (std::vector{0x98, 0x9C, 0x98, 0x9C}));
        QCOMPARE(app.log.lines().filter(QStringLiteral("set_device")),
                 (QStringList{"set_device_HOLD", "set_device_HOLDOFF", "set_device_HOLD",
                              "set_device_HOLDOFF"}));
        QCOMPARE(app.logged(QStringLiteral("HOLD Action")), 4);
    }

    void holdIsRememberedOverAReplug()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.holdButton->click();
        app.unplug();
        app.delegate.holdButton->click(); // not connected: only logged
        QVERIFY(app.delegate.onhold);
        app.plug();
        app.forgetTraffic();
        app.delegate.holdButton->click();
        QCOMPARE(app.log.lines().first(2), (QStringList{"HOLD Action", "set_device_HOLDOFF"}));
        QVERIFY((app.commands().front() & holdReleasedBit) != 0);
        QVERIFY(!app.delegate.onhold);
    }

    void withoutAScaleNothingHappens()
    {
        LaunchedApplication app(Scale::Absent);
        app.link.setCurrentStatue(true);
        app.delegate.unitLBl->setHidden(false);
        lightAllDigits(app, true);
        app.forgetTraffic();
        app.delegate.powerButton->click();
        app.delegate.tareButton->click();
        QVERIFY(app.log.lines().isEmpty());
        app.delegate.holdButton->click();
        QCOMPARE(app.log.lines(), QStringList{QStringLiteral("HOLD Action")});
        app.pass(3000ms);
        QCOMPARE(app.log.lines().size(), 1);
        QVERIFY(app.hidapi.sent.empty());
        QVERIFY(!app.delegate.onhold);
        QVERIFY(!app.delegate.unitLBl->isHidden());
        QVERIFY(hiddenDigits(app).isEmpty());
    }

    void tareBlinksOnceAndIsReleased()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.link.setUnitnumber(1);
        app.link.setScaleCommand(0x9E);
        lightAllDigits(app, true);
        app.forgetTraffic();
        app.delegate.tareButton->click();
        QCOMPARE(app.commands(), std::vector{0x9C});
        QCOMPARE(app.delegate.tareflashtime, 0);
        app.pass(999ms);
        QVERIFY(hiddenDigits(app).isEmpty());
        app.pass(1ms);
        QCOMPARE(hiddenDigits(app), (QStringList{"digTwo", "digThree"}));
        app.pass(999ms);
        QCOMPARE(hiddenDigits(app), (QStringList{"digTwo", "digThree"}));
        QCOMPARE(app.commands().size(), std::size_t{1});
        app.pass(1ms);
        QVERIFY(hiddenDigits(app).isEmpty());
        QCOMPARE(app.commands(), (std::vector{0x9C, 0x9E}));
        QCOMPARE(app.delegate.tareflashtime, 2);
        QVERIFY(app.timers().empty());
        app.pass(3000ms);
        QVERIFY(hiddenDigits(app).isEmpty());
        QCOMPARE(app.commands().size(), std::size_t{2});
    }

    void blinkingViews_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("unitnumber");
        QTest::addColumn<QStringList>("views");
        const auto row = [](const char *unit, int unitnumber, const QStringList &views) {
            QTest::addRow("%s, gram scale", unit) << 0 << unitnumber << views;
            QTest::addRow("%s, tenth-ounce scale", unit) << 1 << unitnumber << QStringList();
        };
        row("no unit", -1, {});
        row("grams", 0, {"digThree"});
        row("ounces", 1, {"digTwo", "digThree"});
        row("pounds and ounces A", 2, {"digOne", "digThree", "numeratorImg"});
        row("pounds and ounces B", 3, {"digOne", "digThree"});
        row("decimal pounds", 4, {"digTwo", "digThree"});
        row("kilograms", 5, {"digZero", "digOne", "digTwo", "digThree"});
        row("pounds and whole ounces", 6, {});
        row("beyond the units", 7, {});
    }

    /// What is hidden already is shown by the first tick.
    void blinkingViews()
    {
        QFETCH(int, type);
        QFETCH(int, unitnumber);
        QFETCH(QStringList, views);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.link.setCurrentScale(type);
        app.link.setUnitnumber(unitnumber);
        lightAllDigits(app, true);
        app.delegate.tareButton->click();
        app.pass(1000ms);
        QCOMPARE(hiddenDigits(app), views);
        lightAllDigits(app, false);
        app.pass(1000ms);
        for (const ImageView *view : digitViews(app.delegate))
            QCOMPARE(view->isHidden(), !views.contains(view->objectName()));
        QCOMPARE(app.delegate.tareflashtime, 2);
        QVERIFY(app.timers().empty());
        QCOMPARE(app.commands().size(), std::size_t{2});
        for (const std::string_view name : rules::tareBlinkImages(type, unitnumber))
            QVERIFY(views.contains(QString::fromUtf8(name.data(), qsizetype(name.size()))));
    }

    void twoTares_data()
    {
        QTest::addColumn<int>("gap");
        QTest::addColumn<QList<int>>("blinks");
        QTest::addColumn<QList<int>>("commandTimes");
        // Both timers count on the one counter, which the second press sets back.
        QTest::newRow("half a second apart")
            << 500 << QList<int>{1000, 1500, 2000} << QList<int>{0, 500, 2000, 2500};
        QTest::newRow("the second after the first blink")
            << 1200 << QList<int>{1000, 2000, 2200, 3000} << QList<int>{0, 1200, 2000, 3200};
        QTest::newRow("the second after the release")
            << 2300 << QList<int>{1000, 2000, 3300, 4300} << QList<int>{0, 2000, 2300, 4300};
    }

    /// Times in milliseconds since the first press.
    void twoTares()
    {
        QFETCH(int, gap);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.link.setUnitnumber(0);
        lightAllDigits(app, true);
        QList<int> blinks;
        QList<int> commandTimes;
        bool shown = true;
        for (int time = 0; time <= 5000; ++time) {
            if (time > 0)
                app.pass(1ms);
            if (time == 0 || time == gap)
                app.delegate.tareButton->click();
            if (shown == app.delegate.digThree->isHidden())
                blinks.append(time);
            shown = !app.delegate.digThree->isHidden();
            while (commandTimes.size() < static_cast<qsizetype>(app.commands().size()))
                commandTimes.append(time);
        }
        QTEST(blinks, "blinks");
        QTEST(commandTimes, "commandTimes");
        QVERIFY(app.timers().empty());
    }

    void everyPollUntilTheReleaseAsksForTheTare()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.tareButton->click();
        app.pass(1999ms);
        const std::vector<int> during = app.polls();
        QCOMPARE(during.size(), std::size_t{4});
        for (const int command : during)
            QVERIFY((command & tareReleasedBit) == 0);
        app.pass(1000ms);
        QVERIFY((app.polls().back() & tareReleasedBit) != 0);
    }

    void unitChangeWhileATareIsPending()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.tareButton->click();
        app.pass(500ms);
        app.delegate.rg5->click();
        QCOMPARE(app.commands().back(), 0x7D); // grams, the tare still asked for
        app.pass(1500ms);
        QCOMPARE(app.commands().back(), 0x7F);
    }

    void tareWhileTheScaleIsOff()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read({0x00, 0x00, 0x00});
        QVERIFY(!app.link.currentStatue());
        app.forgetTraffic();
        app.delegate.tareButton->click();
        app.pass(2000ms);
        QCOMPARE(app.commands().size(), std::size_t{2});
        QVERIFY(!app.link.currentStatue());
    }

    void unpluggedWhileATareIsPending()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.tareButton->click();
        app.unplug();
        app.forgetTraffic();
        app.pass(3000ms);
        QCOMPARE(app.logged(QStringLiteral("set_device_OFF_TARE")), 1);
        QCOMPARE(app.logged(QStringLiteral("io: Unable to read()")), 1);
        QVERIFY(app.timers().empty());
    }

    void theEndWhileATareIsPending()
    {
        {
            LaunchedApplication app(Scale::Present);
            app.delegate.tareButton->click();
        }
        LaunchedApplication next(Scale::Present);
        next.pass(3000ms);
        QVERIFY(next.commands().empty());
    }

    void menuItemsActAsTheButtonsDo()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.powerItem->trigger();
        app.delegate.tareItem->trigger();
        app.delegate.holdItem->trigger();
        QCOMPARE(app.commands(), (std::vector{0xDE, 0xDC, 0xD8}));
    }
};

TEST_CLASS(PowerTareHoldTest)
#include "PowerTareHoldTest.moc"
