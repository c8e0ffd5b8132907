// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>

/// What only the running window knows, and tells --doctor and later starts.
struct WindowSituation
{
    QString platform;    ///< the toolkit's name for what the window is on; empty if there is none
    QString browserLink; ///< as the window itself says it
    bool hasBrowser = false;
    bool browserCanLink = true;
    bool browserFits = true; ///< the extension understands the program
    bool isSeen = true;      ///< see isBroughtToFront(); a window of before does not say

    static WindowSituation fromJson(const QJsonObject &object);
    QJsonObject toJson() const;

    bool operator==(const WindowSituation &) const = default;
};
