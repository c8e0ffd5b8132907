// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/FillPlan.h"
#include "export/AutofillScripts.h"

#include <QList>
#include <QString>
#include <cstdint>
#include <span>
#include <vector>

/// The texts of the current weight. They are asked for anew for every field.
class WeightTexts
{
public:
    virtual ~WeightTexts() = default;

    virtual QString pounds() const = 0;
    virtual QString ounces() const = 0;
    virtual QString exported() const = 0;
    virtual QString grams() const = 0;
    /// With three decimals; empty where they are to be worked out of the grams.
    virtual QString decimalPounds() const { return {}; }
};

/// One step of what is done to a carrier's form, whatever the weight.
struct ProcedureStep
{
    enum class Kind : std::uint8_t {
        Assign,
        AskEmpty,   ///< yes: the field is there and empty
        AskChecked, ///< yes: the box is there and ticked
        TakeTotals, ///< nothing is sent: the chosen totals are worked out, of what stands then
    };
    Kind kind = Kind::Assign;
    const char *literal = nullptr;
    PageValue value = PageValue::Pounds; ///< of an assignment
    /// An assignment is made if these questions, counted from 0, were answered yes ...
    QList<int> ifAnswers = {};
    QList<int> unlessAnswers = {}; ///< ... and these no
    const char *note = nullptr;    ///< for the log, before the step
};

using FillProcedure = std::vector<ProcedureStep>;

FillProcedure assignmentProcedure(std::span<const Assignment> assignments);

/// Asks the USPS page which of its rows are empty and which unit they are set to, and fills them
/// accordingly. What is empty is asked before anything is written: an empty box is filled at the
/// end, whatever was written into it in between.
const FillProcedure &uspsRowProcedure();

/// What a procedure's assignments write, in the procedure's order.
class ProcedureTexts
{
public:
    explicit ProcedureTexts(const WeightTexts &weight)
        : m_weight(weight)
    {
    }

    void takeTotals();
    QString text(PageValue value) const;

private:
    QString decimalPounds() const;

    const WeightTexts &m_weight;
    float m_chosenOunces = 0;
    float m_chosenPounds = 0;
};

/// @p procedure with the texts that stand now.
FillPlan fillPlan(const FillProcedure &procedure, const WeightTexts &weight);
