// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/UnitRules.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

namespace {

using Scale = LaunchedApplication::Scale;
using Rows = std::array<bool, 7>;

Rows enabledRows(const Ui::MainWindow &form)
{
    Rows enabled{};
    const QList<QRadioButton *> cells{form.rg1, form.rg2, form.rg3, form.rg4,
                                      form.rg5, form.rg6, form.rg7};
    for (std::size_t row = 0; row < enabled.size(); ++row)
        enabled[row] = cells.at(static_cast<qsizetype>(row))->isEnabled();
    return enabled;
}

QByteArray storedModel(const QByteArray &value)
{
    return value.isNull() ? QByteArray() : "[General]\nlastSelectedValue=" + value + "\n";
}

QList<int> checkedBoxes(const PostalScaleAppDelegate &delegate)
{
    QList<int> tags;
    for (int tag = 100; tag <= 600; tag += 100) {
        for (const QCheckBox *box : delegate.optionBox->findChildren<QCheckBox *>()) {
            if (box->property("tag").toInt() == tag && box->isChecked())
                tags.append(tag);
        }
    }
    return tags;
}

} // namespace

/// What comes back from the run before.
class RestoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void model_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("shown");
        QTest::addColumn<int>("unitSet");
        const auto row = [](const char *name, const QByteArray &value, int shown, int unitSet) {
            QTest::newRow(name) << value << shown << unitSet;
        };
        row("missing", QByteArray(), 0, 0);
        row("first", "0", 0, 0);
        row("10 g model", "1", 1, 1);
        row("third", "2", 2, 2);
        row("fourth", "3", 3, 3);
        row("fifth", "4", 4, 4);
        row("sixth", "5", 5, 5);
        row("seventh", "6", 6, 6);
        row("eighth", "7", 7, 7);
        row("ninth has the last unit set", "8", 8, 8);
        row("beyond the pop-up", "9", 0, 9);
        row("negative", "-1", 0, -1);
        row("least", "-2147483648", 0, std::numeric_limits<int>::min());
        row("greatest", "2147483647", 0, std::numeric_limits<int>::max());
        row("huge", "99999999999999999999", 0, std::numeric_limits<int>::max());
        row("hugely negative", "-99999999999999999999", 0, std::numeric_limits<int>::min());
        row("text", "KV-B200", 0, 0);
        row("number, then text", "5 apples", 5, 5);
        row("with a fraction", "3.7", 3, 3);
        row("empty", "", 0, 0);
        row("list", "3, 4", 0, 0);
        row("quoted", "\"3\"", 3, 3);
    }

    /// The restore touches the pop-up only: check mark, title and chosen name stay with model 0.
    void model()
    {
        QFETCH(QByteArray, value);
        QFETCH(int, shown);
        QFETCH(int, unitSet);
        if (!value.isNull())
            storedsettings::store(storedModel(value));
        LaunchedApplication app(Scale::Absent, bundleInformation("\"YES\"", nineModels));
        QCOMPARE(app.delegate.optionButton->currentIndex(), shown);
        QCOMPARE(app.delegate.optionButton->currentText(),
                 app.delegate.modelMenu->actions().at(shown)->text());
        QCOMPARE(enabledRows(app.delegate), rules::rowsEnabled(unitSet));
        QCOMPARE(storedsettings::text().trimmed(),
                 storedModel(QByteArray::number(unitSet)).trimmed());
        QCOMPARE(app.delegate.window->windowTitle(), QStringLiteral("Postal Scale-KV-A100"));
        QCOMPARE(app.delegate.selectedModelName(), QString());
        QVERIFY(app.delegate.modelMenu->actions().first()->isChecked());
        QVERIFY(app.delegate.rg3->isChecked());
        QVERIFY(app.hidapi.sent.empty());
    }

    void modelBeyondAShortList()
    {
        storedsettings::store(storedModel("3"));
        LaunchedApplication app(Scale::Absent, bundleInformation("\"NO\"", R"(["A", "B"])"));
        QCOMPARE(app.delegate.optionButton->currentIndex(), 0);
        QCOMPARE(enabledRows(app.delegate), rules::rowsEnabled(3));
    }

    void modelWithoutAList()
    {
        storedsettings::store(storedModel("1"));
        LaunchedApplication app(Scale::Absent, bundleInformation("\"NO\"", "[]"));
        QCOMPARE(app.delegate.optionButton->currentIndex(), 0);
        QCOMPARE(enabledRows(app.delegate), rules::rowsEnabled(1));
    }

    void options_data()
    {
        QTest::addColumn<QByteArray>("group");
        QTest::addColumn<QStringList>("actions");
        QTest::addColumn<QList<int>>("checked");
        QTest::addColumn<QStringList>("savedAgain");
        const auto row = [](const char *name, const QByteArray &group, const QStringList &tags,
                            const QList<int> &checked, const QStringList &saved) {
            QStringList actions;
            for (const QString &tag : tags)
                actions.append(QStringLiteral("checkBoxAction_WithTag:") + tag);
            QTest::newRow(name) << group << actions << checked << saved;
        };
        row("two options", "300=selected\n500=selected\n", {"300", "500"}, {500}, {"500"});
        row("whatever stands under the keys", "100=0\n200=\n600=no\n", {"100", "200", "600"},
            {100, 200, 600}, {"100", "200", "600"});
        row("ascending, whatever their order", "600=x\n500=x\n100=x\n", {"100", "500", "600"},
            {100, 500, 600}, {"100", "500", "600"});
        row("tag without a box, before the clipboard", "150=x\n300=x\n", {"0", "300"}, {300},
            {"300"});
        row("tag without a box, after the clipboard", "300=x\n700=x\n", {"300", "0"}, {}, {});
        row("tag without a box, after FedEx", "600=x\n601=x\n", {"600", "0"}, {600}, {"600"});
        row("no number", "fedex=x\n", {"0"}, {}, {});
        row("negative", "-300=x\n", {"0"}, {}, {});
    }

    void options()
    {
        QFETCH(QByteArray, group);
        storedsettings::store("[defaultValue]\n" + group);
        LaunchedApplication app(Scale::Absent);
        QTEST(app.log.lines().filter(QStringLiteral("checkBoxAction_WithTag")), "actions");
        QTEST(checkedBoxes(app.delegate), "checked");
        QTEST(storedsettings::options(), "savedAgain");
    }

    /// It acts as the FedEx box does when it is switched off.
    void tagWithoutABoxSwitchesFedexOff()
    {
        storedsettings::store("[defaultValue]\n300=selected\n600=selected\n700=selected\n");
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(app.logged(QStringLiteral("Send weight to Fedex page")), 2);
        QCOMPARE(app.delegate.SendtoFedex, 0);
        QVERIFY(app.delegate.checkFedex->isChecked());
        QVERIFY(!app.delegate.checkClipboard->isChecked());
        QVERIFY(app.delegate.SetClip());
    }

    void optionsComeBeforeTheLinkAndTheModelAfterIt()
    {
        storedsettings::store("[General]\nlastSelectedValue=5\n"
                              "[defaultValue]\n200=selected\n");
        LaunchedApplication app(Scale::Present, bundleInformation("\"NO\"", nineModels));
        QVERIFY(app.delegate.checkRoundTo->isChecked());
        QVERIFY(!app.link.SetRound());
        // The option's action names the pop-up's model, which was still the first one.
        QCOMPARE(app.delegate.window->windowTitle(), QStringLiteral("Kelvane-KV-A100"));
        QCOMPARE(app.delegate.optionButton->currentText(), QStringLiteral("KV-C100"));
    }

    void optionsTitleAWindowThatHasNoModels()
    {
        storedsettings::store("[defaultValue]\n100=selected\n");
        LaunchedApplication app(Scale::Absent, bundleInformation("\"NO\"", "[]"));
        QCOMPARE(app.delegate.window->windowTitle(),
                 QStringLiteral("Kelvane-") + app.delegate.optionButton->currentText());
    }
};

TEST_CLASS(RestoreTest)
#include "RestoreTest.moc"
