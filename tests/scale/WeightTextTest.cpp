// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/WeightText.h"
#include "base/NumberText.h"
#include "tests/rules/ExportRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

namespace {

bool sameWebStrings(float grams)
{
    const WebStrings made = webStrings(grams);
    const rules::WebTexts expected = rules::webTexts(grams);
    return made.pounds.toStdString() == expected.LB && made.ounces.toStdString() == expected.OZ &&
           made.basic.toStdString() == expected.Basic;
}

bool sameExport(const ExportValues &values, int tag, bool round)
{
    rules::LinkState state;
    state.currentScale = values.currentScale;
    state.currentUnit = values.currentUnit;
    state.unitnumber = values.unitnumber;
    const rules::ExportOutcome expected =
        rules::exportText(state, values.weight, values.poundsTimes10000, values.report.high,
                          values.report.low, values.capacity == Capacity::High, tag, round);
    const ExportText made = exportText(values, exportForm(tag),
                                       round ? ExportRounding::UpToWhole : ExportRounding::AsRead);
    return made.text.toStdString() == expected.text &&
           made.twoDecimalKilograms.has_value() == expected.kgLogged &&
           made.twoDecimalKilograms.value_or(QString()).toStdString() == expected.kgText;
}

} // namespace

class WeightTextTest : public QObject
{
    Q_OBJECT

private slots:
    void webStringsOfKnownWeights_data()
    {
        QTest::addColumn<float>("grams");
        QTest::addColumn<QString>("pounds");
        QTest::addColumn<QString>("ounces");
        QTest::addColumn<QString>("basic");
        const auto row = [](float grams, const char *pounds, const char *ounces,
                            const char *basic) {
            QTest::addRow("%s g", basic)
                << grams << QString::fromLatin1(pounds) << QString::fromLatin1(ounces)
                << QString::fromLatin1(basic);
        };
        row(0.0F, "0", "0", "0");
        row(1.0F, "0", "1", "1");
        row(100.0F, "0", "4", "100");
        row(453.6F, "1", "0", "453.6");
        row(454.0F, "1", "1", "454");
        row(1000.0F, "2", "4", "1000");
        row(1134.0F, "2", "8", "1134");
        row(4536.0F, "10", "0", "4536");
        row(9999.0F, "22", "1", "9999");
        row(99990.0F, "220", "7", "99990");
    }

    void webStringsOfKnownWeights()
    {
        QFETCH(float, grams);
        const WebStrings made = webStrings(grams);
        QTEST(made.pounds, "pounds");
        QTEST(made.ounces, "ounces");
        QTEST(made.basic, "basic");
    }

    /// Every whole gram that either scale can report, and tenths below one kilogram.
    void everyWebString()
    {
        for (int grams = 0; grams <= 200000; grams += sweepStep(7))
            QVERIFY2(sameWebStrings(static_cast<float>(grams)), qPrintable(QString::number(grams)));
        for (int tenths = 0; tenths <= 10000; ++tenths)
            QVERIFY(sameWebStrings(static_cast<float>(tenths) / 10));
    }

    void everyExportOfTheGramScale()
    {
        for (int grams = 0; grams <= 16665; grams += sweepStep(31)) {
            for (const bool highCapacity : {false, true}) {
                for (const int unitnumber : {0, 1, 2, 3, 4, 5, 6}) {
                    ExportValues values;
                    values.weight = static_cast<float>(highCapacity ? grams * 10 : grams);
                    values.poundsTimes10000 = static_cast<int>(values.weight / 0.4536 + 0.5) * 10;
                    values.unitnumber = unitnumber;
                    values.capacity = highCapacity ? Capacity::High : Capacity::Standard;
                    for (const int tag : {0, 3, 4, 5}) {
                        QVERIFY(sameExport(values, tag, false));
                        QVERIFY(sameExport(values, tag, true));
                    }
                }
            }
        }
    }

    void everyExportOfTheTenthOunceScale()
    {
        for (int count = 0; count <= 0xFFFF; count += sweepStep(61)) {
            for (const int currentUnit : {1, 2, 3}) {
                ExportValues values;
                values.report.high = static_cast<std::uint8_t>(count >> 8);
                values.report.low = static_cast<std::uint8_t>(count);
                values.currentScale = 1;
                values.currentUnit = currentUnit;
                for (const int tag : {0, 4, 5, 6}) {
                    QVERIFY(sameExport(values, tag, false));
                    QVERIFY(sameExport(values, tag, true));
                }
            }
        }
    }

    void exportTexts_data()
    {
        QTest::addColumn<ExportValues>("values");
        QTest::addColumn<int>("tag");
        QTest::addColumn<bool>("round");
        QTest::addColumn<QString>("text");
        const ExportValues twoPounds{.poundsTimes10000 = 20000};
        const ExportValues hairAbove{.poundsTimes10000 = 20001};
        const ExportValues emptyPan{.currentScale = 1, .currentUnit = 1};
        const ExportValues kilogram{.weight = 1234};
        const ExportValues coarse{
            .poundsTimes10000 = 9600, .unitnumber = 4, .capacity = Capacity::High};
        QTest::newRow("two pounds") << twoPounds << 3 << false << QStringLiteral("2");
        QTest::newRow("two pounds, rounded") << twoPounds << 3 << true << QStringLiteral("2");
        QTest::newRow("a hair above, rounded") << hairAbove << 3 << true << QStringLiteral("3");
        QTest::newRow("a hair above") << hairAbove << 3 << false << QStringLiteral("2.0001");
        QTest::newRow("kilograms") << kilogram << 5 << false << QStringLiteral("1.234");
        QTest::newRow("grams export kilograms")
            << kilogram << 0 << false << QStringLiteral("1.234");
        QTest::newRow("kilograms, rounded") << kilogram << 5 << true << QStringLiteral("2");
        QTest::newRow("empty pan of the tenth-ounce scale")
            << emptyPan << 5 << false << QStringLiteral("0.05");
        QTest::newRow("single precision shows")
            << coarse << 4 << false << QStringLiteral("9.599999");
    }

    void exportTexts()
    {
        QFETCH(ExportValues, values);
        QFETCH(int, tag);
        QFETCH(bool, round);
        const ExportText made = exportText(
            values, exportForm(tag), round ? ExportRounding::UpToWhole : ExportRounding::AsRead);
        QTEST(made.text, "text");
    }

    void fixedTextsAreOfDoublePrecision()
    {
        QCOMPARE(fixedText(16777217, 0), QStringLiteral("16777217"));
        QCOMPARE(fixedText(0.1, 6), QStringLiteral("0.100000"));
        QCOMPARE(fixedText(123456.7, 3), QStringLiteral("123456.700"));
    }

    void halvesAreRoundedToEven()
    {
        QCOMPARE(fixedText(2.5, 0), QStringLiteral("2"));
        QCOMPARE(fixedText(7.5, 0), QStringLiteral("8"));
        QCOMPARE(fixedText(0.125, 2), QStringLiteral("0.12"));
        QCOMPARE(floatText(453.6F), QStringLiteral("453.6"));
    }
};

TEST_CLASS(WeightTextTest)
#include "WeightTextTest.moc"
