// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/SettledWeight.h"
#include "tests/rules/SettledRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

#include <random>
#include <string>
#include <vector>

namespace {

using rules::PanEvent;

struct Letter
{
    char name;
    PanEvent event;
};

// status, low byte, high byte
const Letter empty{'0', {PanEvent::Report, {0x01, 0x00, 0x00}}};
const Letter weightA{'A', {PanEvent::Report, {0x01, 0x34, 0x12}}};
const Letter weightB{'B', {PanEvent::Report, {0x01, 0x68, 0x05}}};
const Letter minusA{'-', {PanEvent::Report, {0x81, 0x34, 0x12}}};
const Letter overload{'^', {PanEvent::Report, {0x04, 0x99, 0x99}}};
const Letter off{'_', {PanEvent::Report, {0x00, 0x34, 0x12}}};
const Letter failedRead{'x', {PanEvent::FailedRead, {}}};
const Letter unitChange{'u', {PanEvent::UnitChange, {}}};
const Letter holdChange{'h', {PanEvent::HoldChange, {}}};
const Letter scaleLost{'!', {PanEvent::ScaleLost, {}}};
const Letter ouncesA{'a', {PanEvent::Report, {0x02, 0x34, 0x12}}};
const Letter binaryA{'k', {PanEvent::Report, {0x08, 0xB3, 0x01}}};
const Letter underLoad{'v', {PanEvent::Report, {0x05, 0x00, 0x00}}};

const std::vector<Letter> everything{empty, weightA,    weightB,    minusA,     overload,
                                     off,   failedRead, unitChange, holdChange, scaleLost};

bool tell(SettledWeight &weight, const PanEvent &event)
{
    switch (event.kind) {
    case PanEvent::Report:
        return weight.take(
                   {.status = event.bytes[0], .low = event.bytes[1], .high = event.bytes[2]}) ==
               SettledWeight::Leaves::Yes;
    case PanEvent::FailedRead: weight.missReport(); break;
    case PanEvent::UnitChange: weight.changeUnit(); break;
    case PanEvent::HoldChange: weight.changeHold(); break;
    case PanEvent::ScaleLost: weight.loseScale(); break;
    }
    return false;
}

bool isSame(SettledWeight::State state, rules::Pan pan)
{
    switch (state) {
    case SettledWeight::State::Empty: return pan == rules::Pan::Empty;
    case SettledWeight::State::Settling: return pan == rules::Pan::Settling;
    case SettledWeight::State::Settled: return pan == rules::Pan::Settled;
    }
    return false;
}

/// All streams that begin alike share their beginning.
class EveryStream
{
public:
    EveryStream(const std::vector<Letter> &alphabet, std::size_t length)
        : m_alphabet(alphabet)
        , m_length(length)
    {
        m_history.reserve(length);
        m_name.reserve(length);
        goOn(SettledWeight());
    }

    qint64 streams = 0;
    qint64 leavings = 0;
    std::string wrong; ///< the first stream at whose end the two differ

private:
    void goOn(const SettledWeight &before)
    {
        if (m_history.size() == m_length || !wrong.empty())
            return;
        for (const Letter &letter : m_alphabet) {
            m_history.push_back(letter.event);
            m_name.push_back(letter.name);
            SettledWeight weight = before;
            compare(weight, tell(weight, letter.event));
            goOn(weight);
            m_history.pop_back();
            m_name.pop_back();
        }
    }

    void compare(const SettledWeight &weight, bool leaves)
    {
        ++streams;
        leavings += leaves;
        if (leaves != rules::leavesAtEndOf(m_history) ||
            !isSame(weight.state(), rules::panAtEndOf(m_history)))
            wrong = m_name;
    }

    const std::vector<Letter> &m_alphabet;
    std::size_t m_length;
    std::vector<PanEvent> m_history;
    std::string m_name;
};

/// Weights that last for a while, as on a pan, among all else.
std::vector<PanEvent> randomStream(std::mt19937 &random, std::size_t length)
{
    static const std::vector<Letter> letters = [] {
        std::vector<Letter> all = everything;
        all.insert(all.end(), {ouncesA, binaryA, underLoad});
        return all;
    }();
    std::vector<PanEvent> stream;
    while (stream.size() < length) {
        const PanEvent &event = letters[random() % letters.size()].event;
        const std::size_t lasts = event.kind == PanEvent::Report ? 1 + random() % 6 : 1;
        stream.insert(stream.end(), lasts, event);
    }
    stream.resize(length);
    return stream;
}

/// What has to hold of any stream, whoever decides: told apart from the statement of the rules.
void checkProperties(const std::vector<PanEvent> &stream, const std::vector<bool> &leaves)
{
    std::size_t runStart = 0;
    int leftInRun = 0;
    for (std::size_t i = 0; i < stream.size(); ++i) {
        if (i == 0 || stream[i] != stream[i - 1]) {
            runStart = i;
            leftInRun = 0;
        }
        if (!leaves[i])
            continue;
        ++leftInRun;
        QCOMPARE(stream[i].kind, PanEvent::Report);
        QVERIFY2(stream[i].bytes[1] != 0 || stream[i].bytes[2] != 0, "a zero has left");
        QVERIFY2(stream[i].bytes[0] < 128, "a negative weight has left");
        QVERIFY2(i - runStart >= 2, "what has left had not settled");
        QVERIFY2(leftInRun == 1, "a weight has left twice");
    }
}

std::string leavingsOf(const std::string &names)
{
    std::vector<Letter> letters = everything;
    letters.insert(letters.end(), {ouncesA, binaryA, underLoad});
    SettledWeight weight;
    std::string marks;
    for (const char name : names) {
        for (const Letter &letter : letters) {
            if (letter.name == name)
                marks += tell(weight, letter.event) ? '*' : '.';
        }
    }
    return marks;
}

} // namespace

/// When a parcel's weight leaves, against an independent statement.
class SettledWeightTest : public QObject
{
    Q_OBJECT

private slots:
    /// Each event by its letter, and a star where the weight leaves.
    void examples_data()
    {
        QTest::addColumn<QByteArray>("leavings");
        const auto row = [](const char *stream, const char *leavings) {
            QTest::newRow(stream) << QByteArray(leavings);
        };
        row("000AAAAA000", ".....*....."); // put on, settled, lifted
        row("AAA0AAA", "..*...*");         // two equal parcels
        row("AAABBB", "..*..*");           // something was added
        row("AABAAA", ".....*");           // not steady
        row("AABB0", ".....");             // never settled
        row("---000", "......");           // below zero, and back
        row("AAA^^^AAA", "..*.....*");     // too much, and some of it off again
        row("AAA___AAA", "..*.....*");     // switched off and on
        row("AAA!AAA", "..*...*");         // another plug
        row("AAxAAA", ".....*");           // a failed read among them
        row("AAAxAAAA", "..*.....");       // one afterwards: it has left already
        row("AAAx0AAA", "..*....*");       // and so it was lifted
        row("AAAuAAA", "..*...*");         // another unit of the same code
        row("AAAuAaaa", "..*....*");       // another code, once the scale has followed
        row("AAAhAAAhAAA", "..*........"); // held and released
        row("AAhAAA", ".....*");           // held while it settled
        row("AAAhAAAh000", "..*........"); // lifted while held
        row("kkkvvv", "..*...");           // the binary scale; the pan itself is lifted
    }

    void examples()
    {
        QFETCH(const QByteArray, leavings);
        QCOMPARE(QByteArray::fromStdString(leavingsOf(QTest::currentDataTag())), leavings);
    }

    void everyStreamOfSeven_data()
    {
        QTest::addColumn<bool>("holdAndPlug");
        QTest::newRow("eight events") << false;
        QTest::newRow("with hold and another plug") << true;
    }

    void everyStreamOfSeven()
    {
        QFETCH(const bool, holdAndPlug);
        std::vector<Letter> alphabet = everything;
        if (!holdAndPlug)
            alphabet.resize(8);
        const EveryStream all(alphabet, holdAndPlug ? std::size_t(7 - (sweepStep(2) - 1)) : 7);
        QVERIFY2(all.wrong.empty(), all.wrong.c_str());
        QVERIFY(all.leavings > 0);
        qInfo("%lld streams, %lld leavings", all.streams, all.leavings);
    }

    void everyStreamOfTwelveWeights()
    {
        const std::vector<Letter> weights{empty, weightA, weightB};
        const EveryStream all(weights, 12);
        QVERIFY2(all.wrong.empty(), all.wrong.c_str());
        QVERIFY(all.leavings > 0);
        qInfo("%lld streams, %lld leavings", all.streams, all.leavings);
    }

    void aMillionLongStreams()
    {
        std::mt19937 random(20261121);
        const int streams = 1'000'000 / sweepStep(97);
        qint64 left = 0;
        for (int number = 0; number < streams; ++number) {
            const std::vector<PanEvent> stream = randomStream(random, 60 + random() % 60);
            SettledWeight weight;
            std::vector<bool> leaves;
            for (std::size_t i = 0; i < stream.size(); ++i) {
                leaves.push_back(tell(weight, stream[i]));
                const std::span<const PanEvent> history(stream.data(), i + 1);
                QCOMPARE(bool(leaves.back()), rules::leavesAtEndOf(history));
                QVERIFY(isSame(weight.state(), rules::panAtEndOf(history)));
                left += leaves.back();
            }
            checkProperties(stream, leaves);
            if (QTest::currentTestFailed())
                return;
        }
        QVERIFY(left > streams);
        qInfo("%d streams, %lld leavings", streams, left);
    }

    /// Every report there is: after three of it, it leaves if it is a weight above zero.
    void everyReport()
    {
        for (unsigned bits = 0; bits < 1U << 24; bits += unsigned(sweepStep(251))) {
            const PanEvent event{
                PanEvent::Report,
                {std::uint8_t(bits >> 16), std::uint8_t(bits), std::uint8_t(bits >> 8)}};
            const std::array history{event, event, event};
            SettledWeight weight;
            tell(weight, event);
            tell(weight, event);
            if (tell(weight, event) != rules::leavesAtEndOf(history))
                QFAIL(qPrintable(QString::number(bits, 16)));
        }
    }
};

TEST_CLASS_INSIDE(QCoreApplication, SettledWeightTest)
#include "SettledWeightTest.moc"
