// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "console/SingleInstanceActivation.h"

#include <QJsonObject>

// What a later start asks of the first one.

enum class InstanceRequest { Unknown, Raise, Reading, Situation };

QJsonObject raiseRequest(const ActivationRight &right);
QJsonObject readingRequest();
/// For --doctor: what only the running window knows.
QJsonObject situationRequest();

InstanceRequest requestOf(const QJsonObject &object);
