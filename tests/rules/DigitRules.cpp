// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/DigitRules.h"

#include "tests/rules/NumberText.h"

namespace rules {

namespace {

class Drawing
{
public:
    Drawing(std::int64_t argument, const DigitState &digitState, Views &panel,
            std::vector<std::string> *lines)
        : nValue(argument)
        , state(digitState)
        , views(panel)
        , log(lines)
        , m(argument < 0 ? -argument : argument)
    {
    }

    void run()
    {
        note("Current Scale is ", state.currentScale, " ");
        note("nValue sent is ", nValue, " ");
        if (state.currentScale == 1)
            fourPositions();
        else
            sixPositions();
    }

private:
    void fourPositions()
    {
        const int unit = state.currentUnit;
        std::int64_t k = m / 1000;
        if (k >= 1) {
            show(View::digZero, k);
            m = m - k * 1000;
            leadShown = true;
            note("", k);
        } else {
            hide(View::digZero);
        }
        k = m / 100;
        if (!leadShown && k < 1 && unit != 3) {
            hide(View::digOne);
        } else {
            show(View::digOne, k);
            m = m - k * 100;
            note("", k);
        }
        k = m / 10;
        if (!leadShown && k < 1 && unit != 1 && m >= 1 && unit != 2) {
            hide(View::digTwo);
        } else {
            show(View::digTwo, k);
            m = m - k * 10;
            note("", k);
        }
        if (!leadShown && m < 1 && unit != 1 && unit != 3 && unit != 2) {
            hide(View::digThree);
            return;
        }
        note("Reched under for that case with temp=", m, " ");
        show(View::digThree, m);
    }

    void sixPositions()
    {
        note("nvalue is ------------>", nValue);
        note("Now drawing 5 digits");
        note("Current unit is ", state.currentUnit);
        note("Unit Number is ", state.unitnumber);
        note("nValue ", nValue);
        hundredThousands();
        tenThousands();
        thousands();
        const std::int64_t q2 = m / 100;
        show(View::digThree, q2);
        const std::int64_t rest = m - q2 * 100;
        const int numerator = static_cast<int>(rest / 10);
        const int denominator = static_cast<int>(rest % 10);
        if ((numerator >= 1 || state.currentUnit == 3) && !wide)
            fraction(numerator, denominator);
        else
            withoutFraction(numerator);
        finish();
    }

    void hundredThousands()
    {
        const auto q5 = static_cast<std::int32_t>(m / 100000);
        note("temp1 value is ------------>", q5);
        wide = q5 >= 1 && m != 88888;
        if (q5 >= 1) {
            note("temp is greater than 0");
            show(View::digZero, q5);
            leadShown = true;
        } else {
            hide(View::digZero);
        }
    }

    void tenThousands()
    {
        const std::int64_t q4 = m / 10000;
        if (!leadShown && q4 < 1 && state.dotunit != 3 && state.unitnumber != 5) {
            hide(View::digOne);
            if (state.unitnumber == 2 || state.unitnumber == 3)
                show(View::digOne, q4);
        } else if (state.dotunit == 4 && (m == 88888 || m == 0)) {
            hide(View::digOne);
            m = m - q4 * 10000;
        } else {
            show(View::digOne, q4 % 10);
            leadShown = true;
            m = m - q4 * 10000;
        }
    }

    void thousands()
    {
        const std::int64_t q3 = m / 1000;
        if ((leadShown && state.currentUnit < 3) || q3 > 0 || state.currentUnit == 2 ||
            state.unitnumber == 4 || state.unitnumber == 5) {
            show(View::digTwo, q3);
            m = m - q3 * 1000;
            leadShown = true;
        } else {
            hide(View::digTwo);
        }
    }

    void fraction(int numerator, int denominator)
    {
        if (state.dotunit != 4)
            show(View::numeratorImg, numerator);
        else
            hide(View::numeratorImg);
        if (state.currentUnit == 4 && state.unitnumber != 4) {
            unhide(View::lineImg);
            show(View::denomImg, denominator);
        } else {
            hide(View::lineImg);
            hide(View::denomImg);
        }
        if ((state.unitnumber == 2 && !state.lbOZlast) || state.unitnumber == 4)
            fractionAsTenths(numerator, denominator);
        if (state.lbOZlast)
            displayforLBOZsimple(views);
    }

    void fractionAsTenths(int numerator, int denominator)
    {
        if (log)
            log->push_back("numerator=" + std::to_string(numerator) +
                           ",denomenator=" + std::to_string(denominator));
        unhide(View::numeratorImg);
        hide(View::lineImg);
        hide(View::denomImg);
        setRounded(View::numeratorImg,
                   static_cast<float>(numerator) / static_cast<float>(denominator) * 10.0F);
        if (state.unitnumber == 4 && numerator != 0) {
            setWhole(View::numeratorImg, numerator);
            note("Image to print ", numerator, ".bmp");
        }
    }

    void withoutFraction(int numerator)
    {
        if (state.unitnumber == 2 && !state.lbOZlast) {
            setRounded(View::numeratorImg, static_cast<float>(numerator) * 10.0F);
            unhide(View::numeratorImg);
        } else {
            hide(View::numeratorImg);
        }
        hide(View::lineImg);
        hide(View::denomImg);
        if (state.lbOZlast)
            displayforLBOZsimple(views);
    }

    void finish()
    {
        if (state.unitnumber != 2 && state.unitnumber != 3) {
            hide(View::numeratorImg);
            hide(View::lineImg);
            hide(View::denomImg);
        }
        if (state.unitnumber == 4)
            unhide(View::numeratorImg);
        if (state.highCapacityModel && state.unitnumber == 4) {
            hide(View::numeratorImg);
            hide(View::denomImg);
        }
    }

    void hide(View view) { views[view].hidden = true; }
    void unhide(View view) { views[view].hidden = false; }

    void show(View view, std::int64_t digit)
    {
        unhide(view);
        setWhole(view, digit);
    }

    void setWhole(View view, std::int64_t digit)
    {
        views[view].kind = ViewState::Whole;
        views[view].whole = digit;
    }

    void setRounded(View view, float digit)
    {
        views[view].kind = ViewState::Rounded;
        views[view].value = digit;
    }

    void note(const char *text)
    {
        if (log)
            log->emplace_back(text);
    }

    void note(const char *before, std::int64_t number, const char *after = "")
    {
        if (log)
            log->push_back(before + std::to_string(number) + after);
    }

    const std::int64_t nValue;
    const DigitState &state;
    Views &views;
    std::vector<std::string> *log;
    std::int64_t m;
    bool leadShown = false;
    bool wide = false;
};

} // namespace

std::string imageName(const ViewState &view)
{
    switch (view.kind) {
    case ViewState::None: return {};
    case ViewState::Whole: return std::to_string(view.whole) + ".bmp";
    case ViewState::Rounded: return fixedText(view.value, 0) + ".bmp";
    }
    return {};
}

void drawDigits(std::int64_t n, const DigitState &state, Views &views,
                std::vector<std::string> *log)
{
    Drawing(n, state, views, log).run();
}

void displayforLBOZsimple(Views &views)
{
    for (View view : {View::numeratorImg, View::denomImg, View::lineImg, View::dot4Img})
        views[view].hidden = true;
}

void showNegative(bool negative, Views &views, std::vector<std::string> *log)
{
    if (log) {
        log->emplace_back("shownegativeSign");
        log->emplace_back(negative ? "True" : "FALSE");
    }
    views[View::minusIMg].hidden = !negative;
}

const std::array<View, 8> &clearedViews()
{
    static constexpr std::array<View, 8> order = {View::minusIMg, View::digOne,  View::digTwo,
                                                  View::digThree, View::digZero, View::numeratorImg,
                                                  View::denomImg, View::lineImg};
    return order;
}

void clearDigits(Views &views)
{
    for (View view : clearedViews())
        views[view].hidden = true;
}

bool overloadViewsHidden(bool overloadFlag)
{
    return !overloadFlag;
}

} // namespace rules
