// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/ClassFaults.h"
#include "tests/support/TestClasses.h"

#include <QLabel>
#include <QStatusBar>

using namespace std::chrono_literals;

namespace {

/// What cannot be opened or read is tried again within two seconds, and of two faults each may take
/// one try.
constexpr auto recoveryOfClass = 5s;

QString statusLine(const ClassFaultyWorld &world)
{
    return world.app.delegate.window->statusBar()->findChild<QLabel *>()->text();
}

QString panelWords(const ClassFaultyWorld &world)
{
    return world.app.delegate.imageBox->readingText();
}

QStringList seen(ClassFaultyWorld &world)
{
    return {world.app.delegate.connectionStatuslbl->text(),
            world.app.delegate.connectionStatuslbl->toolTip(),
            statusLine(world),
            panelWords(world),
            world.app.delegate.lbLBL->text(),
            QStringLiteral("%1 timers, %2 open")
                .arg(world.app.timers().size())
                .arg(world.scale().openConnections)};
}

const QStringList weighing{"Scale connected", "", "", "1234 grams", "1.234", "1 timers, 1 open"};

void weigh(ClassFaultyWorld &world)
{
    world.plug();
    world.pass(1s);
}

} // namespace

/// Every fault of a scale of the class, and every one after every other: the program says what it
/// is and what helps, does not wear itself out, and weighs again when it is over.
class ClassFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void whatIsSeen_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t index = 0; index < classFaults().size(); ++index)
            QTest::newRow(classFaults()[index].name) << static_cast<int>(index);
    }

    void whatIsSeen()
    {
        QFETCH(int, index);
        const ClassFault &fault = classFaults()[static_cast<std::size_t>(index)];
        ClassFaultyWorld world;
        weigh(world);
        QCOMPARE(seen(world), weighing);
        fault.begin(world);
        world.pass(recoveryOfClass);
        const Sight &sight = fault.sight;
        QCOMPARE(world.app.delegate.connectionStatuslbl->text(), QString(sight.status));
        QCOMPARE(panelWords(world), QString(sight.panel));
        QCOMPARE(world.app.delegate.lbLBL->text(), QString(sight.exported));
        QVERIFY2(statusLine(world).contains(QLatin1String(sight.notice)),
                 qPrintable(statusLine(world)));
        QCOMPARE(statusLine(world).isEmpty(), *sight.notice == '\0');
        fault.end(world);
        world.pass(recoveryOfClass);
        QCOMPARE(seen(world), weighing);
    }

    void everyPairOfThem()
    {
        for (const ClassFault &first : classFaults()) {
            ClassFaultyWorld world;
            world.app.delegate.window->hide();
            weigh(world);
            for (const ClassFault &second : classFaults()) {
                for (const auto between : {0ms, 400ms}) {
                    first.begin(world);
                    world.pass(between);
                    second.begin(world);
                    world.pass(800ms);
                    second.end(world);
                    first.end(world);
                    if (!world.isPlugged())
                        world.plug();
                    world.pass(recoveryOfClass);
                    QVERIFY2(
                        seen(world) == weighing,
                        qPrintable(QStringLiteral("%1, then %2: %3")
                                       .arg(QLatin1String(first.name), QLatin1String(second.name),
                                            seen(world).join(QStringLiteral(" | ")))));
                }
            }
        }
    }

    /// A scale that fails for a minute is neither read nor opened more often than said.
    void failuresForAMinute()
    {
        ClassFaultyWorld world;
        weigh(world);
        const int tries = world.scale().tries;
        const int reads = world.scale().reads;
        world.scale().readFailure = -1;
        world.pass(60s);
        QVERIFY(world.scale().reads - reads <= 32);
        QVERIFY(world.scale().tries - tries >= 28);
        QVERIFY(world.scale().tries - tries <= 31);
        world.scale().openFails = true;
        const int before = world.scale().tries;
        world.pass(60s);
        QVERIFY(world.scale().tries - before >= 28);
        QVERIFY(world.scale().tries - before <= 31);
    }

    /// One that cannot be used does not keep another one from being used, and is told.
    void theSecondOfTwoWorks_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("not permitted") << EACCES;
        QTest::newRow("out of order") << 0;
    }

    void theSecondOfTwoWorks()
    {
        QFETCH(int, error);
        ClassFaultyWorld world;
        world.scale().readingError = error;
        world.scale().openFails = true;
        world.plug();
        world.pass(1s);
        QVERIFY(!world.app.delegate.connectionStatuslbl->toolTip().isEmpty());
        fakeudev::plug(ClassFaultyWorld::otherDevice);
        world.pass(1s);
        QCOMPARE(panelWords(world), QStringLiteral("1234 grams"));
        QVERIFY(world.app.delegate.window->windowTitle().contains(QStringLiteral("Other Scale")));
        QCOMPARE(statusLine(world), QStringLiteral("Another scale is there and cannot be used"));
        QVERIFY(world.app.delegate.connectionStatuslbl->toolTip().contains(
            QStringLiteral("the scale at /dev/hidraw5"), Qt::CaseInsensitive));
        world.unplug();
        world.pass(1s);
        QCOMPARE(statusLine(world), QString());
        QCOMPARE(panelWords(world), QStringLiteral("1234 grams"));
    }

    /// Both are there from the start, and the first one may not be opened.
    void permissionOfThePassedOver()
    {
        ClassFaultyWorld world;
        world.scale().readingError = EACCES;
        world.plug();
        fakeudev::place(ClassFaultyWorld::otherDevice);
        world.pass(1s);
        QCOMPARE(statusLine(world), QStringLiteral("Another scale is there and cannot be used"));
        QCOMPARE(panelWords(world), QStringLiteral("1234 grams"));
        world.scale().readingError = 0;
        world.announceChange();
        world.pass(1s);
        QCOMPARE(statusLine(world), QString());
        QCOMPARE(world.other().openConnections, 1);
        QCOMPARE(world.scale().openConnections, 0);
    }
};

TEST_CLASS(ClassFaultsTest)
#include "ClassFaultsTest.moc"
