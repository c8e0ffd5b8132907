// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <string_view>

/// One text for the page, and what it depends on.
struct FillStep
{
    QString text;              ///< what comes behind the start: this reading's, or all of it
    QList<int> ifAnswers = {}; ///< the plan's questions, counted from 0, that must be answered yes
    QList<int> unlessAnswers = {}; ///< and those that must be answered no
    /// The same in every reading. Lasts as long as the program, and is made of characters that JSON
    /// takes as they are.
    std::string_view start = {};
    /// For the log, once it turns out that the step is due; lasts as long. Null without one.
    const char *note = nullptr;
    bool isQuestion = false; ///< to which the page has an answer; else it is written into

    bool operator==(const FillStep &) const = default;
};

/// What one reading does to a page, in order, with the reading's texts in it. The page walks it at
/// one go. A question is answered yes where a field is empty or a box is ticked, and no where it is
/// otherwise or missing.
struct FillPlan
{
    QList<FillStep> steps;
    /// For whose page it is meant, as a person names it; empty where for none's in particular.
    QString carrier = {};

    bool operator==(const FillPlan &) const = default;

    qsizetype questions() const;
    /// Of the steps that have one, in their order.
    QList<const char *> notes() const;
    /// @p plan is done after this one, and depends on its own answers alone.
    void append(const FillPlan &plan);
};

/// All of them in their order, done in one go.
FillPlan joined(const QList<FillPlan> &plans);
