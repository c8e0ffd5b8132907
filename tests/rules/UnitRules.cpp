// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/UnitRules.h"

#include "tests/rules/CommandRules.h"

namespace rules {

namespace {

void chooseFields(int tag, int currentScale, UnitState &state)
{
    state.unitnumber = tag;
    state.dotunit = tag;

    if (tag <= 3) {
        state.currentUnit = tag + 1;
        state.lbOZlast = false;
    } else if (tag == 4) {
        state.currentUnit = 4;
        state.lbOZlast = false;
    } else if (tag == 5) {
        state.currentUnit = 1;
        state.lbOZlast = false;
    } else if (tag == 6) {
        state.unitindex = 3;
        state.unitnumber = 6;
        state.lbOZlast = true;
    }

    if (tag <= 3) {
        state.unitindex = tag + 1;
    } else if (tag == 4) {
        state.unitindex = 4;
        state.lbOZlast = false;
    } else if (tag == 5) {
        state.lbOZlast = false;
        state.unitindex = 1;
    }

    if (tag == 4 && state.unitindex == 4)
        state.unitindex = 3;
    if (currentScale == 1 && tag == 4)
        state.unitindex = 2;
    if (currentScale == 1 && tag == 6)
        state.unitindex = 3;
}

std::array<bool, 7> rowSet(std::initializer_list<int> rows)
{
    std::array<bool, 7> enabled{};
    for (int row : rows)
        enabled[static_cast<std::size_t>(row)] = true;
    return enabled;
}

/// The models that the pop-up and the menu agree on.
std::optional<int> commonModelIndex(std::string_view modelName)
{
    if (modelName == "KV-A100")
        return 0;
    if (modelName == "KV-A200")
        return 1;
    if (modelName == "KV-B100")
        return 2;
    if (modelName == "KV-B200")
        return 3;
    if (modelName == "KV-B300")
        return 4;
    if (modelName == "KV-C200")
        return 6;
    if (modelName == "KV-C300")
        return 7;
    return {};
}

} // namespace

UnitOutcome radioSelection(int tag, int currentScale, const UnitState &before)
{
    UnitOutcome outcome{before, tag, {}, {}};
    outcome.log.emplace_back("---------------------->Done radioSelection!!!!!");
    outcome.log.push_back("selectedTag: " + std::to_string(tag));
    chooseFields(tag, currentScale, outcome.state);

    CommandState link;
    link.scaleCommand = outcome.state.scaleCommand;
    link.currentScale = currentScale;
    link.unitindex = outcome.state.unitindex;
    link.currentUnit = outcome.state.currentUnit;
    const CommandOutcome sent = command(Command::SetUnit, outcome.state.unitindex, link);
    outcome.state.scaleCommand = sent.scaleCommand;
    outcome.state.unitindex = sent.unitindex;
    outcome.state.currentUnit = sent.currentUnit;
    outcome.report = sent.report;
    return outcome;
}

const std::array<int, 7> &rowTags()
{
    static constexpr std::array<int, 7> tags = {1, 2, 3, 4, 0, 5, 6};
    return tags;
}

std::array<bool, 7> rowsEnabled(int modelIndex)
{
    switch (modelIndex) {
    case 0:
    case 2:
    case 3:
    case 4:
    case 6: return rowSet({0, 1, 2, 4});
    case 1: return rowSet({1, 2, 3, 5, 6});
    case 5: return rowSet({2, 3, 5, 6});
    default: return rowSet({3, 5, 6});
    }
}

std::optional<int> rowOfUnitnumber(int unitnumber)
{
    switch (unitnumber) {
    case 0: return 4;
    case 1: return 0;
    case 2: return 1;
    case 3: return 2;
    case 4: return 3;
    case 5: return 5;
    case 6: return 6;
    default: return {};
    }
}

int powerOnRow(int currentScale)
{
    return currentScale == 1 ? 5 : 2;
}

std::optional<int> modelIndexFromPopUp(std::string_view modelName)
{
    return modelName == "KV-C100" ? 5 : commonModelIndex(modelName);
}

std::optional<int> modelIndexFromMenu(std::string_view modelName)
{
    return modelName == "KV-C400" ? 5 : commonModelIndex(modelName);
}

bool isHighCapacityModel(std::string_view modelName)
{
    return modelName == "KV-A200" || modelName == "KV-C400";
}

std::vector<std::string_view> tareBlinkImages(int currentScale, int unitnumber)
{
    if (currentScale != 0)
        return {};
    switch (unitnumber) {
    case 0: return {"digThree"};
    case 1: return {"digTwo", "digThree"};
    case 2: return {"digOne", "digThree", "numeratorImg"};
    case 3: return {"digOne", "digThree"};
    case 4: return {"digThree", "digTwo"};
    case 5: return {"digOne", "digThree", "digTwo", "digZero"};
    default: return {};
    }
}

} // namespace rules
