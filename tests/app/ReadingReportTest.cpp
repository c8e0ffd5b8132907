// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ReadingReport.h"

#include "lcd/ReadingWords.h"

#include <QJsonDocument>
#include <QTest>

class ReadingReportTest : public QObject
{
    Q_OBJECT

private slots:
    void wordsInNumbers_data()
    {
        QTest::addColumn<double>("weight");
        QTest::addColumn<QString>("unit");
        QTest::newRow("1 gram") << 1.0 << "g";
        QTest::newRow("1234 grams") << 1234.0 << "g";
        QTest::newRow("0 grams") << 0.0 << "g";
        QTest::newRow("minus 12 grams") << -12.0 << "g";
        QTest::newRow("1.234 kilograms") << 1.234 << "kg";
        QTest::newRow("43.5 ounces") << 43.5 << "oz";
        QTest::newRow("1 ounce") << 1.0 << "oz";
        QTest::newRow("2.204 pounds") << 2.204 << "lb";
        QTest::newRow("1 pound") << 1.0 << "lb";
        QTest::newRow("2 pounds 8 ounces") << 2.5 << "lb oz";
        QTest::newRow("1 pound 1 ounce") << 1.0625 << "lb oz";
        QTest::newRow("2 pounds 4.8 ounces") << 2.3 << "lb oz";
        QTest::newRow("minus 2 pounds 11 1/2 ounces") << -2.71875 << "lb oz";
        QTest::newRow("1234 grams, on hold") << 1234.0 << "g";
    }

    void wordsInNumbers()
    {
        QFETCH(double, weight);
        QFETCH(QString, unit);
        const auto shown = shownWeight(QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(shown);
        QCOMPARE(shown->weight, weight);
        QCOMPARE(shown->unit, unit);
    }

    void wordsWithoutAWeight()
    {
        for (const char *words : {"", "off", "overload", "no scale connected", "1234", "grams"})
            QVERIFY2(!shownWeight(QString::fromLatin1(words)), words);
    }

    // Every pounds-and-ounces panel that a scale up to its capacity can show.
    void everyPanelOfPoundsAndOuncesComesBackAsItsNumbers()
    {
        constexpr int mostPounds = 77;
        for (int pounds = 0; pounds <= mostPounds; ++pounds) {
            for (int ounces = 0; ounces < 16; ++ounces) {
                for (int tenths = 0; tenths < 10; ++tenths) {
                    PanelContents panel;
                    panel.digits = {pounds > 9 ? QString::number(pounds / 10) : QString(),
                                    QString::number(pounds % 10),
                                    ounces > 9 ? QString::number(ounces / 10) : QString(),
                                    QString::number(ounces % 10)};
                    panel.numerator = QString::number(tenths);
                    panel.points[3] = true;
                    panel.colon = true;
                    panel.pounds = true;
                    panel.ounces = true;
                    const auto shown = shownWeight(readingWords(panel));
                    QVERIFY(shown);
                    QCOMPARE(shown->unit, QStringLiteral("lb oz"));
                    QCOMPARE(qRound(shown->weight * 160), (pounds * 16 + ounces) * 10 + tenths);
                }
            }
        }
    }

    void aReadingAsJson()
    {
        const ReadingReport report{.state = ReportState::Weight,
                                   .words = QStringLiteral("minus 1.234 kilograms"),
                                   .shown = ShownWeight{-1.234, QStringLiteral("kg")},
                                   .grams = -1234,
                                   .model = QStringLiteral("KV-A100")};
        QCOMPARE(QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact),
                 R"({"grams":-1234,"model":"KV-A100","sign":"-","state":"weight",)"
                 R"("text":"minus 1.234 kilograms","unit":"kg","weight":-1.234})");
        QCOMPARE(ReadingReport::fromJson(report.toJson()), report);
    }

    void noReadingAsJson()
    {
        const ReadingReport report = ReadingReport::of(ReportState::NoScale);
        QCOMPARE(QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact),
                 R"({"grams":null,"model":null,"sign":null,"state":"no-scale",)"
                 R"("text":"No scale connected","unit":null,"weight":null})");
        QCOMPARE(ReadingReport::fromJson(report.toJson()), report);
    }

    void nothingComesFromAnAnswerThatIsNone()
    {
        QCOMPARE(ReadingReport::fromJson({}).state, ReportState::Waiting);
    }

    void exitStatuses_data()
    {
        QTest::addColumn<ReportState>("state");
        QTest::addColumn<int>("status");
        QTest::newRow("weight") << ReportState::Weight << 0;
        QTest::newRow("hold") << ReportState::Hold << 0;
        QTest::newRow("no-scale") << ReportState::NoScale << 1;
        QTest::newRow("overload") << ReportState::Overload << 2;
        QTest::newRow("under-load") << ReportState::UnderLoad << 2;
        QTest::newRow("off") << ReportState::Off << 2;
        QTest::newRow("not-opened") << ReportState::NotOpened << 2;
        QTest::newRow("no-answer") << ReportState::NoAnswer << 2;
        QTest::newRow("waiting") << ReportState::Waiting << 2;
        QTest::newRow("no-permission") << ReportState::NoPermission << 3;
    }

    void exitStatuses()
    {
        QFETCH(ReportState, state);
        QFETCH(int, status);
        const ReadingReport report = ReadingReport::of(state);
        QCOMPARE(report.exitStatus(), status);
        QCOMPARE(report.hasReading(), status == 0);
        QCOMPARE(report.toJson().value(QStringLiteral("state")).toString(),
                 QString::fromLatin1(QTest::currentDataTag()));
        // Where there is no reading, a person is told why.
        QCOMPARE(report.words.isEmpty(), status == 0);
    }
};

QTEST_GUILESS_MAIN(ReadingReportTest)
#include "ReadingReportTest.moc"
