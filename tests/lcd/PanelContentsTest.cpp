// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/ReadingWords.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"
#include "widgets/ImageView.h"
#include "widgets/PanelWidget.h"

#include <QSignalSpy>

namespace {

using Scale = LaunchedApplication::Scale;
using Report = std::vector<std::uint8_t>;
using Digits = std::array<PanelContents::Digit, 4>;
constexpr auto none = std::nullopt;

const Report grams1234{0x01, 0x34, 0x12};
const Report grams1234AsPoundsB{0x07, 0x34, 0x12};

QStringList pictures(const Ui::MainWindow &form)
{
    return {form.digZero->imageName(), form.digOne->imageName(), form.digTwo->imageName(),
            form.digThree->imageName()};
}

} // namespace

/// What the panel tells of itself: to the report for scripts, and to screen readers.
class PanelContentsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void wordsOfReadings_data()
    {
        QTest::addColumn<Report>("report");
        const auto row = [](const char *words, const Report &report) {
            QTest::newRow(words) << report;
        };
        row("1234 grams", grams1234);
        row("9090 grams", {0x01, 0x90, 0x90});
        row("0 grams", {0x01, 0x00, 0x00});
        row("minus 12 grams", {0x81, 0x12, 0x00});
        row("43.5 ounces", {0x02, 0x34, 0x12});
        row("2 pounds 11.5 ounces", {0x03, 0x34, 0x12});
        row("2 pounds 11 1/2 ounces", grams1234AsPoundsB);
        row("overload", {0x04, 0x00, 0x00});
        row("off", {0x00, 0x00, 0x00});
        row("1.2 kilograms", {0x08, 0xA7, 0x01});
        row("2.6 pounds", {0x09, 0x98, 0x01});
        row("2 pounds 7 ounces", {0x0A, 0x90, 0x01});
    }

    /// The words are the test's names.
    void wordsOfReadings()
    {
        QFETCH(Report, report);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        // The first report of a tenth-ounce scale is taken for a gram scale's in part.
        app.read({static_cast<std::uint8_t>(report.at(0) >= 8 && report.at(0) < 128 ? 13 : 6)});
        app.read(report);
        const QString words = QString::fromLatin1(QTest::currentDataTag());
        QCOMPARE(readingWords(app.delegate.panel().contents()), words);
        app.turn();
        QCOMPARE(app.delegate.imageBox->readingText(), words);
        QCOMPARE(app.delegate.panel().announced(), app.delegate.panel().contents());
    }

    /// A view that is hidden keeps its picture.
    void picturesOfReadings()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read(grams1234);
        app.read({0x01, 0x05, 0x00});
        QCOMPARE(pictures(app.delegate), (QStringList{"1.bmp", "2.bmp", "3.bmp", "5.bmp"}));
        QVERIFY(app.delegate.digTwo->isHidden());
        QVERIFY(!app.delegate.digThree->isHidden());
        app.read(grams1234AsPoundsB);
        QCOMPARE(app.delegate.numeratorImg->imageName(), QStringLiteral("1.bmp"));
        QCOMPARE(app.delegate.denomImg->imageName(), QStringLiteral("2.bmp"));
        app.read({0x03, 0x34, 0x12});
        QCOMPARE(app.delegate.numeratorImg->imageName(), QStringLiteral("5.bmp"));
    }

    /// Their last digit stands in the fraction's place, and outlives a reading that has none.
    void picturesOfDecimalPounds()
    {
        LaunchedApplication app(Scale::Absent);
        app.link.setCurrentUnit(4);
        app.link.setUnitnumber(4);
        for (const int value : {10512, 10500}) {
            app.delegate.Draw5Digit(value);
            QVERIFY(!app.delegate.numeratorImg->isHidden());
            QCOMPARE(app.delegate.numeratorImg->imageName(), QStringLiteral("1.bmp"));
            QCOMPARE(app.delegate.panel().contents().numerator, PanelContents::Digit(1));
        }
    }

    void aHeldReadingSaysSo()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.delegate.holdAction();
        app.read(grams1234);
        QVERIFY(app.delegate.panel().contents().hold);
        app.delegate.holdAction();
        app.read(grams1234);
        QVERIFY(!app.delegate.panel().contents().hold);
    }

    void pointsAreThoseThatAreLit()
    {
        LaunchedApplication app(Scale::Absent);
        const std::array names{".1", ".2", ".3", ".4"};
        for (std::size_t point = 0; point < names.size(); ++point) {
            std::array<bool, 4> lit{};
            lit.at(point) = true;
            app.delegate.DrawIcon(QLatin1String(names.at(point)), true);
            QCOMPARE(app.delegate.panel().contents().points, lit);
            app.delegate.DrawIcon(QLatin1String(names.at(point)), false);
        }
    }

    void whatThereIsNoPictureOfIsNoDigit()
    {
        LaunchedApplication app(Scale::Absent);
        app.link.setCurrentScale(1);
        app.link.setCurrentUnit(2);
        app.delegate.Draw5Digit(10009);
        QCOMPARE(app.delegate.panel().contents().digits, (Digits{none, 0, 0, 9}));
        app.link.setCurrentScale(0);
        app.link.setCurrentUnit(4);
        app.link.setUnitnumber(2);
        app.delegate.Draw5Digit(20110); // a tenth over nothing
        QCOMPARE(app.delegate.panel().contents().numerator, PanelContents::Digit());
        app.delegate.Draw5Digit(20178); // seven eighths are 8.75, shown as 9
        QCOMPARE(app.delegate.panel().contents().numerator, PanelContents::Digit(9));
        QCOMPARE(app.delegate.panel().contents().denominator, PanelContents::Digit());
        app.delegate.Draw5Digit(20114); // a quarter is 2.5, and halves go to the even digit
        QCOMPARE(app.delegate.panel().contents().numerator, PanelContents::Digit(2));
    }

    void aFractionIsItsPartsWithTheBar()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read(grams1234AsPoundsB);
        const PanelContents stacked = app.delegate.panel().contents();
        QVERIFY(stacked.bar);
        QCOMPARE(stacked.numerator, PanelContents::Digit(1));
        QCOMPARE(stacked.denominator, PanelContents::Digit(2));
        app.delegate.panel().setLit(DigitView::denomImg, false);
        QVERIFY(app.delegate.panel().contents().bar);
        QCOMPARE(app.delegate.panel().contents().denominator, PanelContents::Digit());
        app.delegate.displayforLBOZsimple();
        const PanelContents whole = app.delegate.panel().contents();
        QVERIFY(!whole.bar);
        QVERIFY(!whole.numerator);
        QVERIFY(!whole.denominator);
        QCOMPARE(whole.digits, stacked.digits);
    }

    /// Unit L hides the fraction at every reading.
    void wholeOuncesHaveNoFraction()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.link.setLbOZlast(true);
        app.read(grams1234AsPoundsB);
        QVERIFY(!app.delegate.panel().contents().bar);
        QCOMPARE(app.delegate.panel().contents().numerator, PanelContents::Digit());
    }

    void aTurnIsAnnouncedOnce()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.turn();
        const QSignalSpy announced(&app.delegate.panel(), &Panel::readingAnnounced);
        app.read(grams1234);
        app.read({0x00, 0x00, 0x00});
        app.read(grams1234);
        QCOMPARE(announced.size(), 0);
        app.turn();
        QCOMPARE(announced.size(), 1);
        app.turn();
        QCOMPARE(announced.size(), 1);
    }

    void aPanelWithoutAScaleSaysSo()
    {
        LaunchedApplication app(Scale::Absent);
        const QString noScale = QStringLiteral("no scale connected");
        QCOMPARE(app.delegate.imageBox->readingText(), noScale);
        app.plug();
        app.stopPolling();
        QCOMPARE(app.delegate.imageBox->readingText(), QStringLiteral("off"));
        app.read(grams1234);
        app.turn();
        QCOMPARE(app.delegate.imageBox->readingText(), QStringLiteral("1234 grams"));
        app.delegate.clearAll();
        app.turn();
        QCOMPARE(app.delegate.imageBox->readingText(), QStringLiteral("off"));
        app.unplug();
        QCOMPARE(app.delegate.imageBox->readingText(), noScale);
    }
};

TEST_CLASS(PanelContentsTest)
#include "PanelContentsTest.moc"
