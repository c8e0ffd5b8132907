// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QTimer>

namespace {

using Scale = LaunchedApplication::Scale;

constexpr int endedByItself = 0;
constexpr int stillRunning = 99;

/// Runs the program until it ends, after @p ending was asked for in the first turn of its loop.
template <typename Ending> int run(LaunchedApplication &app, Ending ending)
{
    constexpr int patience = 100;
    int turns = 0;
    QTimer turning;
    QObject::connect(&turning, &QTimer::timeout, &turning, [&] {
        if (++turns == 1)
            ending();
        if (turns == patience)
            QCoreApplication::exit(stillRunning);
    });
    turning.start(0);
    return app.application.exec();
}

const std::array<std::uint8_t, 9> powerOff{0x00, 0xA0, 0xFF, 0xA0};

} // namespace

/// The window's end is the program's, and a scale that is on is switched off first.
class ClosingTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void closing_data()
    {
        QTest::addColumn<bool>("connected");
        QTest::addColumn<bool>("on");
        QTest::addColumn<int>("reports");
        QTest::newRow("connected and on") << true << true << 1;
        QTest::newRow("connected and off") << true << false << 0;
        QTest::newRow("not connected") << false << false << 0;
        QTest::newRow("not connected, last seen on") << false << true << 0;
    }

    void closing()
    {
        QFETCH(bool, connected);
        QFETCH(bool, on);
        QFETCH(int, reports);
        LaunchedApplication app(connected ? Scale::Present : Scale::Absent);
        app.link.setCurrentStatue(on);
        QCOMPARE(run(app, [&] { app.delegate.window->close(); }), endedByItself);
        QCOMPARE(app.hidapi.sent.size(), static_cast<std::size_t>(reports));
        if (reports > 0)
            QCOMPARE(app.hidapi.sent.back(), powerOff);
        QCOMPARE(app.logged(QStringLiteral("set_device_OFF")), reports);
    }

    void readingOnAScaleThatIsOnIsFollowedByItsEnd()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.forgetTraffic();
        QCOMPARE(run(app, [&] { app.delegate.window->close(); }), endedByItself);
        QCOMPARE(app.commands().size(), std::size_t{1});
        QVERIFY((app.commands().front() & 0x01) != 0);
    }

    void unpluggedScaleIsNotSpokenTo()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.unplug();
        app.forgetTraffic();
        QVERIFY(app.link.currentStatue());
        QCOMPARE(run(app, [&] { app.delegate.window->close(); }), endedByItself);
        QVERIFY(app.hidapi.sent.empty());
    }

    void scaleThatCouldNotBeOpenedDoesNoHarm()
    {
        LaunchedApplication app(Scale::Absent);
        app.hidapi.openFails = true;
        app.plug();
        app.link.setCurrentStatue(true);
        QCOMPARE(run(app, [&] { app.delegate.window->close(); }), endedByItself);
        QVERIFY(app.log.lines().contains(QStringLiteral("io: Unable to read()")));
    }

    void quitItemClosesTheWindow()
    {
        LaunchedApplication app(Scale::Present);
        app.link.setCurrentStatue(true);
        QCOMPARE(run(app, [&] { app.delegate.quitItem->trigger(); }), endedByItself);
        QCOMPARE(app.hidapi.sent.size(), std::size_t{1});
    }

    void hidingIsNoEnd()
    {
        LaunchedApplication app(Scale::Present);
        app.link.setCurrentStatue(true);
        QCOMPARE(run(app, [&] { app.delegate.window->showMinimized(); }), stillRunning);
        QVERIFY(app.hidapi.sent.empty());
    }

    void theAnswerIsAlwaysYes()
    {
        LaunchedApplication app(Scale::Present);
        for (const bool on : {true, false}) {
            app.link.setCurrentStatue(on);
            QVERIFY(app.delegate.applicationShouldTerminateAfterLastWindowClosed());
            QVERIFY(!app.link.currentStatue());
        }
    }
};

TEST_CLASS(ClosingTest)
#include "ClosingTest.moc"
