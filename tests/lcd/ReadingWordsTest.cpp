// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/ReadingWords.h"
#include "tests/support/TestClasses.h"

/// What is lit on the panel, and how it is read out.
class ReadingWordsTest : public QObject
{
    Q_OBJECT

private slots:
    void words_data()
    {
        QTest::addColumn<PanelContents>("panel");
        QTest::addColumn<QString>("words");
        const auto row = [](const char *words, const PanelContents &panel) {
            QTest::newRow(words) << panel << QString::fromLatin1(words);
        };
        constexpr auto none = std::nullopt;
        row("off", {});
        row("overload", {.overload = true});
        row("1234 grams", {.digits = {1, 2, 3, 4}, .grams = true});
        row("1 gram", {.digits = {none, none, none, 1}, .grams = true});
        row("minus 12 grams", {.digits = {none, none, 1, 2}, .minus = true, .grams = true});
        row("1.234 kilograms", {.digits = {1, 2, 3, 4}, .points = {true}, .kilograms = true});
        row("0.234 kilograms", {.digits = {none, 2, 3, 4}, .points = {true}, .kilograms = true});
        row("12.34 kilograms",
            {.digits = {1, 2, 3, 4}, .points = {false, true}, .kilograms = true});
        row("43.5 ounces",
            {.digits = {none, 4, 3, 5}, .points = {false, false, true}, .ounces = true});
        row("2.720 pounds",
            {.digits = {none, 2, 7, 2}, .numerator = 0, .points = {false, true}, .pounds = true});
        row("2 pounds 11.5 ounces", {.digits = {none, 2, 1, 1},
                                     .numerator = 5,
                                     .points = {false, false, false, true},
                                     .colon = true,
                                     .pounds = true,
                                     .ounces = true});
        row("2 pounds 11 1/2 ounces", {.digits = {none, 2, 1, 1},
                                       .numerator = 1,
                                       .denominator = 2,
                                       .bar = true,
                                       .colon = true,
                                       .pounds = true,
                                       .ounces = true});
        row("1 pound 1 ounce",
            {.digits = {none, 1, none, 1}, .colon = true, .pounds = true, .ounces = true});
        row("2 pounds 3 ounces", {.digits = {none, 2, none, 3},
                                  .points = {false, false, false, true},
                                  .colon = true,
                                  .pounds = true,
                                  .ounces = true});
        row("12 pounds 3 ounces",
            {.digits = {1, 2, none, 3}, .colon = true, .pounds = true, .ounces = true});
        row("500 grams, on hold", {.digits = {none, 5, 0, 0}, .grams = true, .hold = true});
    }

    void words()
    {
        QFETCH(PanelContents, panel);
        QTEST(readingWords(panel), "words");
    }
};

TEST_CLASS(ReadingWordsTest)
#include "ReadingWordsTest.moc"
