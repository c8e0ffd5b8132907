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

namespace {

QString fillingText(const QString &carrier, const BrowserSituation &filling)
{
    // What the person has to look at comes before how well the rest went.
    if (filling.otherNumbers > 0)
        return QStringLiteral("%1: %2").arg(
            carrier.isEmpty() ? QStringLiteral("Page") : carrier,
            filling.otherNumbers == 1
                ? QStringLiteral("1 field shows another number")
                : QStringLiteral("%1 fields show another number").arg(filling.otherNumbers));
    return QStringLiteral("Filling %1: %2 %3")
        .arg(carrier.isEmpty() ? QStringLiteral("the page") : carrier)
        .arg(filling.fields)
        .arg(filling.fields == 1 ? QStringLiteral("field") : QStringLiteral("fields"));
}

} // namespace

QString BrowserSituation::text() const
{
    const QString carrier = carrierName(name);
    switch (kind) {
    case Kind::NoBrowser: break;
    case Kind::WrongVersion:
        return QStringLiteral("Browser extension %1 does not fit this program").arg(name);
    case Kind::NoCarrierPage: return QStringLiteral("Browser linked, waiting for a carrier page");
    case Kind::PageOpen:
        return carrier.isEmpty() ? QStringLiteral("Browser linked, a page open")
                                 : QStringLiteral("Browser linked, %1 page open").arg(carrier);
    case Kind::Filling: return fillingText(carrier, *this);
    case Kind::Impossible: return QStringLiteral("Browsers cannot link: ") + name;
    case Kind::NotAnswering: return QStringLiteral("Page not answering");
    }
    return QStringLiteral("No browser linked");
}
