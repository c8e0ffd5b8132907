// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "console/SingleInstanceActivation.h"

#include <QJsonObject>

// What a later start asks of the first one.

enum class InstanceRequest { Unknown, Raise, Reading, Situation, Follow, Operate };

QJsonObject raiseRequest(const ActivationRight &right);
QJsonObject readingRequest();
/// For --doctor: what only the running window knows.
QJsonObject situationRequest();

/// For --follow: all readings from now on, on the same connection.
QJsonObject followRequest();

/// For the verbs: @p value may be empty.
QJsonObject operateRequest(const QString &verb, const QString &value);
QString verbOf(const QJsonObject &request);
QString valueOf(const QJsonObject &request);

/// The answer of one that only reads for others to a start that wants the scale for itself: it ends
/// at once.
QJsonObject yieldAnswer();
bool isYield(const QJsonObject &answer);

/// The answer to one that wants to follow where there is no place for a further one.
QJsonObject tooManyAnswer();
bool isTooMany(const QJsonObject &answer);

InstanceRequest requestOf(const QJsonObject &object);
