// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/DescriptorItems.h"

#include <array>
#include <map>
#include <optional>
#include <utility>

namespace {

// Of the Device Class Definition for HID 1.11, 6.2.2.
constexpr std::uint8_t longItemPrefix = 0xFE;
namespace itemtag {
constexpr std::uint8_t input = 0x80;
constexpr std::uint8_t output = 0x90;
constexpr std::uint8_t feature = 0xB0;
constexpr std::uint8_t collectionBegin = 0xA0;
constexpr std::uint8_t collectionEnd = 0xC0;
constexpr std::uint8_t usagePage = 0x04;
constexpr std::uint8_t logicalMinimum = 0x14;
constexpr std::uint8_t logicalMaximum = 0x24;
constexpr std::uint8_t reportSize = 0x74;
constexpr std::uint8_t reportId = 0x84;
constexpr std::uint8_t reportCount = 0x94;
constexpr std::uint8_t push = 0xA4;
constexpr std::uint8_t pop = 0xB4;
constexpr std::uint8_t usage = 0x08;
constexpr std::uint8_t usageMinimum = 0x18;
constexpr std::uint8_t usageMaximum = 0x28;
} // namespace itemtag

constexpr unsigned constantFlag = 0x01;
constexpr unsigned variableFlag = 0x02;

// More than any device has; what goes beyond them is no descriptor of a device.
constexpr std::size_t deepestStack = 16;
constexpr std::size_t mostUsages = 1024;
constexpr std::size_t longestReport = 8 * 16384; ///< in bits; the kernel's own limit

struct Item
{
    std::uint8_t tag = 0; ///< without the size
    unsigned size = 0;    ///< in bytes
    std::uint32_t value = 0;

    std::int64_t asSigned() const
    {
        switch (size) {
        case 1: return static_cast<std::int8_t>(value);
        case 2: return static_cast<std::int16_t>(value);
        default: return static_cast<std::int32_t>(value);
        }
    }
};

struct Globals
{
    std::uint32_t page = 0;
    std::int64_t minimum = 0;
    Item maximum; ///< with a sign only where the minimum has one
    unsigned size = 0;
    unsigned count = 0;
    std::uint8_t report = 0;
};

struct Usage
{
    std::uint32_t value = 0;
    bool hasPage = false;
};

struct Locals
{
    std::vector<Usage> usages;
    std::optional<Usage> minimum;
};

class Walk
{
public:
    Walk(const std::function<void(std::uint32_t)> &collection,
         const std::function<void(const DeclaredFields &)> &field)
        : m_collection(collection)
        , m_field(field)
    {
    }

    /// False where it makes no sense.
    bool take(const Item &item)
    {
        switch (item.tag) {
        case itemtag::usagePage: m_globals.page = item.value & 0xFFFFU; return true;
        case itemtag::logicalMinimum: m_globals.minimum = item.asSigned(); return true;
        case itemtag::logicalMaximum: m_globals.maximum = item; return true;
        case itemtag::reportSize: m_globals.size = item.value; return true;
        case itemtag::reportCount: m_globals.count = item.value; return true;
        case itemtag::reportId:
            m_globals.report = static_cast<std::uint8_t>(item.value);
            return true;
        case itemtag::push: return pushGlobals();
        case itemtag::pop: return popGlobals();
        case itemtag::usage: return addUsage(usageOf(item));
        case itemtag::usageMinimum: m_locals.minimum = usageOf(item); return true;
        case itemtag::usageMaximum: return addRange(usageOf(item));
        default: return takeMain(item);
        }
    }

private:
    static Usage usageOf(const Item &item)
    {
        return {.value = item.value, .hasPage = item.size == 4};
    }

    bool addUsage(Usage added)
    {
        m_locals.usages.push_back(added);
        return m_locals.usages.size() <= mostUsages;
    }

    bool addRange(Usage last)
    {
        const Usage first = m_locals.minimum.value_or(last);
        m_locals.minimum.reset();
        if (last.value < first.value || last.value - first.value >= mostUsages)
            return false;
        for (std::uint32_t value = first.value; value - first.value <= last.value - first.value;
             ++value) {
            if (!addUsage({.value = value, .hasPage = first.hasPage}))
                return false;
        }
        return true;
    }

    bool pushGlobals()
    {
        m_stack.push_back(m_globals);
        return m_stack.size() <= deepestStack;
    }

    bool popGlobals()
    {
        if (m_stack.empty())
            return false;
        m_globals = m_stack.back();
        m_stack.pop_back();
        return true;
    }

    bool takeMain(const Item &item)
    {
        bool makesSense = true;
        switch (item.tag) {
        case itemtag::collectionBegin: begin(); break;
        case itemtag::collectionEnd: makesSense = m_depth-- > 0; break;
        case itemtag::input: makesSense = declare(DeclaredFields::Kind::Input, item.value); break;
        case itemtag::output: makesSense = declare(DeclaredFields::Kind::Output, item.value); break;
        case itemtag::feature:
            makesSense = declare(DeclaredFields::Kind::Feature, item.value);
            break;
        default: return true; // units and the like, which keep what is local
        }
        m_locals = {};
        return makesSense;
    }

    std::uint32_t resolved(const Usage &found) const
    {
        return found.hasPage ? found.value : m_globals.page << 16 | (found.value & 0xFFFFU);
    }

    void begin()
    {
        if (m_depth++ > 0)
            return;
        m_application =
            m_locals.usages.empty() ? m_globals.page << 16 : resolved(m_locals.usages.front());
        m_collection(m_application);
    }

    bool declare(DeclaredFields::Kind kind, std::uint32_t flags)
    {
        std::size_t &end = m_ends[{kind, m_globals.report}];
        DeclaredFields fields;
        fields.kind = kind;
        fields.report = m_globals.report;
        fields.bit = end;
        fields.size = m_globals.size;
        fields.count = m_globals.count;
        if (fields.size > longestReport || fields.count > longestReport)
            return false;
        end += std::size_t{fields.size} * fields.count;
        if (end > longestReport)
            return false;
        fields.isConstant = (flags & constantFlag) != 0;
        fields.isArray = (flags & variableFlag) == 0;
        fields.logicalMinimum = m_globals.minimum;
        fields.logicalMaximum = m_globals.minimum < 0 ? m_globals.maximum.asSigned()
                                                      : std::int64_t{m_globals.maximum.value};
        fields.application = m_application;
        for (const Usage &each : m_locals.usages)
            fields.usages.push_back(resolved(each));
        m_field(fields);
        return true;
    }

    const std::function<void(std::uint32_t)> &m_collection;
    const std::function<void(const DeclaredFields &)> &m_field;
    Globals m_globals;
    std::vector<Globals> m_stack;
    Locals m_locals;
    int m_depth = 0;
    std::uint32_t m_application = 0;
    std::map<std::pair<DeclaredFields::Kind, std::uint8_t>, std::size_t> m_ends; ///< in bits
};

/// Takes it off the front. Nothing where the rest is too short for it.
std::optional<Item> nextItem(std::span<const std::uint8_t> &rest)
{
    static constexpr std::array<unsigned, 4> sizes{0, 1, 2, 4};
    Item item;
    item.tag = rest.front() & 0xFCU;
    item.size = sizes.at(rest.front() & 0x03U);
    if (rest.size() < 1 + item.size)
        return std::nullopt;
    for (unsigned i = 0; i < item.size; ++i)
        item.value |= std::uint32_t{rest[1 + i]} << (8 * i);
    rest = rest.subspan(1 + item.size);
    return item;
}

/// False where there is none, or it is cut off. Nothing has ever been defined to be in one.
bool passLongItem(std::span<const std::uint8_t> &rest)
{
    constexpr std::size_t head = 3;
    if (rest.size() < head || rest.size() < head + rest[1])
        return false;
    rest = rest.subspan(head + rest[1]);
    return true;
}

} // namespace

void forEachField(std::span<const std::uint8_t> descriptor,
                  const std::function<void(std::uint32_t usage)> &collection,
                  const std::function<void(const DeclaredFields &fields)> &field)
{
    Walk walk(collection, field);
    while (!descriptor.empty()) {
        if (descriptor.front() == longItemPrefix) {
            if (!passLongItem(descriptor))
                return;
            continue;
        }
        const auto item = nextItem(descriptor);
        if (!item || !walk.take(*item))
            return;
    }
}
