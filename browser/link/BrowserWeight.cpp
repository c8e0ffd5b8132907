// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserWeight.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString stateName(WeightState state)
{
    switch (state) {
    case WeightState::Settled: return QStringLiteral("settled");
    case WeightState::Moving: return QStringLiteral("moving");
    case WeightState::Empty: return QStringLiteral("empty");
    case WeightState::BelowZero: return QStringLiteral("below zero");
    case WeightState::Held: return QStringLiteral("held");
    case WeightState::Silent: return QStringLiteral("silent");
    case WeightState::NoScale: return QStringLiteral("no scale");
    case WeightState::Unclear: break;
    }
    return QStringLiteral("unclear");
}

QJsonValue textsValue(const std::optional<UnitTexts> &texts)
{
    if (!texts)
        return {};
    const QJsonObject numbers{{QStringLiteral("lb"), texts->exact.pounds},
                              {QStringLiteral("oz"), texts->exact.ounces},
                              {QStringLiteral("kg"), texts->exact.kilograms},
                              {QStringLiteral("g"), texts->exact.grams}};
    return QJsonObject{{QStringLiteral("exact"), numbers},
                       {QStringLiteral("lb"), texts->pounds},
                       {QStringLiteral("oz"), texts->ounces},
                       {QStringLiteral("kg"), texts->kilograms},
                       {QStringLiteral("g"), texts->grams},
                       {QStringLiteral("lb oz"),
                        QStringLiteral("%1 %2").arg(texts->wholePounds, texts->restOunces)}};
}

} // namespace

QByteArray browserWeightMessage(const BrowserWeight &weight)
{
    const QJsonObject value{
        {QStringLiteral("state"), stateName(weight.state)},
        {QStringLiteral("texts"), textsValue(weight.texts)},
        {QStringLiteral("unit"), weight.unit},
        {QStringLiteral("age"), static_cast<qint64>(weight.age.count())},
        {QStringLiteral("parcel"), weight.parcel ? QJsonValue(*weight.parcel) : QJsonValue()},
        {QStringLiteral("news"), weight.isNews}};
    return QJsonDocument(QJsonObject{{QStringLiteral("weight"), value}})
        .toJson(QJsonDocument::Compact);
}
