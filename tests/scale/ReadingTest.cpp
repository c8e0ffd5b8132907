// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/ExportRules.h"
#include "tests/rules/ScaleRules.h"
#include "tests/support/LinkedScale.h"
#include "tests/support/ReadingRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using readingrules::callsOf;
using readingrules::sameState;
using readingrules::stateOf;

} // namespace

/// The real link over fake libraries: bytes in; calls, texts and the next poll out.
class ReadingTest : public QObject
{
    Q_OBJECT

private slots:
    void readings_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("model");
        QTest::addColumn<Bytes>("report");
        QTest::addColumn<QStringList>("calls");
        QTest::addColumn<QString>("exported");
        const QStringList start{QStringLiteral("Draw5DigitOverload"),
                                QStringLiteral("unitLBl setHidden 0")};
        const auto row = [&](const char *name, int type, const char *model, const Bytes &report,
                             const QStringList &calls, const char *exported) {
            QTest::newRow(name) << type << QString::fromLatin1(model) << report << start + calls
                                << QString::fromLatin1(exported);
        };
        // status, low byte, high byte
        row("1234 g", 0, "KV-B100", {0x01, 0x34, 0x12},
            {"shownegativeSign 0", "Draw5Digit 123400", "DisplayUnit 1"}, "1.234");
        row("12340 g in 10 g steps", 0, "KV-A200", {0x01, 0x34, 0x12},
            {"shownegativeSign 0", "Draw5Digit 123400", "DisplayUnit 1"}, "12.34");
        row("minus 12 g", 0, "KV-B100", {0x81, 0x12, 0x00},
            {"shownegativeSign 1", "Draw5Digit 1200", "DisplayUnit 1"}, "0.012");
        row("1000 g as 2 lb 3 1/4 oz", 0, "KV-B100", {0x03, 0x00, 0x10},
            {"shownegativeSign 0", "DisplayUnit 4", "Draw5Digit 20314"}, "1");
        row("variant A negative: sign without a negative number", 0, "", {0x83, 0x00, 0x10},
            {"shownegativeSign 1", "DisplayUnit 4", "Draw5Digit 20314"}, "1");
        row("variant B negative", 0, "", {0x87, 0x00, 0x10},
            {"shownegativeSign 1", "DisplayUnit 4", "Draw5Digit -20314"}, "1");
        row("overload", 0, "", {0x04, 0x00, 0x00},
            {"unitLBl setHidden 1", "clearAll", "Draw5DigitOverload"}, "0");
        row("under load", 0, "", {0x05, 0x00, 0x00}, {}, "0");
        row("display off", 0, "", {0x00, 0x00, 0x00}, {"unitLBl setHidden 1", "clearAll"}, "0");
        row("status that no scale sends", 0, "", {0xC8, 0x34, 0x12}, {}, "1.234");
        row("40.0 oz lose an ounce to the low byte's remainder", 1, "", {0x0A, 0x90, 0x01},
            {"shownegativeSign 0", "Draw5Digit 207", "DisplayUnit 3"}, "0");
        row("408 tenths of an ounce are 2.6 lb", 1, "", {0x09, 0x98, 0x01},
            {"shownegativeSign 0", "Draw5Digit 26", "DisplayUnit 2"}, "0");
        row("1.2 kg", 1, "", {0x08, 0xA7, 0x01},
            {"shownegativeSign 0", "Draw5Digit 12", "DisplayUnit 1"}, "1.25");
    }

    /// The unit chosen is kilograms, so that the export text is the metric one.
    void readings()
    {
        QFETCH(int, type);
        QFETCH(QString, model);
        QFETCH(Bytes, report);
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.radioButtonIndex = 5;
        scale.interface.model = model;
        scale.link.setCurrentScale(type);
        scale.link.setCurrentStatue(true);
        scale.poll(report);
        QTEST(scale.interface.calls, "calls");
        QFETCH(QString, exported);
        if (type == 1 && scale.link.currentUnit() != 1)
            return; // the kilogram form is the pan's weight only while kilograms are read
        if (type == 1)
            QCOMPARE(scale.interface.label.size(), 4);
        else
            QCOMPARE(scale.interface.label, exported);
    }

    void unitStateFollowsTheReport()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.poll({0x03, 0x00, 0x10});
        QCOMPARE(scale.link.unitnumber(), 2);
        QCOMPARE(scale.link.unitindex(), 3);
        scale.poll({0x87, 0x00, 0x10}); // a negative form changes no unit
        QCOMPARE(scale.link.unitnumber(), 2);
        scale.poll({0x07, 0x00, 0x10});
        QCOMPARE(scale.link.unitnumber(), 3);
        QCOMPARE(scale.link.unitindex(), 4);
        scale.link.setUnitnumber(4);
        scale.poll({0x01, 0x00, 0x10}); // decimal pounds stand
        QCOMPARE(scale.link.unitnumber(), 4);
        scale.poll({0x02, 0x00, 0x10}); // but not against ounces
        QCOMPARE(scale.link.unitnumber(), 1);
    }

    void firstReportIsDecodedAsGramScale()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.radioButtonIndex = 5;
        scale.poll({0x08, 0x00, 0x10}); // announces the tenth-ounce scale by its status
        QCOMPARE(scale.link.sWebDataBasic(), QStringLiteral("1000")); // still packed decimals
        QCOMPARE(scale.link.currentScale(), 1);
        QCOMPARE(scale.interface.label, QStringLiteral("11.66")); // the closing steps know better
        scale.poll({0x08, 0x00, 0x10});
        QCOMPARE(scale.link.sWebDataBasic(), QStringLiteral("11600"));
    }

    void announcementsSwitchTheType()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        for (const std::uint8_t status : Bytes{0x0D, 0x06, 0x8D, 0x86}) {
            scale.poll({status, 0x00, 0x00});
            QCOMPARE(scale.link.currentScale(), (status & 0x7F) == 0x0D ? 1 : 0);
        }
    }

    void tenthOunceScaleIsOnOnlyByItsReadings()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.link.setCurrentScale(1);
        scale.poll({0x0C, 0x00, 0x00}); // under load tells nothing of the display
        QVERIFY(!scale.link.currentStatue());
        scale.poll({0x03, 0x00, 0x10}); // nor does the gram scale's code
        QVERIFY(!scale.link.currentStatue());
        QCOMPARE(scale.interface.calls.last(), QStringLiteral("clearAll"));
        scale.poll({0x09, 0x00, 0x10});
        QVERIFY(scale.link.currentStatue());
    }

    void displayOnAfterEveryStatus_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("before");
        QTest::newRow("gram scale, off before") << 0 << false;
        QTest::newRow("gram scale, on before") << 0 << true;
        QTest::newRow("tenth-ounce scale, off before") << 1 << false;
        QTest::newRow("tenth-ounce scale, on before") << 1 << true;
    }

    /// The gram scale is on by any report but "off", also by one whose status has no meaning.
    void displayOnAfterEveryStatus()
    {
        QFETCH(int, type);
        QFETCH(bool, before);
        LinkedScale scale(LinkedScale::Scale::Present);
        for (int status = 0; status <= 0xFF; ++status) {
            const int code = status & 0x7F;
            const bool isTenthOunceReading = code >= 8 && code <= 10;
            scale.link.setCurrentScale(type);
            scale.link.setCurrentStatue(before);
            scale.poll({static_cast<std::uint8_t>(status), 0x00, 0x10});
            QCOMPARE(scale.link.currentStatue(),
                     code != 0 && (type == 0 || before || isTenthOunceReading));
        }
    }

    /// It is the unit that was chosen last, whatever unit the scale reports.
    void noReportMovesTheDecimalPointSelector()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        for (int status = 0; status <= 0xFF; ++status) {
            for (int dotunit = 0; dotunit <= 6; ++dotunit) {
                scale.link.setDotunit(dotunit);
                scale.poll({static_cast<std::uint8_t>(status), 0x34, 0x12});
                QCOMPARE(scale.link.dotunit(), dotunit);
            }
        }
    }

    void previousExportTextLagsByOneReading()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.radioButtonIndex = 5;
        scale.poll({0x01, 0x34, 0x12});
        QCOMPARE(scale.link.sWebDataLBOnly(), QString());
        scale.poll({0x01, 0x00, 0x20});
        QCOMPARE(scale.link.sWebDataLBOnly(), QStringLiteral("1.234"));
        QCOMPARE(scale.interface.label, QStringLiteral("2"));
    }

    void everyReadingIsCopiedWhileTheOptionIsOn()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.radioButtonIndex = 5;
        scale.poll({0x01, 0x34, 0x12});
        QVERIFY(scale.interface.clipboard.isEmpty());
        scale.interface.clip = true;
        scale.poll({0x01, 0x34, 0x12});
        scale.poll({0x01, 0x34, 0x12});
        QCOMPARE(scale.interface.clipboard, (QStringList{"1.234", "1.234"}));
    }

    void roundingUp()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.link.setSetRound(true);
        scale.poll({0x02, 0x08, 0x09}); // 908 g are 2.002 lb
        QCOMPARE(scale.interface.label, QStringLiteral("3"));
    }

    void failuresAreTracedAndTheRestGoesOn()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.hidapi.sendFails = true;
        scale.log.lines().clear();
        scale.interface.calls.clear();
        scale.link.get_device_rawdata();
        QCOMPARE(scale.log.lines().filter(QStringLiteral("Unable")),
                 (QStringList{"io: Unable to read command()", "io: Unable to read()"}));
        // An empty report reads as a display that is off.
        QVERIFY(scale.interface.calls.contains(QStringLiteral("clearAll")));
        QCOMPARE(scale.interface.label, QStringLiteral("0"));
    }

    void nothingSentAndNothingReadIsNoFailure()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.hidapi.sentBytes = 0;
        scale.log.lines().clear();
        scale.poll({});
        QCOMPARE(scale.log.lines(),
                 (QStringList{"W Value for Scale 0 is 0 ", "Basic weight is 0", "LCD off"}));
    }

    void pollsCarryTheCommandByte()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.link.setScaleCommand(0x9C);
        scale.link.set_Unit(1);
        scale.poll({0x01, 0x34, 0x12});
        scale.poll({0x01, 0x34, 0x12});
        QCOMPARE(scale.hidapi.sent.at(1).at(2), 0x3C); // the unit change goes out once more
        QCOMPARE(scale.hidapi.sent.at(2).at(2), 0xBC);
        scale.link.set_device_OFF();
        scale.poll({0x00, 0x00, 0x00});
        scale.poll({0x00, 0x00, 0x00});
        QCOMPARE(scale.hidapi.sent.at(3).at(2), 0xBD);
        QCOMPARE(scale.hidapi.sent.at(4).at(2), 0xBD); // the power-off request rides once more
        QCOMPARE(scale.hidapi.sent.at(5).at(2), 0xBC);
    }

    void logOfOneReading()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.log.lines().clear();
        scale.poll({0x01, 0x34, 0x12});
        QCOMPARE(scale.log.lines(), (QStringList{"io: buf[0]: 1", "io: buf[1]: 52",
                                                 "io: buf[2]: 18", "W Value for Scale 0 is 1234 ",
                                                 "Basic weight is 1234", "wgm value is-->1234"}));
    }

    void theTwoDecimalsOfKilogramsAreLogged_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<bool>("round");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("kilograms") << 5 << false << QStringList{"kg value is 1.25"};
        QTest::newRow("grams") << 0 << false << QStringList{"kg value is 1.25"};
        QTest::newRow("kilograms, rounded up") << 5 << true << QStringList();
        QTest::newRow("decimal pounds") << 4 << false << QStringList();
    }

    void theTwoDecimalsOfKilogramsAreLogged()
    {
        QFETCH(int, tag);
        QFETCH(bool, round);
        LinkedScale scale(LinkedScale::Scale::Present);
        scale.interface.radioButtonIndex = tag;
        scale.link.setSetRound(round);
        scale.link.setCurrentScale(1);
        scale.log.lines().clear();
        scale.poll({0x08, 0xA7, 0x01});
        QTEST(scale.log.lines().filter(QStringLiteral("kg value")), "lines");
    }

    /// One report in 251, and every status with weights at the edges, through the real link, in a
    /// row: the state of one reading is the start of the next.
    void longRunAgainstTheRules()
    {
        LinkedScale scale(LinkedScale::Scale::Present);
        QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
        int compared = 0;
        for (unsigned bits = 0; bits < 1U << 24;
             bits += 251U * static_cast<unsigned>(sweepStep(29)), ++compared) {
            const bool highCapacity = compared % 3 == 0;
            scale.interface.model = highCapacity ? QStringLiteral("KV-C400") : QString();
            scale.interface.radioButtonIndex = compared % 7;
            if (compared % 11 == 0)
                scale.link.setUnitnumber(compared % 7);
            if (compared % 13 == 0)
                scale.link.setCurrentScale(compared / 13 % 2);
            const auto status = static_cast<std::uint8_t>(bits >> 16);
            const auto high = static_cast<std::uint8_t>(bits >> 8);
            const auto low = static_cast<std::uint8_t>(bits);
            const rules::Outcome expected =
                rules::readReport(status, low, high, stateOf(scale.link), highCapacity);
            const auto text =
                rules::exportText(expected.state, expected.weight, expected.poundsTimes10000, high,
                                  low, highCapacity, scale.interface.radioButtonIndex, false);
            scale.poll({status, low, high});
            QVERIFY2(sameState(stateOf(scale.link), expected.state),
                     qPrintable(QString::number(bits, 16)));
            QCOMPARE(scale.interface.calls, callsOf(expected));
            QCOMPARE(scale.interface.label.toStdString(), text.text);
            QCOMPARE(scale.link.sWebDataOZ().toStdString(),
                     rules::webTexts(expected.changeWebGrams).OZ);
        }
        QLoggingCategory::setFilterRules({});
        QVERIFY(compared > 2000);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, ReadingTest)
#include "ReadingTest.moc"
