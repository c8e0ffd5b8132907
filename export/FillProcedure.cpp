// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/FillProcedure.h"

#include "base/NumberText.h"

#include <array>
#include <optional>
#include <utility>

namespace {

using Kind = ProcedureStep::Kind;

/// What a step depends on: numbers of questions.
struct Answers
{
    QList<int> yes = {};
    QList<int> no = {};
};

class ProcedureWriter
{
public:
    /// The question's number.
    int ask(Kind question, const char *literal)
    {
        m_steps.push_back({.kind = question, .literal = literal});
        return m_questions++;
    }

    void takeTotals() { m_steps.push_back({.kind = Kind::TakeTotals}); }

    void assign(const char *literal, PageValue value, const Answers &when = {},
                const char *note = nullptr)
    {
        m_steps.push_back({.kind = Kind::Assign,
                           .literal = literal,
                           .value = value,
                           .ifAnswers = when.yes,
                           .unlessAnswers = when.no,
                           .note = note});
    }

    void reserve(std::size_t steps) { m_steps.reserve(steps); }
    FillProcedure take() { return std::exchange(m_steps, {}); }

private:
    FillProcedure m_steps;
    int m_questions = 0;
};

/// The questions whether a row's boxes are empty.
struct EmptyBoxes
{
    int main = 0;
    int second = 0; ///< of a row with two boxes
};

EmptyBoxes probe(ProcedureWriter &page, const WeightRow &row)
{
    EmptyBoxes empty{.main = page.ask(Kind::AskEmpty, row.box)};
    if (row.secondBox != nullptr)
        empty.second = page.ask(Kind::AskEmpty, row.secondBox);
    return empty;
}

void fillChosenUnit(ProcedureWriter &page, const WeightRow &row)
{
    const int inOunces = page.ask(Kind::AskChecked, row.ouncesChosen);
    const int inPounds = page.ask(Kind::AskChecked, row.poundsChosen);
    page.assign(row.total, PageValue::ChosenOunces, {.yes = {inOunces}}, "Ounces is selected");
    page.assign(row.total, PageValue::ChosenPounds, {.yes = {inPounds}}, "Pound is selected");
}

void fillLabel(ProcedureWriter &page)
{
    const int isWanted = page.ask(Kind::AskChecked, uspsLabelQuery);
    const char *note = "Enter Weight is selected";
    for (const Assignment &assignment : uspsLabelAssignments())
        page.assign(assignment.literal, assignment.value, {.yes = {isWanted}},
                    std::exchange(note, nullptr));
}

void fillPair(ProcedureWriter &page, const WeightRow &row, EmptyBoxes empty)
{
    const Answers bothEmpty{.yes = {empty.second, empty.main}};
    page.assign(row.poundsOfPair, PageValue::Pounds, bothEmpty);
    page.assign(row.ouncesOfPair, PageValue::Ounces, bothEmpty);
}

void fillSingle(ProcedureWriter &page, const WeightRow &row, EmptyBoxes empty)
{
    Answers mainEmpty{.yes = {empty.main}};
    if (row.secondBox != nullptr)
        mainEmpty.no = {empty.second};
    page.assign(row.total, PageValue::TotalOunces, mainEmpty);
}

FillProcedure makeUspsRowProcedure()
{
    const WeightRow &row02 = uspsRow(RowGroup::G02);
    const WeightRow &row05 = uspsRow(RowGroup::G05);
    const WeightRow &row08 = uspsRow(RowGroup::G08);
    const WeightRow &row11 = uspsRow(RowGroup::G11);
    const WeightRow &row14 = uspsRow(RowGroup::G14);

    ProcedureWriter page;
    const EmptyBoxes empty02 = probe(page, row02);
    const EmptyBoxes empty05 = probe(page, row05);
    const EmptyBoxes empty08 = probe(page, row08);
    const EmptyBoxes empty11 = probe(page, row11);
    probe(page, row14); // which then follows its radio buttons alone

    page.takeTotals();
    for (const WeightRow *row : {&row02, &row05, &row08, &row11})
        fillChosenUnit(page, *row);
    fillLabel(page);
    fillChosenUnit(page, row14);

    fillPair(page, row05, empty05);
    fillPair(page, row02, empty02);
    fillPair(page, row08, empty08);
    fillSingle(page, row05, empty05);
    fillSingle(page, row02, empty02);
    fillSingle(page, row08, empty08);
    fillSingle(page, row11, empty11);
    return page.take();
}

QString totalText(float number)
{
    constexpr int decimals = 6;
    return fixedText(number, decimals);
}

/// Of one moment: each is made once.
class PlanTexts
{
public:
    explicit PlanTexts(const WeightTexts &weight)
        : m_texts(weight)
    {
    }

    void takeTotals() { m_texts.takeTotals(); }

    const QString &text(PageValue value)
    {
        std::optional<QString> &made = m_made.at(static_cast<std::size_t>(value));
        if (!made)
            made = m_texts.text(value);
        return *made;
    }

private:
    ProcedureTexts m_texts;
    std::array<std::optional<QString>, pageValues> m_made;
};

} // namespace

FillProcedure assignmentProcedure(std::span<const Assignment> assignments)
{
    ProcedureWriter page;
    page.reserve(assignments.size());
    for (const Assignment &assignment : assignments)
        page.assign(assignment.literal, assignment.value);
    return page.take();
}

const FillProcedure &uspsRowProcedure()
{
    static const FillProcedure procedure = makeUspsRowProcedure();
    return procedure;
}

void ProcedureTexts::takeTotals()
{
    m_chosenOunces = totalOunces(m_weight.pounds(), m_weight.ounces());
    m_chosenPounds = totalPounds(m_weight.pounds(), m_weight.ounces());
}

QString ProcedureTexts::decimalPounds() const
{
    const QString own = m_weight.decimalPounds();
    return own.isEmpty() ? fixedText(poundsFromGrams(m_weight.grams()), 3) : own;
}

QString ProcedureTexts::text(PageValue value) const
{
    switch (value) {
    case PageValue::Pounds: return m_weight.pounds();
    case PageValue::Ounces: return m_weight.ounces();
    case PageValue::Export: return m_weight.exported();
    case PageValue::PoundsFromGrams: return decimalPounds();
    case PageValue::TotalOunces:
        return totalText(totalOunces(m_weight.pounds(), m_weight.ounces()));
    case PageValue::ChosenOunces: return totalText(m_chosenOunces);
    case PageValue::ChosenPounds: return totalText(m_chosenPounds);
    }
    return {};
}

FillPlan fillPlan(const FillProcedure &procedure, const WeightTexts &weight)
{
    PlanTexts texts(weight);
    FillPlan plan;
    plan.steps.reserve(static_cast<qsizetype>(procedure.size()));
    for (const ProcedureStep &step : procedure) {
        switch (step.kind) {
        case Kind::TakeTotals: texts.takeTotals(); break;
        case Kind::AskEmpty:
        case Kind::AskChecked:
            plan.steps.append(FillStep{.text = {}, .start = step.literal, .isQuestion = true});
            break;
        case Kind::Assign:
            plan.steps.append({.text = texts.text(step.value),
                               .ifAnswers = step.ifAnswers,
                               .unlessAnswers = step.unlessAnswers,
                               .start = scriptStart(step.literal),
                               .note = step.note});
            break;
        }
    }
    return plan;
}
