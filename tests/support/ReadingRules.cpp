// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/ReadingRules.h"

#include "scale/HIDManager.h"

namespace {

QString callText(const rules::Effect &effect)
{
    switch (effect.step) {
    case rules::Step::HideUnitLabel: return QStringLiteral("unitLBl setHidden 1");
    case rules::Step::ShowUnitLabel: return QStringLiteral("unitLBl setHidden 0");
    case rules::Step::DrawOverload: return QStringLiteral("Draw5DigitOverload");
    case rules::Step::ClearAll: return QStringLiteral("clearAll");
    case rules::Step::ShowNegative: return QStringLiteral("shownegativeSign %1").arg(effect.number);
    case rules::Step::Draw5Digit: return QStringLiteral("Draw5Digit %1").arg(effect.number);
    case rules::Step::DisplayUnit: return QStringLiteral("DisplayUnit %1").arg(effect.number);
    default: return {};
    }
}

} // namespace

QStringList readingrules::callsOf(const rules::Outcome &outcome)
{
    QStringList calls;
    for (int i = 0; i < outcome.count; ++i) {
        const QString call = callText(outcome.effects.at(static_cast<std::size_t>(i)));
        if (!call.isEmpty())
            calls.append(call);
    }
    return calls;
}

rules::LinkState readingrules::stateOf(const HIDManager &link)
{
    rules::LinkState state;
    state.currentScale = link.currentScale();
    state.currentUnit = link.currentUnit();
    state.unitnumber = link.unitnumber();
    state.unitindex = link.unitindex();
    state.currentStatue = link.currentStatue();
    state.OverloadFlag = link.OverloadFlag();
    state.scaleCommand = link.scaleCommand();
    return state;
}

bool readingrules::sameState(const rules::LinkState &state, const rules::LinkState &expected)
{
    return state.currentScale == expected.currentScale &&
           state.currentUnit == expected.currentUnit && state.unitnumber == expected.unitnumber &&
           state.unitindex == expected.unitindex && state.currentStatue == expected.currentStatue &&
           state.OverloadFlag == expected.OverloadFlag &&
           state.scaleCommand == expected.scaleCommand;
}
