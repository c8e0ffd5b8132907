// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/Browser.h"
#include "export/AutofillScripts.h"

#include <QList>
#include <QString>
#include <memory>
#include <optional>
#include <span>

/// The texts of the current weight. They are asked for anew for every field.
class WeightTexts
{
public:
    virtual ~WeightTexts() = default;

    virtual QString pounds() const = 0;
    virtual QString ounces() const = 0;
    virtual QString exported() const = 0;
    virtual QString grams() const = 0;
};

/// A carrier's form in one tab. Fields that the page lacks are passed over in silence, so one list
/// serves all of a carrier's pages.
class AutofillForm
{
public:
    AutofillForm(BrowserApplication &browser, std::shared_ptr<const BrowserTab> tab,
                 const WeightTexts &weight);

    void assign(std::span<const Assignment> assignments);

    /// Asks the USPS page which of its rows are empty and which unit they are set to, and fills
    /// them accordingly.
    void fillUspsRows();

private:
    /// What was empty before anything was written. A missing box is not empty.
    struct EmptyBoxes
    {
        bool main = false;
        bool second = false;
    };

    QList<std::optional<QString>> ask(const QList<const char *> &literals);
    void assign(const Assignment &assignment);
    void assignText(const char *literal, const QString &text);
    void assignNumber(const char *literal, float number);

    /// In the rows' order.
    QList<EmptyBoxes> probe(const QList<const WeightRow *> &rows);
    void fillChosenUnit(const WeightRow &row, float ounces, float pounds);
    void fillLabel();
    void fillPair(const WeightRow &row, EmptyBoxes empty);
    void fillSingle(const WeightRow &row, EmptyBoxes empty);
    float currentTotalOunces() const;

    BrowserApplication &m_browser;
    std::shared_ptr<const BrowserTab> m_tab;
    const WeightTexts &m_weight;
};
