// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeClock.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <chrono>

using namespace std::chrono_literals;

namespace {

using Scale = LaunchedApplication::Scale;
using Report = std::vector<std::uint8_t>;

const Report blankDisplay{0x00, 0x00, 0x00};
const Report grams1234{0x01, 0x34, 0x12};
const Report minus12Grams{0x81, 0x12, 0x00};
const Report overload{0x04, 0x00, 0x00};
const Report underLoad{0x05, 0x00, 0x00};
const Report typeZero{0x06, 0x00, 0x00};
const Report kilogramsOfTypeOne{0x08, 0xB3, 0x01}; // 435 tenths of an ounce
const Report overloadOfTypeOne{0x0B, 0x00, 0x00};
const Report underLoadOfTypeOne{0x0C, 0x00, 0x00};
const Report typeOne{0x0D, 0x00, 0x00};

struct Weighing
{
    const char *name;
    std::vector<Report> reports;
    ReportState state;
    const char *words; ///< of a weight
    double grams = 0;
};

const std::vector<Weighing> weighings{
    {"nothing yet", {}, ReportState::Waiting, ""},
    {"type 0 announces itself", {typeZero}, ReportState::Waiting, ""},
    {"grams", {typeZero, grams1234}, ReportState::Weight, "1234 grams", 1234},
    {"grams at once", {grams1234}, ReportState::Weight, "1234 grams", 1234},
    {"less than the tare", {minus12Grams}, ReportState::Weight, "minus 12 grams", -12},
    {"type 1, worked out for type 0", {kilogramsOfTypeOne}, ReportState::Waiting, ""},
    {"type 1",
     {kilogramsOfTypeOne, kilogramsOfTypeOne},
     ReportState::Weight,
     "1.2 kilograms",
     1200},
    {"type 1 announced", {typeOne, kilogramsOfTypeOne}, ReportState::Weight, "1.2 kilograms", 1200},
    {"a blank report", {grams1234, blankDisplay}, ReportState::Waiting, ""},
    {"off", {grams1234, blankDisplay, blankDisplay}, ReportState::Off, ""},
    {"on again", {blankDisplay, blankDisplay, grams1234}, ReportState::Weight, "1234 grams", 1234},
    {"overload", {grams1234, overload, overload}, ReportState::Overload, ""},
    {"overload of type 1", {overloadOfTypeOne, overloadOfTypeOne}, ReportState::Overload, ""},
    {"under load", {grams1234, underLoad, underLoad}, ReportState::UnderLoad, ""},
    {"under load of type 1", {underLoadOfTypeOne, underLoadOfTypeOne}, ReportState::UnderLoad, ""},
    {"after under load",
     {underLoad, underLoad, grams1234},
     ReportState::Weight,
     "1234 grams",
     1234},
};

ReadingReport reportOf(LaunchedApplication &app)
{
    LaunchedApplication::turn();
    return app.application.delegate()->readingReport();
}

} // namespace

Q_DECLARE_METATYPE(Weighing)

/// What scripts are told of the window's readings.
class ReadingReportDelegateTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    /// With the age of what the window shows, if it shows anything.
    void aScaleThatDoesNotAnswer()
    {
        LaunchedApplication app(Scale::Present);
        app.hidapi.duringWait = [](int patience) {
            fakeclock::advance(std::chrono::milliseconds(patience));
        };
        app.pass(400ms);
        ReadingReport report = reportOf(app);
        QCOMPARE(report.state, ReportState::NoAnswer);
        QCOMPARE(report.exitStatus(), 2);
        QVERIFY(!report.age);

        app.hidapi.reports.push_back(grams1234);
        app.pass(100ms);
        QCOMPARE(reportOf(app).state, ReportState::Weight);
        app.pass(5s);
        report = reportOf(app);
        QCOMPARE(report.state, ReportState::NoAnswer);
        QVERIFY(*report.age >= 5);
        QVERIFY(!report.shown);
        QCOMPARE(ReadingReport::fromJson(report.toJson()), report);
    }

    void stateOfTheReadings_data()
    {
        QTest::addColumn<Weighing>("weighing");
        for (const Weighing &weighing : weighings)
            QTest::newRow(weighing.name) << weighing;
    }

    void stateOfTheReadings()
    {
        QFETCH(Weighing, weighing);
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        for (const Report &report : weighing.reports)
            app.read(report);
        const ReadingReport report = reportOf(app);
        QCOMPARE(report.state, weighing.state);
        QCOMPARE(report.grams.has_value(), weighing.state == ReportState::Weight);
        if (weighing.state != ReportState::Weight)
            return;
        QCOMPARE(report.words, QString::fromLatin1(weighing.words));
        QCOMPARE(*report.grams, weighing.grams);
        QCOMPARE(report.shown, shownWeight(app.delegate.panel().contents()));
    }

    void thePanelIsReadOutBeforeItIsReported()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read(grams1234);
        QCOMPARE(reportOf(app).words, QStringLiteral("1234 grams"));
        app.read(minus12Grams);
        QCOMPARE(app.application.delegate()->readingReport().state, ReportState::Waiting);
        QCOMPARE(reportOf(app).words, QStringLiteral("minus 12 grams"));
    }

    void aScaleThatIsPluggedInAnewStartsAnew()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read(grams1234);
        app.unplug();
        QCOMPARE(reportOf(app).state, ReportState::NoScale);
        app.plug();
        app.stopPolling();
        QCOMPARE(reportOf(app).state, ReportState::Waiting);
    }

    void noScale()
    {
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(reportOf(app).state, ReportState::NoScale);
    }

    void anotherDeviceOfTheMakerIsNoScale()
    {
        LaunchedApplication app(Scale::Absent);
        app.plug({"hidraw8", scaleVendorId, 0x1234});
        app.stopPolling();
        QVERIFY(app.delegate.isDeviceConnected);
        QCOMPARE(reportOf(app).state, ReportState::NoScale);
    }

    void aScaleThatCouldNotBeOpened()
    {
        LaunchedApplication app(Scale::Absent);
        app.hidapi.openFails = true;
        app.plug();
        app.stopPolling();
        QCOMPARE(reportOf(app).state, ReportState::NotOpened);
    }

    void aHeldReading()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read(grams1234);
        app.delegate.holdAction();
        app.read(grams1234);
        const ReadingReport report = reportOf(app);
        QCOMPARE(report.state, ReportState::Hold);
        QCOMPARE(report.exitStatus(), 0);
        QCOMPARE(report.shown, (ShownWeight{1234, QStringLiteral("g")}));
    }

    /// Nothing of the program takes taels, and yet each is a parcel of its own.
    void whatCannotLeaveIsCountedAllTheSame()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        const auto parcelOf = [&app](unsigned taels) {
            app.delegate.takeReading(
                {.statement = {ScaleStatus::Stable, WeightUnit::Tael, {taels, 0, false}}});
            app.delegate.panel().announceReading();
            return reportOf(app).parcel.value_or(0);
        };
        QCOMPARE(parcelOf(5), 1);
        QCOMPARE(parcelOf(5), 1);
        QCOMPARE(parcelOf(6), 2);
        QVERIFY(app.delegate.parcel().recentWeights().all().isEmpty());
    }

    void aSignOfLifeHasAnAge()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read(grams1234);
        LaunchedApplication::turn();
        QVERIFY(!app.application.delegate()->followedReport().age);
        const double age = app.application.delegate()->signOfLife().age.value_or(-1);
        QVERIFY(age >= 0 && age < 1);
        app.unplug();
        QVERIFY(!app.application.delegate()->signOfLife().age);
    }

    void theModelIsTheOneThatIsShown()
    {
        storedsettings::store("[General]\nlastSelectedValue=3\n");
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(reportOf(app).model, QStringLiteral("KV-B200"));
        app.delegate.optionButton->setCurrentIndex(7);
        app.delegate.modelSelectionAction();
        QCOMPARE(reportOf(app).model, QStringLiteral("KV-C300"));
    }
};

TEST_CLASS(ReadingReportDelegateTest)
#include "ReadingReportDelegateTest.moc"
