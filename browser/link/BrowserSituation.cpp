// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserSituation.h"

#include <array>
#include <utility>

QString carrierName(const QString &host)
{
    static const std::array<std::pair<QLatin1String, QLatin1String>, 3> carriers = {{
        {QLatin1String("usps.com"), QLatin1String("USPS")},
        {QLatin1String("ups.com"), QLatin1String("UPS")},
        {QLatin1String("fedex.com"), QLatin1String("FedEx")},
    }};
    for (const auto &[domain, carrier] : carriers) {
        if (host == domain || host.endsWith(QLatin1Char('.') + domain))
            return carrier;
    }
    return host;
}

QString BrowserSituation::text() const
{
    switch (kind) {
    case Kind::NoBrowser: break;
    case Kind::WrongVersion:
        return QStringLiteral("Browser extension %1 does not fit this program").arg(name);
    case Kind::NoCarrierPage: return QStringLiteral("Browser linked, waiting for a carrier page");
    case Kind::PageOpen:
        return QStringLiteral("Browser linked, %1 page open").arg(carrierName(name));
    case Kind::Filling:
        return QStringLiteral("Filling %1: %2 %3")
            .arg(carrierName(name))
            .arg(fields)
            .arg(fields == 1 ? QStringLiteral("field") : QStringLiteral("fields"));
    case Kind::Impossible: return QStringLiteral("Browsers cannot link: ") + name;
    case Kind::NotAnswering: return QStringLiteral("Page not answering");
    }
    return QStringLiteral("No browser linked");
}
