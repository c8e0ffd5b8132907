// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

/// The place that a weight went to with @p carrier, as a person names it.
QString carrierPage(const QString &carrier);

/// One parcel that was weighed.
struct RecentWeight
{
    QString text; ///< as it is copied
    QString unit;
    QDateTime time;
    QStringList places; ///< where it went

    /// "2.72 lb at 10:42:13: clipboard, USPS page"
    QString words() const;

    bool operator==(const RecentWeight &) const = default;
};

/// The latest parcels of this run, the newest first. They are kept nowhere else: whom somebody
/// sends parcels to is nobody's business.
class RecentWeights
{
public:
    static constexpr qsizetype most = 10;

    void add(RecentWeight weight);
    /// The newest went there too; nothing happens where it did already.
    void addPlace(const QString &place);

    const QList<RecentWeight> &all() const { return m_weights; }

private:
    QList<RecentWeight> m_weights;
};
