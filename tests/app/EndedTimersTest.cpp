// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/RepeatingTimer.h"
#include "tests/support/FakeClock.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;

/// Stopped ones too.
qsizetype allTimers(const LaunchedApplication &app)
{
    return app.delegate.findChildren<RepeatingTimer *>().size();
}

/// What is to be deleted is deleted by an event loop.
void clearAway()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

/// Timers that stop themselves are many in a long day, and leave nothing behind.
class EndedTimersTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void pollTimers()
    {
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(allTimers(app), 0);
        for (int times = 0; times < 3; ++times) {
            app.plug();
            QCOMPARE(allTimers(app), 1);
            app.unplug();
            app.pass(400ms);
            clearAway();
            QCOMPARE(allTimers(app), 0);
        }
    }

    void blinkTimers()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        const qsizetype before = allTimers(app);
        app.delegate.TareAction();
        QCOMPARE(allTimers(app), before + 1);
        app.pass(2000ms);
        clearAway();
        QCOMPARE(allTimers(app), before);
    }
};

TEST_CLASS(EndedTimersTest)
#include "EndedTimersTest.moc"
