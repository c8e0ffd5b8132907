// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/ShownWeight.h"

#include "lcd/ReadingWords.h"
#include "tests/support/TestClasses.h"

/// What is lit on the panel, as a number and a unit.
class ShownWeightTest : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data()
    {
        QTest::addColumn<PanelContents>("panel");
        QTest::addColumn<double>("weight");
        QTest::addColumn<QString>("unit");
        const auto row = [](const char *words, const PanelContents &panel, double weight,
                            const char *unit) {
            QTest::newRow(words) << panel << weight << QString::fromLatin1(unit);
        };
        constexpr auto none = std::nullopt;
        row("1 gram", {.digits = {none, none, none, 1}, .grams = true}, 1, "g");
        row("1234 grams", {.digits = {1, 2, 3, 4}, .grams = true}, 1234, "g");
        row("0 grams", {.digits = {none, none, none, 0}, .grams = true}, 0, "g");
        row("minus 12 grams", {.digits = {none, none, 1, 2}, .minus = true, .grams = true}, -12,
            "g");
        row("1.234 kilograms", {.digits = {1, 2, 3, 4}, .points = {true}, .kilograms = true}, 1.234,
            "kg");
        row("0.234 kilograms", {.digits = {none, 2, 3, 4}, .points = {true}, .kilograms = true},
            0.234, "kg");
        row("43.5 ounces",
            {.digits = {none, 4, 3, 5}, .points = {false, false, true}, .ounces = true}, 43.5,
            "oz");
        row("1 ounce", {.digits = {none, none, none, 1}, .ounces = true}, 1, "oz");
        row("2.204 pounds",
            {.digits = {none, 2, 2, 0}, .numerator = 4, .points = {false, true}, .pounds = true},
            2.204, "lb");
        row("1 pound", {.digits = {none, 1, none, none}, .pounds = true}, 1, "lb");
        row("2 pounds 8 ounces",
            {.digits = {none, 2, none, 8}, .colon = true, .pounds = true, .ounces = true}, 2.5,
            "lb oz");
        row("1 pound 1 ounce",
            {.digits = {none, 1, none, 1}, .colon = true, .pounds = true, .ounces = true}, 1.0625,
            "lb oz");
        row("2 pounds 4.8 ounces",
            {.digits = {none, 2, none, 4},
             .numerator = 8,
             .points = {false, false, false, true},
             .colon = true,
             .pounds = true,
             .ounces = true},
            2.3, "lb oz");
        row("minus 2 pounds 11 1/2 ounces",
            {.digits = {none, 2, 1, 1},
             .numerator = 1,
             .denominator = 2,
             .bar = true,
             .colon = true,
             .minus = true,
             .pounds = true,
             .ounces = true},
            -2.71875, "lb oz");
        row("1234 grams, on hold", {.digits = {1, 2, 3, 4}, .grams = true, .hold = true}, 1234,
            "g");
    }

    /// The words are the test's names, so that the two are seen to belong together.
    void numbers()
    {
        QFETCH(PanelContents, panel);
        QCOMPARE(readingWords(panel), QString::fromLatin1(QTest::currentDataTag()));
        const auto shown = shownWeight(panel);
        QVERIFY(shown);
        QTEST(shown->weight, "weight");
        QTEST(shown->unit, "unit");
    }

    void noWeight_data()
    {
        constexpr auto none = std::nullopt;
        QTest::addColumn<PanelContents>("panel");
        QTest::newRow("blank") << PanelContents{};
        QTest::newRow("blank, with a unit") << PanelContents{.grams = true};
        QTest::newRow("overload") << PanelContents{.digits = {1, 2, 3, 4}, .overload = true};
        QTest::newRow("two points")
            << PanelContents{.digits = {1, 2, 3, 4}, .points = {true, true}, .kilograms = true};
        QTest::newRow("a bar without a fraction")
            << PanelContents{.digits = {1, 2, 3, 4}, .bar = true, .pounds = true};
        QTest::newRow("ounces without pounds")
            << PanelContents{.digits = {none, none, none, 5}, .colon = true, .pounds = true};
        QTest::newRow("a point among the pounds") << PanelContents{
            .digits = {1, 2, none, 5}, .points = {true}, .colon = true, .pounds = true};
        QTest::newRow("two points among the pounds") << PanelContents{
            .digits = {1, 2, none, 5}, .points = {true, true}, .colon = true, .pounds = true};
        QTest::newRow("pounds without ounces that can be read")
            << PanelContents{.digits = {1, 2, 3, 5},
                             .points = {false, false, true, true},
                             .colon = true,
                             .pounds = true};
        QTest::newRow("without a unit") << PanelContents{.digits = {1, 2, 3, 4}};
    }

    void noWeight()
    {
        QFETCH(PanelContents, panel);
        QVERIFY(!shownWeight(panel));
    }

    // Every pounds-and-ounces panel that a scale up to its capacity can show.
    void everyPanelOfPoundsAndOuncesComesBackAsItsNumbers()
    {
        constexpr int mostPounds = 77;
        constexpr auto none = PanelContents::Digit();
        for (int pounds = 0; pounds <= mostPounds; ++pounds) {
            for (int ounces = 0; ounces < 16; ++ounces) {
                for (int tenths = 0; tenths < 10; ++tenths) {
                    const PanelContents panel{
                        .digits = {pounds > 9 ? pounds / 10 : none, pounds % 10,
                                   ounces > 9 ? ounces / 10 : none, ounces % 10},
                        .numerator = tenths,
                        .points = {false, false, false, true},
                        .colon = true,
                        .pounds = true,
                        .ounces = true};
                    const auto shown = shownWeight(panel);
                    QVERIFY(shown);
                    QCOMPARE(shown->unit, QStringLiteral("lb oz"));
                    QCOMPARE(qRound(shown->weight * 160), (pounds * 16 + ounces) * 10 + tenths);
                }
            }
        }
    }
};

TEST_CLASS(ShownWeightTest)
#include "ShownWeightTest.moc"
