// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/SingleInstanceRequest.h"

namespace {

const QString key = QStringLiteral("request");
const QString raising = QStringLiteral("raise");
const QString reading = QStringLiteral("reading");
const QString situation = QStringLiteral("situation");
const QString follow = QStringLiteral("follow");
const QString operate = QStringLiteral("operate");
const QString verbKey = QStringLiteral("verb");
const QString valueKey = QStringLiteral("value");
const QString yields = QStringLiteral("yields");
const QString tooMany = QStringLiteral("tooMany");

} // namespace

QJsonObject raiseRequest(const ActivationRight &right)
{
    QJsonObject object = right.toJson();
    object.insert(key, raising);
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

QJsonObject followRequest()
{
    return {{key, follow}};
}

QJsonObject operateRequest(const QString &verb, const QString &value)
{
    return {{key, operate}, {verbKey, verb}, {valueKey, value}};
}

QString verbOf(const QJsonObject &request)
{
    return request.value(verbKey).toString();
}

QString valueOf(const QJsonObject &request)
{
    return request.value(valueKey).toString();
}

QJsonObject yieldAnswer()
{
    return {{yields, true}};
}

bool isYield(const QJsonObject &answer)
{
    return answer.value(yields).toBool();
}

QJsonObject tooManyAnswer()
{
    return {{tooMany, true}};
}

bool isTooMany(const QJsonObject &answer)
{
    return answer.value(tooMany).toBool();
}

InstanceRequest requestOf(const QJsonObject &object)
{
    const QString name = object.value(key).toString();
    if (name == raising)
        return InstanceRequest::Raise;
    if (name == reading)
        return InstanceRequest::Reading;
    if (name == situation)
        return InstanceRequest::Situation;
    if (name == follow)
        return InstanceRequest::Follow;
    if (name == operate)
        return InstanceRequest::Operate;
    return InstanceRequest::Unknown;
}
