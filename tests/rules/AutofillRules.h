// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <map>
#include <string>
#include <vector>

namespace rules {

struct WeightTexts
{
    std::string LB;
    std::string OZ;
    std::string EXPORT;
    std::string BASIC;
};

struct CarrierFlags
{
    bool SendtoUSPS = false;
    bool SendtoUPS = false;
    bool SendtoFedex = false;
};

/// What the scripts can see of the page that is open.
struct Page
{
    /// Values of the input fields by name.
    std::map<std::string, std::string> fields;
    /// Checked state of the radio buttons by element id.
    std::map<std::string, bool> checked;
};

struct AutofillOutcome
{
    /// Assignments and queries in the order sent, also those that the page answers with an error.
    std::vector<std::string> scripts;
    std::vector<std::string> log;
};

/// Carrier 0 is USPS, 1 UPS, 2 FedEx. Each field is asked for before anything is written into it,
/// so that the page may stay as it is.
AutofillOutcome autofill(int carrier, const WeightTexts &texts, const CarrierFlags &flags,
                         const Page &page);

} // namespace rules
