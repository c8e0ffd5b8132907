// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/FillPlan.h"

#include <algorithm>

qsizetype FillPlan::questions() const
{
    return std::count_if(steps.begin(), steps.end(),
                         [](const FillStep &step) { return step.isQuestion; });
}

QList<const char *> FillPlan::notes() const
{
    QList<const char *> all;
    for (const FillStep &step : steps) {
        if (step.note != nullptr)
            all.append(step.note);
    }
    return all;
}

void FillPlan::append(const FillPlan &plan)
{
    if (steps.isEmpty()) {
        steps = plan.steps; // which are shared, not copied
        return;
    }
    const auto before = static_cast<int>(questions());
    if (before == 0) {
        steps += plan.steps;
        return;
    }
    for (FillStep step : plan.steps) {
        for (int &answer : step.ifAnswers)
            answer += before;
        for (int &answer : step.unlessAnswers)
            answer += before;
        steps.append(step);
    }
}

FillPlan joined(const QList<FillPlan> &plans)
{
    FillPlan all;
    for (const FillPlan &plan : plans)
        all.append(plan);
    return all;
}
