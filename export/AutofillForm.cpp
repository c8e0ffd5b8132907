// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/AutofillForm.h"

#include "base/Log.h"
#include "base/NumberText.h"

#include <utility>

namespace {

bool isEmptyText(const std::optional<QString> &value)
{
    return value == QLatin1String("");
}

bool isTrue(const std::optional<QString> &value)
{
    return value == QLatin1String("1");
}

} // namespace

AutofillForm::AutofillForm(BrowserApplication &browser, std::shared_ptr<const BrowserTab> tab,
                           const WeightTexts &weight)
    : m_browser(browser)
    , m_tab(std::move(tab))
    , m_weight(weight)
{
}

void AutofillForm::assign(std::span<const Assignment> assignments)
{
    for (const Assignment &assignment : assignments)
        assign(assignment);
}

void AutofillForm::fillUspsRows()
{
    const WeightRow &row02 = uspsRow(RowGroup::G02);
    const WeightRow &row05 = uspsRow(RowGroup::G05);
    const WeightRow &row08 = uspsRow(RowGroup::G08);
    const WeightRow &row11 = uspsRow(RowGroup::G11);
    const WeightRow &row14 = uspsRow(RowGroup::G14);

    // The page is asked for row 14 too, which then follows its radio buttons alone.
    const QList<EmptyBoxes> empty = probe({&row02, &row05, &row08, &row11, &row14});
    const EmptyBoxes empty02 = empty[0];
    const EmptyBoxes empty05 = empty[1];
    const EmptyBoxes empty08 = empty[2];
    const EmptyBoxes empty11 = empty[3];

    const float ounces = currentTotalOunces();
    const float pounds = totalPounds(m_weight.pounds(), m_weight.ounces());
    for (const WeightRow *row : {&row02, &row05, &row08, &row11})
        fillChosenUnit(*row, ounces, pounds);
    fillLabel();
    fillChosenUnit(row14, ounces, pounds);

    fillPair(row05, empty05);
    fillPair(row02, empty02);
    fillPair(row08, empty08);
    fillSingle(row05, empty05);
    fillSingle(row02, empty02);
    fillSingle(row08, empty08);
    fillSingle(row11, empty11);
}

QList<std::optional<QString>> AutofillForm::ask(const QList<const char *> &literals)
{
    QStringList questions;
    for (const char *literal : literals)
        questions.append(QString::fromLatin1(literal));
    return m_browser.ask(questions, m_tab);
}

void AutofillForm::assign(const Assignment &assignment)
{
    switch (assignment.value) {
    case PageValue::Pounds: assignText(assignment.literal, m_weight.pounds()); break;
    case PageValue::Ounces: assignText(assignment.literal, m_weight.ounces()); break;
    case PageValue::Export: assignText(assignment.literal, m_weight.exported()); break;
    case PageValue::PoundsFromGrams:
        assignText(assignment.literal, fixedText(poundsFromGrams(m_weight.grams()), 3));
        break;
    }
}

void AutofillForm::assignText(const char *literal, const QString &text)
{
    m_browser.doJavaScript(scriptText(literal, text), m_tab);
}

void AutofillForm::assignNumber(const char *literal, float number)
{
    m_browser.doJavaScript(scriptText(literal, number), m_tab);
}

QList<AutofillForm::EmptyBoxes> AutofillForm::probe(const QList<const WeightRow *> &rows)
{
    QList<const char *> literals;
    for (const WeightRow *row : rows) {
        literals.append(row->box);
        if (row->secondBox != nullptr)
            literals.append(row->secondBox);
    }
    QList<std::optional<QString>> values = ask(literals);
    QList<EmptyBoxes> empty;
    for (const WeightRow *row : rows) {
        const bool main = isEmptyText(values.takeFirst());
        const bool second = row->secondBox != nullptr && isEmptyText(values.takeFirst());
        empty.append({.main = main, .second = second});
    }
    return empty;
}

void AutofillForm::fillChosenUnit(const WeightRow &row, float ounces, float pounds)
{
    const auto chosen = ask({row.ouncesChosen, row.poundsChosen});
    const bool inOunces = isTrue(chosen[0]);
    const bool inPounds = isTrue(chosen[1]);
    if (inOunces) {
        logLine(QStringLiteral("Ounces is selected"));
        assignNumber(row.total, ounces);
    }
    if (inPounds) {
        logLine(QStringLiteral("Pound is selected"));
        assignNumber(row.total, pounds);
    }
}

void AutofillForm::fillLabel()
{
    if (!isTrue(ask({uspsLabelQuery}).constFirst()))
        return;
    logLine(QStringLiteral("Enter Weight is selected"));
    assign(uspsLabelAssignments());
}

void AutofillForm::fillPair(const WeightRow &row, EmptyBoxes empty)
{
    if (!empty.second || !empty.main)
        return;
    assignText(row.poundsOfPair, m_weight.pounds());
    assignText(row.ouncesOfPair, m_weight.ounces());
}

void AutofillForm::fillSingle(const WeightRow &row, EmptyBoxes empty)
{
    if (!empty.second && empty.main)
        assignNumber(row.total, currentTotalOunces());
}

float AutofillForm::currentTotalOunces() const
{
    return totalOunces(m_weight.pounds(), m_weight.ounces());
}
