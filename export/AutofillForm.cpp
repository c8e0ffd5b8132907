// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/AutofillForm.h"

#include "scale/Log.h"
#include "scale/NumberText.h"

#include <utility>

AutofillForm::AutofillForm(BrowserApplication &userBrowser,
                           std::shared_ptr<const BrowserTab> currentTab,
                           const WeightTexts &currentWeight)
    : browser(userBrowser)
    , tab(std::move(currentTab))
    , weight(currentWeight)
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

    expectProbes({&row02, &row05, &row08, &row11, &row14});
    const EmptyBoxes empty02 = probe(row02);
    const EmptyBoxes empty05 = probe(row05);
    const EmptyBoxes empty08 = probe(row08);
    const EmptyBoxes empty11 = probe(row11);
    probe(row14); // the page is asked, but row 14 follows its radio buttons alone

    const float ounces = currentTotalOunces();
    const float pounds = totalPounds(weight.pounds(), weight.ounces());
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

std::optional<QString> AutofillForm::query(const char *literal)
{
    return browser.doJavaScript(QString::fromLatin1(literal), tab);
}

bool AutofillForm::isEmpty(const char *valueQuery)
{
    return query(valueQuery) == QLatin1String("");
}

bool AutofillForm::isChecked(const char *checkedQuery)
{
    return query(checkedQuery) == QLatin1String("1");
}

void AutofillForm::assign(const Assignment &assignment)
{
    switch (assignment.value) {
    case PageValue::Pounds: assignText(assignment.literal, weight.pounds()); break;
    case PageValue::Ounces: assignText(assignment.literal, weight.ounces()); break;
    case PageValue::Export: assignText(assignment.literal, weight.exported()); break;
    case PageValue::PoundsFromGrams:
        assignText(assignment.literal, fixedText(poundsFromGrams(weight.grams()), 3));
        break;
    }
}

void AutofillForm::assignText(const char *literal, const QString &text)
{
    browser.doJavaScript(scriptText(literal, text), tab);
}

void AutofillForm::assignNumber(const char *literal, float number)
{
    browser.doJavaScript(scriptText(literal, number), tab);
}

void AutofillForm::expectProbes(std::initializer_list<const WeightRow *> probedRows)
{
    QStringList questions;
    for (const WeightRow *row : probedRows) {
        questions.append(QString::fromLatin1(row->box));
        if (row->secondBox != nullptr)
            questions.append(QString::fromLatin1(row->secondBox));
    }
    browser.expect(questions);
}

AutofillForm::EmptyBoxes AutofillForm::probe(const WeightRow &row)
{
    EmptyBoxes empty;
    empty.main = isEmpty(row.box);
    empty.second = row.secondBox != nullptr && isEmpty(row.secondBox);
    return empty;
}

void AutofillForm::fillChosenUnit(const WeightRow &row, float ounces, float pounds)
{
    browser.expect({QString::fromLatin1(row.ouncesChosen), QString::fromLatin1(row.poundsChosen)});
    const bool inOunces = isChecked(row.ouncesChosen);
    const bool inPounds = isChecked(row.poundsChosen);
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
    if (!isChecked(uspsLabelQuery))
        return;
    logLine(QStringLiteral("Enter Weight is selected"));
    assign(uspsLabelAssignments());
}

void AutofillForm::fillPair(const WeightRow &row, EmptyBoxes empty)
{
    if (!empty.second || !empty.main)
        return;
    assignText(row.poundsOfPair, weight.pounds());
    assignText(row.ouncesOfPair, weight.ounces());
}

void AutofillForm::fillSingle(const WeightRow &row, EmptyBoxes empty)
{
    if (!empty.second && empty.main)
        assignNumber(row.total, currentTotalOunces());
}

float AutofillForm::currentTotalOunces() const
{
    return totalOunces(weight.pounds(), weight.ounces());
}
