// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/OunceFraction.h"
#include "tests/support/TestClasses.h"

/// Tenths of an ounce as the fraction that the panel stacks.
class OunceFractionTest : public QObject
{
    Q_OBJECT

private slots:
    void fractions_data()
    {
        QTest::addColumn<int>("tenths");
        QTest::addColumn<Fraction>("eighths");
        QTest::addColumn<Fraction>("quarters");
        const auto row = [](int tenths, Fraction eighths, Fraction quarters) {
            QTest::addRow("%d tenths", tenths) << tenths << eighths << quarters;
        };
        row(0, {0, 0}, {0, 0});
        row(1, {1, 8}, {1, 4});
        row(2, {1, 4}, {1, 4});
        row(3, {1, 4}, {1, 4});
        row(4, {3, 8}, {1, 2});
        row(5, {1, 2}, {1, 2});
        row(6, {5, 8}, {1, 2});
        row(7, {3, 4}, {3, 4});
        row(8, {3, 4}, {3, 4});
        row(9, {7, 8}, {3, 4});
        // No digits: they stand as they are, over nothing.
        row(-1, {-1, 0}, {-1, 0});
        row(-9, {-9, 0}, {-9, 0});
        row(10, {10, 0}, {10, 0});
    }

    void fractions()
    {
        QFETCH(int, tenths);
        QFETCH(Fraction, eighths);
        QFETCH(Fraction, quarters);
        const Fraction standard = ounceFraction(tenths, Capacity::Standard);
        QCOMPARE(standard.numerator, eighths.numerator);
        QCOMPARE(standard.denominator, eighths.denominator);
        const Fraction high = ounceFraction(tenths, Capacity::High);
        QCOMPARE(high.numerator, quarters.numerator);
        QCOMPARE(high.denominator, quarters.denominator);
    }
};

TEST_CLASS(OunceFractionTest)
#include "OunceFractionTest.moc"
