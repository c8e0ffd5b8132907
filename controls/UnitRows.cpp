// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "controls/UnitRows.h"

std::array<bool, unitRowCount> enabledRows(int modelIndex)
{
    //                                               oz   lb-oz A lb-oz B  lb     g     kg   lb-oz
    static constexpr std::array<bool, unitRowCount> gramModel{true, true,  true, false,
                                                              true, false, false};
    static constexpr std::array<bool, unitRowCount> tenGramModel{false, true, true, true,
                                                                 false, true, true};
    static constexpr std::array<bool, unitRowCount> fractionModel{false, false, true, true,
                                                                  false, true,  true};
    static constexpr std::array<bool, unitRowCount> decimalModel{false, false, false, true,
                                                                 false, true,  true};
    switch (modelIndex) {
    case modelindex::a100:
    case modelindex::b100:
    case modelindex::b200:
    case modelindex::b300:
    case modelindex::c200: return gramModel;
    case modelindex::a200: return tenGramModel;
    case modelindex::c100: return fractionModel;
    case modelindex::c300:
    default: return decimalModel;
    }
}

std::optional<int> rowOfUnit(int unitnumber)
{
    static constexpr std::array<int, unitRowCount> rows{4, 0, 1, 2, 3, 5, 6};
    if (unitnumber < 0 || unitnumber >= unitRowCount)
        return {};
    return rows[static_cast<std::size_t>(unitnumber)];
}

int powerOnRow(int currentScale)
{
    const int tag = currentScale == scaletype::binary ? unittag::kilograms : unittag::poundsOuncesB;
    return *rowOfUnit(tag);
}

std::span<const DigitView> blinkingViews(int currentScale, int unitnumber)
{
    using enum DigitView;
    static constexpr std::array grams{digThree};
    static constexpr std::array ounces{digTwo, digThree};
    static constexpr std::array poundsOuncesA{digOne, digThree, numeratorImg};
    static constexpr std::array poundsOuncesB{digOne, digThree};
    static constexpr std::array decimalPounds{digThree, digTwo};
    static constexpr std::array kilograms{digOne, digThree, digTwo, digZero};
    if (currentScale != scaletype::packedDecimal)
        return {};
    switch (unitnumber) {
    case unittag::grams: return grams;
    case unittag::ounces: return ounces;
    case unittag::poundsOuncesA: return poundsOuncesA;
    case unittag::poundsOuncesB: return poundsOuncesB;
    case unittag::decimalPounds: return decimalPounds;
    case unittag::kilograms: return kilograms;
    default: return {};
    }
}
