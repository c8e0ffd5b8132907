// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <array>

namespace {

using Scale = LaunchedApplication::Scale;

struct ScaleItem
{
    QAction *Ui_MainWindow::*item;
    QPushButton *Ui_MainWindow::*button;
    const char *keys;
    int command; ///< from the start value, with the scale's display off
};

constexpr std::array<ScaleItem, 3> scaleItemTable{{
    {&Ui_MainWindow::powerItem, &Ui_MainWindow::powerButton, "Ctrl+P", 0xDE},
    {&Ui_MainWindow::tareItem, &Ui_MainWindow::tareButton, "Ctrl+T", 0xFD},
    {&Ui_MainWindow::holdItem, &Ui_MainWindow::holdButton, "Ctrl+H", 0xFB},
}};

QList<QAbstractButton *> cells(const LaunchedApplication &app)
{
    return app.delegate.radiogroup->buttons();
}

/// Rows that the Tab key stops at; 'x' for those.
QString tabStops(const LaunchedApplication &app)
{
    QString rows;
    for (const QAbstractButton *cell : cells(app))
        rows.append(QLatin1Char((cell->focusPolicy() & Qt::TabFocus) != 0 ? 'x' : '.'));
    return rows;
}

} // namespace

/// The scale's buttons and units from the menu bar and the keyboard.
class ShortcutTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    /// A key held down is one command.
    void scaleItems()
    {
        for (const ScaleItem &row : scaleItemTable) {
            LaunchedApplication app(Scale::Present);
            app.stopPolling();
            QAction *item = app.delegate.*row.item;
            const QKeySequence keys(QString::fromLatin1(row.keys));
            QCOMPARE(item->shortcut(), keys);
            QVERIFY(!item->autoRepeat());
            const QString toolTip = (app.delegate.*row.button)->toolTip();
            QVERIFY(toolTip.endsWith(
                QStringLiteral(" (%1)").arg(keys.toString(QKeySequence::NativeText))));
            item->trigger();
            QCOMPARE(app.commands(), std::vector{row.command});
            (app.delegate.*row.button)->click();
            QCOMPARE(app.commands().size(), std::size_t{2});
        }
    }

    void unitItems()
    {
        LaunchedApplication app(Scale::Absent);
        QVERIFY(app.delegate.unitMenu->toolTipsVisible());
        QCOMPARE(app.delegate.unitMenu->actions().size(), 7);
        for (int row = 0; row < 7; ++row) {
            const QAction *item = app.delegate.unitMenu->actions().at(row);
            const QAbstractButton *cell = cells(app).at(row);
            QCOMPARE(item->text(), cell->text());
            QCOMPARE(item->shortcut(), QKeySequence(QStringLiteral("Ctrl+%1").arg(row + 1)));
            QVERIFY(!item->autoRepeat());
            QCOMPARE(item->isChecked(), cell->isChecked());
        }
    }

    void unitItemsFollowTheModel()
    {
        LaunchedApplication app(Scale::Absent);
        const QString reason = QStringLiteral("The chosen model does not weigh in this unit");
        for (const int model : {1, 7, 0}) {
            app.delegate.enableDisableWeight(model);
            for (int row = 0; row < 7; ++row) {
                const QAction *item = app.delegate.unitMenu->actions().at(row);
                const QAbstractButton *cell = cells(app).at(row);
                QCOMPARE(item->isEnabled(), cell->isEnabled());
                QCOMPARE(cell->toolTip(),
                         cell->isEnabled() ? QStringLiteral("Ctrl+%1").arg(row + 1) : reason);
                QCOMPARE(item->toolTip() == reason, !cell->isEnabled());
            }
        }
    }

    void unitItemsFollowTheColumn()
    {
        LaunchedApplication app(Scale::Absent);
        for (const int row : {0, 4, 1, 2}) {
            cells(app).at(row)->click();
            for (int other = 0; other < 7; ++other)
                QCOMPARE(app.delegate.unitMenu->actions().at(other)->isChecked(), other == row);
        }
        app.link.setUnitnumber(5);
        app.delegate.setRadioButton();
        QVERIFY(app.delegate.unitMenu->actions().at(5)->isChecked());
        QVERIFY(!app.delegate.unitMenu->actions().at(2)->isChecked());
    }

    /// At the chosen row; where that is disabled, at any.
    void theTabKeyStopsAtTheChoice()
    {
        LaunchedApplication app(Scale::Absent);
        app.delegate.enableDisableWeight(0);
        QCOMPARE(tabStops(app), QStringLiteral("..x...."));
        cells(app).at(0)->click();
        QCOMPARE(tabStops(app), QStringLiteral("x......"));
        app.delegate.enableDisableWeight(7);
        QCOMPARE(tabStops(app), QStringLiteral("xxxxxxx"));
        app.link.setUnitnumber(4);
        app.delegate.setRadioButton();
        QCOMPARE(tabStops(app), QStringLiteral("...x..."));
        for (const QAbstractButton *cell : cells(app))
            QVERIFY((cell->focusPolicy() & Qt::ClickFocus) != 0);
    }
};

TEST_CLASS(ShortcutTest)
#include "ShortcutTest.moc"
