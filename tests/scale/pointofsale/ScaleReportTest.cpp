// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ScaleReport.h"
#include "parcel/SettledWeight.h"
#include "scale/pointofsale/WeightConversion.h"
#include "tests/rules/PointOfSaleRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

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

bool agrees(const Report &report)
{
    const auto product = readScaleReport(report, ScaleLayout::ofClass());
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
    const ScaleStatement statement = *readScaleReport(report, ScaleLayout::ofClass());
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

QByteArray named(const Report &report)
{
    return QByteArray(reinterpret_cast<const char *>(report.data()),
                      static_cast<qsizetype>(report.size()))
        .toHex(' ');
}

} // namespace

/// The class's own report, against the independent statement of what it says.
class ScaleReportTest : public QObject
{
    Q_OBJECT

private slots:
    /// All statuses, units and exponents with each other, and with them, in turn, all weightCount.
    void everyStatusUnitExponentAndWeight()
    {
        constexpr unsigned stride = 97; // a prime: each weight meets each of the others
        unsigned combination = 0;
        for (int status = 0; status <= 9; ++status) {
            for (int unit = 0; unit <= 13; ++unit) {
                for (int exponent = -127; exponent <= 127; ++exponent) {
                    ++combination;
                    for (unsigned weight = combination % stride; weight < weightCount;
                         weight += stride * static_cast<unsigned>(sweepStep(61))) {
                        const Report report = reportOf(status, unit, exponent, weight);
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
        for (int unit = 0; unit <= 12; ++unit) {
            for (int exponent = -127; exponent <= 127; ++exponent) {
                for (unsigned weight = 0; weight < weightCount;
                     weight += 1009 * static_cast<unsigned>(sweepStep(7))) {
                    const Report report = reportOf(4, unit, exponent, weight);
                    if (!textsAgree(report))
                        QFAIL(named(report));
                }
            }
        }
    }

    /// Hosts cut reports, fill them up, and put a 0 before the number.
    void reportsOfAnyLength()
    {
        const Report whole = reportOf(4, 11, -1, 1234);
        for (std::size_t length = 0; length <= 128; ++length) {
            Report report = whole;
            report.resize(length);
            QVERIFY2(agrees(report), named(report));
            QCOMPARE(readScaleReport(report, ScaleLayout::ofClass()).has_value(), length >= 6);
            report.insert(report.begin(), 0);
            QVERIFY2(agrees(report), named(report));
            QCOMPARE(readScaleReport(report, ScaleLayout::ofClass()).has_value(), length >= 6);
        }
    }

    void otherReportsSayNothingOfTheWeight()
    {
        for (int number = 0; number <= 255; ++number) {
            Report report = reportOf(4, 11, -1, 1234);
            report[0] = static_cast<std::uint8_t>(number);
            QVERIFY2(agrees(report), named(report));
            QCOMPARE(readScaleReport(report, ScaleLayout::ofClass()).has_value(), number == 3);
        }
        QVERIFY(!readScaleReport(std::array<std::uint8_t, 2>{4, 1}, ScaleLayout::ofClass()));
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

    /// Known weightCount, worked out by hand.
    void weightsThatLeave()
    {
        const auto statement = [](WeightUnit unit, unsigned digits, int exponent) {
            return ScaleStatement{ScaleStatus::Stable, unit, {digits, exponent, false}};
        };
        const auto pounds = [](const ScaleStatement &one) {
            return exported(one, ExportForm::Pounds, ExportRounding::AsRead);
        };
        QCOMPARE(pounds(statement(WeightUnit::Ounce, 16, 0)), QStringLiteral("1"));
        QCOMPARE(pounds(statement(WeightUnit::Ounce, 12, -1)), QStringLiteral("0.075"));
        QCOMPARE(pounds(statement(WeightUnit::Gram, 1000, 0)), QStringLiteral("2.204623"));
        const auto web = webStrings(statement(WeightUnit::Ounce, 12, -1));
        QCOMPARE(web->pounds, QStringLiteral("0"));
        QCOMPARE(web->ounces, QStringLiteral("2"));
        QCOMPARE(web->basic, QStringLiteral("34.01943"));
        QCOMPARE(webStrings(statement(WeightUnit::Pound, 500, -2))->pounds, QStringLiteral("5"));
        QCOMPARE(webStrings(statement(WeightUnit::Pound, 500, -2))->ounces, QStringLiteral("0"));
        const auto decimals = [&](WeightUnit unit, unsigned digits, int exponent) {
            return webStrings(statement(unit, digits, exponent))->decimalPounds;
        };
        QCOMPARE(decimals(WeightUnit::Pound, 70, 0), QStringLiteral("70.000"));
        QCOMPARE(decimals(WeightUnit::Ounce, 12, -1), QStringLiteral("0.075"));
        QCOMPARE(decimals(WeightUnit::Gram, 1000, 0), QStringLiteral("2.205"));
        QCOMPARE(decimals(WeightUnit::Pound, 5, -4), QStringLiteral("0.000"));
        QCOMPARE(decimals(WeightUnit::Pound, 15, -4), QStringLiteral("0.002"));
        QCOMPARE(decimals(WeightUnit::Pound, 25, -4), QStringLiteral("0.002"));
        QCOMPARE(decimals(WeightUnit::Pound, 25001, -7), QStringLiteral("0.003"));
        QCOMPARE(decimals(WeightUnit::Tonne, 65535, 4), QStringLiteral("1444799435228.595"));
        QVERIFY(!webStrings(statement(WeightUnit::Tael, 1, 0)));
        QVERIFY(!webStrings(statement(WeightUnit::Unknown, 1, 0)));
    }
};

TEST_CLASS(ScaleReportTest)
#include "ScaleReportTest.moc"
