// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QRegularExpression>

namespace {

using Scale = LaunchedApplication::Scale;

const QByteArray uspsInformation = "\"YES\"";
const QByteArray kelvane = "\"NO\"";

/// The distribution's release as three numbers, read apart from the program.
QString systemVersion()
{
    QFile release(QStringLiteral("/etc/os-release"));
    if (!release.open(QIODevice::ReadOnly))
        return {};
    static const QRegularExpression line(
        QStringLiteral("^VERSION_ID=\"?([0-9]+)(?:\\.([0-9]+))?(?:\\.([0-9]+))?"),
        QRegularExpression::MultilineOption);
    const auto found = line.match(QString::fromUtf8(release.readAll()));
    return QStringLiteral("Mac OS X %1.%2.%3")
        .arg(found.captured(1).toInt())
        .arg(found.captured(2).toInt())
        .arg(found.captured(3).toInt());
}

/// The window as it is designed, before any branding.
struct DesignedWindow
{
    DesignedWindow() { form.setupUi(&window); }

    QMainWindow window;
    Ui::MainWindow form;
};

QList<QLabel *> brandedLabels(const Ui::MainWindow &form)
{
    return {form.connectionStatuslbl, form.ozLBL, form.lbLBL, form.lblModel};
}

QList<QRadioButton *> unitCells(const Ui::MainWindow &form)
{
    return {form.rg1, form.rg2, form.rg3, form.rg4, form.rg5, form.rg6, form.rg7};
}

QColor textColour(const QWidget *widget, QPalette::ColorGroup group = QPalette::Active)
{
    return widget->palette().color(group, QPalette::WindowText);
}

QColor fillColour(const QWidget *widget)
{
    return widget->palette().color(QPalette::Active, QPalette::Window);
}

QStringList menuTexts(const QMenu *menu)
{
    QStringList texts;
    for (const QAction *item : menu->actions())
        texts.append(item->text());
    return texts;
}

QStringList popUpTexts(const QComboBox *popUp)
{
    QStringList texts;
    for (int i = 0; i < popUp->count(); ++i)
        texts.append(popUp->itemText(i));
    return texts;
}

const QStringList nineNames{"KV-A100", "KV-A200", "KV-B100", "KV-B200", "KV-B300",
                            "KV-C100", "KV-C200", "KV-C300", "KV-C400"};

} // namespace

/// What the launch says and shows, from the first line to the first device.
class StartUpTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void logInOrder_data()
    {
        QTest::addColumn<QByteArray>("isUSPS");
        QTest::addColumn<QStringList>("modelLines");
        QTest::newRow("USPS names no model") << uspsInformation << QStringList();
        QTest::newRow("Kelvane names each model")
            << kelvane << QStringList{"item:KV-A100", "item:KV-A200"};
    }

    void logInOrder()
    {
        QFETCH(QByteArray, isUSPS);
        QFETCH(QStringList, modelLines);
        storedsettings::store("[General]\nlastSelectedValue=1\n"
                              "[defaultValue]\n300=selected\n100=selected\n");
        LaunchedApplication app(Scale::Present,
                                bundleInformation(isUSPS, R"(["KV-A100", "KV-A200"])"));
        const QStringList system{QStringLiteral("OS version is ") + systemVersion(),
                                 QStringLiteral("Select Scale")};
        const QStringList options{
            "defaultDic Found",           "default_Check:{ 100 = selected; 300 = selected; }",
            "checkBoxAction_WithTag:100", "ON",
            "checkBoxAction_WithTag:300", "Send weight to clipboard"};
        const QStringList devices{"DeviceAdded", "go forward", "our device"};
        QCOMPARE(app.log.lines(), system + modelLines + options + devices);
    }

    void withoutStoredOptionsNothingIsSaidOfThem_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("no file") << QByteArray();
        QTest::newRow("no group") << QByteArray("[General]\nlastSelectedValue=1\n");
        QTest::newRow("empty group") << QByteArray("[defaultValue]\n");
    }

    void withoutStoredOptionsNothingIsSaidOfThem()
    {
        QFETCH(QByteArray, stored);
        if (!stored.isNull())
            storedsettings::store(stored);
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(app.log.lines().size(), 2);
        QVERIFY(!app.delegate.optionBox->isVisible());
    }

    void fieldsAtTheStart()
    {
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(app.delegate.selectedRadioButtonIndex(), 3);
        QCOMPARE(app.delegate.selectedModelName(), QString());
        QCOMPARE(app.delegate.ozLBL->text(), systemVersion());
        QVERIFY(!app.delegate.isDeviceConnected);
        QVERIFY(!app.delegate.isDeviceAlive());
        QVERIFY(!app.delegate.onhold);
        QVERIFY(!app.delegate.pausereadtimer);
        QVERIFY(!app.delegate.showOption);
        QVERIFY(!app.delegate.SetClip());
        QCOMPARE(app.delegate.SendtoUSPS, 0);
        QCOMPARE(app.delegate.SendtoUPS, 0);
        QCOMPARE(app.delegate.SendtoFedex, 0);
        QCOMPARE(app.link.scaleCommand(), 0xFF);
        QCOMPARE(app.link.unitnumber(), 3);
        QCOMPARE(app.link.currentUnit(), 4);
        QVERIFY(app.delegate.window->isVisible());
    }

    void systemVersionStaysOnItsLabel()
    {
        LaunchedApplication app(Scale::Present);
        app.read({0x01, 0x34, 0x12});
        app.unplug();
        QCOMPARE(app.delegate.ozLBL->text(), systemVersion());
    }

    void uspsIsBlueWithWhiteTexts_data()
    {
        QTest::addColumn<QByteArray>("models");
        QTest::newRow("nine models") << nineModels;
        QTest::newRow("no models") << QByteArray("[]");
    }

    void uspsIsBlueWithWhiteTexts()
    {
        QFETCH(QByteArray, models);
        LaunchedApplication app(Scale::Absent, bundleInformation(uspsInformation, models));
        QCOMPARE(fillColour(app.delegate.boxContainer), QColor(1, 62, 145));
        QVERIFY(app.delegate.boxContainer->autoFillBackground());
        for (const QLabel *label : brandedLabels(app.delegate))
            QCOMPARE(textColour(label), QColor(Qt::white));
        for (const QRadioButton *cell : unitCells(app.delegate)) {
            QCOMPARE(textColour(cell), QColor(Qt::white));
            QCOMPARE(textColour(cell, QPalette::Inactive), QColor(Qt::white));
            // A row that the model lacks is white too, but tells that it is off.
            QCOMPARE(textColour(cell, QPalette::Disabled).rgb() | 0xFF000000, 0xFFFFFFFF);
            QVERIFY(textColour(cell, QPalette::Disabled).alpha() < 255);
        }
    }

    void kelvaneIsGrayOnceItHasModels_data()
    {
        QTest::addColumn<QByteArray>("models");
        QTest::addColumn<bool>("gray");
        QTest::newRow("nine models") << nineModels << true;
        QTest::newRow("one model") << QByteArray(R"(["KV-A100"])") << true;
        QTest::newRow("no models") << QByteArray("[]") << false;
    }

    void kelvaneIsGrayOnceItHasModels()
    {
        QFETCH(QByteArray, models);
        QFETCH(bool, gray);
        LaunchedApplication app(Scale::Absent, bundleInformation(kelvane, models));
        const DesignedWindow designed;
        QCOMPARE(fillColour(app.delegate.boxContainer),
                 gray ? QColor(128, 128, 128) : fillColour(designed.form.boxContainer));
        for (int i = 0; i < 4; ++i)
            QCOMPARE(textColour(brandedLabels(app.delegate).at(i)),
                     textColour(brandedLabels(designed.form).at(i)));
        for (int row = 0; row < 7; ++row)
            QCOMPARE(textColour(unitCells(app.delegate).at(row)),
                     textColour(unitCells(designed.form).at(row)));
    }

    void theVersionIsPale_data()
    {
        QTest::addColumn<QByteArray>("isUSPS");
        QTest::newRow("USPS") << uspsInformation;
        QTest::newRow("Kelvane") << kelvane;
    }

    /// Nobody has to read it.
    void theVersionIsPale()
    {
        QFETCH(QByteArray, isUSPS);
        LaunchedApplication app(Scale::Absent, bundleInformation(isUSPS, nineModels));
        for (const QLabel *label : brandedLabels(app.delegate)) {
            const auto *small = qobject_cast<const SmallLabel *>(label);
            const qreal opacity = small ? small->opacity() : 1;
            QVERIFY2(label == app.delegate.ozLBL ? opacity <= 0.9 : opacity == 1,
                     qPrintable(label->objectName()));
        }
    }

    void brandingKey_data()
    {
        QTest::addColumn<QByteArray>("isUSPS");
        QTest::addColumn<QString>("title");
        const QString postal = QStringLiteral("Postal Scale-KV-A100");
        const QString plain = QStringLiteral("Kelvane-KV-A100");
        QTest::newRow("YES") << QByteArray("\"YES\"") << postal;
        QTest::newRow("NO") << QByteArray("\"NO\"") << plain;
        QTest::newRow("lower case") << QByteArray("\"yes\"") << plain;
        QTest::newRow("with a blank") << QByteArray("\"YES \"") << plain;
        QTest::newRow("empty") << QByteArray("\"\"") << plain;
        QTest::newRow("true") << QByteArray("true") << plain;
        QTest::newRow("number") << QByteArray("1") << plain;
        QTest::newRow("list") << QByteArray(R"(["YES"])") << plain;
        QTest::newRow("null") << QByteArray("null") << plain;
    }

    void brandingKey()
    {
        QFETCH(QByteArray, isUSPS);
        LaunchedApplication app(Scale::Absent, bundleInformation(isUSPS, nineModels));
        QTEST(app.delegate.window->windowTitle(), "title");
    }

    void absentBrandingKeyIsKelvane()
    {
        LaunchedApplication app(Scale::Absent, R"({"KeyForNonUSPS": ["KV-B100"]})");
        QCOMPARE(app.delegate.window->windowTitle(), QStringLiteral("Kelvane-KV-B100"));
        QVERIFY(app.log.lines().contains(QStringLiteral("item:KV-B100")));
    }

    void otherBrandingsListIsNotTaken_data()
    {
        QTest::addColumn<QByteArray>("information");
        QTest::newRow("USPS") << QByteArray(R"({"isUSPS": "YES", "KeyForNonUSPS": ["KV-B100"]})");
        QTest::newRow("Kelvane") << QByteArray(R"({"isUSPS": "NO", "KayForUSPS": ["KV-B100"]})");
    }

    void otherBrandingsListIsNotTaken()
    {
        QFETCH(QByteArray, information);
        LaunchedApplication app(Scale::Absent, information);
        QVERIFY(menuTexts(app.delegate.modelMenu).isEmpty());
    }

    void modelLists_data()
    {
        QTest::addColumn<QByteArray>("models");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("nine") << nineModels << nineNames;
        QTest::newRow("one") << QByteArray(R"(["KV-C300"])") << QStringList{"KV-C300"};
        QTest::newRow("unknown ones")
            << QByteArray(R"(["b", "a", "b"])") << QStringList{"b", "a", "b"};
        QTest::newRow("text and other kinds")
            << QByteArray(R"([1, "KV-B100", null, ["KV-B200"]])") << QStringList{"KV-B100"};
        QTest::newRow("empty") << QByteArray("[]") << QStringList();
        QTest::newRow("numbers only") << QByteArray("[1, 2]") << QStringList();
        QTest::newRow("text") << QByteArray("\"KV-A100\"") << QStringList();
        QTest::newRow("object") << QByteArray(R"({"0": "KV-A100"})") << QStringList();
        QTest::newRow("null") << QByteArray("null") << QStringList();
    }

    /// An empty list leaves everything as designed.
    void modelLists()
    {
        QFETCH(QByteArray, models);
        QFETCH(QStringList, names);
        for (const QByteArray &isUSPS : {uspsInformation, kelvane}) {
            LaunchedApplication app(Scale::Absent, bundleInformation(isUSPS, models));
            const DesignedWindow designed;
            const bool listed = !names.isEmpty();
            const QString format = isUSPS == uspsInformation ? QStringLiteral("Postal Scale-%1")
                                                             : QStringLiteral("Kelvane-%1");
            QCOMPARE(menuTexts(app.delegate.modelMenu), names);
            QCOMPARE(popUpTexts(app.delegate.optionButton),
                     listed ? names : popUpTexts(designed.form.optionButton));
            QCOMPARE(app.delegate.window->windowTitle(),
                     listed ? format.arg(names.first()) : designed.window.windowTitle());
            QCOMPARE(app.delegate.optionButton->currentIndex(), 0);
            QCOMPARE(app.delegate.optionButton->placeholderText(),
                     listed ? QStringLiteral("Select")
                            : designed.form.optionButton->placeholderText());
            for (const QAction *item : app.delegate.modelMenu->actions())
                QCOMPARE(item->isChecked(), item == app.delegate.modelMenu->actions().first());
            QStringList logged;
            for (const QString &name : std::as_const(names))
                logged.append(QStringLiteral("item:") + name);
            QCOMPARE(app.log.lines().filter(QStringLiteral("item:")),
                     isUSPS == kelvane ? logged : QStringList());
        }
    }

    void applicationName_data()
    {
        QTest::addColumn<QByteArray>("information");
        QTest::addColumn<QString>("line");
        QTest::newRow("given") << QByteArray(R"({"appNameDisplay": "Waage"})") << "Select Waage";
        QTest::newRow("absent") << QByteArray("{}") << "Select ";
        QTest::newRow("number") << QByteArray(R"({"appNameDisplay": 5})") << "Select ";
    }

    void applicationName()
    {
        QFETCH(QByteArray, information);
        LaunchedApplication app(Scale::Absent, information);
        QTEST(app.log.lines().at(1), "line");
    }

    void damagedInformationIsReportedAndTheBuiltInOneTaken_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("no JSON") << QByteArray("isUSPS = NO");
        QTest::newRow("cut off") << QByteArray(R"({"isUSPS": "NO", "KeyForNonUSPS")");
        QTest::newRow("list") << QByteArray(R"(["KV-A100"])");
        QTest::newRow("bytes") << QByteArray("\xFF\xFE\x00{", 4);
    }

    void damagedInformationIsReportedAndTheBuiltInOneTaken()
    {
        QFETCH(QByteArray, text);
        LaunchedApplication app(Scale::Absent, text);
        QCOMPARE(popUpTexts(app.delegate.optionButton), nineNames);
        QCOMPARE(app.log.lines().filter(QStringLiteral("Info.json is damaged")).size(), 1);
    }

    void missingInformationIsReportedAndTheBuiltInOneTaken()
    {
        const LogCapture log;
        const auto information = BundleInformation::load(QStringLiteral("/nowhere/Info.json"));
        QCOMPARE(information.modelNames(), nineNames);
        QCOMPARE(log.lines().filter(QStringLiteral("Cannot read /nowhere/Info.json")).size(), 1);
    }

    void installedInformationReplacesTheBuiltInOne()
    {
        storedsettings::storeBeside("Info.json", R"({"isUSPS": "NO", "KeyForNonUSPS": ["Own"]})");
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(app.delegate.window->windowTitle(), QStringLiteral("Kelvane-Own"));
    }
};

TEST_CLASS(StartUpTest)
#include "StartUpTest.moc"
