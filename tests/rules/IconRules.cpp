// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/IconRules.h"

#include <algorithm>

namespace rules {

namespace {

class Pattern
{
public:
    Pattern(int unitNumber, std::uint8_t command, bool highCapacityModel)
        : m_unitnumber(unitNumber)
        , m_hold((command & 0x04) == 0)
        , m_highCapacity(highCapacityModel)
    {
    }

    std::vector<IconCall> type0(int code) const
    {
        switch (code) {
        case 1: return metric();
        case 2: return ounces();
        case 3:
        case 4: return poundsOunces(code);
        case 5: return decimalPounds();
        default: return {};
        }
    }

    std::vector<IconCall> type1(int code) const
    {
        return {{".1", false},     {".2", false},      {".3", code == 1 || code == 2},
                {".4", false},     {":", code == 3},   {"USB", true},
                {"GM", false},     {"KG0", code == 1}, {"LB", code == 2 || code == 3},
                {"OZ", code == 3}, {"BAT", false},     {"AC", true},
                {"HOLD", m_hold}};
    }

private:
    std::vector<IconCall> metric() const
    {
        std::vector<IconCall> calls = {{".1", false}, {".2", false}, {".3", false},
                                       {".4", false}, {":", false},  {"USB", true}};
        if (m_unitnumber == 0) {
            calls.push_back({"GM", true});
            calls.push_back({"KG0", false});
        } else {
            calls.push_back({"GM", false});
            calls.push_back({"KG0", true});
            calls.push_back({m_highCapacity ? ".2" : ".1", true});
        }
        calls.insert(
            calls.end(),
            {{"LB", false}, {"OZ", false}, {"BAT", false}, {"AC", true}, {"HOLD", m_hold}});
        return calls;
    }

    std::vector<IconCall> ounces() const
    {
        return {{".3", true},   {".2", false},  {".4", false}, {".1", false},   {":", false},
                {"USB", true},  {"KG0", false}, {"GM", false}, {"LB", false},   {"OZ", true},
                {"BAT", false}, {"AC", true},   {"USB", true}, {"HOLD", m_hold}};
    }

    std::vector<IconCall> poundsOunces(int code) const
    {
        return {{".4", m_unitnumber != 3},
                {".2", false},
                {".1", false},
                {".3", code == 3},
                {"KG0", false},
                {":", true},
                {"GM", false},
                {"LB", true},
                {"USB", true},
                {"OZ", m_unitnumber != 4},
                {"BAT", false},
                {"AC", true},
                {"HOLD", m_hold}};
    }

    std::vector<IconCall> decimalPounds() const
    {
        return {{".4", false},          {".1", false},   {".3", false},  {".2", !m_highCapacity},
                {".3", m_highCapacity}, {":", false},    {"KG0", false}, {"GM", false},
                {"LB", true},           {"OZ", false},   {"BAT", false}, {"AC", true},
                {"USB", true},          {"HOLD", m_hold}};
    }

    const int m_unitnumber;
    const bool m_hold;
    const bool m_highCapacity;
};

} // namespace

const std::array<Segment, 13> &segments()
{
    static constexpr std::array<Segment, 13> table = {{{":", "colonImg"},
                                                       {".1", "dot1Img"},
                                                       {".2", "dot2Img"},
                                                       {".3", "dot3Img"},
                                                       {".4", "dot4Img"},
                                                       {"GM", "gmImg"},
                                                       {"KG0", "kgImg"},
                                                       {"LB", "lbImg"},
                                                       {"OZ", "ozImg"},
                                                       {"HOLD", "lockImg"},
                                                       {"AC", "plugImg"},
                                                       {"BAT", "batteryImg"},
                                                       {"USB", "USBImg"}}};
    return table;
}

IconOutcome displayUnit(int code, int currentScale, int unitnumber, std::uint8_t scaleCommand,
                        bool highCapacityModel)
{
    const Pattern pattern(unitnumber, scaleCommand, highCapacityModel);
    IconOutcome outcome;
    outcome.log.push_back("Inside Display unit=" + std::to_string(code) +
                          " unitnumber=" + std::to_string(unitnumber) + " ");
    if (currentScale != 1) {
        outcome.calls = pattern.type0(code);
    } else if (code >= 1 && code <= 3) {
        outcome.log.push_back("rechaed under case " + std::to_string(code));
        outcome.calls = pattern.type1(code);
    }
    return outcome;
}

const std::array<std::string_view, 13> &clearAllOrder()
{
    static constexpr std::array<std::string_view, 13> order = {
        ".1", ".2", ".3", ".4", ":", "USB", "BAT", "AC", "HOLD", "OZ", "LB", "GM", "KG0"};
    return order;
}

bool drawIconReaches(std::string_view name, int currentScale)
{
    if (name == "GM" && currentScale == 1)
        return false;
    return std::any_of(segments().begin(), segments().end(),
                       [name](const Segment &segment) { return segment.name == name; });
}

} // namespace rules
