// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/SpokenReadings.h"
#include "tests/support/TestClasses.h"

#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 400ms;

ReadingReport weight(double grams, std::optional<int> parcel = {})
{
    ReadingReport report = ReadingReport::of(ReportState::Weight);
    report.words = QStringLiteral("%1 grams").arg(grams);
    report.shown = ShownWeight{grams, QStringLiteral("g")};
    report.settled = parcel.has_value();
    report.parcel = parcel;
    return report;
}

ReadingReport held(double grams)
{
    ReadingReport report = weight(grams, 1);
    report.state = ReportState::Hold;
    report.words += QStringLiteral(", on hold");
    return report;
}

ReadingReport belowZero()
{
    ReadingReport report = weight(-12);
    report.advice = QStringLiteral("press Tare");
    return report;
}

ReadingReport inOunces(double ounces, int parcel)
{
    ReadingReport report = weight(ounces, parcel);
    report.words = QStringLiteral("%1 ounces").arg(ounces);
    return report;
}

ReadingReport of(ReportState state)
{
    return ReadingReport::of(state);
}

ReadingReport notReady(const char *words)
{
    ReadingReport report = ReadingReport::of(ReportState::NotReady);
    report.words = QLatin1String(words);
    return report;
}

struct Course
{
    const char *name;
    std::vector<ReadingReport> reports; ///< after a settled weight of 100 g, one with each poll
    QStringList said;
};

const QString overload = QStringLiteral("Overload: there is too much on the pan");

const std::vector<Course> courses{
    {"the same", {weight(100, 1), weight(100, 1)}, {}},
    {"a rising weight",
     {weight(200), weight(300), weight(400), weight(400), weight(400, 2), weight(400, 2)},
     {"400 grams"}},
    {"lifted", {weight(50), weight(0), weight(0), weight(0), weight(0), weight(0)}, {"0 grams"}},
    {"lifted for a moment", {weight(0), weight(80), weight(100, 2)}, {"100 grams"}},
    {"below zero",
     {belowZero(), belowZero(), belowZero(), belowZero(), belowZero()},
     {"-12 grams, press Tare"}},
    {"another unit", {inOunces(3.5, 2)}, {"3.5 ounces"}},
    {"overload",
     {of(ReportState::Waiting), of(ReportState::Overload), of(ReportState::Overload)},
     {overload}},
    {"after an overload",
     {of(ReportState::Overload), weight(100), weight(100, 1)},
     {overload, "100 grams"}},
    {"hold", {held(100), held(100), weight(100, 1)}, {"100 grams, on hold", "Hold is off"}},
    {"unplugged and back",
     {of(ReportState::NoScale), of(ReportState::NoScale), of(ReportState::Waiting), weight(100, 1)},
     {"No scale connected", "Scale connected", "100 grams"}},
    {"silent",
     {of(ReportState::NoAnswer), of(ReportState::NoAnswer), weight(100, 1)},
     {"The scale does not answer; unplug it and plug it in again", "100 grams"}},
    {"one trouble after another of the scale's own",
     {notReady("needs its zero"), notReady("needs its zero"), notReady("has a fault"),
      notReady("has a fault"), notReady("needs its zero")},
     {"needs its zero", "has a fault", "needs its zero"}},
    {"nothing certain", {of(ReportState::Waiting), weight(100, 1)}, {}},
};

} // namespace

/// What a screen reader says of readings.
class SpokenReadingsTest : public QObject
{
    Q_OBJECT

private slots:
    void theCourse_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t index = 0; index < courses.size(); ++index)
            QTest::newRow(courses[index].name) << static_cast<int>(index);
    }

    void theCourse()
    {
        QFETCH(const int, index);
        const Course &course = courses.at(static_cast<std::size_t>(index));
        SpokenReadings spoken;
        auto now = 0ms;
        spoken.take(of(ReportState::Waiting), now);
        QCOMPARE(spoken.take(weight(100, 1), now), QStringLiteral("100 grams"));
        QStringList said;
        for (const ReadingReport &report : course.reports) {
            now += pollInterval;
            said.append(spoken.take(report, now));
        }
        said.removeAll(QString());
        QCOMPARE(said, course.said);
    }

    void aTroubleThatSomethingElseTellsOfHasNoWords()
    {
        SpokenReadings spoken;
        spoken.take(of(ReportState::Waiting), 0ms);
        const auto told = SpokenReadings::Notice::Said;
        QCOMPARE(spoken.take(of(ReportState::Off), 0ms, told), QString());
        QCOMPARE(spoken.take(weight(100, 1), pollInterval), QStringLiteral("100 grams"));
    }

    void withoutAScaleNothingIsSaidAtTheStart()
    {
        SpokenReadings spoken;
        QCOMPARE(spoken.take(of(ReportState::NoScale), 0ms), QString());
        QCOMPARE(spoken.take(of(ReportState::NoPermission), pollInterval),
                 QStringLiteral("Scale connected. ") + of(ReportState::NoPermission).words);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, SpokenReadingsTest)
#include "SpokenReadingsTest.moc"
