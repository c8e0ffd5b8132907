// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/PageStates.h"

#include <random>
#include <string>

namespace rules {

namespace {

constexpr std::array<const char *, pageRows> groups = {"02", "05", "08", "11", "14"};
constexpr int rowStates = 81;
constexpr int boxStates = 9;
constexpr int singleBoxStates = 3;
constexpr int choiceStates = 3;

void placeBox(Page &page, const std::string &name, int part)
{
    if (part != 0)
        page.fields[name] = std::string(part == 2 ? 0 : 1, '7');
}

void placeButton(Page &page, const std::string &id, int part)
{
    if (part != 0)
        page.checked[id] = part == 2;
}

} // namespace

Page pageOf(const PageStates &states)
{
    Page page;
    for (std::size_t row = 0; row < groups.size(); ++row) {
        const std::string group = groups.at(row);
        const auto box =
            std::string("ctl00$ContentPlaceHolder1$ctl").append(group).append("$TextBoxWeight");
        const auto button = std::string("ctl00_ContentPlaceHolder1_ctl").append(group);
        const int state = states.at(row);
        placeBox(page, box, state % 3);
        placeBox(page, box + "_2", state / 3 % 3);
        placeButton(page, button + "_ctl01", state / 9 % 3);
        placeButton(page, button + "_ctl02", state / 27);
    }
    placeButton(page, "flatRateNo", states.back());
    return page;
}

std::vector<PageStates> everyPairOfRows(int step)
{
    std::mt19937 random(20261122);
    std::vector<PageStates> all;
    for (std::size_t one = 0; one < groups.size(); ++one) {
        for (std::size_t other = one + 1; other < groups.size(); ++other) {
            for (int pair = 0; pair < rowStates * rowStates; pair += step) {
                PageStates states{};
                for (int &state : states)
                    state = static_cast<int>(random() % rowStates);
                states.at(one) = pair % rowStates;
                states.at(other) = pair / rowStates;
                states.back() %= choiceStates;
                all.push_back(states);
            }
        }
    }
    return all;
}

std::vector<PageStates> everyCombinationOfBoxes(int step)
{
    constexpr int combinations =
        boxStates * boxStates * boxStates * singleBoxStates * singleBoxStates;
    std::vector<PageStates> all;
    for (int combination = 0; combination < combinations; combination += step) {
        PageStates states{};
        int rest = combination;
        for (std::size_t row = 0; row < groups.size(); ++row) {
            const int choices = row < 3 ? boxStates : singleBoxStates;
            states.at(row) = rest % choices;
            rest /= choices;
        }
        all.push_back(states);
    }
    return all;
}

} // namespace rules
