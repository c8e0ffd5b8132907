// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/AutofillRules.h"

#include "tests/rules/NumberText.h"

#include <charconv>

namespace rules {

namespace {

float floatValue(const std::string &text)
{
    if (text.empty() || text.front() < '0' || text.front() > '9')
        return 0;
    float number = 0;
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? number : 0;
}

class Filling
{
public:
    Filling(const WeightTexts &weightTexts, const Page &openPage)
        : m_texts(weightTexts)
        , m_page(openPage)
    {
    }

    void fedex()
    {
        const auto pounds = static_cast<float>(floatValue(m_texts.BASIC) * 0.0022045);
        assign("psdData.mpsRowDataList[0].weight", fixedText(pounds, 3));
        for (const char *name :
             {"perPackageWeight", "aryShipmentWeight[0]", "aryShipmentWeight[1]",
              "aryShipmentWeight[2]", "aryShipmentWeight[3]", "aryShipmentWeight[4]",
              "aryShipmentWeight[5]", "arrayWeight[0]", "arrayWeight[1]", "arrayWeight[2]",
              "arrayWeight[3]", "arrayWeight[4]"})
            assign(name, m_texts.EXPORT);
    }

    void ups()
    {
        for (const char *name :
             {"formbean.shipping.weight", "formbean.packageBean.weight", "shipmentWeight", "weight",
              "shipmentBean.weight", "packageBean.weight"})
            assign(name, m_texts.LB);
        for (const char *name : {"estimateShipmentWeight",
                                 "weight",
                                 "weight1",
                                 "weight2",
                                 "weight3",
                                 "weight4",
                                 "weight5",
                                 "weight6",
                                 "weight7",
                                 "weight8",
                                 "weight9",
                                 "weight10",
                                 "TotalWeight00",
                                 "shipmentBean.weight",
                                 "shipmentBean.dimWeight",
                                 "weights1",
                                 "weights2",
                                 "weights3",
                                 "weights4",
                                 "weights5",
                                 "approxWeight",
                                 "totalWeight"})
            assign(name, m_texts.EXPORT);
    }

    void uspsAlways()
    {
        assign("ctl00$ContentPlaceHolder1$TextBoxPounds", m_texts.LB);
        assign("shippingWeightInPounds", m_texts.LB);
        assign("ctl00$maincontent$txtPounds", m_texts.LB);
        assign("ctl00$ContentPlaceHolder1$TextBoxOunces", m_texts.OZ);
        assign("shippingWeightInOunces", m_texts.OZ);
        assign("ctl00$maincontent$txtOunces", m_texts.OZ);
    }

    void uspsRows()
    {
        const bool empty02 = isEmpty(mainBox("02"));
        const bool empty02b = isEmpty(secondBox("02"));
        const bool empty05 = isEmpty(mainBox("05"));
        const bool empty05b = isEmpty(secondBox("05"));
        const bool empty08 = isEmpty(mainBox("08"));
        const bool empty08b = isEmpty(secondBox("08"));
        const bool empty11 = isEmpty(mainBox("11"));
        isEmpty(mainBox("14"));

        for (const char *row : {"02", "05", "08", "11"})
            radioRow(row);
        flatRate();
        radioRow("14");

        if (empty05b && empty05)
            fillPair("05");
        if (empty02b && empty02)
            fillPair("02");
        if (empty08b && empty08)
            fillPair("08");
        if (!empty05b && empty05)
            fillTotalOunces("05");
        if (!empty02b && empty02)
            fillTotalOunces("02");
        if (!empty08b && empty08)
            fillTotalOunces("08");
        if (empty11)
            fillTotalOunces("11");
    }

    AutofillOutcome outcome;

private:
    static std::string mainBox(const std::string &row)
    {
        return "ctl00$ContentPlaceHolder1$ctl" + row + "$TextBoxWeight";
    }

    static std::string secondBox(const std::string &row) { return mainBox(row) + "_2"; }

    void radioRow(const std::string &row)
    {
        const std::string start = "ctl00_ContentPlaceHolder1_ctl" + row;
        const bool ounces = isChecked(start + "_ctl01");
        const bool pounds = isChecked(start + "_ctl02");
        if (ounces) {
            outcome.log.emplace_back("Ounces is selected");
            fillTotalOunces(row);
        }
        if (pounds) {
            outcome.log.emplace_back("Pound is selected");
            assign(mainBox(row),
                   fixedText(floatValue(m_texts.LB) + floatValue(m_texts.OZ) / 16.0F, 6));
        }
    }

    void flatRate()
    {
        if (!isChecked("flatRateNo"))
            return;
        outcome.log.emplace_back("Enter Weight is selected");
        assign("cnsCartList[0].labelPkg.pounds", m_texts.LB);
        assign("cnsCartList[0].labelPkg.ounces", m_texts.OZ);
    }

    void fillPair(const std::string &row)
    {
        assign(mainBox(row), m_texts.LB);
        assign(secondBox(row), m_texts.OZ);
    }

    void fillTotalOunces(const std::string &row)
    {
        assign(mainBox(row), fixedText(floatValue(m_texts.LB) * 16.0F + floatValue(m_texts.OZ), 6));
    }

    void assign(const std::string &name, const std::string &text)
    {
        outcome.scripts.push_back(valueScript(name) + "=" + text);
    }

    bool isEmpty(const std::string &name)
    {
        outcome.scripts.push_back(valueScript(name));
        const auto field = m_page.fields.find(name);
        return field != m_page.fields.end() && field->second.empty();
    }

    bool isChecked(const std::string &id)
    {
        outcome.scripts.push_back("document.getElementById('" + id + "').checked");
        const auto button = m_page.checked.find(id);
        return button != m_page.checked.end() && button->second;
    }

    static std::string valueScript(const std::string &name)
    {
        return "document.getElementsByName('" + name + "')[0].value";
    }

    const WeightTexts &m_texts;
    const Page &m_page;
};

} // namespace

AutofillOutcome autofill(int carrier, const WeightTexts &texts, const CarrierFlags &flags,
                         const Page &page)
{
    Filling filling(texts, page);
    if (carrier == 2 && flags.SendtoFedex)
        filling.fedex();
    if (carrier == 1 && flags.SendtoUPS)
        filling.ups();
    if (carrier == 0) {
        filling.uspsAlways();
        if (flags.SendtoUSPS)
            filling.uspsRows();
    }
    return filling.outcome;
}

} // namespace rules
