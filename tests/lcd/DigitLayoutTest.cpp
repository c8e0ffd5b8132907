// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/DigitLayout.h"
#include "tests/rules/DigitRules.h"
#include "tests/support/Sweep.h"
#include "tests/support/TestClasses.h"

#include <cmath>

namespace {

rules::View viewOf(DigitView view)
{
    switch (view) {
    case DigitView::digZero: return rules::View::digZero;
    case DigitView::digOne: return rules::View::digOne;
    case DigitView::digTwo: return rules::View::digTwo;
    case DigitView::digThree: return rules::View::digThree;
    case DigitView::numeratorImg: return rules::View::numeratorImg;
    case DigitView::lineImg: return rules::View::lineImg;
    case DigitView::denomImg: return rules::View::denomImg;
    }
    return rules::View::digZero;
}

void setWhole(rules::ViewState &view, std::int64_t digit)
{
    view.kind = rules::ViewState::Whole;
    view.whole = digit;
}

/// What a panel shows after the steps.
void apply(const DigitPlan &plan, rules::Views &views)
{
    for (const DigitStep &step : plan) {
        rules::ViewState &view = views[viewOf(step.view)];
        switch (step.kind) {
        case DigitStep::Kind::Log: break;
        case DigitStep::Kind::Show:
            view.hidden = false;
            setWhole(view, step.number);
            break;
        case DigitStep::Kind::Hide: view.hidden = true; break;
        case DigitStep::Kind::Unhide: view.hidden = false; break;
        case DigitStep::Kind::SetDigit: setWhole(view, step.number); break;
        case DigitStep::Kind::SetRoundedDigit:
            view.kind = rules::ViewState::Rounded;
            view.value = step.rounded;
            break;
        case DigitStep::Kind::ClearFractionField: rules::displayforLBOZsimple(views); break;
        }
    }
}

bool sameView(const rules::ViewState &one, const rules::ViewState &other)
{
    if (one.hidden != other.hidden || one.kind != other.kind)
        return false;
    switch (one.kind) {
    case rules::ViewState::None: return true;
    case rules::ViewState::Whole: return one.whole == other.whole;
    case rules::ViewState::Rounded:
        return one.value == other.value || (std::isnan(one.value) && std::isnan(other.value));
    }
    return false;
}

bool sameViews(const rules::Views &one, const rules::Views &other)
{
    for (std::size_t i = 0; i < one.states.size(); ++i) {
        if (!sameView(one.states[i], other.states[i]))
            return false;
    }
    return true;
}

rules::DigitState stateOf(const DigitContext &context)
{
    return {.currentScale = context.currentScale,
            .currentUnit = context.currentUnit,
            .unitnumber = context.unitnumber,
            .dotunit = context.dotunit,
            .lbOZlast = context.lbOZlast,
            .highCapacityModel = context.capacity == Capacity::High};
}

/// Both panels carry what the number before left on them.
class PairOfPanels
{
public:
    bool show(std::int64_t number, const DigitContext &context)
    {
        apply(layoutDigits(number, context), m_product);
        rules::drawDigits(number, stateOf(context), m_expected);
        return sameViews(m_product, m_expected);
    }

    /// What a step leaves out is seen only where the view was the other way before.
    void lightAll()
    {
        for (rules::Views *views : {&m_product, &m_expected}) {
            for (rules::ViewState &view : views->states)
                view.hidden = false;
        }
    }

    QString picture(rules::View view) const
    {
        const rules::ViewState &state = m_product[view];
        return state.hidden ? QStringLiteral("-") : QString::fromStdString(rules::imageName(state));
    }

private:
    rules::Views m_product{};
    rules::Views m_expected{};
};

/// The states that choosing a unit and reading a scale can leave.
std::vector<DigitContext> meaningfulContexts()
{
    std::vector<DigitContext> contexts;
    for (const int currentUnit : {1, 2, 3}) {
        for (const int unitnumber : {0, 4})
            contexts.push_back(
                {.currentScale = 1, .currentUnit = currentUnit, .unitnumber = unitnumber});
    }
    for (int unitnumber = 0; unitnumber <= 6; ++unitnumber) {
        for (int dotunit = 0; dotunit <= 6; ++dotunit) {
            for (const bool lbOZlast : {false, true}) {
                for (const int currentUnit : {1, 2, 4}) {
                    contexts.push_back({.currentUnit = currentUnit,
                                        .unitnumber = unitnumber,
                                        .dotunit = dotunit,
                                        .lbOZlast = lbOZlast});
                }
            }
        }
    }
    return contexts;
}

} // namespace

class DigitLayoutTest : public QObject
{
    Q_OBJECT

private slots:
    /// Every number 0 to 999,999 in every state that the link can be in.
    void everyNumberInMeaningfulStates()
    {
        const std::vector<DigitContext> contexts = meaningfulContexts();
        // Each state meets every number in one of its digits' combinations; together they meet
        // all: the numbers are dealt out in turn, the states in which a unit's own reading is
        // shown get every one.
        for (std::size_t i = 0; i < contexts.size(); ++i) {
            DigitContext context = contexts[i];
            const bool own = context.currentScale == 1 || context.unitnumber == context.dotunit;
            const std::int64_t step = sweepStep(97) * (own ? 1 : 7);
            PairOfPanels panels;
            for (std::int64_t number = own ? 0 : static_cast<std::int64_t>(i % 7); number <= 999999;
                 number += step) {
                context.capacity = (number / step) % 5 == 0 ? Capacity::High : Capacity::Standard;
                if (!panels.show(number, context))
                    QFAIL(qPrintable(QStringLiteral("%1 in state %2").arg(number).arg(i)));
            }
        }
    }

    /// Every combination of the state's values, also those that no scale leads to, with numbers
    /// at the edges of each digit.
    void everyState()
    {
        static constexpr std::array<std::int64_t, 28> numbers{
            0,     1,      9,      10,     14,     18,     78,      99,     100,   105,
            112,   999,    1000,   1099,   9999,   10000,  10512,   12345,  20314, 88888,
            99999, 100000, 123456, 188888, 888888, 999999, 1000000, 1234567};
        PairOfPanels panels;
        for (int scale = 0; scale <= 2; ++scale) {
            for (int currentUnit = -1; currentUnit <= 7; ++currentUnit) {
                for (int unitnumber = -1; unitnumber <= 7; ++unitnumber) {
                    for (int dotunit = -1; dotunit <= 7; ++dotunit) {
                        for (const bool lbOZlast : {false, true}) {
                            for (const Capacity capacity : {Capacity::Standard, Capacity::High}) {
                                const DigitContext context{scale,   currentUnit, unitnumber,
                                                           dotunit, lbOZlast,    capacity};
                                for (const std::int64_t number : numbers) {
                                    QVERIFY(panels.show(number, context));
                                    QVERIFY(panels.show(-number, context));
                                    panels.lightAll();
                                    QVERIFY(panels.show(number, context));
                                }
                            }
                        }
                    }
                }
            }
        }
    }

    /// The pictures from the left: four digits, numerator, bar, denominator; "-" is hidden.
    void panels_data()
    {
        QTest::addColumn<DigitContext>("context");
        QTest::addColumn<qint64>("number");
        QTest::addColumn<QStringList>("pictures");
        const auto row = [](const char *name, const DigitContext &context, qint64 number,
                            const QStringList &pictures) {
            QTest::newRow(name) << context << number << pictures;
        };
        const DigitContext grams{.currentUnit = 1};
        row("0 g", grams, 0, {"-", "-", "-", "0.bmp", "-", "-", "-"});
        row("magnitude of -12345", grams, -12345, {"-", "1.bmp", "2.bmp", "3.bmp", "-", "-", "-"});
        row("123456 is wide", {.currentUnit = 1, .unitnumber = 2}, 123456,
            {"1.bmp", "2.bmp", "3.bmp", "4.bmp", "50.bmp", "-", "-"});
        row("1 lb 5 1/2 oz, stacked", {.currentUnit = 4, .unitnumber = 3}, 10512,
            {"-", "1.bmp", "-", "5.bmp", "1.bmp", "shown", "2.bmp"});
        row("1 lb 5 1/2 oz, tenths", {.currentUnit = 4, .unitnumber = 2}, 10512,
            {"-", "1.bmp", "-", "5.bmp", "5.bmp", "-", "-"});
        row("no fraction field in grams", {.currentUnit = 4}, 10512,
            {"-", "1.bmp", "-", "5.bmp", "-", "-", "-"});
        row("decimal pounds", {.currentUnit = 4, .unitnumber = 4}, 10512,
            {"-", "1.bmp", "0.bmp", "5.bmp", "1.bmp", "-", "-"});
        row("decimal pounds in 10 g steps",
            {.currentUnit = 4, .unitnumber = 4, .capacity = Capacity::High}, 10512,
            {"-", "1.bmp", "0.bmp", "5.bmp", "-", "-", "-"});
        row("all eights keep the second digit dark", {.currentUnit = 1, .dotunit = 4}, 88888,
            {"-", "-", "8.bmp", "8.bmp", "-", "-", "-"});
        const DigitContext binaryPoundsOunces{.currentScale = 1, .currentUnit = 3};
        row("1 lb 5 oz", binaryPoundsOunces, 105, {"-", "1.bmp", "-", "5.bmp", "-", "-", "-"});
        row("1 lb 0 oz", binaryPoundsOunces, 100, {"-", "1.bmp", "0.bmp", "0.bmp", "-", "-", "-"});
        row("0.0 lb", {.currentScale = 1, .currentUnit = 2}, 0,
            {"-", "-", "0.bmp", "0.bmp", "-", "-", "-"});
        row("beyond the leftmost digit", {.currentScale = 1, .currentUnit = 2}, 10000,
            {"10.bmp", "0.bmp", "0.bmp", "0.bmp", "-", "-", "-"});
    }

    void panels()
    {
        QFETCH(DigitContext, context);
        QFETCH(qint64, number);
        PairOfPanels panels;
        // The binary scale's layout never reaches the fraction field: start from a blank one.
        panels.show(0, {.currentUnit = 1});
        QVERIFY(panels.show(number, context));
        QStringList pictures;
        for (const rules::View view :
             {rules::View::digZero, rules::View::digOne, rules::View::digTwo, rules::View::digThree,
              rules::View::numeratorImg, rules::View::lineImg, rules::View::denomImg}) {
            const QString picture = panels.picture(view);
            pictures.append(view == rules::View::lineImg && picture != QStringLiteral("-")
                                ? QStringLiteral("shown")
                                : picture);
        }
        QTEST(pictures, "pictures");
    }

    void pictureNames()
    {
        QCOMPARE(digitPicture(7), QStringLiteral("7.bmp"));
        QCOMPARE(digitPicture(10), QStringLiteral("10.bmp"));
        QCOMPARE(roundedDigitPicture(1.0F / 4 * 10), QStringLiteral("2.bmp"));
        QCOMPARE(roundedDigitPicture(3.0F / 4 * 10), QStringLiteral("8.bmp"));
        QCOMPARE(roundedDigitPicture(1.0F / 8 * 10), QStringLiteral("1.bmp"));
        QCOMPARE(roundedDigitPicture(3.0F / 8 * 10), QStringLiteral("4.bmp"));
        QCOMPARE(roundedDigitPicture(5.0F / 8 * 10), QStringLiteral("6.bmp"));
        QCOMPARE(roundedDigitPicture(7.0F / 8 * 10), QStringLiteral("9.bmp"));
        QCOMPARE(roundedDigitPicture(INFINITY), QStringLiteral("inf.bmp"));
        QCOMPARE(roundedDigitPicture(-NAN), QStringLiteral("nan.bmp"));
    }

    void logAgreesWithTheRules()
    {
        for (const DigitContext &context : meaningfulContexts()) {
            for (const std::int64_t number : {0, 7, 14, 105, 10512, -20314, 88888, 123456}) {
                rules::Views views{};
                std::vector<std::string> expected;
                rules::drawDigits(number, stateOf(context), views, &expected);
                std::vector<std::string> lines;
                const DigitPlan plan = layoutDigits(number, context);
                for (const DigitStep &step : plan) {
                    if (step.kind == DigitStep::Kind::Log)
                        lines.push_back(step.line.toString().toStdString());
                }
                QVERIFY(lines == expected);
            }
        }
    }
};

TEST_CLASS(DigitLayoutTest)
#include "DigitLayoutTest.moc"
