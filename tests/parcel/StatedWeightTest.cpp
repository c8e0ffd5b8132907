// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/SettledWeight.h"
#include "tests/support/TestClasses.h"

#include <array>
#include <string>

namespace {

struct StatedLetter
{
    char name;
    ScaleStatement statement;
};

ScaleStatement stated(ScaleStatus status, unsigned digits)
{
    return {status, WeightUnit::Ounce, {digits, -1, status == ScaleStatus::UnderZero}};
}

const std::array<StatedLetter, 8> statedAlphabet{{
    {'0', stated(ScaleStatus::StableAtZero, 0)},
    {'a', stated(ScaleStatus::InMotion, 12)},
    {'A', stated(ScaleStatus::Stable, 12)},
    {'b', stated(ScaleStatus::InMotion, 13)},
    {'B', stated(ScaleStatus::Stable, 13)},
    {'-', stated(ScaleStatus::UnderZero, 12)},
    {'^', stated(ScaleStatus::OverLimit, 12)},
    {'x', {}}, // a report that could not be read
}};

/// The last letter of @p word: whether a weight leaves at it. One that is stable does, but not
/// twice in a row of nothing but itself, in motion or not, and of what could not be read.
bool leavesAtEnd(const std::string &word)
{
    const char last = word.back();
    if (last != 'A' && last != 'B')
        return false;
    const char moving = static_cast<char>(last - 'A' + 'a');
    for (std::size_t i = word.size() - 1; i-- > 0;) {
        if (word[i] == last)
            return false;
        if (word[i] != moving && word[i] != 'x')
            return true;
    }
    return true;
}

} // namespace

/// Scales that say themselves whether their weight has settled.
class StatedWeightTest : public QObject
{
    Q_OBJECT

private slots:
    void everyRowOfUpToSix() { walk({}, SettledWeight()); }

    void unitAndHoldAreLookedAtAnew()
    {
        using Leaves = SettledWeight::Leaves;
        const ScaleStatement weight = stated(ScaleStatus::Stable, 12);
        SettledWeight pan;
        QVERIFY(pan.takeStated(weight) == Leaves::Yes);
        pan.changeHold();
        QVERIFY(pan.takeStated(weight) == Leaves::No);
        QVERIFY(pan.state() == SettledWeight::State::Settled);
        pan.changeUnit();
        QVERIFY(pan.takeStated(weight) == Leaves::Yes);
        pan.loseScale();
        QVERIFY(pan.takeStated(weight) == Leaves::Yes);
    }

    void withoutAUnitThereIsNoWeight()
    {
        ScaleStatement weight = stated(ScaleStatus::Stable, 12);
        weight.unit = WeightUnit::Unknown;
        SettledWeight pan;
        QVERIFY(pan.takeStated(weight) == SettledWeight::Leaves::No);
        QVERIFY(pan.state() == SettledWeight::State::Empty);
    }

    void withoutATextItSettlesAndDoesNotLeave()
    {
        const ScaleStatement weight = stated(ScaleStatus::Stable, 12);
        SettledWeight pan;
        QVERIFY(pan.takeStated(weight, false) == SettledWeight::Leaves::No);
        QVERIFY(pan.state() == SettledWeight::State::Settled);
        QVERIFY(!pan.hasLeft());
        QVERIFY(pan.takeStated(weight) == SettledWeight::Leaves::Yes);
    }

    void eachParcelSettlesOnce()
    {
        const auto settles = [](SettledWeight &pan, ScaleStatus status, unsigned digits) {
            pan.takeStated(stated(status, digits), false);
            return pan.hasJustSettled();
        };
        SettledWeight pan;
        QVERIFY(!settles(pan, ScaleStatus::InMotion, 12));
        QVERIFY(settles(pan, ScaleStatus::Stable, 12));
        QVERIFY(!settles(pan, ScaleStatus::Stable, 12));
        QVERIFY2(!settles(pan, ScaleStatus::InMotion, 12), "it is touched");
        QVERIFY(!settles(pan, ScaleStatus::Stable, 12));
        QVERIFY2(settles(pan, ScaleStatus::Stable, 13), "another one at once");
        QVERIFY(!settles(pan, ScaleStatus::StableAtZero, 0));
        QVERIFY2(settles(pan, ScaleStatus::Stable, 13), "the same again");
        pan.changeUnit();
        QVERIFY(settles(pan, ScaleStatus::Stable, 13));
    }

private:
    static void walk(const std::string &word, const SettledWeight &before)
    {
        for (const StatedLetter &letter : statedAlphabet) {
            const std::string longer = word + letter.name;
            SettledWeight pan = before;
            bool leaves = false;
            if (letter.name == 'x')
                pan.missReport();
            else
                leaves = pan.takeStated(letter.statement) == SettledWeight::Leaves::Yes;
            QVERIFY2(leaves == leavesAtEnd(longer), longer.c_str());
            if (longer.size() < 6)
                walk(longer, pan);
        }
    }
};

TEST_CLASS(StatedWeightTest)
#include "StatedWeightTest.moc"
