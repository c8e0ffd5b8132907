// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/ReadingNotes.h"
#include "parcel/RecentWeights.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

using State = SettledWeight::State;

const QString noUnitYet = QStringLiteral("leaves as 0: choose a unit");

LeavingTexts texts(const char *exported, ExportForm form, const char *pounds, const char *ounces,
                   const char *grams)
{
    return {.exported = QString::fromLatin1(exported),
            .form = form,
            .pounds = QString::fromLatin1(pounds),
            .ounces = QString::fromLatin1(ounces),
            .grams = QString::fromLatin1(grams)};
}

/// 1234 g.
const LeavingTexts inPounds = texts("2.72", ExportForm::Pounds, "2", "12", "1234");
const LeavingTexts inKilograms = texts("1.234", ExportForm::Kilograms, "2", "12", "1234");
const LeavingTexts beforeAUnit = texts("0", ExportForm::Pounds, "2", "12", "1234");
const LeavingTexts ofNothing = texts("0", ExportForm::Pounds, "0", "0", "0");

ShownWeight shown(double weight, const char *unit)
{
    return {.weight = weight, .unit = QString::fromLatin1(unit)};
}

/// A settled parcel of 1234 g.
ReadingNotes settledNotes(const LeavingTexts &leaving)
{
    ReadingNotes notes;
    notes.isConnected = true;
    notes.pan = PanReading::Weight;
    notes.state = State::Settled;
    notes.settledSince = QDateTime({2026, 11, 21}, {10, 42, 13});
    notes.leaving.texts = leaving;
    notes.leaving.grams = 1234;
    notes.leaving.shown = shown(1234, "g");
    return notes;
}

} // namespace

/// What is said beside the panel.
class ReadingNotesTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsNotConfirmedSaysSoAndNothingElse()
    {
        ReadingNotes notes = settledNotes(inKilograms);
        notes.isConfirmed = false;
        QCOMPARE(notes.standing(),
                 QStringLiteral("Not confirmed yet: may be of the weighing before"));
        QCOMPARE(notes.leaves(), QString());
    }

    void leaves_data()
    {
        QTest::addColumn<LeavingTexts>("leaving");
        QTest::addColumn<ShownWeight>("panel");
        QTest::addColumn<QString>("carriers"); // U, P and F for USPS, UPS, FedEx
        QTest::addColumn<QString>("words");
        const auto row = [](const char *name, const LeavingTexts &leaving, const ShownWeight &panel,
                            const char *carriers, const QString &words) {
            QTest::newRow(name) << leaving << panel << QString::fromLatin1(carriers) << words;
        };
        row("the panel's own", inKilograms, shown(1.234, "kg"), "", {});
        row("another unit", inKilograms, shown(1234, "g"), "", "leaves as 1.234 kg");
        row("pounds for ounces", inPounds, shown(43.5, "oz"), "", "leaves as 2.72 lb");
        row("another digit", inPounds, shown(2.721, "lb"), "", "leaves as 2.72 lb");
        row("before a unit is chosen", beforeAUnit, shown(1234, "g"), "", noUnitYet);
        row("below zero", inKilograms, shown(-1.234, "kg"), "",
            "leaves as 1.234 kg, without the minus sign");
        row("nothing is nothing", ofNothing, shown(0, "g"), "UPF", {});
        row("USPS", inKilograms, shown(1.234, "kg"), "U", "USPS page: 2 lb 12 oz");
        row("USPS shows the same", inPounds, shown(2.75, "lb oz"), "U", "leaves as 2.72 lb");
        row("before a unit, for USPS", beforeAUnit, shown(1234, "g"), "U",
            noUnitYet + "; USPS page: 2 lb 12 oz");
        row("UPS", inPounds, shown(2.72, "lb"), "P", "some UPS fields: 2 lb");
        row("FedEx in kilograms", inKilograms, shown(1.234, "kg"), "F", "a FedEx field: 2.720 lb");
        row("FedEx in pounds", inPounds, shown(2.72, "lb"), "F", {});
        row("rounded up", texts("3", ExportForm::Pounds, "2", "12", "1234"), shown(2.72, "lb"), "",
            "leaves as 3 lb");
    }

    void leaves()
    {
        QFETCH(const LeavingTexts, leaving);
        QFETCH(const ShownWeight, panel);
        QFETCH(const QString, carriers);
        LeavingSituation situation{.texts = leaving, .grams = 1234, .shown = panel};
        situation.toUsps = carriers.contains(QLatin1Char('U'));
        situation.toUps = carriers.contains(QLatin1Char('P'));
        situation.toFedex = carriers.contains(QLatin1Char('F'));
        QTEST(leavingWords(situation), "words");
    }

    void withoutAWeightOnThePanel()
    {
        QCOMPARE(leavingWords({.texts = ofNothing, .shown = std::nullopt}),
                 QStringLiteral("leaves as 0"));
        QCOMPARE(leavingWords({.texts = {}, .shown = std::nullopt}), QString());
    }

    void whatTellsTheWeight()
    {
        QVERIFY(textsTell(Destination::Clipboard, inPounds, 1234));
        QVERIFY(textsTell(Destination::Fedex, inKilograms, 1234));
        for (const Destination each :
             {Destination::Clipboard, Destination::Ups, Destination::Fedex})
            QVERIFY(!textsTell(each, beforeAUnit, 1234));
        QVERIFY(textsTell(Destination::Usps, beforeAUnit, 1234));
        // 40 g on the binary scale, whose grams are rounded to 100.
        const LeavingTexts letter = texts("0.09", ExportForm::Kilograms, "0", "0", "0");
        QVERIFY(textsTell(Destination::Clipboard, letter, 40));
        QVERIFY(!textsTell(Destination::Usps, letter, 40));
        QVERIFY(!textsTell(Destination::Fedex, letter, 40));
        // The binary scale's pounds, read as kilograms: 2.5 lb.
        QVERIFY(!exportTells(texts("0.025", ExportForm::Kilograms, "2", "8", "1100"), 1134));
    }

    /// Whatever a scale weighs and is asked for, its own export text is of it.
    void everyWeightTells()
    {
        for (unsigned count = 1; count < 10000; ++count) {
            const std::uint8_t low = static_cast<std::uint8_t>(count / 10 % 10 * 16 + count % 10);
            const std::uint8_t high =
                static_cast<std::uint8_t>(count / 1000 * 16 + count / 100 % 10);
            for (const int status : {reportstatus::ounces, reportstatus::poundsOuncesA,
                                     reportstatus::poundsOuncesB, reportstatus::metric}) {
                const WeightReport report{std::uint8_t(status), low, high};
                const DecodedReport decoded =
                    decodeStatus(report, static_cast<float>(count), {}, Capacity::Standard);
                for (const ExportForm form : {ExportForm::Pounds, ExportForm::Kilograms}) {
                    const QString text = exportText({.report = report,
                                                     .weight = decoded.weight,
                                                     .poundsTimes10000 = decoded.poundsTimes10000},
                                                    form, ExportRounding::AsRead)
                                             .text;
                    const bool hasUnit =
                        status != reportstatus::metric || form == ExportForm::Kilograms;
                    const LeavingTexts leaving{.exported = text, .form = form};
                    const double grams =
                        weighedGrams(report, scaletype::packedDecimal, Capacity::Standard);
                    QCOMPARE(grams, double(count));
                    QCOMPARE(exportTells(leaving, grams), hasUnit);
                }
            }
        }
    }

    void standing_data()
    {
        QTest::addColumn<PanReading>("pan");
        QTest::addColumn<State>("state");
        QTest::addColumn<int>("age"); // ms
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("silent"); // where the scale does not answer
        const auto row = [](const char *words, PanReading pan, State state, int age) {
            const QString all = QString::fromUtf8(words);
            const QString silent =
                pan == PanReading::Missed ? all : all.section(QStringLiteral(" \u00b7 "), 1);
            QTest::newRow(words) << pan << state << age << all << silent;
        };
        row("Settling", PanReading::Weight, State::Settling, 0);
        row("Settled since 10:42:13", PanReading::Weight, State::Settled, 1000);
        row("Settled since 10:42:13 · 1 s old", PanReading::Weight, State::Settled, 1001);
        row("Settled since 10:42:13 · 59 s old", PanReading::Weight, State::Settled, 59999);
        row("Settled since 10:42:13 · 1 min old", PanReading::Weight, State::Settled, 60000);
        row("Settled since 10:42:13 · 2 h old", PanReading::Weight, State::Settled, 7200000);
        row("At zero", PanReading::Zero, State::Empty, 0);
        row("Below zero: press Tare", PanReading::BelowZero, State::Empty, 0);
        row("Pan lifted · 3 s old", PanReading::PanLifted, State::Empty, 3000);
        row("No reading for 3 s", PanReading::Missed, State::Settling, 3000);
        row("", PanReading::None, State::Empty, 3000);
    }

    void standing()
    {
        QFETCH(const PanReading, pan);
        QFETCH(const State, state);
        QFETCH(const int, age);
        ReadingNotes notes = settledNotes(inPounds);
        notes.pan = pan;
        notes.state = state;
        notes.age = std::chrono::milliseconds(age);
        QTEST(notes.standing(), "words");
        notes.isSilent = true;
        QTEST(notes.standing(), "silent");
        notes.isConnected = false;
        QCOMPARE(notes.standing(), QString());
        QCOMPARE(notes.leaves(), QString());
        QCOMPARE(notes.exportCaption(), QStringLiteral("Export"));
    }

    void captionHasTheUnit()
    {
        QCOMPARE(settledNotes(inPounds).exportCaption(), QStringLiteral("Export, lb"));
        QCOMPARE(settledNotes(inKilograms).exportCaption(), QStringLiteral("Export, kg"));
        QCOMPARE(settledNotes(texts("", ExportForm::Pounds, "", "", "")).exportCaption(),
                 QStringLiteral("Export"));
    }

    void settledWeightsOnly_data()
    {
        QTest::addColumn<PanReading>("pan");
        QTest::addColumn<State>("state");
        QTest::addColumn<LeavingTexts>("leaving");
        QTest::addColumn<QStringList>("places");
        QTest::addColumn<QString>("words");
        const auto row = [](const char *words, PanReading pan, State state,
                            const LeavingTexts &leaving, const QStringList &places) {
            QTest::newRow(words) << pan << state << leaving << places << QString::fromLatin1(words);
        };
        row("leaves when a weight has settled", PanReading::Zero, State::Empty, ofNothing, {});
        row("leaves as 2.72 lb, when it has settled", PanReading::Weight, State::Settling, inPounds,
            {});
        row("does not leave: choose a unit", PanReading::Weight, State::Settled, beforeAUnit, {});
        row("nothing has taken it; File, Recent weights keeps it", PanReading::Weight,
            State::Settled, inPounds, {});
        row("has left as 2.72 lb: clipboard", PanReading::Weight, State::Settled, inPounds,
            {"clipboard"});
        row("has left as 2.72 lb: clipboard, USPS page; USPS page: 2 lb 12 oz", PanReading::Weight,
            State::Settled, inPounds, {"clipboard", "USPS page"});
        row("has left as 2 lb 12 oz: USPS page", PanReading::Weight, State::Settled, beforeAUnit,
            {"USPS page"});
        // After a failed read or a hold it is looked at anew, and does not leave again.
        row("has left as 1.234 kg: clipboard", PanReading::Weight, State::Settling, inKilograms,
            {"clipboard"});
    }

    void settledWeightsOnly()
    {
        QFETCH(const LeavingTexts, leaving);
        QFETCH(const PanReading, pan);
        QFETCH(const State, state);
        QFETCH(const QStringList, places);
        ReadingNotes notes = settledNotes(leaving);
        notes.pan = pan;
        notes.state = state;
        notes.places = places;
        notes.hasLeft = state == State::Settled || !places.isEmpty();
        notes.settledOnly = true;
        // Nothing leaves at all: it would be said of nobody.
        QCOMPARE(notes.leaves(), leavingWords(notes.leaving));
        notes.leaving.toClipboard = true;
        QTEST(notes.leaves(), "words");
    }

    void beforeAUnitIsChosen()
    {
        ReadingNotes notes = settledNotes(beforeAUnit);
        notes.state = State::Settling;
        notes.settledOnly = true;
        notes.leaving.toUps = true;
        QCOMPARE(notes.leaves(), QStringLiteral("does not leave: choose a unit"));
        notes.leaving.toUsps = true;
        QCOMPARE(notes.leaves(),
                 QStringLiteral("USPS page: 2 lb 12 oz, when it has settled; the rest does not "
                                "leave: choose a unit"));
        notes.leaving = {.texts = texts("0", ExportForm::Pounds, "0", "0", "20"),
                         .grams = 20,
                         .shown = shown(0.04, "lb"),
                         .toClipboard = true};
        QCOMPARE(notes.leaves(), QStringLiteral("does not leave: too light for this unit"));
    }

    /// Rounded up, the binary scale's pounds taken for kilograms would pass for a weight.
    void textsOfAnotherUnitDoNotTell()
    {
        LeavingTexts rounded = texts("1", ExportForm::Kilograms, "2", "8", "1100");
        QVERIFY(exportTells(rounded, 1134));
        rounded.fitsScale = false;
        QVERIFY(!exportTells(rounded, 1134));
    }

    void tenRecentWeights()
    {
        RecentWeights recent;
        const QDateTime time({2026, 11, 21}, {10, 42, 13});
        recent.addPlace(QStringLiteral("clipboard"));
        QVERIFY(recent.all().isEmpty());
        for (int number = 1; number <= 12; ++number)
            recent.add({QString::number(number), QStringLiteral("lb"), time, {}});
        QCOMPARE(recent.all().size(), 10);
        QCOMPARE(recent.all().constFirst().words(),
                 QStringLiteral("12 lb at 10:42:13, went nowhere"));
        QCOMPARE(recent.all().constLast().text, QStringLiteral("3"));
        recent.addPlace(QStringLiteral("clipboard"));
        recent.addPlace(QStringLiteral("UPS page"));
        recent.addPlace(QStringLiteral("clipboard"));
        QCOMPARE(recent.all().constFirst().words(),
                 QStringLiteral("12 lb at 10:42:13: clipboard, UPS page"));
    }
};

TEST_CLASS_INSIDE(QCoreApplication, ReadingNotesTest)
#include "ReadingNotesTest.moc"
