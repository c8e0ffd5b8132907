// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/Browser.h"
#include "tests/rules/AutofillRules.h"
#include "tests/support/FakeClock.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPointer>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;

const QString tick = QStringLiteral("readData");
const QString connectedText = QStringLiteral("Scale connected");
const QString notConnectedText = QStringLiteral("Scale not connected");

const fakeudev::Device stranger{"hidraw8", scaleVendorId, 0x1234};

QPointer<QMessageBox> shownAlert()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *box = qobject_cast<QMessageBox *>(widget))
            return box;
    }
    return {};
}

/// A browser without a window, which writes down what it is sent.
class RecordingBridge : public BrowserBridge
{
public:
    std::unique_ptr<BrowserApplication> application() override
    {
        return std::make_unique<Application>(*this);
    }

    void forgetWaiting() override { ++forgotten; }
    void stopFilling(const QString &carrier) override { stopped.append(carrier); }

    std::vector<std::string> scripts;
    int forgotten = 0;
    QStringList stopped; ///< carriers

private:
    class Application : public BrowserApplication
    {
    public:
        explicit Application(RecordingBridge &bridge)
            : m_recorder(bridge)
        {
        }

        std::vector<std::shared_ptr<const BrowserWindow>> windows() const override { return {}; }

        std::optional<QString> doJavaScript(const QString &text,
                                            const std::shared_ptr<const BrowserTab> &) override
        {
            m_recorder.scripts.push_back(text.toStdString());
            return std::nullopt;
        }

    private:
        RecordingBridge &m_recorder;
    };
};

const rules::WeightTexts kilogram{.LB = "2", .OZ = "4", .EXPORT = "2.205", .BASIC = "1000"};

/// What one tick sends to a page without any of the fields.
std::vector<std::string> scriptsOf(const std::vector<int> &carriers)
{
    const rules::CarrierFlags flags{.SendtoUSPS = true, .SendtoUPS = true, .SendtoFedex = true};
    std::vector<std::string> all;
    for (const int carrier : carriers) {
        const auto outcome = rules::autofill(carrier, kilogram, flags, rules::Page());
        all.insert(all.end(), outcome.scripts.begin(), outcome.scripts.end());
    }
    return all;
}

} // namespace

/// Status, rhythm of the readings, alert. The clock stands still but for what a test lets pass.
class ConnectionTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void statusFollowsTheScale()
    {
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(app.delegate.connectionStatuslbl->text(), notConnectedText);
        app.plug();
        QCOMPARE(app.delegate.connectionStatuslbl->text(), connectedText);
        QVERIFY(app.delegate.isDeviceConnected);
        QVERIFY(app.delegate.isDeviceAlive());
        app.unplug();
        QCOMPARE(app.delegate.connectionStatuslbl->text(), notConnectedText);
        QVERIFY(!app.delegate.isDeviceConnected);
        QVERIFY(!app.delegate.isDeviceAlive());
    }

    void everyStatusHidesTheUnitCaption()
    {
        LaunchedApplication app(Scale::Absent);
        for (const bool connected : {true, true, false, false, true}) {
            app.delegate.unitLBl->setHidden(false);
            app.delegate.setStatusString(connected);
            QVERIFY(app.delegate.unitLBl->isHidden());
        }
    }

    void firstReadingComesAfterTheFirstInterval()
    {
        LaunchedApplication app(Scale::Present);
        app.pass(399ms);
        QCOMPARE(app.logged(tick), 0);
        QVERIFY(app.polls().empty());
        app.pass(1ms);
        QCOMPARE(app.logged(tick), 1);
        QCOMPARE(app.polls().size(), std::size_t{1});
    }

    void readingsPerTwoSeconds_data()
    {
        QTest::addColumn<int>("attaches");
        QTest::addColumn<int>("readings");
        QTest::newRow("one attach") << 1 << 5;
        QTest::newRow("two attaches without a removal") << 2 << 10;
        QTest::newRow("three") << 3 << 15;
    }

    void readingsPerTwoSeconds()
    {
        QFETCH(int, attaches);
        QFETCH(int, readings);
        LaunchedApplication app(Scale::Present);
        for (int more = 1; more < attaches; ++more) {
            fakeudev::announce(scaleDevice, "add");
            app.turn();
        }
        QCOMPARE(app.timers().size(), static_cast<std::size_t>(attaches));
        app.pass(2000ms);
        QCOMPARE(app.logged(tick), readings);
        QCOMPARE(app.polls().size(), static_cast<std::size_t>(readings));
    }

    void slowReadingsKeepTheSchedule_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<QList<qint64>>("begins");
        QTest::newRow("at once") << 0 << QList<qint64>{400, 800, 1200, 1600, 2000};
        QTest::newRow("a quarter of the interval")
            << 100 << QList<qint64>{400, 800, 1200, 1600, 2000};
        QTest::newRow("nearly the interval") << 399 << QList<qint64>{400, 800, 1200, 1600, 2000};
        QTest::newRow("the interval") << 400 << QList<qint64>{400, 1200, 2000};
        QTest::newRow("longer") << 500 << QList<qint64>{400, 1200, 2000};
        QTest::newRow("two intervals and more") << 1000 << QList<qint64>{400, 1600};
    }

    /// In milliseconds since the attach. The window waits for each reading.
    void slowReadingsKeepTheSchedule()
    {
        QFETCH(int, length);
        LaunchedApplication app(Scale::Present);
        QElapsedTimer sinceAttach;
        sinceAttach.start();
        QList<qint64> begins;
        app.hidapi.duringSend = [&] {
            begins.append(sinceAttach.elapsed());
            fakeclock::advance(std::chrono::milliseconds(length));
        };
        while (sinceAttach.elapsed() < 2000)
            app.pass(1ms);
        QTEST(begins, "begins");
    }

    void everyTimerStopsItselfAfterTheRemoval_data()
    {
        QTest::addColumn<int>("attaches");
        QTest::newRow("one timer") << 1;
        QTest::newRow("two timers") << 2;
    }

    void everyTimerStopsItselfAfterTheRemoval()
    {
        QFETCH(int, attaches);
        LaunchedApplication app(Scale::Present);
        if (attaches == 2)
            fakeudev::announce(scaleDevice, "add");
        app.pass(1000ms);
        app.unplug();
        app.forgetTraffic();
        app.pass(2000ms);
        QCOMPARE(app.logged(tick), attaches);
        QVERIFY(app.polls().empty());
        QVERIFY(app.timers().empty());
    }

    void theTimerStandsUntilItsNextTick()
    {
        LaunchedApplication app(Scale::Present);
        app.unplug();
        QCOMPARE(app.timers().size(), std::size_t{1});
    }

    void pausedTicksDoNothingAndTheTimerSurvives()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.pausereadtimer = true;
        app.forgetTraffic();
        app.pass(2000ms);
        QVERIFY(app.log.lines().isEmpty());
        QVERIFY(app.hidapi.sent.empty());
        app.delegate.pausereadtimer = false;
        app.pass(400ms);
        QCOMPARE(app.logged(tick), 1);
        QCOMPARE(app.polls().size(), std::size_t{1});
    }

    void pausedTicksDoNotSeeTheRemovalEither()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.pausereadtimer = true;
        app.unplug();
        app.pass(2000ms);
        QCOMPARE(app.logged(tick), 0);
        QCOMPARE(app.timers().size(), std::size_t{1});
        app.delegate.pausereadtimer = false;
        app.pass(400ms);
        QCOMPARE(app.logged(tick), 1);
        QVERIFY(app.timers().empty());
    }

    void replug_data()
    {
        QTest::addColumn<int>("gap");
        QTest::addColumn<std::size_t>("timersAfterwards");
        QTest::newRow("at once: the old timer goes on beside the new") << 0 << std::size_t{2};
        QTest::newRow("just before the tick") << 399 << std::size_t{2};
        QTest::newRow("after the tick") << 400 << std::size_t{1};
        QTest::newRow("long after") << 5000 << std::size_t{1};
    }

    void replug()
    {
        QFETCH(int, gap);
        QFETCH(std::size_t, timersAfterwards);
        LaunchedApplication app(Scale::Present);
        app.unplug();
        app.pass(std::chrono::milliseconds(gap));
        app.plug();
        app.forgetTraffic();
        app.pass(400ms);
        QCOMPARE(app.timers().size(), timersAfterwards);
        QCOMPARE(app.polls().size(), timersAfterwards);
    }

    void anyRemovalEndsTheReadings()
    {
        LaunchedApplication app(Scale::Present);
        app.plug(mouse);
        app.read({0x01, 0x34, 0x12});
        QVERIFY(!app.delegate.digZero->isHidden());
        app.unplug(mouse);
        QCOMPARE(app.delegate.connectionStatuslbl->text(), notConnectedText);
        QVERIFY(app.delegate.digZero->isHidden());
        QCOMPARE(app.delegate.lbLBL->text(), QString());
        app.forgetTraffic();
        app.pass(2000ms);
        QVERIFY(app.polls().empty());
    }

    void deviceWithoutAHandleIsPolledInVain()
    {
        LaunchedApplication app(Scale::Absent);
        app.plug(stranger);
        QCOMPARE(app.delegate.connectionStatuslbl->text(), connectedText);
        app.pass(800ms);
        QCOMPARE(app.logged(tick), 2);
        QCOMPARE(app.logged(QStringLiteral("io: Unable to read command()")), 2);
        app.unplug(stranger);
        QCOMPARE(app.delegate.connectionStatuslbl->text(), connectedText);
        app.pass(400ms);
        QCOMPARE(app.logged(tick), 3);
    }

    void aFailedReadDoesNotEndTheReadings()
    {
        LaunchedApplication app(Scale::Present);
        app.pass(800ms);
        QCOMPARE(app.logged(QStringLiteral("io: Unable to read()")), 2);
        app.hidapi.reports.push_back({0x01, 0x34, 0x12});
        app.pass(400ms);
        QCOMPARE(app.link.sWebDataBasic(), QStringLiteral("1234"));
    }

    void aBusyPageGetsNothingLaterOfAScaleThatIsGone()
    {
        RecordingBridge browser;
        LaunchedApplication app(Scale::Present, {}, {}, &browser);
        const int before = browser.forgotten;
        app.unplug();
        QCOMPARE(browser.forgotten, before + 1);
        QVERIFY(browser.stopped.isEmpty());
    }

    void aCarrierThatIsSwitchedOffIsNotServedLater()
    {
        RecordingBridge browser;
        LaunchedApplication app(Scale::Present, {}, {}, &browser);
        const QStringList carriers{"USPS", "UPS", "FedEx"};
        const std::array boxes{app.delegate.checkUSPS, app.delegate.checkUPS,
                               app.delegate.checkFedex};
        const std::array items{&PostalScaleAppDelegate::sendToUSPSClicked,
                               &PostalScaleAppDelegate::sendToUPSClicked,
                               &PostalScaleAppDelegate::sendToFEDXClicked};
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            const QStringList its{carriers.at(static_cast<qsizetype>(i))};
            boxes.at(i)->click();
            QVERIFY(browser.stopped.isEmpty());
            boxes.at(i)->click();
            QCOMPARE(std::exchange(browser.stopped, {}), its);
            (app.delegate.*items.at(i))();
            QVERIFY(browser.stopped.isEmpty());
            (app.delegate.*items.at(i))();
            QCOMPARE(std::exchange(browser.stopped, {}), its);
        }
    }

    void carriersOfATick_data()
    {
        QTest::addColumn<int>("usps");
        QTest::addColumn<int>("ups");
        QTest::addColumn<int>("fedex");
        QTest::addColumn<std::vector<int>>("carriers");
        QTest::newRow("none") << 0 << 0 << 0 << std::vector<int>{};
        QTest::newRow("all, in this order") << 1 << 1 << 1 << std::vector<int>{0, 1, 2};
        QTest::newRow("the first and the last") << 1 << 0 << 1 << std::vector<int>{0, 2};
        QTest::newRow("only 1 is on") << 2 << 2 << 2 << std::vector<int>{};
        QTest::newRow("each on its own") << 2 << 1 << 255 << std::vector<int>{1};
    }

    void carriersOfATick()
    {
        QFETCH(int, usps);
        QFETCH(int, ups);
        QFETCH(int, fedex);
        QFETCH(std::vector<int>, carriers);
        RecordingBridge browser;
        LaunchedApplication app(Scale::Present, {}, {}, &browser);
        QAbstractButton *decimalPounds = app.delegate.radiogroup->buttons().at(3);
        decimalPounds->setEnabled(true);
        decimalPounds->click();
        app.delegate.SendtoUSPS = static_cast<std::uint8_t>(usps);
        app.delegate.SendtoUPS = static_cast<std::uint8_t>(ups);
        app.delegate.SendtoFedex = static_cast<std::uint8_t>(fedex);
        app.hidapi.reports.push_back({0x07, 0x34, 0x12}); // 1234 g
        app.pass(400ms);
        browser.scripts.clear();
        // The pages get this very reading, not the one before.
        app.hidapi.reports.push_back({0x07, 0x00, 0x10}); // 1000 g
        app.pass(400ms);
        QCOMPARE(browser.scripts, scriptsOf(carriers));
    }

    /// The status keeps to its two texts; the notice line and the tooltip say more.
    void noPermissionIsExplained()
    {
        LaunchedApplication app(Scale::Absent);
        app.hidapi.openFails = true;
        app.plug();
        QCOMPARE(app.delegate.connectionStatuslbl->text(), connectedText);
        QVERIFY(app.delegate.connectionStatuslbl->toolTip().contains(QLatin1String("hidraw0")));
        app.hidapi.openFails = false;
        app.unplug();
        app.plug();
        QCOMPARE(app.delegate.connectionStatuslbl->toolTip(), QString());
    }

    void alertOverTheWindow()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.showAlert();
        const auto alert = shownAlert();
        QVERIFY(alert);
        QCOMPARE(alert->text(), QStringLiteral("Scale Alert"));
        QCOMPARE(alert->informativeText(), QStringLiteral("Scale disconnected"));
        QCOMPARE(alert->icon(), QMessageBox::Warning);
        QCOMPARE(alert->windowModality(), Qt::WindowModal);
        QCOMPARE(alert->parentWidget(), app.delegate.window.get());
        QCOMPARE(alert->buttons().size(), 1);
        QCOMPARE(alert->buttons().front()->text(), QStringLiteral("OK"));
        alert->buttons().front()->click();
        app.turn();
        QCOMPARE(app.logged(QStringLiteral("First Button")), 1);
        QVERIFY(!alert);
    }

    void endOfTheAlert_data()
    {
        QTest::addColumn<int>("returnCode");
        QTest::addColumn<int>("lines");
        QTest::newRow("first button") << 1000 << 1;
        QTest::newRow("second button") << 1001 << 0;
        QTest::newRow("stopped") << -1000 << 0;
        QTest::newRow("none") << 0 << 0;
    }

    void endOfTheAlert()
    {
        QFETCH(int, returnCode);
        LaunchedApplication app(Scale::Absent);
        app.forgetTraffic();
        app.delegate.someMethodDidEnd(returnCode);
        QTEST(static_cast<int>(app.logged(QStringLiteral("First Button"))), "lines");
    }

    void anUnpluggedScaleBringsNoAlert()
    {
        LaunchedApplication app(Scale::Present);
        app.unplug();
        app.pass(400ms);
        QVERIFY(!shownAlert());
    }
};

TEST_CLASS(ConnectionTest)
#include "ConnectionTest.moc"
