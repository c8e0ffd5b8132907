// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/UnitRules.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QAccessible>

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;

struct UnitRow
{
    const char *unit;
    int tag;
    int unitindexGrams; ///< on the packed-decimal gram scale
    int unitindexTenthOunces;
    bool lbOZlast;
};

/// From the top of the column.
constexpr std::array<UnitRow, 7> unitTable{{
    {"ounces", 1, 2, 2, false},
    {"pounds and ounces A", 2, 3, 3, false},
    {"pounds and ounces B", 3, 4, 4, false},
    {"decimal pounds", 4, 3, 2, false},
    {"grams", 0, 1, 1, false},
    {"kilograms", 5, 1, 1, false},
    {"pounds and whole ounces", 6, 3, 3, true},
}};

/// Bits 3 to 5 of the command byte, by unit index.
constexpr std::array<int, 5> unitCode{-1, 0x38, 0x30, 0x28, 0x18};

/// Which of unitTable's rows a model has; 'x' for those.
constexpr std::array<const char *, 10> rowsByModel{
    "...x.xx", // -1
    "xxx.x..", // KV-A100
    ".xxx.xx", // KV-A200
    "xxx.x..", // KV-B100
    "xxx.x..", // KV-B200
    "xxx.x..", // KV-B300
    "..xx.xx", // KV-C100 or KV-C400
    "xxx.x..", // KV-C200
    "...x.xx", // KV-C300
    "...x.xx", // 8
};

QAbstractButton *cell(const LaunchedApplication &app, int row)
{
    return app.delegate.radiogroup->buttons().at(row);
}

int checkedRow(const LaunchedApplication &app)
{
    return static_cast<int>(
        app.delegate.radiogroup->buttons().indexOf(app.delegate.radiogroup->checkedButton()));
}

QString enabledRows(const LaunchedApplication &app)
{
    QString rows;
    for (const QAbstractButton *button : app.delegate.radiogroup->buttons())
        rows.append(QLatin1Char(button->isEnabled() ? 'x' : '.'));
    return rows;
}

rules::UnitState stateOf(const HIDManager &link)
{
    return {.unitnumber = link.unitnumber(),
            .dotunit = link.dotunit(),
            .unitindex = link.unitindex(),
            .currentUnit = link.currentUnit(),
            .lbOZlast = link.lbOZlast(),
            .scaleCommand = link.scaleCommand()};
}

QStringList texts(const std::vector<std::string> &lines)
{
    QStringList all;
    for (const std::string &line : lines)
        all.append(QString::fromStdString(line));
    return all;
}

const QString firstLine = QStringLiteral("---------------------->Done radioSelection!!!!!");

} // namespace

/// The column of weighing units.
class UnitTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void rowsAndTags()
    {
        LaunchedApplication app(Scale::Absent);
        for (int row = 0; row < 7; ++row) {
            QCOMPARE(cell(app, row)->property("tag").toInt(),
                     unitTable.at(static_cast<std::size_t>(row)).tag);
            QCOMPARE(rules::rowTags().at(static_cast<std::size_t>(row)),
                     unitTable.at(static_cast<std::size_t>(row)).tag);
        }
    }

    void unitsOfAModel_data()
    {
        QTest::addColumn<int>("modelIndex");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("row");
        for (int model = -1; model <= 8; ++model) {
            for (int type = 0; type <= 1; ++type) {
                for (int row = 0; row < 7; ++row)
                    QTest::addRow("model %d, scale type %d, %s", model, type,
                                  unitTable.at(static_cast<std::size_t>(row)).unit)
                        << model << type << row;
            }
        }
    }

    void unitsOfAModel()
    {
        QFETCH(int, modelIndex);
        QFETCH(int, type);
        QFETCH(int, row);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        const int rowBefore = checkedRow(app);
        app.delegate.enableDisableWeight(modelIndex);
        const QString rows =
            QLatin1String(rowsByModel.at(static_cast<std::size_t>(modelIndex + 1)));
        QCOMPARE(enabledRows(app), rows);
        QCOMPARE(checkedRow(app), rowBefore);
        QCOMPARE(storedsettings::text(),
                 "[General]\nlastSelectedValue=" + QByteArray::number(modelIndex) + "\n");

        app.link.setCurrentScale(type);
        app.forgetTraffic();
        const rules::UnitState before = stateOf(app.link);
        cell(app, row)->click();
        if (rows.at(row) == QLatin1Char('x')) {
            expectUnit(app, row, type, before);
        } else {
            QVERIFY(app.log.lines().isEmpty());
            QVERIFY(app.hidapi.sent.empty());
            QCOMPARE(checkedRow(app), rowBefore);
        }
    }

    /// Nothing of the unit before is left over.
    void everyUnitAfterEveryOther_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("gram scale") << 0;
        QTest::newRow("tenth-ounce scale") << 1;
    }

    void everyUnitAfterEveryOther()
    {
        QFETCH(int, type);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.link.setCurrentScale(type);
        for (int row = 0; row < 7; ++row)
            cell(app, row)->setEnabled(true);
        for (int first = 0; first < 7; ++first) {
            for (int second = 0; second < 7; ++second) {
                cell(app, first)->click();
                app.forgetTraffic();
                const rules::UnitState before = stateOf(app.link);
                cell(app, second)->click();
                expectUnit(app, second, type, before);
            }
        }
    }

    void withoutAScaleOnlyTheRadioMoves()
    {
        LaunchedApplication app(Scale::Absent);
        for (int row = 0; row < 7; ++row) {
            cell(app, row)->setEnabled(true);
            app.forgetTraffic();
            cell(app, row)->click();
            QCOMPARE(checkedRow(app), row);
            QCOMPARE(app.log.lines(), QStringList{firstLine});
            QVERIFY(app.hidapi.sent.empty());
            QCOMPARE(app.delegate.selectedRadioButtonIndex(), 3);
            QCOMPARE(app.link.unitnumber(), 3);
            QCOMPARE(app.link.unitindex(), 0);
            QCOMPARE(app.link.scaleCommand(), 0xFF);
        }
    }

    void anUnpluggedScaleIsNotToldOfUnits()
    {
        LaunchedApplication app(Scale::Present);
        app.unplug();
        app.forgetTraffic();
        cell(app, 0)->click();
        QCOMPARE(app.log.lines(), QStringList{firstLine});
        QCOMPARE(checkedRow(app), 0);
    }

    void noReadingIsTakenWhileTheUnitIsSent()
    {
        LaunchedApplication app(Scale::Present);
        bool paused = false;
        app.hidapi.duringSend = [&] {
            paused = app.delegate.pausereadtimer;
            if (paused)
                app.delegate.readData(app.timers().front());
        };
        cell(app, 0)->click();
        QVERIFY(paused);
        QVERIFY(app.polls().empty());
        QVERIFY(!app.delegate.pausereadtimer);
    }

    /// As the link's fields stand at that moment; the current unit follows once it is sent.
    void theFieldsAreSetBeforeTheCommandGoesOut_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("currentUnit");
        QTest::newRow("ounces") << 0 << 2;
        QTest::newRow("pounds and ounces A") << 1 << 3;
        QTest::newRow("pounds and ounces B") << 2 << 4;
        QTest::newRow("decimal pounds") << 3 << 4;
        QTest::newRow("grams") << 4 << 1;
        QTest::newRow("kilograms") << 5 << 1;
        QTest::newRow("pounds and whole ounces, the unit before") << 6 << 7;
    }

    void theFieldsAreSetBeforeTheCommandGoesOut()
    {
        QFETCH(int, row);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        cell(app, row == 0 ? 1 : 0)->click(); // the row is not the chosen one yet
        cell(app, row)->setEnabled(true);
        app.link.setCurrentUnit(7);
        const UnitRow &unit = unitTable.at(static_cast<std::size_t>(row));
        int currentUnit = 0;
        bool others = false;
        app.hidapi.duringSend = [&] {
            currentUnit = app.link.currentUnit();
            others = app.link.unitnumber() == unit.tag && app.link.dotunit() == unit.tag &&
                     app.link.unitindex() == unit.unitindexGrams &&
                     app.link.lbOZlast() == unit.lbOZlast;
        };
        cell(app, row)->click();
        QTEST(currentUnit, "currentUnit");
        QVERIFY(others);
    }

    /// The change goes out with its command and once more with the next poll.
    void thePollAfterAChangeCarriesItToo()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        cell(app, 4)->click();
        app.read({0x01, 0x34, 0x12});
        app.read({0x01, 0x34, 0x12});
        QCOMPARE(app.commands(), std::vector{0x7F});
        QCOMPARE(app.polls(), (std::vector{0x7F, 0xFE}));
    }

    void aFailedSendChangesTheFieldsAllTheSame()
    {
        LaunchedApplication app(Scale::Present);
        app.hidapi.sendFails = true;
        cell(app, 4)->click();
        QCOMPARE(app.link.unitnumber(), 0);
        QCOMPARE(app.link.currentUnit(), 1);
        QVERIFY(app.log.lines().contains(QStringLiteral("io: Unable to read()")));
    }

    void rowOfTheCurrentUnit_data()
    {
        QTest::addColumn<int>("unitnumber");
        QTest::addColumn<int>("row");
        QTest::newRow("below") << -1 << 2;
        QTest::newRow("grams") << 0 << 4;
        QTest::newRow("ounces") << 1 << 0;
        QTest::newRow("pounds and ounces A") << 2 << 1;
        QTest::newRow("pounds and ounces B") << 3 << 2;
        QTest::newRow("decimal pounds") << 4 << 3;
        QTest::newRow("kilograms") << 5 << 5;
        QTest::newRow("pounds and whole ounces") << 6 << 6;
        QTest::newRow("above") << 7 << 2;
        QTest::newRow("far above") << 8 << 2;
    }

    /// Only the radio: nothing is sent, no field changes. The row of no unit leaves row 2.
    void rowOfTheCurrentUnit()
    {
        QFETCH(int, unitnumber);
        LaunchedApplication app(Scale::Present);
        app.forgetTraffic();
        app.link.setUnitnumber(unitnumber);
        app.delegate.setRadioButton();
        QTEST(checkedRow(app), "row");
        QVERIFY(app.log.lines().isEmpty());
        QVERIFY(app.hidapi.sent.empty());
        QCOMPARE(app.link.unitnumber(), unitnumber);
    }

    void theMenuOfUnitsActsAsTheColumnDoes()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        for (int row = 0; row < 7; ++row) {
            cell(app, row)->setEnabled(true);
            app.forgetTraffic();
            const rules::UnitState before = stateOf(app.link);
            QAction *item = app.delegate.unitMenu->actions().at(row);
            item->setEnabled(true);
            item->trigger();
            expectUnit(app, row, 0, before);
            QVERIFY(item->isChecked());
        }
    }

    void assistiveTechnologyChoosesAsAClickDoes_data()
    {
        QTest::addColumn<QString>("action");
        QTest::newRow("press") << QAccessibleActionInterface::pressAction();
        QTest::newRow("toggle") << QAccessibleActionInterface::toggleAction();
    }

    void assistiveTechnologyChoosesAsAClickDoes()
    {
        QFETCH(QString, action);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        for (const int row : {0, 4, 1}) {
            app.forgetTraffic();
            const rules::UnitState before = stateOf(app.link);
            QAccessible::queryAccessibleInterface(cell(app, row))
                ->actionInterface()
                ->doAction(action);
            app.pass(pressTime);
            expectUnit(app, row, 0, before);
        }
    }

    void assistiveTechnologyChoosesAfterAClickToo()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        cell(app, 0)->click();
        app.forgetTraffic();
        const rules::UnitState before = stateOf(app.link);
        QAccessible::queryAccessibleInterface(cell(app, 4))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
        app.pass(pressTime);
        expectUnit(app, 4, 0, before);
    }

private:
    static void expectUnit(const LaunchedApplication &app, int row, int type,
                           const rules::UnitState &before)
    {
        const UnitRow &unit = unitTable.at(static_cast<std::size_t>(row));
        const int unitindex = type == 1 ? unit.unitindexTenthOunces : unit.unitindexGrams;
        QCOMPARE(checkedRow(app), row);
        QCOMPARE(app.delegate.selectedRadioButtonIndex(), unit.tag);
        QCOMPARE(app.link.unitnumber(), unit.tag);
        QCOMPARE(app.link.dotunit(), unit.tag);
        QCOMPARE(app.link.unitindex(), unitindex);
        QCOMPARE(app.link.currentUnit(), unitindex);
        QCOMPARE(app.link.lbOZlast(), unit.lbOZlast);
        const int code = unitCode.at(static_cast<std::size_t>(unitindex));
        QCOMPARE(app.commands(), std::vector{(0xFF & ~0x38 & ~0x80) | code});
        QVERIFY(!app.delegate.pausereadtimer);

        const rules::UnitOutcome expected = rules::radioSelection(unit.tag, type, before);
        QCOMPARE(app.hidapi.sent, std::vector{expected.report});
        QCOMPARE(app.link.scaleCommand(), expected.state.scaleCommand);
        QCOMPARE(app.log.lines().first(2), texts(expected.log));
        QCOMPARE(app.log.lines().filter(QStringLiteral("io: buf[")).size(), 9);
    }
};

TEST_CLASS(UnitTest)
#include "UnitTest.moc"
