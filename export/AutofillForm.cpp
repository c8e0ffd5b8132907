// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/AutofillForm.h"

#include "base/Log.h"

#include <algorithm>
#include <utility>

namespace {

bool isDue(const ProcedureStep &step, const QList<bool> &answers)
{
    const auto isYes = [&](int question) { return answers.at(question); };
    return std::all_of(step.ifAnswers.begin(), step.ifAnswers.end(), isYes) &&
           std::none_of(step.unlessAnswers.begin(), step.unlessAnswers.end(), isYes);
}

} // namespace

AutofillForm::AutofillForm(BrowserApplication &browser, std::shared_ptr<const BrowserTab> tab,
                           const WeightTexts &weight, QString carrier)
    : m_browser(browser)
    , m_tab(std::move(tab))
    , m_weight(weight)
    , m_carrier(std::move(carrier))
{
}

void AutofillForm::assign(std::span<const Assignment> assignments)
{
    run(assignmentProcedure(assignments));
}

void AutofillForm::fillUspsRows()
{
    run(uspsRowProcedure());
}

void AutofillForm::run(const FillProcedure &procedure)
{
    if (!m_browser.takesPlans()) {
        interpret(procedure);
        return;
    }
    FillPlan plan = fillPlan(procedure, m_weight);
    plan.carrier = m_carrier;
    m_browser.post(plan, m_tab);
}

void AutofillForm::interpret(const FillProcedure &procedure)
{
    using Kind = ProcedureStep::Kind;
    ProcedureTexts texts(m_weight);
    QList<bool> answers;
    for (const ProcedureStep &step : procedure) {
        switch (step.kind) {
        case Kind::TakeTotals: texts.takeTotals(); break;
        case Kind::AskEmpty:
        case Kind::AskChecked: answers.append(isAnsweredYes(step)); break;
        case Kind::Assign:
            if (!isDue(step, answers))
                break;
            if (step.note != nullptr)
                logLine(QString::fromLatin1(step.note));
            m_browser.doJavaScript(scriptText(step.literal, texts.text(step.value)), m_tab);
            break;
        }
    }
}

bool AutofillForm::isAnsweredYes(const ProcedureStep &question)
{
    const auto value = m_browser.doJavaScript(QString::fromLatin1(question.literal), m_tab);
    return question.kind == ProcedureStep::Kind::AskEmpty ? value == QLatin1String("")
                                                          : value == QLatin1String("1");
}
