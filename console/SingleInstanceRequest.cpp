// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/SingleInstanceRequest.h"

namespace {

const QString key = QStringLiteral("request");
const QString raise = QStringLiteral("raise");
const QString reading = QStringLiteral("reading");
const QString situation = QStringLiteral("situation");

} // namespace

QJsonObject raiseRequest(const ActivationRight &right)
{
    QJsonObject object = right.toJson();
    object.insert(key, raise);
    return object;
}

QJsonObject readingRequest()
{
    return {{key, reading}};
}

QJsonObject situationRequest()
{
    return {{key, situation}};
}

InstanceRequest requestOf(const QJsonObject &object)
{
    const QString name = object.value(key).toString();
    if (name == raise)
        return InstanceRequest::Raise;
    if (name == reading)
        return InstanceRequest::Reading;
    if (name == situation)
        return InstanceRequest::Situation;
    return InstanceRequest::Unknown;
}
