// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/FillPlan.h"

#include <algorithm>

bool isAssignment(const QString &text)
{
    return text.contains(QLatin1String("].value="));
}

qsizetype FillPlan::questions() const
{
    return std::count_if(steps.begin(), steps.end(),
                         [](const FillStep &step) { return !isAssignment(step.text); });
}

void FillPlan::append(const FillPlan &plan)
{
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
