// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/FillPlan.h"

#include <QString>

class BrowserApplication;
class BrowserLink;

/// Fills the form of "USPS", "UPS" or "FedEx" with a kilogram, as one reading does.
void fillCarrier(const QString &carrier, BrowserApplication &browser);

/// What a linked browser gets of that.
FillPlan carrierPlan(const QString &carrier);

/// Until a carrier's page is open in a linked browser.
void waitForPage(const BrowserLink &link);
