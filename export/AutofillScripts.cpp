// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/AutofillScripts.h"

#include "base/SinglePrecision.h"

#include <array>
#include <charconv>

namespace {

// The literals are kept whole and on one line each, so that they can be searched for and compared.
// clang-format off

constexpr std::array fedexTable = {
    Assignment{"document.getElementsByName('psdData.mpsRowDataList[0].weight')[0].value=%@", PageValue::PoundsFromGrams},
    Assignment{"document.getElementsByName('perPackageWeight')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('aryShipmentWeight[0]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('aryShipmentWeight[1]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('aryShipmentWeight[2]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('aryShipmentWeight[3]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('aryShipmentWeight[4]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('aryShipmentWeight[5]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('arrayWeight[0]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('arrayWeight[1]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('arrayWeight[2]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('arrayWeight[3]')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('arrayWeight[4]')[0].value=%@", PageValue::Export},
};

constexpr std::array upsTable = {
    Assignment{"document.getElementsByName('formbean.shipping.weight')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('formbean.packageBean.weight')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('shipmentWeight')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('weight')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('shipmentBean.weight')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('packageBean.weight')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('estimateShipmentWeight')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight1')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight2')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight3')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight4')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight5')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight6')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight7')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight8')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight9')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weight10')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('TotalWeight00')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('shipmentBean.weight')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('shipmentBean.dimWeight')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weights1')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weights2')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weights3')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weights4')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('weights5')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('approxWeight')[0].value=%@", PageValue::Export},
    Assignment{"document.getElementsByName('totalWeight')[0].value=%@", PageValue::Export},
};

constexpr std::array uspsTable = {
    Assignment{"document.getElementsByName('ctl00$ContentPlaceHolder1$TextBoxPounds')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('shippingWeightInPounds')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('ctl00$maincontent$txtPounds')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('ctl00$ContentPlaceHolder1$TextBoxOunces')[0].value=%@", PageValue::Ounces},
    Assignment{"document.getElementsByName('shippingWeightInOunces')[0].value=%@", PageValue::Ounces},
    Assignment{"document.getElementsByName('ctl00$maincontent$txtOunces')[0].value=%@", PageValue::Ounces},
};

constexpr std::array uspsLabelTable = {
    Assignment{"document.getElementsByName('cnsCartList[0].labelPkg.pounds')[0].value=%@", PageValue::Pounds},
    Assignment{"document.getElementsByName('cnsCartList[0].labelPkg.ounces')[0].value=%@", PageValue::Ounces},
};

constexpr std::array rows = {
    WeightRow{
        .box = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl02$TextBoxWeight')[0].value",
        .secondBox = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl02$TextBoxWeight_2')[0].value",
        .ouncesChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl02_ctl01').checked",
        .poundsChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl02_ctl02').checked",
        .total = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl02$TextBoxWeight')[0].value=%f",
        .poundsOfPair = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl02$TextBoxWeight')[0].value=%@",
        .ouncesOfPair = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl02$TextBoxWeight_2')[0].value=%@",
    },
    WeightRow{
        .box = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl05$TextBoxWeight')[0].value",
        .secondBox = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl05$TextBoxWeight_2')[0].value",
        .ouncesChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl05_ctl01').checked",
        .poundsChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl05_ctl02').checked",
        .total = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl05$TextBoxWeight')[0].value=%f",
        .poundsOfPair = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl05$TextBoxWeight')[0].value=%@",
        .ouncesOfPair = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl05$TextBoxWeight_2')[0].value=%@",
    },
    WeightRow{
        .box = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl08$TextBoxWeight')[0].value",
        .secondBox = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl08$TextBoxWeight_2')[0].value",
        .ouncesChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl08_ctl01').checked",
        .poundsChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl08_ctl02').checked",
        .total = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl08$TextBoxWeight')[0].value=%f",
        .poundsOfPair = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl08$TextBoxWeight')[0].value=%@",
        .ouncesOfPair = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl08$TextBoxWeight_2')[0].value=%@",
    },
    WeightRow{
        .box = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl11$TextBoxWeight')[0].value",
        .secondBox = nullptr,
        .ouncesChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl11_ctl01').checked",
        .poundsChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl11_ctl02').checked",
        .total = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl11$TextBoxWeight')[0].value=%f",
        .poundsOfPair = nullptr,
        .ouncesOfPair = nullptr,
    },
    WeightRow{
        .box = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl14$TextBoxWeight')[0].value",
        .secondBox = nullptr,
        .ouncesChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl14_ctl01').checked",
        .poundsChosen = "document.getElementById('ctl00_ContentPlaceHolder1_ctl14_ctl02').checked",
        .total = "document.getElementsByName('ctl00$ContentPlaceHolder1$ctl14$TextBoxWeight')[0].value=%f",
        .poundsOfPair = nullptr,
        .ouncesOfPair = nullptr,
    },
};
// clang-format on

constexpr float ouncesPerPound = 16;
constexpr double poundsPerGram = 0.0022045;

} // namespace

const char *const uspsLabelQuery = "document.getElementById('flatRateNo').checked";

std::span<const Assignment> fedexAssignments()
{
    return fedexTable;
}

std::span<const Assignment> upsAssignments()
{
    return upsTable;
}

std::span<const Assignment> uspsAssignments()
{
    return uspsTable;
}

std::span<const Assignment> uspsLabelAssignments()
{
    return uspsLabelTable;
}

const WeightRow &uspsRow(RowGroup group)
{
    return rows.at(static_cast<std::size_t>(group));
}

float floatValue(const QString &text)
{
    const QByteArray characters = text.trimmed().toLatin1();
    float value = 0;
    std::from_chars(characters.begin(), characters.end(), value);
    return value;
}

float totalOunces(const QString &pounds, const QString &ounces)
{
    return floatValue(pounds) * ouncesPerPound + floatValue(ounces);
}

float totalPounds(const QString &pounds, const QString &ounces)
{
    return floatValue(pounds) + floatValue(ounces) / ouncesPerPound;
}

float poundsFromGrams(const QString &grams)
{
    return static_cast<float>(floatValue(grams) * poundsPerGram);
}

std::string_view scriptStart(const char *literal)
{
    constexpr std::size_t mark = 2;
    const std::string_view whole(literal);
    return whole.substr(0, whole.size() - mark);
}

QString scriptText(const char *literal, const QString &text)
{
    const std::string_view start = scriptStart(literal);
    return QLatin1String(start.data(), static_cast<qsizetype>(start.size())) + text;
}
