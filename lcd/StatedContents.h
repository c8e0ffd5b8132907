// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "lcd/PanelContents.h"
#include "lcd/ShownWeight.h"
#include "scale/pointofsale/ScaleReading.h"

#include <QString>

/// What the panel shows of a scale that tells number and unit itself: both as they are told, to the
/// last decimal. What has no room on the digits, or no picture, is in words instead; nothing is
/// ever cut off.
PanelContents statedContents(const ScaleReading &reading);

/// The number and the unit that are told, whether the digits show them or words do. The unit is
/// empty where the scale names none.
ShownWeight statedWeight(const ScaleStatement &statement);

/// What is to be said beside the panel, and what helps; empty where the panel shows it all.
QString statedNotice(const ScaleReading &reading);

/// What that is about: the same as long as nothing but the weight changes.
QString statedTrouble(const ScaleReading &reading);
