// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/ExportClipboard.h"
#include "export/ExportState.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>
#include <clocale>

namespace {

using Scale = LaunchedApplication::Scale;

const QString somethingElse = QStringLiteral("something else");

enum class Place { Box, Menu };

void switchClipboard(const LaunchedApplication &app, Place place)
{
    if (place == Place::Menu)
        app.delegate.mnuSendToClip->trigger();
    else
        app.delegate.checkClipboard->click();
}

} // namespace

/// The weight on the clipboard. Run in German too: texts keep the point.
class ClipboardTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void theDesktopsLanguageIsInForce()
    {
        LaunchedApplication app(Scale::Absent);
        const bool german = qgetenv("LC_ALL").startsWith("de_DE");
        QCOMPARE(*std::localeconv()->decimal_point, german ? ',' : '.');
        QCOMPARE(QLocale().decimalPoint(), german ? QStringLiteral(",") : QStringLiteral("."));
    }

    void writtenAtEveryReadingWhileOn_data()
    {
        QTest::addColumn<Place>("place");
        QTest::newRow("box") << Place::Box;
        QTest::newRow("menu") << Place::Menu;
    }

    void writtenAtEveryReadingWhileOn()
    {
        QFETCH(Place, place);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        QClipboard *clipboard = QGuiApplication::clipboard();
        clipboard->setText(somethingElse);
        app.read({0x01, 0x34, 0x12});
        QCOMPARE(clipboard->text(), somethingElse);
        switchClipboard(app, place);
        for (int reading = 0; reading < 3; ++reading) {
            clipboard->setText(somethingElse);
            app.read({0x01, 0x34, 0x12});
            QCOMPARE(clipboard->text(), app.delegate.lbLBL->text());
        }
        switchClipboard(app, place);
        clipboard->setText(somethingElse);
        app.read({0x01, 0x34, 0x12});
        QCOMPARE(clipboard->text(), somethingElse);
    }

    /// Whoever watches the clipboard sees each reading, the same weight again too.
    void aSteadyWeightIsWrittenAnew()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.checkClipboard->click();
        const QSignalSpy changes(QGuiApplication::clipboard(), &QClipboard::dataChanged);
        for (int readings = 1; readings <= 3; ++readings) {
            app.read({0x01, 0x34, 0x12});
            QCOMPARE(changes.size(), readings);
        }
    }

    void aForeignCopyOfTheSameTextIsReplacedToo()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.checkClipboard->click();
        app.read({0x01, 0x34, 0x12});
        QClipboard *clipboard = QGuiApplication::clipboard();
        auto *foreign = new QMimeData;
        foreign->setText(clipboard->text());
        foreign->setHtml(QStringLiteral("<b>%1</b>").arg(clipboard->text()));
        clipboard->setMimeData(foreign);
        app.read({0x01, 0x34, 0x12});
        QVERIFY(!clipboard->mimeData()->hasHtml());
        QCOMPARE(clipboard->text(), app.delegate.lbLBL->text());
    }

    void weightsInEachUnit_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<std::vector<std::uint8_t>>("report");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *unit, int cell, std::vector<std::uint8_t> report,
                            const char *text) {
            QTest::newRow(unit) << cell << report << QString::fromLatin1(text);
        };
        // status, low byte, high byte: 1234 g
        row("grams", 4, {0x01, 0x34, 0x12}, "1.234");
        row("kilograms", 5, {0x01, 0x34, 0x12}, "1.234");
        row("ounces", 0, {0x02, 0x34, 0x12}, "2.72");
        row("pounds and ounces B", 2, {0x07, 0x34, 0x12}, "2.72");
        row("decimal pounds", 3, {0x07, 0x34, 0x12}, "2.72");
    }

    void weightsInEachUnit()
    {
        QFETCH(int, row);
        QFETCH(std::vector<std::uint8_t>, report);
        QFETCH(QString, text);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.checkClipboard->click();
        QAbstractButton *cell = app.delegate.radiogroup->buttons().at(row);
        cell->setEnabled(true);
        cell->click();
        app.read(report);
        QCOMPARE(app.delegate.lbLBL->text(), text);
        QCOMPARE(QGuiApplication::clipboard()->text(), text);
    }

    /// Each copy tells whether it came through; switching off takes the notice back. On this
    /// desktop, which is none, the clipboard is never a window's own.
    void notices()
    {
        LaunchedApplication app(Scale::Absent);
        ExportState state;
        QStringList shown;
        ExportClipboard clipboard(state, [&](const QString &notice) { shown.append(notice); });
        clipboard.switchTo(true);
        QVERIFY(state.SetClip());
        QVERIFY(shown.isEmpty());
        clipboard.copy(QStringLiteral("1.234"));
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("1.234"));
        QVERIFY(!QGuiApplication::clipboard()->ownsClipboard());
        const auto notice = QStringLiteral("The desktop does not let this window write the "
                                           "clipboard while it is not in front.");
        QCOMPARE(shown, QStringList{notice});
        clipboard.switchTo(false);
        QVERIFY(!state.SetClip());
        QCOMPARE(shown, (QStringList{notice, QString()}));
    }

    void onePlainText()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.checkClipboard->click();
        app.read({0x01, 0x34, 0x12});
        const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
        QCOMPARE(contents->formats(), QStringList{QStringLiteral("text/plain")});
    }
};

TEST_CLASS(ClipboardTest)
#include "ClipboardTest.moc"
