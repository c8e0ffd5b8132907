// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/Browser.h"
#include "export/FillProcedure.h"

#include <QList>
#include <memory>
#include <span>

/// A carrier's form in one tab. Fields that the page lacks are passed over in silence, so one list
/// serves all of a carrier's pages.
class AutofillForm
{
public:
    /// @param carrier as FillPlan has it
    AutofillForm(BrowserApplication &browser, std::shared_ptr<const BrowserTab> tab,
                 const WeightTexts &weight, QString carrier = {});

    void assign(std::span<const Assignment> assignments);

    /// The rows of the USPS page.
    void fillUspsRows();

private:
    void run(const FillProcedure &procedure);
    /// Step by step, each with the texts that stand at that moment.
    void interpret(const FillProcedure &procedure);
    bool isAnsweredYes(const ProcedureStep &question);

    BrowserApplication &m_browser;
    std::shared_ptr<const BrowserTab> m_tab;
    const WeightTexts &m_weight;
    QString m_carrier;
};
