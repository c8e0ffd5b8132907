// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>

namespace {

using Scale = LaunchedApplication::Scale;

QList<QWidget *> partsOfTheWholeWindow(const PostalScaleAppDelegate &delegate)
{
    return {delegate.menuBar,    delegate.controlBar, delegate.optionButton,
            delegate.unitColumn, delegate.lbLBL,      delegate.ozLBL};
}

QStringList namesOfHidden(const QList<QWidget *> &parts)
{
    QStringList names;
    for (const QWidget *part : parts) {
        if (part->isHidden())
            names.append(part->objectName());
    }
    return names;
}

} // namespace

/// The window with display and state alone.
class CompactFormTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void aThirdAsHighAndBackAsItWas()
    {
        LaunchedApplication app(Scale::Present);
        QMainWindow &window = *app.delegate.window;
        // Off the screen's edge, beyond which the toolkit takes a title bar for lost.
        window.move(40, 60);
        window.resize(1061, 500);
        LaunchedApplication::pass(std::chrono::seconds(1));
        const QRect place = window.geometry();
        app.delegate.compactItem->trigger();
        LaunchedApplication::turn();
        QVERIFY(app.delegate.isCompact());
        QVERIFY2(window.height() <= 424 / 3 + 1, qPrintable(QString::number(window.height())));
        QCOMPARE(namesOfHidden(partsOfTheWholeWindow(app.delegate)).size(),
                 partsOfTheWholeWindow(app.delegate).size());
        QVERIFY(app.delegate.imageBox->isVisible());
        QVERIFY(app.delegate.connectionStatuslbl->isVisible());
        QVERIFY(window.rect().contains(
            QRect(app.delegate.imageBox->mapTo(&window, QPoint()), app.delegate.imageBox->size())));
        app.delegate.compactItem->trigger();
        LaunchedApplication::turn();
        QVERIFY(!app.delegate.isCompact());
        QCOMPARE(window.geometry(), place);
        QCOMPARE(namesOfHidden(partsOfTheWholeWindow(app.delegate)), QStringList());
    }

    void eachFormKeepsItsSize()
    {
        LaunchedApplication app(Scale::Absent);
        QMainWindow &window = *app.delegate.window;
        app.delegate.setCompact(true);
        window.resize(640, 282);
        LaunchedApplication::pass(std::chrono::seconds(1));
        app.delegate.setCompact(false);
        QCOMPARE(window.size(), QSize(900, 424));
        app.delegate.setCompact(true);
        QCOMPARE(window.size(), QSize(640, 282));
    }

    void itComesBackAtTheNextStart()
    {
        {
            LaunchedApplication app(Scale::Absent);
            app.delegate.setCompact(true);
        }
        LaunchedApplication app(Scale::Absent);
        QVERIFY(app.delegate.isCompact());
        QVERIFY(app.delegate.menuBar->isHidden());
        QVERIFY(app.delegate.compactItem->isChecked());
        QVERIFY(app.delegate.window->height() <= 424 / 3 + 1);
    }

    /// The menu bar, which has them, is not there.
    void theKeysGoOnWorking()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.setCompact(true);
        LaunchedApplication::turn();
        app.forgetTraffic();
        QTest::keyClick(app.delegate.window.get(), Qt::Key_H, Qt::ControlModifier);
        QVERIFY(app.delegate.onhold);
        QTest::keyClick(app.delegate.window.get(), Qt::Key_M, Qt::ControlModifier);
        QVERIFY(!app.delegate.isCompact());
        QTest::keyClick(app.delegate.window.get(), Qt::Key_M, Qt::ControlModifier);
        QVERIFY(app.delegate.isCompact());
    }

    /// What is wrong has its line, also there.
    void noticesAreShown()
    {
        LaunchedApplication app(Scale::Absent);
        app.delegate.setCompact(true);
        QVERIFY(app.delegate.window->statusBar()->isHidden());
        app.delegate.showSessionTrouble(QStringLiteral("Something is wrong. This helps."));
        QVERIFY(!app.delegate.window->statusBar()->isHidden());
        app.delegate.showSessionTrouble({});
        QVERIFY(app.delegate.window->statusBar()->isHidden());
    }
};

TEST_CLASS(CompactFormTest)
#include "CompactFormTest.moc"
