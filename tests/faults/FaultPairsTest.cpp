// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/Faults.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

#include <QLabel>
#include <QStatusBar>

using namespace std::chrono_literals;

namespace {

/// What the program is about when the first fault comes.
enum class Situation { NoScale, JustAttached, Weighing };
/// When the second one follows.
enum class Spacing { AtOnce, OnePollLater, DuringAnExchange };

constexpr std::array situations{Situation::NoScale, Situation::JustAttached, Situation::Weighing};
constexpr std::array spacings{Spacing::AtOnce, Spacing::OnePollLater, Spacing::DuringAnExchange};
constexpr std::array situationNames{"no scale", "just attached", "weighing"};
constexpr std::array spacingNames{"at once", "a poll later", "during an exchange"};

/// The program looks again for what it could not find out, and every timer has found out whether
/// it is still wanted.
constexpr auto recovery = 1200ms;

QString noticeOf(const LaunchedApplication &app)
{
    return app.delegate.window->statusBar()->findChild<QLabel *>()->text();
}

QString panelOf(const LaunchedApplication &app)
{
    return app.delegate.imageBox->accessibleName();
}

void bring(FaultyWorld &world, Situation situation)
{
    if (situation == Situation::NoScale)
        return;
    world.plug();
    world.app.turn();
    if (situation == Situation::Weighing)
        pass(3 * interval);
}

void strike(FaultyWorld &world, const Fault &first, const Fault &second, Spacing spacing)
{
    first.begin(world);
    switch (spacing) {
    case Spacing::AtOnce: second.begin(world); break;
    case Spacing::OnePollLater:
        pass(interval);
        second.begin(world);
        break;
    case Spacing::DuringAnExchange:
        world.duringNextExchange([&] { second.begin(world); });
        pass(interval);
        // Without a connection there is no exchange to come into.
        if (world.awaitsExchange()) {
            world.duringNextExchange({});
            second.begin(world);
        }
        break;
    }
    pass(2 * interval);
}

void recover(FaultyWorld &world, const Fault &first, const Fault &second)
{
    second.end(world);
    first.end(world);
    world.app.turn();
    if (first.cure == Fault::Cure::Replug || second.cure == Fault::Cure::Replug) {
        world.unplug();
        pass(recovery);
        world.plug();
        world.app.turn();
        // Nonsense may have chosen another unit, as the scale's own reports do.
        world.app.delegate.rg5->click();
    } else if (!world.isPlugged()) {
        world.plug();
    }
    pass(recovery);
}

/// Empty if all is well.
QString wrongReading(FaultyWorld &world)
{
    LaunchedApplication &app = world.app;
    app.forgetTraffic();
    pass(5 * interval);
    const QStringList found{
        app.delegate.connectionStatuslbl->text(),
        app.delegate.connectionStatuslbl->toolTip(),
        panelOf(app),
        app.delegate.lbLBL->text(),
        app.delegate.digZero->imageName() + app.delegate.digOne->imageName() +
            app.delegate.digTwo->imageName() + app.delegate.digThree->imageName(),
        QStringLiteral("%1 timers, %2 polls, %3 failures, %4 open handles, %5 misuses")
            .arg(app.timers().size())
            .arg(app.polls().size())
            .arg(app.log.lines().filter(QStringLiteral("Unable")).size())
            .arg(app.hidapi.openHandles)
            .arg(app.hidapi.misuses)};
    const QStringList wanted{
        "Scale connected",      "",
        "1234 grams",           "1.234",
        "1.bmp2.bmp3.bmp4.bmp", "1 timers, 5 polls, 0 failures, 1 open handles, 0 misuses"};
    return found == wanted ? QString() : found.join(QStringLiteral(" | "));
}

/// The next change is written, with all that was changed before, and trouble is no longer told.
QString wrongSettings(FaultyWorld &world)
{
    LaunchedApplication &app = world.app;
    app.delegate.checkUPS->click();
    QStringList wanted{"100"};
    if (app.delegate.checkUPS->isChecked())
        wanted.append("500");
    const QStringList found = storedsettings::options();
    if (found != wanted)
        return QStringLiteral("saved: ") + found.join(u' ');
    return noticeOf(app);
}

} // namespace

/// Every fault, and every one after every other, in every situation: whatever comes, the program
/// weighs again when it is over.
class FaultPairsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::store("[defaultValue]\n100=selected\n"); }

    void whatTheUserSees_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t index = 0; index < faults().size(); ++index)
            QTest::newRow(faults()[index].name) << static_cast<int>(index);
    }

    void whatTheUserSees()
    {
        QFETCH(int, index);
        const Fault &fault = faults()[static_cast<std::size_t>(index)];
        FaultyWorld world;
        bring(world, Situation::Weighing);
        world.app.delegate.rg5->click();
        pass(2 * interval);
        fault.begin(world);
        pass(3 * interval);
        const Sight &sight = fault.sight;
        QCOMPARE(world.app.delegate.connectionStatuslbl->text(), QString(sight.status));
        if (sight.panel != nullptr)
            QCOMPARE(panelOf(world.app), QString(sight.panel));
        if (sight.exported != nullptr)
            QCOMPARE(world.app.delegate.lbLBL->text(), QString(sight.exported));
        QVERIFY2(noticeOf(world.app).contains(QLatin1String(sight.notice)),
                 qPrintable(noticeOf(world.app)));
        QCOMPARE(noticeOf(world.app).isEmpty(), *sight.notice == '\0');
        fault.end(world);
    }

    void everyPair_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t index = 0; index < faults().size(); ++index)
            QTest::newRow(faults()[index].name) << static_cast<int>(index);
    }

    /// All that can follow one fault, in one life of the program: what one case leaves behind is
    /// there in the next.
    void everyPair()
    {
        QFETCH(int, index);
        const Fault &first = faults()[static_cast<std::size_t>(index)];
        FaultyWorld world;
        world.app.delegate.window->hide();
        bring(world, Situation::Weighing);
        world.app.delegate.rg5->click();
        for (const Fault &second : faults()) {
            for (const Situation situation : situations) {
                for (const Spacing spacing : spacings) {
                    if (m_cases++ % sweepStep(11) != 0)
                        continue;
                    world.unplug();
                    pass(recovery);
                    bring(world, situation);
                    strike(world, first, second, spacing);
                    recover(world, first, second);
                    ++m_played;
                    const QString wrong = wrongReading(world) + wrongSettings(world);
                    QVERIFY2(wrong.isEmpty(),
                             qPrintable(QStringLiteral("%1, %2, %3: %4")
                                            .arg(QLatin1String(second.name),
                                                 situationNames.at(std::size_t(situation)),
                                                 spacingNames.at(std::size_t(spacing)), wrong)));
                }
            }
        }
    }

    void cleanupTestCase()
    {
        qInfo("%zu faults; %d of %d pairs, situations and spacings played", faults().size(),
              m_played, m_cases);
    }

private:
    int m_cases = 0;
    int m_played = 0;
};

TEST_CLASS(FaultPairsTest)
#include "FaultPairsTest.moc"
