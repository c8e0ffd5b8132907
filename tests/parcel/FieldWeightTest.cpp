// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/FieldWeight.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

/// Of a reading that has settled on the pan.
ReadingNotes settledOnPan()
{
    ReadingNotes notes;
    notes.isConnected = true;
    notes.pan = PanReading::Weight;
    notes.state = SettledWeight::State::Settled;
    notes.age = 120ms;
    return notes;
}

FieldWeightFacts weighing(std::uint32_t digits, int exponent, WeightUnit unit)
{
    return {.statement = ScaleStatement{.status = ScaleStatus::Stable,
                                        .unit = unit,
                                        .number = {.digits = digits, .exponent = exponent}}};
}

/// In the order of UnitTexts.
QStringList listed(const BrowserWeight &weight)
{
    if (!weight.texts)
        return {};
    const UnitTexts &texts = *weight.texts;
    return {texts.pounds, texts.ounces,      texts.kilograms,
            texts.grams,  texts.wholePounds, texts.restOunces};
}

} // namespace

/// The latest reading as a field of whatever page gets it.
class FieldWeightTest : public QObject
{
    Q_OBJECT

private slots:
    void everyUnit_data()
    {
        QTest::addColumn<FieldWeightFacts>("facts");
        QTest::addColumn<QString>("texts");
        const auto row = [](const char *name, const FieldWeightFacts &facts, const char *texts) {
            QTest::newRow(name) << facts << QString::fromLatin1(texts);
        };
        row("1000 g", weighing(1000, 0, WeightUnit::Gram), "2.205 35.27 1 1000 2 4");
        row("1 g", weighing(1, 0, WeightUnit::Gram), "0.002 0.04 0.001 1 0 1");
        row("35.3 oz", weighing(353, -1, WeightUnit::Ounce), "2.206 35.3 1.001 1000.7 2 4");
        row("16 oz", weighing(160, -1, WeightUnit::Ounce), "1 16 0.454 453.6 1 0");
        row("2.5 lb", weighing(25, -1, WeightUnit::Pound), "2.5 40 1.134 1134 2 8");
        row("2.5 g", weighing(25, -1, WeightUnit::Gram), "0.006 0.09 0.002 2.5 0 1");
        row("150 kg", weighing(150, 0, WeightUnit::Kilogram), "330.693 5291.09 150 150000 330 12");
        row("nothing", weighing(0, 0, WeightUnit::Gram), "0 0 0 0 0 0");
        FieldWeightFacts up = weighing(1000, 0, WeightUnit::Gram);
        up.rounding = ExportRounding::UpToWhole;
        row("rounded up", up, "3 36 1 1000 2 4");
    }

    void everyUnit()
    {
        QFETCH(const FieldWeightFacts, facts);
        QFETCH(const QString, texts);
        const BrowserWeight weight = fieldWeight(settledOnPan(), facts);
        QCOMPARE(listed(weight).join(QLatin1Char(' ')), texts);
        QCOMPARE(weight.state, WeightState::Settled);
        QCOMPARE(weight.age, std::chrono::milliseconds(120ms));
        QVERIFY(!weight.isNews);
    }

    /// What lies just above a step is not below it.
    void exact_data()
    {
        QTest::addColumn<FieldWeightFacts>("facts");
        QTest::addColumn<QString>("numbers");
        const auto row = [](const char *name, const FieldWeightFacts &facts, const char *numbers) {
            QTest::newRow(name) << facts << QString::fromLatin1(numbers);
        };
        row("1000 g", weighing(1000, 0, WeightUnit::Gram), "2.204623 35.273962 1 1000");
        row("a bit above half a pound", weighing(227, 0, WeightUnit::Gram),
            "0.500449 8.007189 0.227 227");
        row("35.2 oz", weighing(352, -1, WeightUnit::Ounce), "2.2 35.2 0.997903 997.903214");
        row("a mountain", weighing(1234567, 8, WeightUnit::Gram),
            "272175433638.79776 4354806938220.764163 123456700000 123456700000000");
        FieldWeightFacts up = weighing(1000, 0, WeightUnit::Gram);
        up.rounding = ExportRounding::UpToWhole;
        row("rounded up", up, "3 36 1 1000");
    }

    void exact()
    {
        QFETCH(const FieldWeightFacts, facts);
        QFETCH(const QString, numbers);
        const UnitNumbers exact = fieldWeight(settledOnPan(), facts).texts.value().exact;
        const QStringList listed{exact.pounds, exact.ounces, exact.kilograms, exact.grams};
        QCOMPARE(listed.join(QLatin1Char(' ')), numbers);
    }

    void whichParcel()
    {
        ReadingNotes notes = settledOnPan();
        notes.parcel = 3;
        const FieldWeightFacts facts = weighing(1000, 0, WeightUnit::Gram);
        QCOMPARE(fieldWeight(notes, facts).parcel, std::optional(3));
        notes.state = SettledWeight::State::Settling;
        QCOMPARE(fieldWeight(notes, facts).parcel, std::nullopt);
    }

    /// Such as a tael, which is Hong Kong's or China's.
    void whatCannotBeConverted()
    {
        const BrowserWeight weight = fieldWeight(settledOnPan(), weighing(3, 0, WeightUnit::Tael));
        QCOMPARE(weight.state, WeightState::Unclear);
        QVERIFY(!weight.texts);
    }

    void states_data()
    {
        QTest::addColumn<ReadingNotes>("notes");
        QTest::addColumn<bool>("isHeld");
        QTest::addColumn<WeightState>("state");
        QTest::addColumn<bool>("hasTexts");
        const auto row = [](const char *name, auto change, WeightState state, bool hasTexts,
                            bool isHeld = false) {
            ReadingNotes notes = settledOnPan();
            change(notes);
            QTest::newRow(name) << notes << isHeld << state << hasTexts;
        };
        const auto on = [](PanReading pan) {
            return [pan](ReadingNotes &notes) { notes.pan = pan; };
        };
        row("settled", [](ReadingNotes &) {}, WeightState::Settled, true);
        row(
            "settling", [](ReadingNotes &notes) { notes.state = SettledWeight::State::Settling; },
            WeightState::Moving, true);
        row("missed", on(PanReading::Missed), WeightState::Moving, true);
        row("zero", on(PanReading::Zero), WeightState::Empty, true);
        row("below zero", on(PanReading::BelowZero), WeightState::BelowZero, false);
        row("lifted", on(PanReading::PanLifted), WeightState::Unclear, false);
        row("nothing certain", on(PanReading::None), WeightState::Unclear, false);
        row("held", [](ReadingNotes &) {}, WeightState::Held, true, true);
        row(
            "unplugged", [](ReadingNotes &notes) { notes.isConnected = false; },
            WeightState::NoScale, false);
        row(
            "silent", [](ReadingNotes &notes) { notes.isSilent = true; }, WeightState::Silent,
            false);
        row(
            "before a sleep", [](ReadingNotes &notes) { notes.isMarkedOld = true; },
            WeightState::Silent, false);
        row(
            "of the weighing before", [](ReadingNotes &notes) { notes.isConfirmed = false; },
            WeightState::Silent, false);
    }

    void states()
    {
        QFETCH(const ReadingNotes, notes);
        QFETCH(const bool, isHeld);
        QFETCH(const WeightState, state);
        QFETCH(const bool, hasTexts);
        FieldWeightFacts facts = weighing(1000, 0, WeightUnit::Gram);
        facts.isHeld = isHeld;
        const BrowserWeight weight = fieldWeight(notes, facts);
        QCOMPARE(weight.state, state);
        QCOMPARE(weight.texts.has_value(), hasTexts);
    }

    void thePanelsUnit()
    {
        ReadingNotes notes = settledOnPan();
        const FieldWeightFacts facts = weighing(1000, 0, WeightUnit::Gram);
        QCOMPARE(fieldWeight(notes, facts).unit, QStringLiteral("lb"));
        notes.leaving.texts.form = ExportForm::Kilograms;
        QCOMPARE(fieldWeight(notes, facts).unit, QStringLiteral("kg"));
        notes.leaving.shown = ShownWeight{2.25, QStringLiteral("lb oz")};
        QCOMPARE(fieldWeight(notes, facts).unit, QStringLiteral("lb oz"));
    }

    void reportsOfTheDescribedScale_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("scale");
        QTest::addColumn<Capacity>("capacity");
        QTest::addColumn<QString>("grams"); // empty: none
        const auto row = [](const char *name, int status, int scale, Capacity capacity,
                            const char *grams) {
            QTest::newRow(name) << status << scale << capacity << QString::fromLatin1(grams);
        };
        row("packed decimal", 0x01, scaletype::packedDecimal, Capacity::Standard, "1234");
        row("counts tens", 0x01, scaletype::packedDecimal, Capacity::High, "12340");
        row("tenths of ounces", reportstatus::binaryKilograms, scaletype::binary,
            Capacity::Standard, "13210.9");
        row("overload", 0x04, scaletype::packedDecimal, Capacity::Standard, "");
        row("off", 0x00, scaletype::packedDecimal, Capacity::Standard, "");
    }

    void reportsOfTheDescribedScale()
    {
        QFETCH(const int, status);
        QFETCH(const int, scale);
        QFETCH(const Capacity, capacity);
        QFETCH(const QString, grams);
        const auto statement =
            statementOf({.status = static_cast<std::uint8_t>(status), .low = 0x34, .high = 0x12},
                        scale, capacity);
        QCOMPARE(statement.has_value(), !grams.isEmpty());
        if (!statement)
            return;
        const auto text = fieldWeight(settledOnPan(), {.statement = statement}).texts;
        QVERIFY(text);
        QCOMPARE(text->grams, grams);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, FieldWeightTest)
#include "FieldWeightTest.moc"
