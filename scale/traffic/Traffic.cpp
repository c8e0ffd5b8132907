// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/traffic/Traffic.h"

#include <QList>

namespace {

/// Sees to it that the lines can have followed each other.
class Order
{
public:
    /// What is wrong; empty if nothing.
    QString take(const TrafficLine &line)
    {
        if (line.time < m_latest)
            return QStringLiteral("the time goes back");
        m_latest = line.time;
        if (line.kind == TrafficLine::Kind::Open)
            m_opened = m_opened || line.outcome == TrafficLine::Outcome::Done;
        else if ((line.kind == TrafficLine::Kind::Send || line.kind == TrafficLine::Kind::Read) &&
                 !m_opened)
            return QStringLiteral("a report, but no device was opened before");
        return {};
    }

private:
    std::chrono::milliseconds m_latest{0};
    bool m_opened = false;
};

bool isRemark(const QByteArray &line)
{
    return line.isEmpty() || line.startsWith('#');
}

} // namespace

const QByteArray Traffic::heading("postal-scale traffic 1");

std::optional<Traffic> Traffic::parse(const QByteArray &text, QString *trouble)
{
    const QList<QByteArray> rows = text.split('\n');
    const auto refuse = [trouble](qsizetype row, const QString &reason) {
        *trouble = QStringLiteral("line %1: %2").arg(row + 1).arg(reason);
        return std::nullopt;
    };
    if (rows.constFirst().trimmed() != heading)
        return refuse(0, QStringLiteral("not \"%1\"").arg(QLatin1String(heading)));
    Traffic traffic;
    Order order;
    for (qsizetype row = 1; row < rows.size(); ++row) {
        const QByteArray content = rows.at(row).trimmed();
        if (isRemark(content))
            continue;
        const std::optional<TrafficLine> line = TrafficLine::parse(content);
        if (!line)
            return refuse(row, QStringLiteral("cannot be understood"));
        if (const QString reason = order.take(*line); !reason.isEmpty())
            return refuse(row, reason);
        traffic.lines.push_back(*line);
    }
    return traffic;
}
