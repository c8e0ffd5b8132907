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
        : m_nValue(argument)
        , m_state(digitState)
        , m_views(panel)
        , m_log(lines)
        , m_m(argument < 0 ? -argument : argument)
    {
    }

    void run()
    {
        note("Current Scale is ", m_state.currentScale, " ");
        note("nValue sent is ", m_nValue, " ");
        if (m_state.currentScale == 1)
            fourPositions();
        else
            sixPositions();
    }

private:
    void fourPositions()
    {
        const int unit = m_state.currentUnit;
        std::int64_t k = m_m / 1000;
        if (k >= 1) {
            show(View::digZero, k);
            m_m = m_m - k * 1000;
            m_leadShown = true;
            note("", k);
        } else {
            hide(View::digZero);
        }
        k = m_m / 100;
        if (!m_leadShown && k < 1 && unit != 3) {
            hide(View::digOne);
        } else {
            show(View::digOne, k);
            m_m = m_m - k * 100;
            note("", k);
        }
        k = m_m / 10;
        if (!m_leadShown && k < 1 && unit != 1 && m_m >= 1 && unit != 2) {
            hide(View::digTwo);
        } else {
            show(View::digTwo, k);
            m_m = m_m - k * 10;
            note("", k);
        }
        if (!m_leadShown && m_m < 1 && unit != 1 && unit != 3 && unit != 2) {
            hide(View::digThree);
            return;
        }
        note("Reched under for that case with temp=", m_m, " ");
        show(View::digThree, m_m);
    }

    void sixPositions()
    {
        note("nvalue is ------------>", m_nValue);
        note("Now drawing 5 digits");
        note("Current unit is ", m_state.currentUnit);
        note("Unit Number is ", m_state.unitnumber);
        note("nValue ", m_nValue);
        hundredThousands();
        tenThousands();
        thousands();
        const std::int64_t q2 = m_m / 100;
        show(View::digThree, q2);
        const std::int64_t rest = m_m - q2 * 100;
        const int numerator = static_cast<int>(rest / 10);
        const int denominator = static_cast<int>(rest % 10);
        if ((numerator >= 1 || m_state.currentUnit == 3) && !m_wide)
            fraction(numerator, denominator);
        else
            withoutFraction(numerator);
        finish();
    }

    void hundredThousands()
    {
        const auto q5 = static_cast<std::int32_t>(m_m / 100000);
        note("temp1 value is ------------>", q5);
        m_wide = q5 >= 1 && m_m != 88888;
        if (q5 >= 1) {
            note("temp is greater than 0");
            show(View::digZero, q5);
            m_leadShown = true;
        } else {
            hide(View::digZero);
        }
    }

    void tenThousands()
    {
        const std::int64_t q4 = m_m / 10000;
        if (!m_leadShown && q4 < 1 && m_state.dotunit != 3 && m_state.unitnumber != 5) {
            hide(View::digOne);
            if (m_state.unitnumber == 2 || m_state.unitnumber == 3)
                show(View::digOne, q4);
        } else if (m_state.dotunit == 4 && (m_m == 88888 || m_m == 0)) {
            hide(View::digOne);
            m_m = m_m - q4 * 10000;
        } else {
            show(View::digOne, q4 % 10);
            m_leadShown = true;
            m_m = m_m - q4 * 10000;
        }
    }

    void thousands()
    {
        const std::int64_t q3 = m_m / 1000;
        if ((m_leadShown && m_state.currentUnit < 3) || q3 > 0 || m_state.currentUnit == 2 ||
            m_state.unitnumber == 4 || m_state.unitnumber == 5) {
            show(View::digTwo, q3);
            m_m = m_m - q3 * 1000;
            m_leadShown = true;
        } else {
            hide(View::digTwo);
        }
    }

    void fraction(int numerator, int denominator)
    {
        if (m_state.dotunit != 4)
            show(View::numeratorImg, numerator);
        else
            hide(View::numeratorImg);
        if (m_state.currentUnit == 4 && m_state.unitnumber != 4) {
            unhide(View::lineImg);
            show(View::denomImg, denominator);
        } else {
            hide(View::lineImg);
            hide(View::denomImg);
        }
        if ((m_state.unitnumber == 2 && !m_state.lbOZlast) || m_state.unitnumber == 4)
            fractionAsTenths(numerator, denominator);
        if (m_state.lbOZlast)
            displayforLBOZsimple(m_views);
    }

    void fractionAsTenths(int numerator, int denominator)
    {
        if (m_log)
            m_log->push_back("numerator=" + std::to_string(numerator) +
                             ",denomenator=" + std::to_string(denominator));
        unhide(View::numeratorImg);
        hide(View::lineImg);
        hide(View::denomImg);
        setRounded(View::numeratorImg,
                   static_cast<float>(numerator) / static_cast<float>(denominator) * 10.0F);
        if (m_state.unitnumber == 4 && numerator != 0) {
            setWhole(View::numeratorImg, numerator);
            note("Image to print ", numerator, ".bmp");
        }
    }

    void withoutFraction(int numerator)
    {
        if (m_state.unitnumber == 2 && !m_state.lbOZlast) {
            setRounded(View::numeratorImg, static_cast<float>(numerator) * 10.0F);
            unhide(View::numeratorImg);
        } else {
            hide(View::numeratorImg);
        }
        hide(View::lineImg);
        hide(View::denomImg);
        if (m_state.lbOZlast)
            displayforLBOZsimple(m_views);
    }

    void finish()
    {
        if (m_state.unitnumber != 2 && m_state.unitnumber != 3) {
            hide(View::numeratorImg);
            hide(View::lineImg);
            hide(View::denomImg);
        }
        if (m_state.unitnumber == 4)
            unhide(View::numeratorImg);
        if (m_state.highCapacityModel && m_state.unitnumber == 4) {
            hide(View::numeratorImg);
            hide(View::denomImg);
        }
    }

    void hide(View view) { m_views[view].hidden = true; }
    void unhide(View view) { m_views[view].hidden = false; }

    void show(View view, std::int64_t digit)
    {
        unhide(view);
        setWhole(view, digit);
    }

    void setWhole(View view, std::int64_t digit)
    {
        m_views[view].kind = ViewState::Whole;
        m_views[view].whole = digit;
    }

    void setRounded(View view, float digit)
    {
        m_views[view].kind = ViewState::Rounded;
        m_views[view].value = digit;
    }

    void note(const char *text)
    {
        if (m_log)
            m_log->emplace_back(text);
    }

    void note(const char *before, std::int64_t number, const char *after = "")
    {
        if (m_log)
            m_log->push_back(before + std::to_string(number) + after);
    }

    const std::int64_t m_nValue;
    const DigitState &m_state;
    Views &m_views;
    std::vector<std::string> *m_log;
    std::int64_t m_m;
    bool m_leadShown = false;
    bool m_wide = false;
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
