// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/FollowerLine.h"
#include "tests/support/TestClasses.h"

#include <QJsonDocument>

namespace {

ReadingReport weighed(double grams, std::optional<int> parcel = {})
{
    ReadingReport report = ReadingReport::of(ReportState::Weight);
    report.words = QStringLiteral("%1 grams").arg(grams);
    report.shown = {grams, QStringLiteral("g")};
    report.grams = grams;
    report.parcel = parcel;
    report.settled = parcel.has_value();
    return report;
}

int numberOf(const QByteArray &line)
{
    return QJsonDocument::fromJson(line).object().value(QStringLiteral("count")).toInt();
}

QJsonObject numbered(int number)
{
    return {{QStringLiteral("count"), number}};
}

constexpr bool newSource = true;

/// What a follower hears: grams, and the parcel's number where it has settled.
struct Heard
{
    double grams;
    std::optional<int> parcel;
    bool isNewSource = false;
    ReportState state = ReportState::Weight;
};

Heard withoutWeight(ReportState state)
{
    return {.grams = 0, .parcel = {}, .isNewSource = false, .state = state};
}

} // namespace

/// Which lines a follower gets, and under which numbers.
class FollowerLineTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineForEachChange()
    {
        FollowerLines lines;
        const ReadingReport first = weighed(500);
        ReadingReport older = first;
        older.age = 3;
        QCOMPARE(numberOf(lines.next(first).value_or(QByteArray())), 1);
        QVERIFY(!lines.next(first));
        QVERIFY(!lines.next(older));
        QCOMPARE(numberOf(lines.present(older)), 1);
        QCOMPARE(numberOf(lines.again(older)), 2);
        QCOMPARE(numberOf(lines.next(weighed(500, 1)).value_or(QByteArray())), 3);
        const ReadingReport gone = ReadingReport::of(ReportState::NoScale);
        QCOMPARE(numberOf(lines.next(gone).value_or(QByteArray())), 4);
        QVERIFY(!lines.next(gone));
    }

    void theLineIsTheReport()
    {
        const ReadingReport report = weighed(500, 7);
        const QByteArray line = followerLine(report, 12);
        QVERIFY(line.endsWith('\n'));
        QCOMPARE(line.count('\n'), 1);
        QCOMPARE(ReadingReport::fromJson(QJsonDocument::fromJson(line).object()), report);
    }

    void gapsStay()
    {
        FollowedCount count;
        count.beginConnection();
        QCOMPARE(count.next(numbered(41)), 1);
        QCOMPARE(count.next(numbered(42)), 2);
        QCOMPARE(count.next(numbered(45)), 5);
        QCOMPARE(count.next(), 6);
        count.beginConnection();
        QCOMPARE(count.next(numbered(1)), 7);
        QCOMPARE(count.next(numbered(2)), 8);
    }

    void aLineForEachParcel_data()
    {
        QTest::addColumn<std::vector<Heard>>("heard");
        QTest::addColumn<QList<double>>("taken");
        const auto row = [](const char *name, const std::vector<Heard> &heard,
                            const QList<double> &taken) { QTest::newRow(name) << heard << taken; };
        row("nothing has settled", {{500, {}}, {510, {}}}, {});
        row("settled", {{500, {}}, {500, 1}, {500, 1}}, {500});
        row("it wobbles", {{500, 1}, {501, {}}, {500, 1}}, {500});
        row("another weight", {{500, 1}, {700, 2}}, {500, 700});
        row("the same weight again", {{500, 1}, {0, {}}, {500, 2}}, {500, 500});
        row("the unit was changed", {{500, 1}, {500, {}}, {500, 2}}, {500});
        row("another weight that did not settle", {{500, 1}, {700, {}}, {500, 2}}, {500, 500});
        row("overload in between", {{500, 1}, withoutWeight(ReportState::Overload), {500, 2}},
            {500, 500});
        row("lifted with the pan", {{500, 1}, withoutWeight(ReportState::UnderLoad), {500, 2}},
            {500, 500});
        row("silent in between", {{500, 1}, withoutWeight(ReportState::NoAnswer), {500, 2}}, {500});
        row("no scale for another source",
            {{500, 1}, withoutWeight(ReportState::NoScale), {500, 1, newSource}}, {500});
        row("another source settles what lies there",
            {{500, 1}, {500, {}, newSource}, {500, 1}, {500, 1}}, {500});
        row("another source counts further", {{500, 1}, {500, 4, newSource}}, {500});
        row("another source, another weight", {{500, 1}, {700, 1, newSource}}, {500, 700});
        row("lifted under another source", {{500, 1}, {0, {}, newSource}, {500, 1}}, {500, 500});
        row("lifted before it came", {{500, 1}, {0, {}}, {500, 1, newSource}}, {500, 500});
        row("less than the tare in between", {{500, 1}, {-20, {}}, {500, 1, newSource}},
            {500, 500});
    }

    void aLineForEachParcel()
    {
        QFETCH(std::vector<Heard>, heard);
        QFETCH(QList<double>, taken);
        ParcelFilter filter;
        filter.beginConnection();
        QList<double> lines;
        for (const Heard &each : heard) {
            if (each.isNewSource)
                filter.beginConnection();
            ReadingReport report = weighed(each.grams, each.parcel);
            if (each.state != ReportState::Weight)
                report = ReadingReport::of(each.state);
            if (filter.takes(report))
                lines.append(each.grams);
        }
        QCOMPARE(lines, taken);
    }

    /// Of units that are no grams, such as the tael.
    void withoutGramsTheNumberCounts()
    {
        ReadingReport parcel = weighed(5, 1);
        parcel.grams.reset();
        ParcelFilter filter;
        QVERIFY(filter.takes(parcel));
        filter.beginConnection();
        QVERIFY(!filter.takes(parcel));
        parcel.shown->weight = 6;
        filter.beginConnection();
        QVERIFY(filter.takes(parcel));
    }

    void aSignOfLifeSaysSo()
    {
        FollowedWords words;
        ReadingReport report = weighed(500);
        QCOMPARE(words.next(report), QStringLiteral("500 grams"));
        report.age = 0.3;
        QCOMPARE(words.next(report), QStringLiteral("500 grams (still, 0 s old)"));
        report.age = 12.7;
        QCOMPARE(words.next(report), QStringLiteral("500 grams (still, 12 s old)"));
        const ReadingReport gone = ReadingReport::of(ReportState::NoScale);
        QCOMPARE(words.next(gone), QStringLiteral("No scale connected"));
        QCOMPARE(words.next(gone), QStringLiteral("No scale connected (still)"));
        QCOMPARE(words.next(report), QStringLiteral("500 grams"));
    }

    void aHeldWeightIsNoParcel()
    {
        ParcelFilter filter;
        ReadingReport held = weighed(500, 1);
        held.state = ReportState::Hold;
        QVERIFY(!filter.takes(held));
        QVERIFY(filter.takes(weighed(500, 1)));
    }
};

TEST_CLASS_INSIDE(QCoreApplication, FollowerLineTest)

#include "FollowerLineTest.moc"
