// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <cstdint>
#include <span>
#include <string_view>

// The texts that are sent to the carriers' pages. In an assignment, %@ stands for a text and %f for
// a number with six decimals.

/// What an assignment writes, as it stands when the assignment is sent.
enum class PageValue : std::uint8_t {
    Pounds,          ///< whole pounds
    Ounces,          ///< 0 to 15, beside the whole pounds
    Export,          ///< the export label's text, pounds or kilograms
    PoundsFromGrams, ///< the gram text in pounds, with three decimals
    TotalOunces,     ///< a number with six decimals, as the ones below
    ChosenOunces,    ///< the total in ounces that stood when the totals were taken
    ChosenPounds,    ///< the same in pounds
};
inline constexpr auto pageValues = static_cast<std::size_t>(PageValue::ChosenPounds) + 1;

struct Assignment
{
    const char *literal;
    PageValue value;
};

// In the order in which they are sent.
std::span<const Assignment> fedexAssignments();
/// Two fields occur twice, so that the later value stands.
std::span<const Assignment> upsAssignments();
/// The plain pound and ounce boxes.
std::span<const Assignment> uspsAssignments();
/// For the label page whose weight is to be entered.
std::span<const Assignment> uspsLabelAssignments();

/// Whether that label page wants a weight at all.
extern const char *const uspsLabelQuery;

/// One row of weight boxes of the USPS page.
struct WeightRow
{
    const char *box;          ///< query of the main box's value
    const char *secondBox;    ///< query of the second box's value; null if the row has none
    const char *ouncesChosen; ///< query of the "ounces" radio button
    const char *poundsChosen; ///< query of the "pounds" radio button
    const char *total;        ///< assigns a number to the main box
    const char *poundsOfPair; ///< assigns a text to the main box; null without a second box
    const char *ouncesOfPair; ///< assigns a text to the second box; null without one
};

/// The rows, named as the page numbers them.
enum class RowGroup : std::uint8_t { G02, G05, G08, G11, G14 };

const WeightRow &uspsRow(RowGroup group);

/// The number that @p text starts with, after blanks; 0 if there is none.
float floatValue(const QString &text);

float totalOunces(const QString &pounds, const QString &ounces);
float totalPounds(const QString &pounds, const QString &ounces);
/// Narrowed to single precision, which shows: 1000 g are 2.20449..., not 2.2045.
float poundsFromGrams(const QString &grams);

/// @p literal without its %@ or %f, which is its end.
std::string_view scriptStart(const char *literal);
/// @p literal with @p text in place of its %@ or %f.
QString scriptText(const char *literal, const QString &text);
