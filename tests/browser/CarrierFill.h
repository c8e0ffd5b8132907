// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class BrowserApplication;
class BrowserLink;

/// Fills the form of "USPS", "UPS" or "FedEx" with a kilogram, as one reading does.
void fillCarrier(const QString &carrier, BrowserApplication &browser);

/// Until a carrier's page is open in a linked browser.
void waitForPage(const BrowserLink &link);
