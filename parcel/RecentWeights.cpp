// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/RecentWeights.h"

#include <utility>

QString carrierPage(const QString &carrier)
{
    return carrier.isEmpty() ? QStringLiteral("a page") : carrier + QStringLiteral(" page");
}

QString RecentWeight::words() const
{
    const QString weighed =
        QStringLiteral("%1 %2 at %3").arg(text, unit, time.toString(QStringLiteral("HH:mm:ss")));
    return places.isEmpty() ? weighed + QStringLiteral(", went nowhere")
                            : weighed + QStringLiteral(": ") + places.join(QStringLiteral(", "));
}

void RecentWeights::add(RecentWeight weight)
{
    m_weights.prepend(std::move(weight));
    if (m_weights.size() > most)
        m_weights.removeLast();
}

void RecentWeights::addPlace(const QString &place)
{
    if (!m_weights.isEmpty() && !m_weights.constFirst().places.contains(place))
        m_weights.first().places.append(place);
}
