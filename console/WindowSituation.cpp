// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/WindowSituation.h"

namespace {

const QLatin1String platformKey("platform");
const QLatin1String browserLinkKey("browserLink");
const QLatin1String hasBrowserKey("hasBrowser");
const QLatin1String browserCanLinkKey("browserCanLink");
const QLatin1String browserFitsKey("browserFits");
const QLatin1String isSeenKey("isSeen");

} // namespace

WindowSituation WindowSituation::fromJson(const QJsonObject &object)
{
    return {.platform = object.value(platformKey).toString(),
            .browserLink = object.value(browserLinkKey).toString(),
            .hasBrowser = object.value(hasBrowserKey).toBool(),
            .browserCanLink = object.value(browserCanLinkKey).toBool(true),
            .browserFits = object.value(browserFitsKey).toBool(true),
            .isSeen = object.value(isSeenKey).toBool(true)};
}

QJsonObject WindowSituation::toJson() const
{
    return {{platformKey, platform},       {browserLinkKey, browserLink},
            {hasBrowserKey, hasBrowser},   {browserCanLinkKey, browserCanLink},
            {browserFitsKey, browserFits}, {isSeenKey, isSeen}};
}
