// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/rules/ScaleRules.h"

#include <QStringList>

class HIDManager;

/// What the rules' words come to in the link's and the recording interface's.
namespace readingrules {

/// The calls that the interface is to get, as RecordingDelegate writes them down.
QStringList callsOf(const rules::Outcome &outcome);
rules::LinkState stateOf(const HIDManager &link);
/// In what a reading can change.
bool sameState(const rules::LinkState &state, const rules::LinkState &expected);

} // namespace readingrules
