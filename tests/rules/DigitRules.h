// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace rules {

/// The image views that drawing a reading touches, under the names of their outlets.
enum class View {
    digZero,
    digOne,
    digTwo,
    digThree,
    numeratorImg,
    lineImg,
    denomImg,
    minusIMg,
    dot4Img
};

struct ViewState
{
    /// None: no image was set since the window appeared.
    enum Kind { None, Whole, Rounded };

    bool hidden = false;
    Kind kind = None;
    std::int64_t whole = 0;
    float value = 0;
};

struct Views
{
    std::array<ViewState, 9> states;

    ViewState &operator[](View view) { return states[static_cast<std::size_t>(view)]; }
    const ViewState &operator[](View view) const { return states[static_cast<std::size_t>(view)]; }
};

struct DigitState
{
    int currentScale = 0;
    int currentUnit = 0;
    int unitnumber = 0;
    int dotunit = 0;
    bool lbOZlast = false;
    bool highCapacityModel = false;
};

/// "7.bmp", but also "10.bmp", "inf.bmp" and "nan.bmp", which no picture answers; empty for None.
std::string imageName(const ViewState &view);

/// Views that the reading does not reach keep their state. Log lines are appended to `log`, at the
/// cost of making them; a null `log` allocates nothing.
void drawDigits(std::int64_t n, const DigitState &state, Views &views,
                std::vector<std::string> *log = nullptr);

void displayforLBOZsimple(Views &views);

void showNegative(bool negative, Views &views, std::vector<std::string> *log = nullptr);

/// The views hidden when the panel is blanked, in order, after the icons have been switched off.
const std::array<View, 8> &clearedViews();

void clearDigits(Views &views);

/// Hidden flag of the four overload views.
bool overloadViewsHidden(bool overloadFlag);

} // namespace rules
