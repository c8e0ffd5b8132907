// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/CommandByte.h"
#include "scale/WeightDecoder.h"
#include "tests/rules/ScaleRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

#include <cstring>
#include <optional>
#include <span>

namespace {

using Kind = ReadingEffect::Kind;

/// What the link does around the decoder, in the words of the pure rules.
struct ProductReading
{
    DecodedReport decoded;
    CommandByte command;

    ProductReading(const WeightReport &report, ReadingState state, CommandByte before,
                   Capacity capacity)
    {
        if (state.currentScale == 0)
            state.currentStatue = true;
        state.OverloadFlag = false;
        float weight = packedDecimalGrams(report, state.currentScale, capacity);
        if (state.currentScale == 1)
            weight = binaryHectograms(report);
        decoded = decodeStatus(report, weight, state, capacity);
        command = afterPoll(before, decoded.state.unitindex);
    }
};

ReadingState readingState(const rules::LinkState &state)
{
    return {.currentScale = state.currentScale,
            .unitnumber = state.unitnumber,
            .unitindex = state.unitindex,
            .currentUnit = state.currentUnit,
            .currentStatue = state.currentStatue,
            .OverloadFlag = state.OverloadFlag};
}

Kind kindOf(rules::Step step)
{
    switch (step) {
    case rules::Step::HideUnitLabel: return Kind::HideUnitCaption;
    case rules::Step::DrawOverload: return Kind::DrawOverload;
    case rules::Step::ClearAll: return Kind::ClearAll;
    case rules::Step::ShowNegative: return Kind::ShowNegativeSign;
    case rules::Step::Draw5Digit: return Kind::DrawDigits;
    case rules::Step::DisplayUnit: return Kind::DisplayUnit;
    default: return Kind::Log;
    }
}

bool sameLine(const LogLine &line, const rules::Effect &expected)
{
    switch (line.argument) {
    case LogLine::Argument::None: return true;
    case LogLine::Argument::Number: return line.first == expected.number;
    case LogLine::Argument::Real: return line.real == expected.real;
    case LogLine::Argument::TwoNumbers: return false;
    }
    return false;
}

bool sameEffect(const ReadingEffect &effect, const rules::Effect &expected)
{
    if (effect.kind != kindOf(expected.step))
        return false;
    switch (effect.kind) {
    case Kind::Log: return sameLine(effect.line, expected);
    case Kind::ShowNegativeSign:
    case Kind::DrawDigits:
    case Kind::DisplayUnit: return effect.number == expected.number;
    default: return true;
    }
}

/// The four effects before the status is looked at: overload withdrawn, caption shown, weight
/// logged, web strings made. The link has them; its own test shows them.
constexpr std::size_t leadingEffects = 4;

bool sameEffects(std::span<const ReadingEffect> effects, const rules::Outcome &expected)
{
    const std::span<const rules::Effect> all(expected.effects.data(),
                                             static_cast<std::size_t>(expected.count));
    const auto handler = all.subspan(leadingEffects);
    if (effects.size() != handler.size())
        return false;
    for (std::size_t i = 0; i < effects.size(); ++i) {
        if (!sameEffect(effects[i], handler[i]))
            return false;
    }
    return true;
}

bool sameTexts(std::span<const ReadingEffect> effects, const rules::Outcome &expected)
{
    for (std::size_t i = 0; i < effects.size(); ++i) {
        if (effects[i].kind == Kind::Log &&
            effects[i].line.toString().toStdString() !=
                rules::logText(expected.effects.at(leadingEffects + i)))
            return false;
    }
    return true;
}

bool sameWeight(float one, float other)
{
    return std::memcmp(&one, &other, sizeof one) == 0;
}

enum class Texts { Skip, Compare };

bool agrees(const WeightReport &report, const rules::LinkState &before, Capacity capacity,
            Texts texts)
{
    const rules::Outcome expected = rules::readReport(report.status, report.low, report.high,
                                                      before, capacity == Capacity::High);
    const ProductReading reading(report, readingState(before), before.scaleCommand, capacity);
    return reading.decoded.state == readingState(expected.state) &&
           reading.command == expected.state.scaleCommand &&
           sameWeight(reading.decoded.weight, expected.weight) &&
           reading.decoded.poundsTimes10000 == expected.poundsTimes10000 &&
           sameEffects(reading.decoded.effects, expected) &&
           (texts == Texts::Skip || sameTexts(reading.decoded.effects, expected));
}

/// A state to start from, another one for each number, so that a sweep over the reports goes
/// through all of them.
rules::LinkState stateFor(unsigned number, int scale)
{
    rules::LinkState state;
    state.currentScale = scale;
    state.unitnumber = static_cast<int>(number % 7);
    state.unitindex = static_cast<int>(number / 7 % 5);
    state.currentUnit = static_cast<int>(number / 35 % 5);
    state.currentStatue = number / 175 % 2 != 0;
    state.scaleCommand = static_cast<std::uint8_t>(number * 37);
    return state;
}

WeightReport reportOf(unsigned bits)
{
    return {.status = static_cast<std::uint8_t>(bits >> 16),
            .low = static_cast<std::uint8_t>(bits),
            .high = static_cast<std::uint8_t>(bits >> 8)};
}

} // namespace

/// All 256 status bytes with all 65,536 weights, on both scales and both kinds of models, against
/// the independent statement of the rules.
class DecoderSweepTest : public QObject
{
    Q_OBJECT

private slots:
    void everyReport_data()
    {
        QTest::addColumn<int>("scale");
        QTest::addColumn<Capacity>("capacity");
        QTest::newRow("gram scale") << 0 << Capacity::Standard;
        QTest::newRow("gram scale in 10 g steps") << 0 << Capacity::High;
        QTest::newRow("tenth-ounce scale") << 1 << Capacity::Standard;
        QTest::newRow("tenth-ounce scale, 10 g model chosen") << 1 << Capacity::High;
    }

    void everyReport()
    {
        QFETCH(int, scale);
        QFETCH(Capacity, capacity);
        constexpr unsigned reports = 1U << 24;
        unsigned compared = 0;
        for (unsigned bits = 0; bits < reports; bits += static_cast<unsigned>(sweepStep(61))) {
            const Texts texts = compared % 251 == 0 ? Texts::Compare : Texts::Skip;
            if (!agrees(reportOf(bits), stateFor(bits, scale), capacity, texts))
                QFAIL(qPrintable(QStringLiteral("report %1").arg(bits, 6, 16)));
            ++compared;
        }
        QVERIFY(compared >= reports / 61);
    }

    /// Every status in every state, with weights at the edges of digits, pounds and ounces.
    void everyStateOfEveryStatus()
    {
        static constexpr std::array<unsigned, 16> weights{
            0x0000, 0x0001, 0x0007, 0x0008, 0x0009, 0x000A, 0x0028, 0x0453,
            0x0454, 0x0907, 0x0908, 0x1000, 0x1234, 0x9999, 0xFFF8, 0xFFFF};
        for (unsigned status = 0; status <= 0xFF; ++status) {
            for (const unsigned weight : weights) {
                for (unsigned number = 0; number < 350; ++number) {
                    for (const int scale : {0, 1}) {
                        for (const Capacity capacity : {Capacity::Standard, Capacity::High})
                            QVERIFY(agrees(reportOf(status << 16 | weight), stateFor(number, scale),
                                           capacity, Texts::Skip));
                    }
                }
            }
        }
    }
};

TEST_CLASS(DecoderSweepTest)
#include "DecoderSweepTest.moc"
