// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QClipboard>
#include <QMenu>
#include <QSignalSpy>

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;
using Report = std::vector<std::uint8_t>;

// status, low byte, high byte
const Report empty{0x01, 0x00, 0x00};
const Report parcel1234{0x01, 0x34, 0x12};
const Report grams567{0x01, 0x67, 0x05};
const Report ounces1234{0x02, 0x34, 0x12};
const Report minus1234{0x81, 0x34, 0x12};
const Report overload{0x04, 0x00, 0x00};
const Report off{0x00, 0x00, 0x00};

/// Counts what is put into pages.
class CountingBrowser : public BrowserBridge
{
public:
    std::unique_ptr<BrowserApplication> application() override
    {
        return std::make_unique<Application>(*this);
    }

    /// All texts since the last call.
    QStringList take() { return std::exchange(m_scripts, {}); }

    std::function<void()> duringScript; ///< may be empty
    bool isSilent = false;              ///< a page that does not answer is sent nothing

private:
    class Application : public BrowserApplication
    {
    public:
        explicit Application(CountingBrowser &browser)
            : m_counter(browser)
        {
        }

        std::vector<std::shared_ptr<const BrowserWindow>> windows() const override { return {}; }

        std::optional<QString> doJavaScript(const QString &text,
                                            const std::shared_ptr<const BrowserTab> &) override
        {
            m_counter.m_scripts.append(text);
            if (m_counter.duringScript)
                m_counter.duringScript();
            return std::nullopt;
        }

        bool hasSent() const override { return !m_counter.isSilent; }

    private:
        CountingBrowser &m_counter;
    };

    QStringList m_scripts;
};

const QString nothing = QStringLiteral("nothing");

} // namespace

/// "Settled weights only" in the whole program.
class SettledLeavingTest : public QObject
{
    Q_OBJECT

private:
    CountingBrowser m_browser;
    std::unique_ptr<LaunchedApplication> m_app;

    PostalScaleAppDelegate &window() { return m_app->delegate; }

    void start(const QByteArray &settings = {})
    {
        storedsettings::forget();
        if (!settings.isEmpty())
            storedsettings::store(settings);
        m_app = std::make_unique<LaunchedApplication>(Scale::Present, QByteArray(),
                                                      std::function<void()>(), &m_browser);
        m_app->stopPolling();
        m_browser.take();
        forgetClipboard();
    }

    void chooseUnit(QRadioButton *cell)
    {
        cell->setEnabled(true);
        cell->click();
    }

    static void forgetClipboard() { QGuiApplication::clipboard()->setText(nothing); }

    /// What the clipboard got at each of the readings: the text, or a point.
    QString clipboardAt(const std::vector<Report> &reports)
    {
        QStringList got;
        for (const Report &report : reports) {
            forgetClipboard();
            read(report);
            const QString text = QGuiApplication::clipboard()->text();
            got.append(text == nothing ? QStringLiteral(".") : text);
        }
        return got.join(QLatin1Char(' '));
    }

    /// An empty report fails.
    void read(const Report &report)
    {
        m_app->hidapi.readFails = report.empty();
        m_app->read(report);
        if (report.empty())
            m_app->hidapi.reports.clear();
        m_app->hidapi.readFails = false;
    }

    void readAll(const std::vector<Report> &reports)
    {
        for (const Report &report : reports)
            read(report);
    }

private slots:
    void cleanup()
    {
        m_browser.duringScript = {};
        m_app.reset();
    }

    void everyReadingLeavesWhileItIsOff()
    {
        start();
        window().checkClipboard->click();
        chooseUnit(window().rg5);
        QCOMPARE(clipboardAt({parcel1234, parcel1234, empty, {}, overload}),
                 QStringLiteral("1.234 1.234 0 0 0"));
    }

    void aParcelLeavesOnce_data()
    {
        QTest::addColumn<std::vector<Report>>("reports");
        QTest::addColumn<QString>("clipboard");
        const auto row = [](const char *name, const std::vector<Report> &reports,
                            const char *clipboard) {
            QTest::newRow(name) << reports << QString::fromLatin1(clipboard);
        };
        const Report failed;
        row("put on and lifted",
            {empty, parcel1234, parcel1234, parcel1234, parcel1234, empty, empty},
            ". . . 1.234 . . .");
        row("two parcels",
            {parcel1234, parcel1234, parcel1234, empty, grams567, grams567, grams567},
            ". . 1.234 . . . 0.567");
        row("more is put on", {grams567, grams567, grams567, parcel1234, parcel1234, parcel1234},
            ". . 0.567 . . 1.234");
        row("a failed read", {parcel1234, parcel1234, failed, parcel1234, parcel1234, parcel1234},
            ". . . . . 1.234");
        row("a failed read afterwards",
            {parcel1234, parcel1234, parcel1234, failed, parcel1234, parcel1234, parcel1234},
            ". . 1.234 . . . .");
        row("below zero", {minus1234, minus1234, minus1234}, ". . .");
        row("overload", {overload, overload, overload}, ". . .");
        row("off", {parcel1234, parcel1234, parcel1234, off, off, off}, ". . 1.234 . . .");
        // A report whose weight is cut off is none.
        row("short reports", {{0x01, 0x34}, {0x01, 0x34}, {0x01, 0x34}}, ". . .");
    }

    void aParcelLeavesOnce()
    {
        QFETCH(const std::vector<Report>, reports);
        start();
        window().checkClipboard->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        QTEST(clipboardAt(reports), "clipboard");
        // The label follows every reading.
        read(grams567);
        QCOMPARE(window().lbLBL->text(), QStringLiteral("0.567"));
    }

    /// On this desktop, which is none, the clipboard is never a window's own: so it counts as
    /// refused, and the rest goes its way.
    void whatIsCapturedLeavesWithoutTheClipboard()
    {
        start();
        window().checkUSPS->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg1);
        readAll({ounces1234, ounces1234});
        const QSignalSpy toFields(&window(), &PostalScaleAppDelegate::readingLeaves);
        QCOMPARE(window().captureReading(), CaptureOutcome::NotAllowed);
        QCOMPARE(m_browser.take(), QStringList());
        QCOMPARE(toFields.count(), 0);
        read(ounces1234);
        const QStringList fills = m_browser.take();
        QVERIFY(!fills.isEmpty());
        QCOMPARE(toFields.count(), 1);
        QCOMPARE(window().captureReading(), CaptureOutcome::ClipboardRefused);
        QCOMPARE(m_browser.take(), fills);
        QCOMPARE(toFields.count(), 2);
    }

    void anotherUnitLeavesAnew()
    {
        start();
        window().checkClipboard->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        QCOMPARE(clipboardAt({parcel1234, parcel1234, parcel1234}), QStringLiteral(". . 1.234"));
        chooseUnit(window().rg1);
        // The scale's own report, from the first one in the new unit on.
        QCOMPARE(clipboardAt({parcel1234, ounces1234, ounces1234, ounces1234, ounces1234}),
                 QStringLiteral(". . . 2.72 ."));
    }

    void holdAndItsEndLeaveNothing()
    {
        start();
        window().checkClipboard->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        QCOMPARE(clipboardAt({parcel1234, parcel1234, parcel1234}), QStringLiteral(". . 1.234"));
        window().holdAction();
        QCOMPARE(clipboardAt(std::vector(4, parcel1234)), QStringLiteral(". . . ."));
        window().holdAction();
        QCOMPARE(clipboardAt({empty, empty, empty}), QStringLiteral(". . ."));
    }

    /// They repeat what was, whatever is on the pan by now.
    void heldReadingsDoNotSettle()
    {
        start();
        window().checkClipboard->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        QCOMPARE(clipboardAt({parcel1234}), QStringLiteral("."));
        window().holdAction();
        QCOMPARE(clipboardAt(std::vector(4, parcel1234)), QStringLiteral(". . . ."));
        window().holdAction();
        QCOMPARE(clipboardAt(std::vector(4, parcel1234)), QStringLiteral(". . 1.234 ."));
    }

    /// A scale whose announcement was missed is read as the other type: as 13.26 kg.
    void reportsOfTheOtherTypeDoNotSettle()
    {
        start();
        window().checkClipboard->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        m_app->link.setCurrentScale(1);
        QCOMPARE(clipboardAt(std::vector(4, parcel1234)), QStringLiteral(". . . ."));
        m_app->link.setCurrentScale(0);
        QCOMPARE(clipboardAt(std::vector(4, parcel1234)), QStringLiteral(". . 1.234 ."));
    }

    void aLateAnswerIsNotTakenForThisParcel()
    {
        start();
        window().SendtoUSPS = 1;
        chooseUnit(window().rg5);
        readAll({parcel1234, parcel1234, parcel1234});
        m_browser.isSilent = true;
        readAll({empty, grams567, grams567, grams567});
        window().notePageFilled(QStringLiteral("USPS"));
        const QList<QAction *> items = window().recentMenu->actions();
        m_browser.isSilent = false;
        QVERIFY2(items.constFirst()->text().endsWith(QStringLiteral("went nowhere")),
                 qPrintable(items.constFirst()->text()));
    }

    void aLostScaleLeavesNothing()
    {
        start();
        window().checkClipboard->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        readAll({parcel1234, parcel1234});
        forgetClipboard();
        m_app->unplug();
        m_app->plug();
        m_app->stopPolling();
        QCOMPARE(QGuiApplication::clipboard()->text(), nothing);
        QCOMPARE(clipboardAt({parcel1234, parcel1234, parcel1234}), QStringLiteral(". . 1.234"));
    }

    void switchingOffLeavesNothing()
    {
        start();
        window().checkClipboard->click();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        readAll({parcel1234, parcel1234});
        window().ON_Off_TareAction();
        // What comes with the request was weighed before it.
        QCOMPARE(clipboardAt({parcel1234, off}), QStringLiteral(". ."));
    }

    /// In the first minutes the export text is 0 whatever is on the pan.
    void noZeroLeavesBeforeAUnitIsChosen()
    {
        start();
        for (QCheckBox *box : {window().checkClipboard, window().checkSettledOnly})
            box->click();
        QCOMPARE(clipboardAt({parcel1234, parcel1234, parcel1234}), QStringLiteral(". . ."));
        QCOMPARE(window().lbLBL->text(), QStringLiteral("0"));
        QCOMPARE(window().leavesLbl->text(), QStringLiteral("does not leave: choose a unit"));
        chooseUnit(window().rg5);
        QCOMPARE(clipboardAt({parcel1234, parcel1234, parcel1234}), QStringLiteral(". . 1.234"));
    }

    void eachCarrierIsFilledOnce()
    {
        start();
        for (QCheckBox *box : {window().checkUSPS, window().checkUPS, window().checkFedex})
            box->click();
        chooseUnit(window().rg1);
        read(ounces1234);
        const QStringList everyReading = m_browser.take();
        QVERIFY(everyReading.size() > 40);
        window().checkSettledOnly->click();
        for (const Report &report : {empty, ounces1234, ounces1234}) {
            read(report);
            QCOMPARE(m_browser.take(), QStringList());
        }
        read(ounces1234);
        QCOMPARE(m_browser.take(), everyReading);
        for (const Report &report : {ounces1234, empty, empty}) {
            read(report);
            QCOMPARE(m_browser.take(), QStringList());
        }
    }

    /// Before a unit is chosen, the pounds and ounces are right already.
    void uspsNeedsNoUnit()
    {
        start();
        for (QCheckBox *box : {window().checkUSPS, window().checkFedex, window().checkSettledOnly})
            box->click();
        readAll({parcel1234, parcel1234, parcel1234});
        const QStringList scripts = m_browser.take();
        QVERIFY(scripts.contains(
            QStringLiteral("document.getElementsByName('shippingWeightInPounds')[0].value=2")));
        QVERIFY(scripts.filter(QStringLiteral("perPackageWeight")).isEmpty());
    }

    void aDestinationChosenLaterGetsTheParcelOnThePan()
    {
        start();
        window().checkSettledOnly->click();
        chooseUnit(window().rg5);
        readAll({parcel1234, parcel1234, parcel1234, parcel1234});
        window().checkClipboard->click();
        QCOMPARE(clipboardAt({parcel1234, parcel1234, parcel1234, parcel1234}),
                 QStringLiteral(". . 1.234 ."));
    }

    void notesFollowTheReadings()
    {
        start();
        QCOMPARE(window().exportCaption->text(), QStringLiteral("Export"));
        QCOMPARE(window().settledLbl->text(), QString());
        read(parcel1234);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("Settling"));
        QCOMPARE(window().exportCaption->text(), QStringLiteral("Export, lb"));
        QCOMPARE(window().leavesLbl->text(), QStringLiteral("leaves as 0: choose a unit"));
        readAll({parcel1234, parcel1234});
        QVERIFY(window().settledLbl->text().startsWith(QLatin1String("Settled since ")));
        const QString settled = window().settledLbl->text();
        chooseUnit(window().rg5);
        read(empty);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("At zero"));
        QCOMPARE(window().exportCaption->text(), QStringLiteral("Export, kg"));
        QCOMPARE(window().leavesLbl->text(), QString());
        read(minus1234);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("Below zero: press Tare"));
        m_app->unplug();
        QCOMPARE(window().settledLbl->text(), QString());
        QCOMPARE(window().exportCaption->text(), QStringLiteral("Export"));
    }

    /// With ticks that bring no new reading; no timer of its own.
    void ageRidesOnThePoll()
    {
        start();
        QTimer tick;
        read(parcel1234);
        LaunchedApplication::pass(1000ms);
        window().pausereadtimer = true;
        window().readData(&tick);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("Settling"));
        LaunchedApplication::pass(1ms);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("Settling"));
        window().readData(&tick);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("Settling \u00b7 1 s old"));
        window().pausereadtimer = false;
        read(parcel1234);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("Settling"));
        window().holdAction();
        LaunchedApplication::pass(5000ms);
        read(parcel1234);
        QCOMPARE(window().settledLbl->text(), QStringLiteral("Settling \u00b7 5 s old"));
        read({});
        QCOMPARE(window().settledLbl->text(), QStringLiteral("No reading for 5 s"));
    }

    void recentWeightsTellWhereTheyWent()
    {
        start();
        QVERIFY(!window().recentMenu->isEnabled());
        chooseUnit(window().rg5);
        readAll({grams567, grams567, grams567, empty});
        window().checkUSPS->click();
        readAll({parcel1234, parcel1234, parcel1234});
        window().notePageFilled(QStringLiteral("USPS"));
        readAll({empty});
        window().notePageFilled(QStringLiteral("UPS")); // with the empty pan
        const QList<QAction *> items = window().recentMenu->actions();
        QCOMPARE(items.size(), 2);
        QVERIFY(items.at(0)->text().startsWith(QLatin1String("1.234 kg at ")));
        // The offscreen platform never owns the clipboard: the device tests see that.
        QCOMPARE(items.at(0)->text().section(QStringLiteral(": "), 1), QStringLiteral("USPS page"));
        QVERIFY(items.at(1)->text().startsWith(QLatin1String("0.567 kg at ")));
        QVERIFY(items.at(1)->text().endsWith(QLatin1String(", went nowhere")));
        forgetClipboard();
        items.at(1)->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("0.567"));
        // Nothing of it is written down.
        QVERIFY(!storedsettings::text().contains("0.567"));
    }

    void nothingMovesInAnOpenMenuOfRecentWeights()
    {
        start();
        chooseUnit(window().rg5);
        readAll({grams567, grams567, grams567, empty});
        QMenu &menu = *window().recentMenu;
        QAction *item = menu.actions().constFirst();
        const QString words = item->text();
        menu.popup({});
        readAll({parcel1234, parcel1234, parcel1234});
        QCOMPARE(menu.actions(), QList<QAction *>{item});
        QCOMPARE(item->text(), words);
        menu.close();
        QTRY_COMPARE(menu.actions().size(), 2);
        QVERIFY(menu.actions().at(0)->text().startsWith(QLatin1String("1.234 kg at ")));
        QCOMPARE(menu.actions().at(1)->text(), words);
    }

    /// As a page does that is asked something in the same reading.
    void aPageThatAnswersAtOnceIsRemembered()
    {
        start();
        for (QCheckBox *box : {window().checkUSPS, window().checkSettledOnly})
            box->click();
        chooseUnit(window().rg5);
        m_browser.duringScript = [this] { window().notePageFilled(QStringLiteral("USPS")); };
        readAll({parcel1234, parcel1234, parcel1234});
        QVERIFY(window().recentMenu->actions().constFirst()->text().endsWith(
            QLatin1String(": USPS page")));
    }

    /// The 0 that leaves then is of no use to anybody.
    void recentWeightsBeforeAUnitIsChosen()
    {
        start();
        readAll({parcel1234, parcel1234, parcel1234});
        window().recentMenu->actions().constFirst()->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("1234"));
        QVERIFY(window().recentMenu->actions().constFirst()->text().startsWith(
            QLatin1String("1234 g at ")));
    }

    void boxAndItemAreOneState()
    {
        start();
        m_app->forgetTraffic();
        const QString title = window().window->windowTitle();
        window().optionsToggle->click();
        m_app->log.lines().clear();
        for (const bool on : {true, false, true}) {
            window().mnuSettledOnly->trigger();
            QCOMPARE(window().mnuSettledOnly->isChecked(), on);
            QCOMPARE(window().checkSettledOnly->isChecked(), on);
            QCOMPARE(storedsettings::text().contains("settledOnly=true"), on);
        }
        window().checkSettledOnly->click();
        QVERIFY(!window().mnuSettledOnly->isChecked());
        window().checkSettledOnly->click();
        LaunchedApplication::pass(1000ms);
        // None of what the other six do.
        QVERIFY(window().optionBox->isVisible());
        QCOMPARE(m_app->log.lines(), QStringList());
        QCOMPARE(window().window->windowTitle(), title);
        QCOMPARE(storedsettings::options(), QStringList());
        QCOMPARE(window().selectionLbl->text(), QStringLiteral("none"));
    }

    void itNeedsNoScaleAndComesBack()
    {
        storedsettings::forget();
        storedsettings::store("[General]\nsettledOnly=true\n[defaultValue]\n0=selected\n");
        m_app = std::make_unique<LaunchedApplication>(Scale::Absent);
        QVERIFY(window().checkSettledOnly->isChecked());
        QVERIFY(window().mnuSettledOnly->isChecked());
        window().mnuSettledOnly->trigger();
        QVERIFY(!window().checkSettledOnly->isChecked());
        QVERIFY(!storedsettings::text().contains("settledOnly=true"));
    }
};

TEST_CLASS(SettledLeavingTest)
#include "SettledLeavingTest.moc"
