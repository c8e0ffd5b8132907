// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeClock.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/OptionModel.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

#include <QAccessible>
#include <QWindow>

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;

constexpr int optionCount = OptionModel::optionCount;
/// The six boxes, then the six items of the menu.
constexpr int clickCount = 2 * optionCount;
/// Of the last click of each sequence. The first that is taken differs with the clicks before it,
/// so that in all each click follows each other.
const int lastClickStep = sweepStep(5);

const QString refused = QStringLiteral("Device Not Connected/Detected!!!");

QCheckBox *boxOf(const LaunchedApplication &app, int option)
{
    const PostalScaleAppDelegate &form = app.delegate;
    return QList{form.checkOnTop, form.checkRoundTo, form.checkClipboard,
                 form.checkUSPS,  form.checkUPS,     form.checkFedex}
        .at(option);
}

QAction *menuItem(const LaunchedApplication &app, int option)
{
    const PostalScaleAppDelegate &form = app.delegate;
    return QList{form.mnuOnTop,      form.mnuRoundToInt, form.mnuSendToClip,
                 form.mnuSendToUSPS, form.mnuSendToUPS,  form.mnuSendToFEDX}
        .at(option);
}

bool staysOnTop(const LaunchedApplication &app)
{
    return app.delegate.window->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint);
}

QByteArray name(int click)
{
    static constexpr std::array options{"OnTop", "RoundTo", "Clipboard", "USPS", "UPS", "FedEx"};
    return QByteArray(click < optionCount ? "box " : "menu ") +
           options.at(static_cast<std::size_t>(click % optionCount));
}

void click(LaunchedApplication &app, OptionModel &expected, int which)
{
    if (which < optionCount) {
        boxOf(app, which)->click();
        expected.clickBox(which);
    } else {
        menuItem(app, which - optionCount)->trigger();
        expected.clickMenu(which - optionCount);
    }
}

/// One line that tells all there is to see, so that one comparison shows what differs.
QString describe(const OptionModel::Flags &effective, const OptionModel::Flags &boxes,
                 const OptionModel::Flags &marks, const QString &label, qsizetype refusals)
{
    const auto bits = [](const OptionModel::Flags &flags) {
        QString text;
        for (const bool flag : flags)
            text.append(QLatin1Char(flag ? 'x' : '.'));
        return text;
    };
    return QStringLiteral("options %1, boxes %2, menu %3, label \"%4\", refused %5")
        .arg(bits(effective), bits(boxes), bits(marks), label)
        .arg(refusals);
}

QString describe(const OptionModel &model)
{
    return describe(model.effective, model.boxes, model.marks, model.label, model.refusals);
}

QString describe(const LaunchedApplication &app)
{
    const PostalScaleAppDelegate &delegate = app.delegate;
    const OptionModel::Flags effective{staysOnTop(app),         app.link.SetRound(),
                                       delegate.SetClip(),      delegate.SendtoUSPS == 1,
                                       delegate.SendtoUPS == 1, delegate.SendtoFedex == 1};
    OptionModel::Flags boxes{};
    OptionModel::Flags marks{};
    for (int option = 0; option < optionCount; ++option) {
        boxes.at(static_cast<std::size_t>(option)) = boxOf(app, option)->isChecked();
        marks.at(static_cast<std::size_t>(option)) = menuItem(app, option)->isChecked();
    }
    return describe(effective, boxes, marks, delegate.selectionLbl->text(), app.logged(refused));
}

OptionModel launchedModel(const LaunchedApplication &app)
{
    OptionModel model;
    model.label = app.delegate.selectionLbl->text();
    model.scalePresent = app.delegate.isDeviceAlive();
    return model;
}

/// As after a launch, with the option box open.
void startAnew(LaunchedApplication &app)
{
    for (int option = 0; option < optionCount; ++option) {
        app.mark(boxOf(app, option), false);
        menuItem(app, option)->setChecked(false);
    }
    app.delegate.window->windowHandle()->setFlag(Qt::WindowStaysOnTopHint, false);
    app.link.setSetRound(false);
    app.delegate.setSetClip(false);
    app.delegate.SendtoUSPS = app.delegate.SendtoUPS = app.delegate.SendtoFedex = 0;
    app.delegate.selectionLbl->setText(QStringLiteral("none"));
    app.delegate.showOption = true;
    app.delegate.optionBox->setHidden(false);
    app.log.lines().clear();
}

/// Each click on a box turns its visibility over, 0.4 s later.
void expectVisibility(LaunchedApplication &app, const OptionModel &expected, bool openBefore)
{
    fakeclock::advance(399ms);
    app.turn();
    QCOMPARE(app.delegate.optionBox->isVisible(), openBefore);
    fakeclock::advance(1ms);
    app.turn();
    QCOMPARE(app.delegate.optionBox->isVisible(), openBefore != (expected.boxClicks % 2 == 1));
}

void clickAndCompare(LaunchedApplication &app, const QList<int> &clicks)
{
    OptionModel expected = launchedModel(app);
    QByteArray sequence;
    for (const int which : clicks) {
        sequence += name(which) + ", ";
        click(app, expected, which);
        QVERIFY2(describe(app) == describe(expected),
                 sequence + "\nis:     " + qPrintable(describe(app)) +
                     "\nshould: " + qPrintable(describe(expected)));
        if (expected.boxClicks > 0)
            QVERIFY2(storedsettings::options() == expected.saved(), sequence);
    }
    expectVisibility(app, expected, true);
}

void clicksWithAndWithoutAScale()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<Scale>("scale");
    for (int first = 0; first < clickCount; ++first) {
        QTest::addRow("%s first, scale", name(first).constData()) << first << Scale::Present;
        QTest::addRow("%s first, no scale", name(first).constData()) << first << Scale::Absent;
    }
}

} // namespace

/// The six options of the box and of the menu. The clock stands still but for what a test lets
/// pass.
class OptionTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void everySequenceOfTwo_data() { clicksWithAndWithoutAScale(); }

    void everySequenceOfTwo()
    {
        QFETCH(int, first);
        QFETCH(Scale, scale);
        for (int second = first % lastClickStep; second < clickCount; second += lastClickStep) {
            storedsettings::forget();
            LaunchedApplication app(scale);
            app.stopPolling();
            app.delegate.optionsToggle->click();
            clickAndCompare(app, {first, second});
        }
    }

    void everySequenceOfThree_data() { clicksWithAndWithoutAScale(); }

    void everySequenceOfThree()
    {
        QFETCH(int, first);
        QFETCH(Scale, scale);
        LaunchedApplication app(scale);
        app.stopPolling();
        for (int second = 0; second < clickCount; ++second) {
            for (int third = (first + second) % lastClickStep; third < clickCount;
                 third += lastClickStep) {
                startAnew(app);
                clickAndCompare(app, {first, second, third});
            }
        }
    }

    void restartWithEverySubset()
    {
        for (unsigned subset = 0; subset < 64; ++subset) {
            OptionModel expected;
            QByteArray stored = "[defaultValue]\n";
            for (int option = 0; option < optionCount; ++option) {
                if ((subset >> option & 1U) != 0) {
                    stored += QByteArray::number(OptionModel::tag(option)) + "=selected\n";
                    expected.clickBox(option);
                }
            }
            expected.effective[OptionModel::RoundTo] = false; // restored before there is a link
            storedsettings::store(stored);
            restartAndCompare(expected);

            OptionModel again;
            for (const QString &tag : expected.saved())
                again.clickBox(tag.toInt() / 100 - 1);
            again.effective[OptionModel::RoundTo] = false;
            restartAndCompare(again);
            QCOMPARE(storedsettings::options(), expected.saved());
        }
    }

    void clipboardOverCarriersComesBackAlone()
    {
        {
            LaunchedApplication app(Scale::Absent);
            for (QCheckBox *option : {app.delegate.checkUSPS, app.delegate.checkUPS,
                                      app.delegate.checkFedex, app.delegate.checkClipboard})
                option->click();
            QCOMPARE(describe(app), QStringLiteral("options ..xxxx, boxes ..x..., menu ......, "
                                                   "label \"Clipboard\", refused 0"));
            QCOMPARE(storedsettings::options(), QStringList{"300"});
        }
        LaunchedApplication next(Scale::Absent);
        QCOMPARE(describe(next), QStringLiteral("options ..x..., boxes ..x..., menu ......, "
                                                "label \"Clipboard\", refused 0"));
    }

    void fedexNamesItselfFromTheMenuOnly()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.checkUPS->click();
        app.delegate.checkFedex->click();
        QCOMPARE(app.delegate.selectionLbl->text(), QStringLiteral("UPS"));
        app.delegate.mnuSendToFEDX->trigger();
        QCOMPARE(app.delegate.selectionLbl->text(), QStringLiteral("FEDX"));
    }

    void logOfABox_data()
    {
        QTest::addColumn<int>("option");
        QTest::addColumn<QStringList>("lines");
        const auto row = [](int option, const QString &on, const QString &off) {
            const QString tag =
                QStringLiteral("checkBoxAction_WithTag:%1").arg(OptionModel::tag(option));
            QTest::newRow(name(option)) << option << QStringList{tag, on, tag, off};
        };
        row(OptionModel::OnTop, "ON", "OFF");
        row(OptionModel::RoundTo, "Round to ", "Round to ");
        row(OptionModel::Clipboard, "Send weight to clipboard", "Send weight to clipboard");
        row(OptionModel::Usps, "Send weight to USPS page", "Send weight to USPS page");
        row(OptionModel::Ups, "Send weight to UPS page", "Send weight to UPS page");
        row(OptionModel::Fedex, "Send weight to Fedex page", "Send weight to Fedex page");
    }

    void logOfABox()
    {
        QFETCH(int, option);
        LaunchedApplication app(Scale::Absent);
        app.forgetTraffic();
        boxOf(app, option)->click();
        boxOf(app, option)->click();
        QTEST(app.log.lines(), "lines");
    }

    void everyBoxNamesThePopUpsModelInTheTitle()
    {
        for (const char *isUSPS : {"\"YES\"", "\"NO\""}) {
            storedsettings::forget();
            LaunchedApplication app(Scale::Present, bundleInformation(isUSPS, nineModels));
            app.delegate.modelMenu->actions().at(3)->trigger();
            const QString chosen = app.delegate.window->windowTitle();
            QVERIFY(chosen.endsWith(QLatin1String("-KV-B200")));
            app.delegate.mnuRoundToInt->trigger();
            QCOMPARE(app.delegate.window->windowTitle(), chosen);
            app.delegate.checkRoundTo->click();
            QCOMPARE(app.delegate.window->windowTitle(),
                     QString(chosen).replace(QLatin1String("KV-B200"), QLatin1String("KV-A100")));
        }
    }

    void assistiveTechnologySwitchesAsAClickDoes()
    {
        LaunchedApplication app(Scale::Absent);
        for (const QString &action : {QAccessibleActionInterface::toggleAction(),
                                      QAccessibleActionInterface::pressAction()}) {
            app.forgetTraffic();
            for (const int switching : {1, 2}) {
                QAccessible::queryAccessibleInterface(app.delegate.checkUPS)
                    ->actionInterface()
                    ->doAction(action);
                app.pass(pressTime);
                QCOMPARE(app.delegate.SendtoUPS, switching % 2);
                QCOMPARE(app.logged(QStringLiteral("Send weight to UPS page")), switching);
            }
        }
    }

    void turningsOfTheBox_data()
    {
        QTest::addColumn<bool>("openAtFirst");
        QTest::addColumn<QList<int>>("clicks");
        QTest::addColumn<QList<int>>("turnings");
        const auto row = [](const char *text, bool open, const QList<int> &clicks,
                            const QList<int> &turnings) {
            QTest::newRow(text) << open << clicks << turnings;
        };
        row("no click", true, {}, {});
        row("one click closes it", true, {0}, {400});
        row("two within 0.4 s leave it open again", true, {0, 300}, {400, 700});
        row("two just 0.4 s apart", true, {0, 399}, {400, 799});
        row("three", true, {0, 100, 200}, {400, 500, 600});
        row("one click on a closed box opens it", false, {0}, {400});
    }

    /// In milliseconds since the start.
    void turningsOfTheBox()
    {
        QFETCH(bool, openAtFirst);
        QFETCH(QList<int>, clicks);
        LaunchedApplication app(Scale::Absent);
        if (openAtFirst)
            app.delegate.optionsToggle->click();
        QList<int> turnings;
        bool visible = openAtFirst;
        for (int time = 0; time < 1500; ++time) {
            if (clicks.contains(time))
                app.delegate.checkOnTop->click();
            if (app.delegate.optionBox->isVisible() != visible)
                turnings.append(time);
            visible = app.delegate.optionBox->isVisible();
            app.pass(1ms);
        }
        QTEST(turnings, "turnings");
        QCOMPARE(app.delegate.showOption, visible);
    }

    void theButtonTurnsTheBox()
    {
        LaunchedApplication app(Scale::Absent);
        app.forgetTraffic();
        for (const bool visible : {true, false, true}) {
            app.delegate.optionsToggle->click();
            QCOMPARE(app.delegate.optionBox->isVisible(), visible);
            QCOMPARE(app.delegate.showOption, visible);
        }
        QCOMPARE(app.log.lines(), QStringList(3, QStringLiteral("optionAction")));
        app.forgetTraffic();
        app.delegate.optionLbl->click();
        QCOMPARE(app.log.lines(), QStringList{QStringLiteral("optionLblAction")});
        QVERIFY(app.delegate.optionBox->isVisible());
    }

private:
    static void restartAndCompare(OptionModel expected)
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        expected.scalePresent = true;
        if (expected.label.isEmpty())
            expected.label = QStringLiteral("none");
        QCOMPARE(describe(app), describe(expected));
        QCOMPARE(storedsettings::options(), expected.saved());
        expectVisibility(app, expected, false);
    }
};

TEST_CLASS(OptionTest)
#include "OptionTest.moc"
