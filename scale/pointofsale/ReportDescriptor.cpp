// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/ReportDescriptor.h"

#include "scale/pointofsale/DescriptorItems.h"

#include <algorithm>

namespace {

// HID Point of Sale usage tables, page 0x8D.
constexpr std::uint32_t weighingPage = 0x8D;
constexpr std::uint32_t onPage = weighingPage << 16;
constexpr std::uint32_t dataWeight = onPage | 0x40;
constexpr std::uint32_t dataScaling = onPage | 0x41;
constexpr std::uint32_t weightUnit = onPage | 0x50;  ///< its selectors are 0x51 to 0x5C
constexpr std::uint32_t scaleStatus = onPage | 0x70; ///< its selectors are 0x71 to 0x78
constexpr std::uint32_t zeroScale = onPage | 0x80;
constexpr std::uint8_t unitCount = 12;
constexpr std::uint8_t statusCount = 8;

constexpr unsigned widestField = 32;
constexpr unsigned byteSize = 8;

/// A scale has one or two of them, or a flag for each number.
constexpr std::size_t mostSelectors = 16;

bool isOnPage(std::uint32_t usage)
{
    return usage >> 16 == weighingPage;
}

/// 0 where the usage is no selector of that group.
std::uint8_t selectorNumber(std::uint32_t usage, std::uint32_t group, std::uint8_t last)
{
    return usage > group && usage <= group + last ? static_cast<std::uint8_t>(usage - group) : 0;
}

bool isOfGroup(const DeclaredFields &fields, std::uint32_t group, std::uint8_t last)
{
    return std::any_of(fields.usages.begin(), fields.usages.end(), [&](std::uint32_t usage) {
        return usage == group || selectorNumber(usage, group, last) != 0;
    });
}

/// The usage of the field at @p place; the last of a list is that of all further fields too.
std::uint32_t usageAt(const DeclaredFields &fields, std::size_t place)
{
    return fields.usages.at(std::min(place, fields.usages.size() - 1));
}

/// The minimum may be one that was declared for a field before, which has less bits.
bool hasSign(const DeclaredFields &fields)
{
    const std::int64_t lowest = -(std::int64_t{1} << (fields.size - 1));
    return fields.logicalMinimum == lowest || fields.logicalMinimum == lowest + 1;
}

ReportField fieldAt(const DeclaredFields &fields, std::size_t place)
{
    return {.bit = fields.bit + place * fields.size,
            .size = fields.size,
            .isSigned = fields.logicalMinimum < 0};
}

SelectorField arraySlot(const DeclaredFields &fields, std::size_t place, std::uint32_t group,
                        std::uint8_t last)
{
    SelectorField selector;
    selector.field = fieldAt(fields, place);
    const std::int64_t values = fields.logicalMaximum - fields.logicalMinimum + 1;
    // Of a list that is longer or shorter than its values nobody can tell where it begins; then,
    // as in a list of none, the numbers are those of the class.
    if (values != static_cast<std::int64_t>(fields.usages.size()))
        return selector;
    selector.firstValue = fields.logicalMinimum;
    for (const std::uint32_t usage : fields.usages)
        selector.numbers.push_back(selectorNumber(usage, group, last));
    return selector;
}

void addSelectors(std::vector<SelectorField> &selectors, const DeclaredFields &fields,
                  std::uint32_t group, std::uint8_t last)
{
    if (!isOfGroup(fields, group, last))
        return;
    for (unsigned place = 0; place < fields.count && selectors.size() < mostSelectors; ++place) {
        if (fields.isArray) {
            selectors.push_back(arraySlot(fields, place, group, last));
            continue;
        }
        const std::uint32_t usage = usageAt(fields, place);
        const std::uint8_t number = selectorNumber(usage, group, last);
        if (number == 0 && usage != group)
            continue;
        SelectorField selector;
        selector.field = fieldAt(fields, place);
        selector.flagOf = number;
        selectors.push_back(selector);
    }
}

bool doMeet(const ReportField &one, const ReportField &other)
{
    return one.bit < other.bit + other.size && other.bit < one.bit + one.size;
}

/// A scale of the class's own layout that declares unit or exponent as something else has them in
/// their places all the same.
void addUndeclared(ScaleLayout &layout)
{
    const ScaleLayout usual = ScaleLayout::ofClass();
    const bool isUsual = layout.dataReport == usual.dataReport &&
                         layout.status.front().field.bit == usual.status.front().field.bit &&
                         layout.weight.bit == usual.weight.bit &&
                         layout.weight.size == usual.weight.size;
    if (!isUsual)
        return;
    const auto isInPlaceOfExponent = [&](const SelectorField &selector) {
        return doMeet(selector.field, *usual.exponent);
    };
    if (!layout.exponent &&
        std::none_of(layout.unit.begin(), layout.unit.end(), isInPlaceOfExponent))
        layout.exponent = usual.exponent;
    if (layout.unit.empty() && !doMeet(*layout.exponent, usual.unit.front().field))
        layout.unit = usual.unit;
}

std::size_t bytesFor(std::size_t bits)
{
    return (bits + 7) / 8;
}

/// Behind the last bit that is looked at. What a report has behind it may be missing.
std::size_t endOf(const ScaleLayout &layout)
{
    std::size_t end = layout.weight.bit + layout.weight.size;
    const auto include = [&](const ReportField &field) {
        end = std::max(end, field.bit + field.size);
    };
    for (const SelectorField &selector : layout.status)
        include(selector.field);
    for (const SelectorField &selector : layout.unit)
        include(selector.field);
    if (layout.exponent)
        include(*layout.exponent);
    return end;
}

class Reader
{
public:
    void take(const DeclaredFields &fields)
    {
        if (!isOnPage(fields.application))
            return;
        if (fields.kind == DeclaredFields::Kind::Feature || fields.size == 0)
            return;
        const bool isUsable =
            !fields.isConstant && !fields.usages.empty() && fields.size <= widestField;
        if (isUsable && fields.kind == DeclaredFields::Kind::Input)
            takeInput(fields);
        if (isUsable && fields.kind == DeclaredFields::Kind::Output)
            takeOutput(fields);
        if (m_zero && fields.kind == DeclaredFields::Kind::Output &&
            m_zero->report == fields.report)
            m_zero->bytes = bytesFor(fields.bit + std::size_t{fields.size} * fields.count);
    }

    ScaleLayout layout()
    {
        const auto data = std::find_if(m_inputs.begin(), m_inputs.end(), [](const Input &input) {
            return input.hasWeight && !input.layout.status.empty();
        });
        ScaleLayout found = data == m_inputs.end() ? ScaleLayout::ofClass() : data->layout;
        addUndeclared(found);
        found.dataBytes = bytesFor(endOf(found));
        found.zero = m_zero;
        return found;
    }

private:
    struct Input
    {
        ScaleLayout layout;
        bool hasWeight = false;
    };

    Input &inputOf(std::uint8_t report)
    {
        const auto found =
            std::find_if(m_inputs.begin(), m_inputs.end(), [report](const Input &input) {
                return input.layout.dataReport == report;
            });
        if (found != m_inputs.end())
            return *found;
        m_inputs.emplace_back();
        m_inputs.back().layout.dataReport = report;
        return m_inputs.back();
    }

    void takeInput(const DeclaredFields &fields)
    {
        Input &input = inputOf(fields.report);
        addSelectors(input.layout.status, fields, scaleStatus, statusCount);
        addSelectors(input.layout.unit, fields, weightUnit, unitCount);
        if (fields.isArray)
            return;
        for (unsigned place = 0; place < fields.count; ++place) {
            const std::uint32_t usage = usageAt(fields, place);
            if (usage == dataWeight) {
                takeWeight(input, fields, place);
            } else if (usage == dataScaling && !input.layout.exponent) {
                input.layout.exponent = fieldAt(fields, place);
            }
        }
    }

    /// Some declare a field for each of its bytes.
    static void takeWeight(Input &input, const DeclaredFields &fields, std::size_t place)
    {
        ReportField field = fieldAt(fields, place);
        field.isSigned = hasSign(fields);
        ReportField &weight = input.layout.weight;
        const bool isNextByte =
            weight.size == byteSize && field.size == byteSize && field.bit == weight.bit + byteSize;
        if (!input.hasWeight)
            weight = field;
        else if (isNextByte)
            weight.size += byteSize;
        input.hasWeight = true;
    }

    void takeOutput(const DeclaredFields &fields)
    {
        for (unsigned place = 0; place < fields.count && !fields.isArray && !m_zero; ++place) {
            if (usageAt(fields, place) == zeroScale)
                m_zero = ZeroCommand{.report = fields.report,
                                     .bit = fields.bit + std::size_t{place} * fields.size,
                                     .bytes = 0};
        }
    }

    std::vector<Input> m_inputs;
    std::optional<ZeroCommand> m_zero;
};

} // namespace

std::optional<ScaleLayout> scaleLayout(std::span<const std::uint8_t> descriptor)
{
    bool isScale = false;
    Reader reader;
    forEachField(
        descriptor, [&](std::uint32_t usage) { isScale = isScale || isOnPage(usage); },
        [&](const DeclaredFields &fields) { reader.take(fields); });
    if (!isScale)
        return std::nullopt;
    return reader.layout();
}
