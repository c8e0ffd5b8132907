// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the script in the page is to do with the USPS plan of a kilogram, by the independent
// statement of the rules, in every state of the page's boxes, and of its rows by twos:
//
//   browser-plan-cases
//
// The first line is the plan's steps as they go over the socket. Then a line for each state of the
// page: five numbers for the rows and one for the label's choice, and the hash of what is done to
// it. In a row's number the digits of base three stand for main box, second box, ounces button and
// pounds button, the lowest first: 0 is missing, 1 filled or not ticked, 2 empty or ticked.

#include "browser/link/BrowserMessage.h"
#include "export/FillProcedure.h"
#include "tests/browser/CarrierFill.h"
#include "tests/rules/AutofillRules.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <cstdio>
#include <random>

namespace {

constexpr std::array<const char *, 5> groups = {"02", "05", "08", "11", "14"};
using States = std::array<int, groups.size() + 1>;

constexpr int rowStates = 81;
constexpr int boxStates = 9;

/// A kilogram, as fillCarrier() has it.
const rules::WeightTexts kilogram{.LB = "2", .OZ = "4", .EXPORT = "2.205", .BASIC = "1000"};

void placeBox(rules::Page &page, const std::string &name, int part)
{
    if (part != 0)
        page.fields[name] = std::string(part == 2 ? "" : "7");
}

void placeButton(rules::Page &page, const std::string &id, int part)
{
    if (part != 0)
        page.checked[id] = part == 2;
}

rules::Page pageOf(const States &states)
{
    rules::Page page;
    for (std::size_t row = 0; row < groups.size(); ++row) {
        const std::string box =
            std::string("ctl00$ContentPlaceHolder1$ctl") + groups.at(row) + "$TextBoxWeight";
        const std::string button = std::string("ctl00_ContentPlaceHolder1_ctl") + groups.at(row);
        const int state = states.at(row);
        placeBox(page, box, state % 3);
        placeBox(page, box + "_2", state / 3 % 3);
        placeButton(page, button + "_ctl01", state / 9 % 3);
        placeButton(page, button + "_ctl02", state / 27);
    }
    placeButton(page, "flatRateNo", states.back());
    return page;
}

/// One line for each thing that a page can see.
QString visibleIn(const rules::Page &page, const std::string &script)
{
    const QString text = QString::fromStdString(script);
    const QString name = text.section(QLatin1Char('\''), 1, 1);
    const std::string key = name.toStdString();
    if (text.contains(QLatin1String("getElementById")))
        return QStringLiteral("id %1\n").arg(name) +
               (page.checked.contains(key) ? QStringLiteral("checked %1\n").arg(name) : QString());
    const QString lookup = QStringLiteral("name %1\n").arg(name);
    if (!page.fields.contains(key))
        return lookup;
    const QString literal = text.section(QLatin1String("].value="), 1);
    if (literal.isEmpty())
        return lookup + QStringLiteral("read %1\n").arg(name);
    return lookup + QStringLiteral("write %1 %2\n").arg(name).arg(literal.toDouble());
}

std::uint32_t hashOf(const QString &text)
{
    std::uint32_t hash = 2166136261U; // FNV-1a
    for (const QChar character : text)
        hash = (hash ^ character.unicode()) * 16777619U;
    return hash;
}

void print(const States &states)
{
    const rules::Page page = pageOf(states);
    QString seen;
    for (const std::string &script :
         rules::autofill(0, kilogram, {.SendtoUSPS = true}, page).scripts)
        seen += visibleIn(page, script);
    for (const int state : states)
        std::printf("%d ", state);
    std::printf("%u\n", hashOf(seen));
}

void printEveryPairOfRows()
{
    std::mt19937 random(20261122);
    for (std::size_t one = 0; one < groups.size(); ++one) {
        for (std::size_t other = one + 1; other < groups.size(); ++other) {
            for (int pair = 0; pair < rowStates * rowStates; ++pair) {
                States states{};
                for (int &state : states)
                    state = static_cast<int>(random() % rowStates);
                states.at(one) = pair % rowStates;
                states.at(other) = pair / rowStates;
                states.back() %= 3;
                print(states);
            }
        }
    }
}

/// The final fills look at the boxes of all rows.
void printEveryCombinationOfBoxes()
{
    constexpr int combinations = boxStates * boxStates * boxStates * 3 * 3;
    for (int combination = 0; combination < combinations; ++combination) {
        States states{};
        int rest = combination;
        for (std::size_t row = 0; row < groups.size(); ++row) {
            const int choices = row < 3 ? boxStates : 3;
            states.at(row) = rest % choices;
            rest /= choices;
        }
        print(states);
    }
}

} // namespace

int main()
{
    const QByteArray message = browserPlanMessage(1, 1, carrierPlan(QStringLiteral("USPS")));
    const QJsonValue plan = QJsonDocument::fromJson(message).object()[QLatin1String("plan")];
    const QByteArray steps =
        QJsonDocument(plan[QLatin1String("steps")].toArray()).toJson(QJsonDocument::Compact);
    std::printf("%s\n", steps.constData());
    printEveryPairOfRows();
    printEveryCombinationOfBoxes();
}
