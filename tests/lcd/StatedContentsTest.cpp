// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/StatedContents.h"
#include "lcd/ReadingWords.h"
#include "lcd/ShownWeight.h"
#include "tests/rules/PointOfSaleRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

namespace {

ScaleReading reading(ScaleStatus status, WeightUnit unit, unsigned digits, int exponent)
{
    return {.statement = {status, unit, {digits, exponent, status == ScaleStatus::UnderZero}}};
}

QString words(const ScaleReading &shown)
{
    return readingWords(statedContents(shown));
}

/// As it is said; the names of units with pictures, then the others'.
QString nameOf(WeightUnit unit, bool isOne)
{
    static const std::array<const char *, 13> names{
        "",           "milligram", "gram",        "kilogram",   "carat",
        "tael",       "grain",     "pennyweight", "metric ton", "short ton",
        "troy ounce", "ounce",     "pound"};
    return QString::fromLatin1(names.at(static_cast<std::size_t>(unit))) +
           (isOne ? QString() : QStringLiteral("s"));
}

bool isPictured(const PanelContents &panel)
{
    return panel.words.isEmpty();
}

} // namespace

/// What is shown of a scale that tells number and unit itself.
class StatedContentsTest : public QObject
{
    Q_OBJECT

private slots:
    /// Every number is told in full, by pictures where they suffice. Nothing is cut off.
    void everyNumberOfEveryUnit()
    {
        for (int number = 1; number <= 12; ++number) {
            const auto unit = static_cast<WeightUnit>(number);
            for (int exponent = -9; exponent <= 6; ++exponent) {
                for (unsigned digits = 0; digits < 65536;
                     digits += 31 * static_cast<unsigned>(sweepStep(13))) {
                    const auto shown = reading(ScaleStatus::Stable, unit, digits, exponent);
                    const auto text =
                        QString::fromStdString(rules::statedNumber({4, number, digits, exponent}));
                    QString bare = text;
                    bare.remove(QLatin1Char('.'));
                    const bool hasPicture = unit == WeightUnit::Gram ||
                                            unit == WeightUnit::Kilogram ||
                                            unit == WeightUnit::Ounce || unit == WeightUnit::Pound;
                    const PanelContents panel = statedContents(shown);
                    // The fifth digit is a small one, and no whole number ends in it.
                    const int room = text.contains(QLatin1Char('.')) ? 5 : 4;
                    if (isPictured(panel) != (hasPicture && bare.size() <= room))
                        QFAIL(qPrintable(text));
                    const QString expected =
                        text + QLatin1Char(' ') + nameOf(unit, text == QLatin1String("1"));
                    if (text.size() <= 12 && readingWords(panel) != expected)
                        QFAIL(
                            qPrintable(readingWords(panel) + QStringLiteral(", not ") + expected));
                    if (isPictured(panel) && shownWeight(panel)->weight != text.toDouble())
                        QFAIL(qPrintable(text));
                }
            }
        }
    }

    void numbersThatNobodyWouldReadToTheEnd()
    {
        QCOMPARE(words(reading(ScaleStatus::Stable, WeightUnit::Gram, 65535, 127)),
                 QStringLiteral("65535e+127 grams"));
        QCOMPARE(words(reading(ScaleStatus::Stable, WeightUnit::Gram, 1, -127)),
                 QStringLiteral("1e-127 grams"));
    }

    /// Also of what the panel has no room or no picture for.
    void theNumberThatIsTold()
    {
        QVERIFY(statedWeight(reading(ScaleStatus::Stable, WeightUnit::Ounce, 12, -1).statement) ==
                (ShownWeight{1.2, QStringLiteral("oz")}));
        QVERIFY(
            statedWeight(reading(ScaleStatus::UnderZero, WeightUnit::Gram, 12345, 0).statement) ==
            (ShownWeight{-12345, QStringLiteral("g")}));
        QVERIFY(statedWeight(reading(ScaleStatus::Stable, WeightUnit::Carat, 1, 127).statement) ==
                (ShownWeight{1e127, QStringLiteral("ct")}));
        QVERIFY(statedWeight(reading(ScaleStatus::Stable, WeightUnit::Unknown, 12, 0).statement) ==
                (ShownWeight{12, QString()}));
    }

    void poundsAndOunces()
    {
        for (unsigned tenths = 0; tenths < 16000; tenths += 7) {
            ScaleReading shown = reading(ScaleStatus::Stable, WeightUnit::Ounce, tenths, -1);
            shown.asPoundsAndOunces = true;
            const unsigned pounds = tenths / 160;
            const QString ounces = QStringLiteral("%1.%2").arg(tenths % 160 / 10).arg(tenths % 10);
            const QString expected =
                pounds > 99 ? QStringLiteral("%1.%2 ounces").arg(tenths / 10).arg(tenths % 10)
                            : QStringLiteral("%1 pound%2 %3 ounces")
                                  .arg(pounds)
                                  .arg(pounds == 1 ? QString() : QStringLiteral("s"))
                                  .arg(ounces);
            QCOMPARE(words(shown), expected);
        }
        ScaleReading whole = reading(ScaleStatus::Stable, WeightUnit::Ounce, 17, 0);
        whole.asPoundsAndOunces = true;
        QCOMPARE(words(whole), QStringLiteral("1 pound 1 ounce"));
        // Only a number of ounces is split.
        ScaleReading grams = reading(ScaleStatus::Stable, WeightUnit::Gram, 17, 0);
        grams.asPoundsAndOunces = true;
        QCOMPARE(words(grams), QStringLiteral("17 grams"));
    }

    void statuses()
    {
        using enum ScaleStatus;
        const auto told = [](ScaleStatus status) {
            return words(reading(status, WeightUnit::Gram, 12, 0));
        };
        QCOMPARE(told(Stable), QStringLiteral("12 grams"));
        QCOMPARE(told(InMotion), QStringLiteral("12 grams"));
        QCOMPARE(told(StableAtZero), QStringLiteral("12 grams"));
        QCOMPARE(told(UnderZero), QStringLiteral("minus 12 grams"));
        QCOMPARE(told(OverLimit), QStringLiteral("overload"));
        QCOMPARE(told(Fault), QStringLiteral("the scale has a fault"));
        QCOMPARE(told(ToBeCalibrated), QStringLiteral("the scale has to be calibrated"));
        QCOMPARE(told(ToBeZeroed), QStringLiteral("the scale has to be set to zero"));
        QCOMPARE(told(Unknown), QStringLiteral("the scale sends what is no weight"));
    }

    void whatThePicturesDoNotTellIsSaidBesideThem()
    {
        QCOMPARE(statedNotice(reading(ScaleStatus::Stable, WeightUnit::Gram, 12, 0)), QString());
        QCOMPARE(statedNotice(reading(ScaleStatus::OverLimit, WeightUnit::Gram, 12, 0)), QString());
        QVERIFY(statedNotice(reading(ScaleStatus::Stable, WeightUnit::Carat, 12, 0))
                    .startsWith(QStringLiteral("The scale shows 12 carats. ")));
        QVERIFY(statedNotice(reading(ScaleStatus::Stable, WeightUnit::Carat, 12, 0))
                    .contains(QStringLiteral("choose grams, kilograms, ounces or pounds")));
        // Grams are chosen already.
        QCOMPARE(statedNotice(reading(ScaleStatus::Stable, WeightUnit::Gram, 12345, 0)),
                 QStringLiteral("The scale shows 12345 grams. The panel has no room for so many "
                                "digits: choose another unit on the scale."));
        ScaleReading zero = reading(ScaleStatus::ToBeZeroed, WeightUnit::Gram, 0, 0);
        QVERIFY(statedNotice(zero).endsWith(QStringLiteral("press the scale's zero key.")));
        zero.canTare = true;
        QVERIFY(statedNotice(zero).endsWith(QStringLiteral("press Tare.")));
    }

    void onlyTheWeightDoesNotMakeItAnotherTrouble()
    {
        const auto trouble = [](ScaleStatus status, WeightUnit unit, unsigned digits) {
            return statedTrouble(reading(status, unit, digits, 0));
        };
        const QString carats = trouble(ScaleStatus::Stable, WeightUnit::Carat, 12);
        QVERIFY(!carats.isEmpty());
        QCOMPARE(trouble(ScaleStatus::InMotion, WeightUnit::Carat, 1), carats);
        QVERIFY(trouble(ScaleStatus::Stable, WeightUnit::Gram, 12345) != carats);
        QCOMPARE(trouble(ScaleStatus::Stable, WeightUnit::Gram, 12), QString());
        // The cure is the same.
        QVERIFY(trouble(ScaleStatus::Fault, WeightUnit::Gram, 0) !=
                trouble(ScaleStatus::Unknown, WeightUnit::Gram, 0));
    }

    void aTareThatFailedIsTold()
    {
        ScaleReading failed = reading(ScaleStatus::Stable, WeightUnit::Gram, 12, 0);
        failed.hasTareFailed = true;
        QVERIFY(statedNotice(failed).startsWith(QStringLiteral("The scale could not be told")));
        failed.statement.unit = WeightUnit::Carat;
        QVERIFY(statedNotice(failed).startsWith(QStringLiteral("The scale shows 12 carats. ")));
        QVERIFY(statedNotice(failed).endsWith(QStringLiteral("press its own zero key.")));
    }

    void aZeroWithoutAUnit()
    {
        QCOMPARE(words(reading(ScaleStatus::StableAtZero, WeightUnit::Unknown, 0, 0)),
                 QStringLiteral("0"));
        QCOMPARE(words(reading(ScaleStatus::Stable, WeightUnit::Unknown, 5, 0)),
                 QStringLiteral("5 in a unit that the scale does not name"));
    }

    void heldReadings()
    {
        ScaleReading held = reading(ScaleStatus::Stable, WeightUnit::Carat, 12, 0);
        held.isHeld = true;
        QCOMPARE(words(held), QStringLiteral("12 carats, on hold"));
        held.statement.unit = WeightUnit::Gram;
        QCOMPARE(words(held), QStringLiteral("12 grams, on hold"));
    }
};

TEST_CLASS(StatedContentsTest)
#include "StatedContentsTest.moc"
