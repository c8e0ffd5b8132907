// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ReportDescriptor.h"

#include "emulator/ClassScaleDescriptors.h"
#include "emulator/ScaleReportDescriptor.h"
#include "scale/pointofsale/ScaleReport.h"
#include "tests/support/TestClasses.h"

#include <algorithm>
#include <span>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytes(std::span<const std::uint8_t> descriptor)
{
    return {descriptor.begin(), descriptor.end()};
}

/// Where these items begin; they have to be there.
Bytes::iterator placeOf(const Bytes &items, Bytes &descriptor)
{
    const auto found =
        std::search(descriptor.begin(), descriptor.end(), items.begin(), items.end());
    if (found == descriptor.end())
        qFatal("no such items in the descriptor");
    return found;
}

/// The descriptor of the class with other items in the place of those.
Bytes withOther(const Bytes &items, const Bytes &others)
{
    Bytes descriptor = bytes(classScaleDescriptor);
    const auto place = placeOf(items, descriptor);
    const auto rest = descriptor.erase(place, place + static_cast<std::ptrdiff_t>(items.size()));
    descriptor.insert(rest, others.begin(), others.end());
    return descriptor;
}

ScaleStatement readBy(const Bytes &report, const ScaleLayout &layout)
{
    return readScaleReport(report, layout).value_or(ScaleStatement());
}

ScaleStatement statement(ScaleStatus status, WeightUnit unit, unsigned digits, int exponent)
{
    return {status, unit, {digits, exponent, status == ScaleStatus::UnderZero}};
}

} // namespace

Q_DECLARE_METATYPE(Bytes)

/// What the reader makes of the descriptors of scales and of other devices.
class ReportDescriptorTest : public QObject
{
    Q_OBJECT

private slots:
    void theClassesOwn()
    {
        const auto layout = scaleLayout(classScaleDescriptor);
        QVERIFY(layout);
        QCOMPARE(layout->dataReport, std::uint8_t{3});
        QCOMPARE(layout->dataBytes, std::size_t{5});
        QVERIFY(layout->zero == (ZeroCommand{.report = 2, .bit = 1, .bytes = 1}));
        // As without any descriptor.
        for (const Bytes &report : {Bytes{3, 4, 11, 0xFF, 12, 0}, Bytes{3, 5, 2, 0, 0xFF, 0xFF},
                                    Bytes{3, 2, 0, 0x80, 0, 0}, Bytes{3, 9, 13, 0, 1, 0}}) {
            QVERIFY(readScaleReport(report, *layout) ==
                    readScaleReport(report, ScaleLayout::ofClass()));
        }
    }

    void oneWithOtherUsagesAndOrder()
    {
        const auto layout = scaleLayout(oddScaleDescriptor);
        QVERIFY(layout);
        QVERIFY(!layout->zero);
        // 24 bits of weight, 4 of exponent, 4 of unit, 8 of status
        QVERIFY(readBy({9, 0x39, 0x30, 0x00, 0x1E, 0x08}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12345, -2));
        QVERIFY(readBy({9, 0x40, 0x42, 0x0F, 0x30, 0x04}, *layout) ==
                statement(ScaleStatus::InMotion, WeightUnit::Gram, 1000000, 0));
        QVERIFY(readBy({9, 0xFE, 0xFF, 0xFF, 0x2D, 0x10}, *layout) ==
                statement(ScaleStatus::UnderZero, WeightUnit::Kilogram, 2, -3));
        QVERIFY(readBy({9, 0x00, 0x00, 0x00, 0x00, 0x00}, *layout) ==
                statement(ScaleStatus::Unknown, WeightUnit::Pound, 0, 0));
        QVERIFY(!readScaleReport(Bytes{9, 0, 0, 0, 0}, *layout));
        QVERIFY(!readScaleReport(Bytes{3, 4, 11, 0xFF, 12, 0}, *layout));
    }

    void whateverTheUsageAtTheTop()
    {
        for (const int usage : {0x01, 0x20, 0x2A, 0xFF}) {
            Bytes descriptor = bytes(classScaleDescriptor);
            descriptor[3] = static_cast<std::uint8_t>(usage);
            QVERIFY(scaleLayout(descriptor));
        }
    }

    void otherDevicesAreNoScales()
    {
        QVERIFY(!scaleLayout({}));
        QVERIFY(!scaleLayout(scaleReportDescriptor));
        // The page of scanners, with a field of a weighing device in it.
        QVERIFY(!scaleLayout(
            Bytes{0x05, 0x8C, 0x09, 0x02, 0xA1, 0x01, 0x05, 0x8D, 0x09, 0x40, 0x81, 0x02, 0xC0}));
        // The page in the usage itself, with nothing in the collection.
        QVERIFY(scaleLayout(Bytes{0x0B, 0x20, 0x00, 0x8D, 0x00, 0xA1, 0x01, 0xC0}));
    }

    void aScaleBesideSomethingElse()
    {
        Bytes both{0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0x85, 0x07, 0x75,
                   0x08, 0x95, 0x08, 0x09, 0x40, 0x81, 0x02, 0xC0};
        both.insert(both.end(), classScaleDescriptor.begin(), classScaleDescriptor.end());
        const auto layout = scaleLayout(both);
        QVERIFY(layout);
        QCOMPARE(layout->dataReport, std::uint8_t{3});
    }

    /// Reports of such a device have no number in front.
    void withoutNumbers()
    {
        Bytes descriptor = bytes(oddScaleDescriptor);
        descriptor.erase(descriptor.begin() + 6, descriptor.begin() + 8);
        const auto layout = scaleLayout(descriptor);
        QVERIFY(layout);
        QVERIFY(readBy({0x39, 0x30, 0x00, 0x1E, 0x08}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12345, -2));
    }

    /// Whose weight is nowhere to be found.
    void theClassesLayoutWhereNothingIsSaid()
    {
        const auto layout = scaleLayout(Bytes{0x05, 0x8D, 0x09, 0x20, 0xA1, 0x01, 0x85, 0x03, 0x75,
                                              0x08, 0x95, 0x05, 0x81, 0x02, 0xC0});
        QVERIFY(layout);
        QVERIFY(readBy({3, 4, 11, 0xFF, 12, 0}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12, -1));
    }

    /// A range that is one longer than its list says nothing of where the list begins.
    void listsThatDoNotFitTheirRange()
    {
        Bytes descriptor = bytes(classScaleDescriptor);
        *(placeOf({0x09, 0x5C, 0x25, 0x0C}, descriptor) + 3) = 0x0D;
        const auto layout = scaleLayout(descriptor);
        QVERIFY(layout);
        QVERIFY(readBy({3, 4, 11, 0xFF, 12, 0}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12, -1));
    }

    void aWeightOfTwoBytes_data()
    {
        QTest::addColumn<Bytes>("items");
        QTest::newRow("one field each")
            << Bytes{0x75, 0x08, 0x09, 0x40, 0x81, 0x02, 0x09, 0x40, 0x81, 0x02};
        QTest::newRow("two fields")
            << Bytes{0x75, 0x08, 0x95, 0x02, 0x09, 0x40, 0x81, 0x02, 0x95, 0x01};
        QTest::newRow("two fields, each named")
            << Bytes{0x75, 0x08, 0x95, 0x02, 0x09, 0x40, 0x09, 0x40, 0x81, 0x02, 0x95, 0x01};
    }

    void aWeightOfTwoBytes()
    {
        QFETCH(Bytes, items);
        const auto layout = scaleLayout(withOther({0x75, 0x10, 0x09, 0x40, 0x81, 0x02}, items));
        QVERIFY(layout);
        QCOMPARE(layout->dataBytes, std::size_t{5});
        QVERIFY(readBy({3, 4, 11, 0xFF, 0x62, 0x01}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 354, -1));
        QVERIFY(readBy({3, 5, 11, 0xFF, 0xFB, 0xFF}, *layout) ==
                statement(ScaleStatus::UnderZero, WeightUnit::Ounce, 5, -1));
    }

    /// Another field of that usage behind a whole number is another number.
    void twoWeights()
    {
        const auto layout =
            scaleLayout(withOther({0x75, 0x10, 0x09, 0x40, 0x81, 0x02},
                                  {0x75, 0x10, 0x95, 0x02, 0x09, 0x40, 0x81, 0x02}));
        QVERIFY(layout);
        QVERIFY(readBy({3, 4, 11, 0xFF, 12, 0, 13, 0}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12, -1));
    }

    /// The rest is where the class has it.
    void fieldsThatAreNotDeclaredPlainly_data()
    {
        QTest::addColumn<Bytes>("items");
        QTest::addColumn<Bytes>("others");
        const Bytes exponent{0x09, 0x41, 0x81, 0x02};
        const Bytes unit{0x25, 0x0C, 0x81, 0x00};
        QTest::newRow("constant exponent") << exponent << Bytes{0x09, 0x41, 0x81, 0x03};
        QTest::newRow("exponent without usage") << exponent << Bytes{0x81, 0x02};
        QTest::newRow("exponent as array") << exponent << Bytes{0x09, 0x41, 0x81, 0x00};
        QTest::newRow("constant unit") << unit << Bytes{0x25, 0x0C, 0x81, 0x01};
    }

    void fieldsThatAreNotDeclaredPlainly()
    {
        QFETCH(Bytes, items);
        QFETCH(Bytes, others);
        Bytes descriptor = withOther(items, others);
        const auto layout = scaleLayout(descriptor);
        QVERIFY(layout);
        QVERIFY(readBy({3, 4, 11, 0xFF, 12, 0}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12, -1));
        // With another number of the report it is not the class's.
        *(placeOf({0x85, 0x03}, descriptor) + 1) = 0x07;
        const auto other = scaleLayout(descriptor);
        QVERIFY(other);
        QVERIFY(readBy({7, 4, 11, 0xFF, 12, 0}, *other) !=
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12, -1));
    }

    /// What stands in the place of the one is not read as the other.
    void aUnitInThePlaceOfTheExponent()
    {
        Bytes descriptor{0x05, 0x8D, 0x09, 0x20, 0xA1, 0x01, 0x85, 0x03, 0x15, 0x01,
                         0x75, 0x08, 0x95, 0x01, 0x25, 0x08, 0x19, 0x71, 0x29, 0x78,
                         0x81, 0x00, 0x81, 0x03, 0x25, 0x0C, 0x19, 0x51, 0x29, 0x5C,
                         0x81, 0x00, 0x75, 0x10, 0x09, 0x40, 0x81, 0x02, 0xC0};
        const auto layout = scaleLayout(descriptor);
        QVERIFY(layout);
        QVERIFY(readBy({3, 4, 0, 11, 12, 0}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12, 0));
    }

    void weightsWithASign_data()
    {
        QTest::addColumn<Bytes>("minimum");
        QTest::addColumn<bool>("isSigned");
        QTest::newRow("that of the exponent, carried over") << Bytes{} << false;
        QTest::newRow("a lowest of less bits") << Bytes{0x15, 0x80} << false;
        QTest::newRow("none") << Bytes{0x15, 0x00} << false;
        QTest::newRow("the lowest of all") << Bytes{0x16, 0x00, 0x80} << true;
        QTest::newRow("as low as it is high") << Bytes{0x16, 0x01, 0x80} << true;
    }

    void weightsWithASign()
    {
        QFETCH(Bytes, minimum);
        QFETCH(bool, isSigned);
        const auto layout =
            scaleLayout(withOther({0x15, 0x00, 0x27, 0xFF, 0xFF, 0x00, 0x00, 0x75, 0x10}, [&] {
                Bytes items = minimum;
                const Bytes rest{0x27, 0xFF, 0xFF, 0x00, 0x00, 0x75, 0x10};
                items.insert(items.end(), rest.begin(), rest.end());
                return items;
            }()));
        QVERIFY(layout);
        ScaleStatement expected = statement(ScaleStatus::Stable, WeightUnit::Gram, 65535, 0);
        if (isSigned)
            expected.number = {.digits = 1, .exponent = 0, .isNegative = true};
        QVERIFY(readBy({3, 4, 2, 0, 0xFF, 0xFF}, *layout) == expected);
    }

    /// Nobody could write down what they may say.
    void exponentsThatAreNone()
    {
        Bytes descriptor = bytes(classScaleDescriptor);
        const Bytes wide{0x75, 0x20};
        descriptor.insert(placeOf({0x09, 0x41, 0x81, 0x02}, descriptor), wide.begin(), wide.end());
        const auto layout = scaleLayout(descriptor);
        QVERIFY(layout);
        QVERIFY(readBy({3, 4, 11, 0xFF, 0xFF, 0xFF, 0xFF, 12, 0}, *layout) ==
                statement(ScaleStatus::Stable, WeightUnit::Ounce, 12, -1));
        QVERIFY(readBy({3, 4, 11, 0xFF, 0xFF, 0xFF, 0x7F, 12, 0}, *layout) == ScaleStatement());
        QVERIFY(readBy({3, 4, 11, 0x00, 0x00, 0x00, 0x80, 12, 0}, *layout) == ScaleStatement());
    }

    /// It is read as far as it goes, and never beyond.
    void descriptorsThatAreCutOff()
    {
        for (const Bytes &whole : {bytes(classScaleDescriptor), bytes(oddScaleDescriptor)}) {
            for (std::size_t length = 0; length < whole.size(); ++length) {
                // In memory of its own, so that a sanitizer sees what is read behind it.
                const Bytes part(whole.begin(),
                                 whole.begin() + static_cast<std::ptrdiff_t>(length));
                QCOMPARE(scaleLayout(part).has_value(), length >= 6);
            }
        }
    }

    void descriptorsThatMakeNoSense()
    {
        const Bytes top{0x05, 0x8D, 0x09, 0x20, 0xA1, 0x01};
        const std::vector<Bytes> ends{
            {0xB4},                                                 // pop of nothing
            {0xC0, 0xC0},                                           // end of nothing
            {0x77, 0xFF, 0xFF, 0xFF, 0xFF, 0x09, 0x40, 0x81, 0x02}, // endless fields
            {0x75, 0x08, 0x97, 0xFF, 0xFF, 0xFF, 0xFF, 0x09, 0x40, 0x81, 0x02},
            {0x1B, 0x00, 0x00, 0x8D, 0x00, 0x2B, 0xFF, 0xFF, 0xFF, 0xFF}, // endless usages
            {0x19, 0x05, 0x29, 0x01},                                     // a range that goes down
            Bytes(100, 0xA4),                                             // push without end
            {0xFE, 0xFF},                                                 // a long item without end
        };
        for (const Bytes &end : ends) {
            Bytes descriptor = top;
            descriptor.insert(descriptor.end(), end.begin(), end.end());
            QVERIFY(scaleLayout(descriptor));
        }
    }
};

TEST_CLASS(ReportDescriptorTest)
#include "ReportDescriptorTest.moc"
