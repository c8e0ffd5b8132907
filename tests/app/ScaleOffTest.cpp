// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QStatusBar>
#include <chrono>

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;
using Report = std::vector<std::uint8_t>;

const Report off{0x00, 0x00, 0x00};

const QString notice =
    QStringLiteral("The scale has switched itself off. Ctrl+P switches it on; tare is lost");

bool isSaid(const LaunchedApplication &app)
{
    const auto labels = app.delegate.window->statusBar()->findChildren<QLabel *>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel *label) { return label->toolTip().contains(notice); });
}

} // namespace

/// A scale that switches itself off says so in its reports, and the window tells what to do.
class ScaleOffTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void itself_data()
    {
        QTest::addColumn<Report>("weight");
        QTest::newRow("packed decimal") << Report{0x01, 0x34, 0x12};
        QTest::newRow("binary") << Report{0x08, 0x34, 0x12};
    }

    void itself()
    {
        QFETCH(Report, weight);
        LaunchedApplication app(Scale::Present);
        app.read(weight);
        QVERIFY(!isSaid(app));
        app.read(off);
        QVERIFY(isSaid(app));
        app.read(off);
        QVERIFY(isSaid(app));
        app.read(weight);
        QVERIFY(!isSaid(app));
    }

    void byTheButton()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.delegate.ON_Off_TareAction();
        app.read({0x01, 0x34, 0x12}); // the request was on its way
        app.read(off);
        QVERIFY(!isSaid(app));
        app.delegate.ON_Off_TareAction();
        app.read({0x01, 0x34, 0x12});
        app.read(off);
        QVERIFY(isSaid(app));
    }

    void aScaleThatWasNeverOn()
    {
        LaunchedApplication app(Scale::Present);
        app.read(off);
        QVERIFY(!isSaid(app));
    }

    void aReportThatIsMissingSaysNothing()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.read({});
        QVERIFY(!isSaid(app));
    }

    /// That tells its type, and nothing else.
    void aScaleThatIsPluggedInOff()
    {
        for (const std::uint8_t type : std::initializer_list<std::uint8_t>{
                 reportstatus::packedDecimalScale, reportstatus::binaryScale}) {
            LaunchedApplication app(Scale::Present);
            app.read({type, 0x00, 0x00});
            app.read(off);
            QVERIFY(!isSaid(app));
        }
    }

    /// A scale whose bus was reset tells its type anew.
    void theTypeInBetween()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.read({0x06, 0x00, 0x00});
        app.read(off);
        QVERIFY(isSaid(app));
        app.read({0x06, 0x00, 0x00});
        QVERIFY(isSaid(app));
    }

    /// The request of before is granted, and over.
    void itselfAfterTheButton()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.delegate.ON_Off_TareAction();
        app.read(off);
        app.read({0x01, 0x34, 0x12}); // by its own key
        app.read(off);
        QVERIFY(isSaid(app));
        app.read({0x01, 0x34, 0x12});
        app.delegate.ON_Off_TareAction();
        app.read({}); // the poll went out all the same
        app.read(off);
        QVERIFY(!isSaid(app));
    }

    void aroundASleep_data()
    {
        QTest::addColumn<bool>("isAwake");
        QTest::newRow("gone while asleep") << false;
        QTest::newRow("gone afterwards") << true;
    }

    /// The hub takes it away and brings it back.
    void aroundASleep()
    {
        QFETCH(bool, isAwake);
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.delegate.prepareForSleep();
        if (isAwake)
            app.delegate.wakeUp();
        app.unplug();
        if (!isAwake)
            app.delegate.wakeUp();
        app.plug();
        app.read(off);
        QVERIFY(isSaid(app));
    }

    void anotherDeviceThatGoesAroundASleepLeavesIt()
    {
        LaunchedApplication app(Scale::Present);
        app.plug(mouse);
        app.read({0x01, 0x34, 0x12});
        app.delegate.prepareForSleep();
        app.delegate.wakeUp();
        app.read(off);
        QVERIFY(isSaid(app));
        app.unplug(mouse);
        QVERIFY(isSaid(app));
        app.hidapi.reports.assign(5, off);
        app.pass(1s, 100ms);
        QCOMPARE(app.delegate.connectionStatuslbl->text(), QStringLiteral("Scale connected"));
        QVERIFY(isSaid(app));
    }

    void aScaleThatStaysAwayAfterASleep()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.read(off);
        app.delegate.prepareForSleep();
        app.delegate.wakeUp();
        app.unplug();
        app.pass(11s, 100ms);
        QVERIFY(!isSaid(app));
    }

    /// The cure stands in the window, not behind a button.
    void allOfItIsShown()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.window->show();
        app.read({0x01, 0x34, 0x12});
        app.read(off);
        app.turn();
        const auto labels = app.delegate.window->statusBar()->findChildren<QLabel *>();
        const auto shown = std::find_if(labels.begin(), labels.end(), [](const QLabel *label) {
            return label->text().contains(notice);
        });
        QVERIFY(shown != labels.end());
        const QFontMetrics metrics = (*shown)->fontMetrics();
        QVERIFY((*shown)->contentsRect().width() >= metrics.horizontalAdvance((*shown)->text()));
    }

    void unplugged()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.read(off);
        app.unplug();
        QVERIFY(!isSaid(app));
    }
};

TEST_CLASS(ScaleOffTest)
#include "ScaleOffTest.moc"
