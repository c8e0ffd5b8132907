// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/traffic/TrafficLine.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>

namespace {

using LineKind = TrafficLine::Kind;
using Outcome = TrafficLine::Outcome;

const std::array<QLatin1String, 7> kindWords{QLatin1String("attach"), QLatin1String("change"),
                                             QLatin1String("detach"), QLatin1String("open"),
                                             QLatin1String("send"),   QLatin1String("read"),
                                             QLatin1String("about")};
const QLatin1String failedWord("failed");
const QLatin1String deniedWord("denied");

QString hexNumber(std::uint16_t number)
{
    return QStringLiteral("%1").arg(number, 4, 16, QLatin1Char('0'));
}

QString hexBytes(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(' '));
}

/// What stands behind the kind.
QStringList details(const TrafficLine &line)
{
    switch (line.kind) {
    case LineKind::Attach:
    case LineKind::Change:
    case LineKind::Detach:
        return {line.device,
                hexNumber(line.vendorId) + QLatin1Char(':') + hexNumber(line.productId)};
    case LineKind::Open:
        if (line.outcome == Outcome::Done)
            return {line.device};
        return {line.device,
                (line.outcome == Outcome::Denied ? deniedWord : failedWord) + QLatin1Char(':'),
                line.reason};
    case LineKind::About:
        return {line.device, hexBytes(line.report) + QLatin1Char(':'), line.reason};
    case LineKind::Send:
    case LineKind::Read: break;
    }
    QStringList words;
    if (line.outcome == Outcome::Failed)
        words.append(failedWord);
    if (!line.report.isEmpty())
        words.append(hexBytes(line.report));
    return words;
}

/// One group for each part; a kind's own parts are empty for the others.
const QRegularExpression &grammar()
{
    static const QRegularExpression expression(QRegularExpression::anchoredPattern(QStringLiteral(
        "(?<seconds>[0-9]{1,9})\\.(?<milliseconds>[0-9]{3}) "
        "(?:(?<presence>attach|change|detach) (?<node>[a-z0-9]+) "
        "(?<vendor>[0-9a-f]{4}):(?<product>[0-9a-f]{4})"
        "|(?<open>open) (?<opened>[a-z0-9]+)(?: (?<refusal>failed|denied): (?<reason>.*))?"
        "|(?<about>about) (?<told>[a-z0-9]+)(?<descriptor>(?: [0-9a-f]{2})+): (?<name>.*)"
        "|(?<send>send)(?<unsent> failed)?(?<sent>(?: [0-9a-f]{2})+)"
        "|(?<read>read)(?:(?<unread> failed)|(?<input>(?: [0-9a-f]{2})*)))")));
    return expression;
}

TrafficLine presenceOf(const QRegularExpressionMatch &match)
{
    // The first of the words are these, in the order of the kinds.
    const auto word = std::find(kindWords.begin(), kindWords.end(), match.captured(u"presence"));
    return {.kind = static_cast<LineKind>(word - kindWords.begin()),
            .device = match.captured(u"node"),
            .vendorId = match.captured(u"vendor").toUShort(nullptr, 16),
            .productId = match.captured(u"product").toUShort(nullptr, 16)};
}

TrafficLine openOf(const QRegularExpressionMatch &match)
{
    TrafficLine line{.kind = LineKind::Open, .device = match.captured(u"opened")};
    const QString refusal = match.captured(u"refusal");
    if (refusal.isEmpty())
        return line;
    line.outcome = refusal == deniedWord ? Outcome::Denied : Outcome::Failed;
    line.reason = match.captured(u"reason");
    return line;
}

TrafficLine reportOf(LineKind kind, const QString &failed, const QString &bytes)
{
    return {.kind = kind,
            .outcome = failed.isEmpty() ? Outcome::Done : Outcome::Failed,
            .report = QByteArray::fromHex(bytes.toLatin1())};
}

TrafficLine lineOf(const QRegularExpressionMatch &match)
{
    if (match.hasCaptured(u"presence"))
        return presenceOf(match);
    if (match.hasCaptured(u"open"))
        return openOf(match);
    if (match.hasCaptured(u"about"))
        return {.kind = LineKind::About,
                .device = match.captured(u"told"),
                .report = QByteArray::fromHex(match.captured(u"descriptor").toLatin1()),
                .reason = match.captured(u"name")};
    if (match.hasCaptured(u"send"))
        return reportOf(LineKind::Send, match.captured(u"unsent"), match.captured(u"sent"));
    return reportOf(LineKind::Read, match.captured(u"unread"), match.captured(u"input"));
}

} // namespace

QByteArray TrafficLine::toText() const
{
    const auto count = time.count();
    const QString clock =
        QStringLiteral("%1.%2").arg(count / 1000).arg(count % 1000, 3, 10, QLatin1Char('0'));
    const QStringList words =
        QStringList{clock, kindWords.at(static_cast<std::size_t>(kind))} + details(*this);
    return words.join(QLatin1Char(' ')).toUtf8();
}

std::optional<TrafficLine> TrafficLine::parse(const QByteArray &text)
{
    const QRegularExpressionMatch match = grammar().match(QString::fromUtf8(text));
    if (!match.hasMatch())
        return std::nullopt;
    TrafficLine line = lineOf(match);
    line.time = std::chrono::milliseconds(match.captured(u"seconds").toLongLong() * 1000 +
                                          match.captured(u"milliseconds").toLongLong());
    return line;
}
