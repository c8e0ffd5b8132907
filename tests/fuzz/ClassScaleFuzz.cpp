// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What a device may say of itself, and send: its report descriptor, then reports.
//
// An input is the length of the descriptor in two bytes, the descriptor, and reports with a byte of
// length before each. Every report is read by the descriptor's layout, and by the class's own,
// which is compared with the rules.

#include "scale/pointofsale/ReportDescriptor.h"
#include "scale/pointofsale/ScaleReport.h"
#include "scale/pointofsale/WeightConversion.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/rules/PointOfSaleRules.h"

#include <algorithm>

namespace {

using Bytes = std::vector<std::uint8_t>;

/// In memory of their own, so that what is read behind them is noticed.
Bytes bytesOf(FuzzInput &input, std::size_t count)
{
    Bytes bytes;
    while (bytes.size() < count && !input.isEmpty())
        bytes.push_back(input.byte());
    bytes.shrink_to_fit();
    return bytes;
}

void checkField(const ReportField &field, const ScaleLayout &layout)
{
    require(field.size >= 1 && field.size <= 32, "a field has 1 to 32 bits");
    require(field.bit + field.size <= layout.dataBytes * 8, "a field is in its report");
}

void checkLayout(const ScaleLayout &layout)
{
    checkField(layout.weight, layout);
    for (const SelectorField &selector : layout.status)
        checkField(selector.field, layout);
    for (const SelectorField &selector : layout.unit)
        checkField(selector.field, layout);
    if (layout.exponent)
        checkField(*layout.exponent, layout);
    if (layout.zero)
        require(layout.zero->bit < layout.zero->bytes * 8, "the zero is in its report");
}

void use(const ScaleStatement &statement)
{
    require(magnitudeText(statement.number).size() < 150, "a number can be written down");
    const auto web = webStrings(statement);
    for (const ExportForm form : {ExportForm::Pounds, ExportForm::Kilograms}) {
        for (const ExportRounding rounding : {ExportRounding::AsRead, ExportRounding::UpToWhole}) {
            const auto text = exportText(statement, form, rounding);
            require(text.has_value() == web.has_value(), "all texts leave, or none");
            require(!text || text->size() <= 24, "texts are as long as weights are");
        }
    }
    if (const auto both = poundsAndOunces(statement.number))
        require(both->ounces.exponent == statement.number.exponent, "ounces keep their decimals");
}

void compare(const Bytes &report)
{
    const auto product = readScaleReport(report, ScaleLayout::ofClass());
    const auto expected = rules::stated(report);
    require(product.has_value() == expected.has_value(), "what is a report of the weight");
    if (!product)
        return;
    require(static_cast<int>(product->status) == expected->status, "the status");
    require(static_cast<int>(product->unit) == expected->unit, "the unit");
    require(product->number.digits == expected->digits, "the digits");
    require(product->number.exponent == expected->exponent, "the exponent");
    require(product->number.isNegative == expected->below, "the sign");
    const auto texts = rules::statedTexts(*expected);
    const auto web = webStrings(*product);
    require(texts.has_value() == web.has_value(), "what leaves");
    if (web)
        require(web->pounds.toStdString() == texts->wholePounds &&
                    web->ounces.toStdString() == texts->remainingOunces &&
                    web->basic.toStdString() == texts->grams,
                "the texts");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const std::size_t length = input.byte() + 256U * input.byte();
    const auto layout = scaleLayout(bytesOf(input, length));
    if (layout)
        checkLayout(*layout);
    while (!input.isEmpty()) {
        const Bytes report = bytesOf(input, input.byte());
        compare(report);
        if (!layout)
            continue;
        if (const auto statement = readScaleReport(report, *layout))
            use(*statement);
    }
    return 0;
}
