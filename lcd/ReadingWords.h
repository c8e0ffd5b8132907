// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "lcd/PanelContents.h"

#include <QString>

/// The panel as a person would read it out: "minus 12 grams", "2 pounds 11 1/2 ounces",
/// "overload", or "off" when it is blank.
QString readingWords(const PanelContents &panel);
