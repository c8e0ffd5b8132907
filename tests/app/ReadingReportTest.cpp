// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ReadingReport.h"
#include "tests/support/TestClasses.h"

#include <QJsonDocument>

class ReadingReportTest : public QObject
{
    Q_OBJECT

private slots:
    void aReadingAsJson()
    {
        const ReadingReport report{.state = ReportState::Weight,
                                   .words = QStringLiteral("minus 1.234 kilograms"),
                                   .shown = ShownWeight{-1.234, QStringLiteral("kg")},
                                   .grams = -1234,
                                   .model = QStringLiteral("KV-A100"),
                                   .settled = false,
                                   .age = 2.5,
                                   .advice = QStringLiteral("press Tare"),
                                   .exported = QStringLiteral("1.234"),
                                   .exportUnit = QStringLiteral("kg"),
                                   .leaves = QStringLiteral("leaves as 1.234 kg")};
        QCOMPARE(QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact),
                 R"({"advice":"press Tare","age":2.5,"export":"1.234","exportUnit":"kg",)"
                 R"("format":1,"grams":-1234,"leaves":"leaves as 1.234 kg",)"
                 R"("model":"KV-A100","parcel":null,)"
                 R"("settled":false,"settledSince":null,"sign":"-","state":"weight",)"
                 R"("text":"minus 1.234 kilograms","unit":"kg","weight":-1.234})");
        QCOMPARE(ReadingReport::fromJson(report.toJson()), report);
    }

    void aSettledReadingAsJson()
    {
        ReadingReport report;
        report.settled = true;
        report.settledSince = QStringLiteral("2026-11-21T10:42:13+01:00");
        report.parcel = 3;
        QCOMPARE(report.toJson().value(QLatin1String("settled")), QJsonValue(true));
        QCOMPARE(report.toJson().value(QLatin1String("settledSince")).toString(),
                 report.settledSince);
        QCOMPARE(ReadingReport::fromJson(report.toJson()), report);
    }

    void noReadingAsJson()
    {
        const ReadingReport report = ReadingReport::of(ReportState::NoScale);
        QCOMPARE(
            QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact),
            R"({"advice":null,"age":null,"export":null,"exportUnit":null,"format":1,)"
            R"("grams":null,)"
            R"("leaves":null,"model":null,"parcel":null,"settled":null,"settledSince":null,"sign":null,)"
            R"("state":"no-scale",)"
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

TEST_CLASS_INSIDE(QCoreApplication, ReadingReportTest)
#include "ReadingReportTest.moc"
