// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ScaleModel.h"
#include "tests/support/TestClasses.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Type = ScaleModel::Type;

// Command bytes with tare and hold released and the power left on.
constexpr std::uint8_t metric = 0xFE;
constexpr std::uint8_t ounces = 0xF6;
constexpr std::uint8_t poundsOuncesA = 0xEE;
constexpr std::uint8_t poundsOuncesB = 0xDE;

constexpr std::uint8_t powerOff = 0x01;
constexpr std::uint8_t tareReleased = 0x02;
constexpr std::uint8_t holdReleased = 0x04;

constexpr std::uint8_t pressing(std::uint8_t command, std::uint8_t releasedBit)
{
    return static_cast<std::uint8_t>(command & ~releasedBit);
}

/// What counts of the answer: status, low and high byte. Empty: no answer.
Bytes answer(ScaleModel &scale, const Bytes &featureReport)
{
    const auto report = scale.receive(featureReport);
    return report ? Bytes(report->begin(), report->begin() + 3) : Bytes();
}

Bytes poll(ScaleModel &scale, std::uint8_t command = metric)
{
    return answer(scale, {0x90, command, 0x80, 0, 0, 0, 0, 0});
}

Bytes command(ScaleModel &scale, std::uint8_t byte)
{
    return answer(scale, {0xA0, byte, 0xA0, 0, 0, 0, 0, 0});
}

/// Its type announced, so that polls are answered with readings.
ScaleModel announcedScale(Type type, int load,
                          ScaleModel::Capacity capacity = ScaleModel::Capacity::Ordinary)
{
    ScaleModel scale;
    scale.setType(type);
    scale.setCapacity(capacity);
    scale.setLoad(load);
    scale.plugIn();
    poll(scale);
    return scale;
}

} // namespace

Q_DECLARE_METATYPE(ScaleModel::Type)
Q_DECLARE_METATYPE(ScaleModel::Capacity)

class ScaleModelTest : public QObject
{
    Q_OBJECT

private slots:
    void reading_data()
    {
        QTest::addColumn<Type>("type");
        QTest::addColumn<ScaleModel::Capacity>("capacity");
        QTest::addColumn<int>("load");
        QTest::addColumn<std::uint8_t>("command");
        QTest::addColumn<Bytes>("expected");
        const auto decimal = [](const char *name, int load, std::uint8_t command, Bytes expected) {
            QTest::newRow(name) << Type::PackedDecimal << ScaleModel::Capacity::Ordinary << load
                                << command << expected;
        };
        decimal("grams", 1234, metric, {1, 0x34, 0x12});
        decimal("ounces", 1234, ounces, {2, 0x34, 0x12});
        decimal("pounds and ounces A", 1234, poundsOuncesA, {3, 0x34, 0x12});
        decimal("pounds and ounces B", 1234, poundsOuncesB, {7, 0x34, 0x12});
        decimal("empty pan", 0, metric, {1, 0x00, 0x00});
        decimal("heaviest", 9999, metric, {1, 0x99, 0x99});
        decimal("overload", 10000, ounces, {4, 0x00, 0x00});
        decimal("pan taken off", -1, metric, {5, 0x00, 0x00});

        const auto high = [](const char *name, int load, Bytes expected) {
            QTest::newRow(name) << Type::PackedDecimal << ScaleModel::Capacity::High << load
                                << metric << expected;
        };
        high("10 g steps, rounded down", 12344, {1, 0x34, 0x12});
        high("10 g steps, rounded up", 12345, {1, 0x35, 0x12});
        high("heaviest of the large scale", 99990, {1, 0x99, 0x99});
        high("overload of the large scale", 99991, {4, 0x00, 0x00});

        const auto binary = [](const char *name, int load, std::uint8_t command, Bytes expected) {
            QTest::newRow(name) << Type::BinaryTenthOunces << ScaleModel::Capacity::Ordinary << load
                                << command << expected;
        };
        // 1157 g are 408.1 tenths of an ounce.
        binary("kilograms", 1157, metric, {8, 0x98, 0x01});
        binary("pounds", 1157, ounces, {9, 0x98, 0x01});
        binary("pounds and whole ounces", 1157, poundsOuncesA, {10, 0x98, 0x01});
        binary("heaviest in tenths of an ounce", 35000, metric, {8, 0x3A, 0x30});
        binary("overload in tenths of an ounce", 35001, metric, {11, 0x00, 0x00});
        binary("pan taken off, tenths of an ounce", -1, metric, {12, 0x00, 0x00});
    }

    void reading()
    {
        QFETCH(Type, type);
        QFETCH(ScaleModel::Capacity, capacity);
        QFETCH(int, load);
        QFETCH(std::uint8_t, command);
        QFETCH(Bytes, expected);
        ScaleModel scale = announcedScale(type, load, capacity);
        QCOMPARE(poll(scale, command), expected);
    }

    void announcesItsTypeOnce_data()
    {
        QTest::addColumn<Type>("type");
        QTest::addColumn<Bytes>("expected");
        QTest::newRow("packed decimal") << Type::PackedDecimal << Bytes{6, 0, 0};
        QTest::newRow("tenths of an ounce") << Type::BinaryTenthOunces << Bytes{13, 0, 0};
    }

    void announcesItsTypeOnce()
    {
        QFETCH(Type, type);
        QFETCH(Bytes, expected);
        ScaleModel scale;
        scale.setType(type);
        for (int plugIn = 0; plugIn < 2; ++plugIn) {
            scale.plugIn();
            QCOMPARE(command(scale, metric), Bytes());
            QCOMPARE(poll(scale), expected);
            QVERIFY(poll(scale) != expected);
        }
    }

    void announcesAnExchangedType()
    {
        ScaleModel scale = announcedScale(Type::BinaryTenthOunces, 100);
        scale.setType(Type::PackedDecimal);
        QCOMPARE(poll(scale), (Bytes{6, 0, 0}));
        QCOMPARE(poll(scale), (Bytes{1, 0x00, 0x01}));
    }

    void ignoresOtherReports_data()
    {
        QTest::addColumn<Bytes>("report");
        QTest::newRow("empty") << Bytes{};
        QTest::newRow("too short") << Bytes{0x90, ounces};
        QTest::newRow("unknown marker") << Bytes{0x91, ounces, 0x80};
        QTest::newRow("poll with the end of a command") << Bytes{0x90, ounces, 0xA0};
        QTest::newRow("command with the end of a poll") << Bytes{0xA0, ounces, 0x80};
    }

    void ignoresOtherReports()
    {
        QFETCH(Bytes, report);
        ScaleModel scale = announcedScale(Type::PackedDecimal, 5);
        QCOMPARE(answer(scale, report), Bytes());
        QCOMPARE(scale.unit(), ScaleModel::Unit::Metric);
    }

    void keepsItsUnitOnOtherBits()
    {
        ScaleModel decimal = announcedScale(Type::PackedDecimal, 5);
        command(decimal, ounces);
        QCOMPARE(poll(decimal, 0xC6), (Bytes{2, 0x05, 0x00}));

        ScaleModel binary = announcedScale(Type::BinaryTenthOunces, 0);
        command(binary, ounces);
        QCOMPARE(poll(binary, poundsOuncesB), (Bytes{9, 0x00, 0x00}));
    }

    void tareTakesTheLoadAtThePress()
    {
        ScaleModel scale = announcedScale(Type::PackedDecimal, 500);
        command(scale, pressing(metric, tareReleased));
        QCOMPARE(poll(scale, pressing(metric, tareReleased)), (Bytes{1, 0x00, 0x00}));
        scale.setLoad(700);
        QCOMPARE(poll(scale, pressing(metric, tareReleased)), (Bytes{1, 0x00, 0x02}));
        QCOMPARE(poll(scale, metric), (Bytes{1, 0x00, 0x02}));
        scale.setLoad(0);
        QCOMPARE(poll(scale, metric), (Bytes{129, 0x00, 0x05}));
        command(scale, pressing(metric, tareReleased));
        QCOMPARE(poll(scale), (Bytes{1, 0x00, 0x00}));
    }

    void negativeInEveryUnit_data()
    {
        QTest::addColumn<Type>("type");
        QTest::addColumn<std::uint8_t>("command");
        QTest::addColumn<Bytes>("expected");
        // 100 g are 35.3 tenths of an ounce.
        QTest::newRow("grams") << Type::PackedDecimal << metric << Bytes{129, 0x00, 0x01};
        QTest::newRow("ounces") << Type::PackedDecimal << ounces << Bytes{130, 0x00, 0x01};
        QTest::newRow("lb-oz A") << Type::PackedDecimal << poundsOuncesA << Bytes{131, 0x00, 0x01};
        QTest::newRow("lb-oz B") << Type::PackedDecimal << poundsOuncesB << Bytes{135, 0x00, 0x01};
        QTest::newRow("kg") << Type::BinaryTenthOunces << metric << Bytes{136, 0x23, 0x00};
        QTest::newRow("lb") << Type::BinaryTenthOunces << ounces << Bytes{137, 0x23, 0x00};
        QTest::newRow("lb-oz") << Type::BinaryTenthOunces << poundsOuncesA
                               << Bytes{138, 0x23, 0x00};
    }

    void negativeInEveryUnit()
    {
        QFETCH(Type, type);
        QFETCH(std::uint8_t, command);
        QFETCH(Bytes, expected);
        ScaleModel scale = announcedScale(type, 100);
        poll(scale, pressing(metric, tareReleased));
        scale.setLoad(0);
        QCOMPARE(poll(scale, command), expected);
    }

    void showsNoMinusWithZero()
    {
        ScaleModel scale = announcedScale(Type::PackedDecimal, 4, ScaleModel::Capacity::High);
        poll(scale, pressing(metric, tareReleased));
        scale.setLoad(0);
        QCOMPARE(poll(scale), (Bytes{1, 0x00, 0x00}));
    }

    void refusesATareOutOfRange()
    {
        ScaleModel scale = announcedScale(Type::PackedDecimal, 10000);
        poll(scale, pressing(metric, tareReleased));
        scale.setLoad(100);
        QCOMPARE(poll(scale), (Bytes{1, 0x00, 0x01}));
    }

    void holdFreezesTheWeightButNotTheUnit()
    {
        ScaleModel scale = announcedScale(Type::PackedDecimal, 500);
        command(scale, pressing(metric, holdReleased));
        scale.setLoad(20000);
        QCOMPARE(poll(scale, pressing(ounces, holdReleased)), (Bytes{2, 0x00, 0x05}));
        QCOMPARE(poll(scale, ounces), (Bytes{4, 0x00, 0x00}));
    }

    void switchesOffAndOnByCommand()
    {
        ScaleModel scale = announcedScale(Type::PackedDecimal, 500);
        command(scale, metric | powerOff);
        QCOMPARE(poll(scale, metric | powerOff), (Bytes{0, 0, 0}));
        QCOMPARE(poll(scale), (Bytes{0, 0, 0}));
        command(scale, poundsOuncesB);
        QCOMPARE(poll(scale, poundsOuncesB), (Bytes{7, 0x00, 0x05}));
    }

    void isNotSwitchedOffByAPoll()
    {
        ScaleModel scale = announcedScale(Type::PackedDecimal, 500);
        QCOMPARE(poll(scale, metric | powerOff), (Bytes{1, 0x00, 0x05}));
    }

    void forgetsTareAndHoldWithoutPower_data()
    {
        QTest::addColumn<bool>("byCable");
        QTest::newRow("switched off and on") << false;
        QTest::newRow("unplugged and plugged in") << true;
    }

    void forgetsTareAndHoldWithoutPower()
    {
        QFETCH(bool, byCable);
        ScaleModel scale = announcedScale(Type::PackedDecimal, 500);
        command(scale, pressing(metric, tareReleased));
        command(scale, pressing(metric, holdReleased));
        scale.setLoad(800);
        if (byCable) {
            scale.plugIn();
            poll(scale);
        } else {
            command(scale, metric | powerOff);
            command(scale, metric);
        }
        QCOMPARE(poll(scale), (Bytes{1, 0x00, 0x08}));
    }
};

TEST_CLASS(ScaleModelTest)
#include "ScaleModelTest.moc"
