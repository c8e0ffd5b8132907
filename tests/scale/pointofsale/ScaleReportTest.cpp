// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleReport.h"
#include "parcel/SettledWeight.h"
#include "scale/pointofsale/WeightConversion.h"
#include "tests/rules/PointOfSaleRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

#include <algorithm>
#include <array>

namespace {

using Report = std::vector<std::uint8_t>;

constexpr unsigned weightCount = 65536;

Report reportOf(int status, int unit, int exponent, unsigned weight)
{
    return {3,
            static_cast<std::uint8_t>(status),
            static_cast<std::uint8_t>(unit),
            static_cast<std::uint8_t>(exponent),
            static_cast<std::uint8_t>(weight),
            static_cast<std::uint8_t>(weight >> 8)};
}

void setWeight(Report &report, unsigned weight)
{
    report[4] = static_cast<std::uint8_t>(weight);
    report[5] = static_cast<std::uint8_t>(weight >> 8);
}

const ScaleLayout &classLayout()
{
    static const ScaleLayout layout = ScaleLayout::ofClass();
    return layout;
}

/// Each run takes a part of the reports. Where the environment names a unit, it takes all of that
/// one: the units are the parts in which the whole is played (ctest -C Endurance -R decoder_whole).
struct Part
{
    Part()
    {
        bool isNamed = false;
        const int unit = qEnvironmentVariableIntValue("POSTAL_SCALE_WHOLE_UNIT", &isNamed);
        if (isNamed) {
            firstUnit = lastUnit = unit;
            isWhole = true;
        }
    }

    unsigned step(unsigned sparse) const { return isWhole ? 1 : sparse; }

    int firstUnit = 0;
    int lastUnit = 13;
    bool isWhole = false;
};

bool agrees(const Report &report)
{
    const auto product = readScaleReport(report, classLayout());
    const auto expected = rules::stated(report);
    if (!product || !expected)
        return product.has_value() == expected.has_value();
    return static_cast<int>(product->status) == expected->status &&
           static_cast<int>(product->unit) == expected->unit &&
           product->number.digits == expected->digits &&
           product->number.exponent == expected->exponent &&
           product->number.isNegative == expected->below;
}

QString exported(const ScaleStatement &statement, ExportForm form, ExportRounding rounding)
{
    return exportText(statement, form, rounding).value_or(QStringLiteral("none"));
}

bool textsAgree(const Report &report)
{
    const ScaleStatement statement = *readScaleReport(report, classLayout());
    const rules::Stated stated = *rules::stated(report);
    if (magnitudeText(statement.number).toStdString() != rules::statedNumber(stated))
        return false;
    const auto expected = rules::statedTexts(stated);
    const auto web = webStrings(statement);
    if (!expected || !web)
        return !expected && !web &&
               !exportText(statement, ExportForm::Pounds, ExportRounding::AsRead) &&
               !exportText(statement, ExportForm::Kilograms, ExportRounding::UpToWhole);
    const auto same = [&](ExportForm form, ExportRounding rounding, const std::string &text) {
        return exported(statement, form, rounding).toStdString() == text;
    };
    return same(ExportForm::Pounds, ExportRounding::AsRead, expected->pounds) &&
           same(ExportForm::Kilograms, ExportRounding::AsRead, expected->kilograms) &&
           same(ExportForm::Pounds, ExportRounding::UpToWhole, expected->poundsUp) &&
           same(ExportForm::Kilograms, ExportRounding::UpToWhole, expected->kilogramsUp) &&
           web->pounds.toStdString() == expected->wholePounds &&
           web->ounces.toStdString() == expected->remainingOunces &&
           web->basic.toStdString() == expected->grams;
}

QStringList textsOf(const Report &report)
{
    const ScaleStatement statement = *readScaleReport(report, classLayout());
    QStringList texts{magnitudeText(statement.number)};
    for (const ExportForm form : {ExportForm::Pounds, ExportForm::Kilograms}) {
        for (const ExportRounding rounding : {ExportRounding::AsRead, ExportRounding::UpToWhole})
            texts.append(exported(statement, form, rounding));
    }
    if (const auto web = webStrings(statement))
        texts.append({web->pounds, web->ounces, web->basic, web->decimalPounds});
    return texts;
}

QByteArray named(const Report &report)
{
    return QByteArray(reinterpret_cast<const char *>(report.data()),
                      static_cast<qsizetype>(report.size()))
        .toHex(' ');
}

} // namespace

Q_DECLARE_METATYPE(WeightUnit)

/// The class's own report, against the independent statement of what it says.
class ScaleReportTest : public QObject
{
    Q_OBJECT

private slots:
    /// All statuses, units and exponents with each other, and with them, in turn, all weights.
    void everyStatusUnitExponentAndWeight()
    {
        const Part part;
        // A prime: each weight meets each of the others.
        const unsigned stride = part.step(97 * static_cast<unsigned>(sweepStep(61)));
        unsigned combination = 0;
        for (int status = 0; status <= 9; ++status) {
            for (int unit = part.firstUnit; unit <= part.lastUnit; ++unit) {
                for (int exponent = -127; exponent <= 127; ++exponent) {
                    Report report = reportOf(status, unit, exponent, 0);
                    for (unsigned weight = ++combination % std::min(stride, 97U);
                         weight < weightCount; weight += stride) {
                        setWeight(report, weight);
                        if (!agrees(report))
                            QFAIL(named(report));
                    }
                }
            }
        }
    }

    void everyWeightOfEveryStatus()
    {
        for (int status = 0; status <= 255; ++status) {
            for (unsigned weight = 0; weight < weightCount;
                 weight += static_cast<unsigned>(sweepStep(7))) {
                const Report report = reportOf(status, 11, -1, weight);
                if (!agrees(report))
                    QFAIL(named(report));
            }
        }
    }

    void everyUnitAndExponent()
    {
        for (int unit = 0; unit <= 255; ++unit) {
            for (int exponent = -128; exponent <= 127; ++exponent) {
                for (const unsigned weight : {0U, 1U, 0x7FFFU, 0x8000U, 0xFFFFU})
                    QVERIFY2(agrees(reportOf(5, unit, exponent, weight)),
                             named(reportOf(5, unit, exponent, weight)));
            }
        }
    }

    /// In the sizes that things have.
    void everyTextOfOrdinaryWeights()
    {
        for (int unit = 0; unit <= 12; ++unit) {
            for (int exponent = -6; exponent <= 3; ++exponent) {
                for (unsigned weight = 0; weight < weightCount;
                     weight += 29 * static_cast<unsigned>(sweepStep(7))) {
                    const Report report = reportOf(4, unit, exponent, weight);
                    if (!textsAgree(report))
                        QFAIL(named(report));
                }
            }
        }
    }

    void textsOfAllExponents()
    {
        const Part part;
        for (int unit = part.firstUnit; unit <= part.lastUnit; ++unit) {
            for (int exponent = -127; exponent <= 127; ++exponent) {
                Report report = reportOf(4, unit, exponent, 0);
                for (unsigned weight = 0; weight < weightCount;
                     weight += part.step(1009 * static_cast<unsigned>(sweepStep(7)))) {
                    setWeight(report, weight);
                    if (!textsAgree(report))
                        QFAIL(named(report));
                }
            }
        }
    }

    /// So the sweeps of texts need not be done for each status. Below zero the weight is that of
    /// the two's complement.
    void textsAreOfTheNumberAndTheUnitAlone()
    {
        for (int unit = 0; unit <= 13; ++unit) {
            for (int exponent = -14; exponent <= 12; ++exponent) {
                for (unsigned weight = 0; weight < weightCount / 2; weight += 491) {
                    const auto texts = textsOf(reportOf(4, unit, exponent, weight));
                    for (int status = 0; status <= 9; ++status)
                        QCOMPARE(textsOf(reportOf(status, unit, exponent, weight)), texts);
                    QCOMPARE(textsOf(reportOf(5, unit, exponent, weightCount - weight)), texts);
                }
            }
        }
    }

    /// Hosts cut reports, fill them up, and put a 0 before the number.
    void reportsOfAnyLength()
    {
        const Report whole = reportOf(4, 11, -1, 1234);
        for (std::size_t length = 0; length <= 128; ++length) {
            Report report(length);
            std::copy_n(whole.begin(), std::min(length, whole.size()), report.begin());
            QVERIFY2(agrees(report), named(report));
            QCOMPARE(readScaleReport(report, classLayout()).has_value(), length >= 6);
            report.insert(report.begin(), 0);
            QVERIFY2(agrees(report), named(report));
            QCOMPARE(readScaleReport(report, classLayout()).has_value(), length >= 6);
        }
    }

    void otherReportsSayNothingOfTheWeight()
    {
        for (int number = 0; number <= 255; ++number) {
            Report report = reportOf(4, 11, -1, 1234);
            report[0] = static_cast<std::uint8_t>(number);
            QVERIFY2(agrees(report), named(report));
            QCOMPARE(readScaleReport(report, classLayout()).has_value(), number == 3);
        }
        QVERIFY(!readScaleReport(std::array<std::uint8_t, 2>{4, 1}, classLayout()));
    }

    /// The sign is that of the status; what a field of its own accord says is below zero, though
    /// the status does not, is no weight.
    void signedFields()
    {
        ScaleLayout layout = ScaleLayout::ofClass();
        layout.weight.isSigned = true;
        const auto read = [&](int status, unsigned weight) {
            return *readScaleReport(reportOf(status, 2, 0, weight), layout);
        };
        for (const int status : {2, 3, 4}) {
            QVERIFY(read(status, 0xFFFB).number == (ScaleNumber{5, 0, true}));
            QVERIFY(!read(status, 0xFFFB).isSettled());
            QVERIFY(!isStatedWeight(read(status, 0xFFFB)));
        }
        QVERIFY(read(4, 5).isSettled());
        QVERIFY(isStatedWeight(read(4, 5)));
        QVERIFY(read(5, 0xFFFB).number == (ScaleNumber{5, 0, true}));
        QVERIFY(read(5, 5).number == (ScaleNumber{5, 0, true}));
        layout.weight.isSigned = false;
        QCOMPARE(read(4, 0xFFFB).number.digits, 0xFFFBU);
        QVERIFY(isStatedWeight(read(4, 0xFFFB)));
    }

    /// Known weights, worked out by hand.
    void weightsThatLeave_data()
    {
        QTest::addColumn<WeightUnit>("unit");
        QTest::addColumn<unsigned>("digits");
        QTest::addColumn<int>("exponent");
        QTest::addColumn<QStringList>("texts"); // exported in pounds, then pounds, ounces, grams
        const auto row = [](const char *name, WeightUnit unit, unsigned digits, int exponent,
                            const QStringList &texts) {
            QTest::newRow(name) << unit << digits << exponent << texts;
        };
        row("16 oz", WeightUnit::Ounce, 16, 0, {"1", "1", "0", "453.5924"});
        row("1.2 oz", WeightUnit::Ounce, 12, -1, {"0.075", "0", "2", "34.01943"});
        row("1000 g", WeightUnit::Gram, 1000, 0, {"2.204623", "2", "4", "1000"});
        row("5.00 lb", WeightUnit::Pound, 500, -2, {"5", "5", "0", "2267.962"});
        row("1 tael", WeightUnit::Tael, 1, 0, {"none"});
        row("1 of no unit", WeightUnit::Unknown, 1, 0, {"none"});
    }

    void weightsThatLeave()
    {
        QFETCH(WeightUnit, unit);
        QFETCH(unsigned, digits);
        QFETCH(int, exponent);
        QFETCH(QStringList, texts);
        const ScaleStatement one{ScaleStatus::Stable, unit, {digits, exponent, false}};
        QStringList found{exported(one, ExportForm::Pounds, ExportRounding::AsRead)};
        if (const auto web = webStrings(one))
            found.append({web->pounds, web->ounces, web->basic});
        QCOMPARE(found, texts);
    }

    void decimalPounds_data()
    {
        QTest::addColumn<WeightUnit>("unit");
        QTest::addColumn<unsigned>("digits");
        QTest::addColumn<int>("exponent");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *text, WeightUnit unit, unsigned digits, int exponent) {
            QTest::addRow("%ue%d of %d", digits, exponent, static_cast<int>(unit))
                << unit << digits << exponent << QString::fromLatin1(text);
        };
        row("70.000", WeightUnit::Pound, 70, 0);
        row("0.075", WeightUnit::Ounce, 12, -1);
        row("2.205", WeightUnit::Gram, 1000, 0);
        // Halves go to the even digit.
        row("0.000", WeightUnit::Pound, 5, -4);
        row("0.002", WeightUnit::Pound, 15, -4);
        row("0.002", WeightUnit::Pound, 25, -4);
        row("0.003", WeightUnit::Pound, 25001, -7);
        row("1444799435228.595", WeightUnit::Tonne, 65535, 4);
    }

    void decimalPounds()
    {
        QFETCH(WeightUnit, unit);
        QFETCH(unsigned, digits);
        QFETCH(int, exponent);
        QFETCH(QString, text);
        const auto web = webStrings({ScaleStatus::Stable, unit, {digits, exponent, false}});
        QVERIFY(web);
        QCOMPARE(web->decimalPounds, text);
    }
};

TEST_CLASS(ScaleReportTest)
#include "ScaleReportTest.moc"
