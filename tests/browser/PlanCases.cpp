// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the script in the page is to do with the USPS plan of a kilogram, by the independent
// statement of the rules, in every state of the page's boxes, and of its rows by twos:
//
//   browser-plan-cases
//
// The first line is the plan's steps as they go over the socket. Then a line for each state of the
// page, the numbers of rules::PageStates and the hash of what is done to it.

#include "browser/link/BrowserMessage.h"
#include "export/FillProcedure.h"
#include "tests/browser/CarrierFill.h"
#include "tests/rules/PageStates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

namespace {

/// A kilogram, as fillCarrier() has it.
const rules::WeightTexts kilogram{.LB = "2", .OZ = "4", .EXPORT = "2.205", .BASIC = "1000"};

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

void print(const rules::PageStates &states)
{
    const rules::Page page = rules::pageOf(states);
    QString seen;
    for (const std::string &script :
         rules::autofill(0, kilogram, {.SendtoUSPS = true}, page).scripts)
        seen += visibleIn(page, script);
    for (const int state : states)
        std::printf("%d ", state);
    std::printf("%u\n", hashOf(seen));
}

} // namespace

int main()
{
    const QByteArray message = browserPlanMessage(1, 1, carrierPlan(QStringLiteral("USPS")));
    const QJsonValue plan = QJsonDocument::fromJson(message).object()[QLatin1String("plan")];
    const QByteArray steps =
        QJsonDocument(plan[QLatin1String("steps")].toArray()).toJson(QJsonDocument::Compact);
    std::printf("%s\n", steps.constData());
    for (const rules::PageStates &states : rules::everyPairOfRows())
        print(states);
    for (const rules::PageStates &states : rules::everyCombinationOfBoxes())
        print(states);
}
