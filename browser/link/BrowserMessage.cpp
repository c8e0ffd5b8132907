// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <cmath>
#include <limits>

namespace {

const QLatin1String helloKey("hello");
const QLatin1String currentKey("current");
const QLatin1String focusedKey("focused");
const QLatin1String ranKey("ran");
const QLatin1String runKey("run");

template <typename Number> std::optional<Number> wholeNumber(const QJsonValue &value)
{
    const double number = value.toDouble(-1);
    constexpr double greatest = 9007199254740991; // what JSON numbers hold exactly
    if (!(number >= 0 && number <= greatest) || number != std::trunc(number) ||
        number > static_cast<double>(std::numeric_limits<Number>::max()))
        return std::nullopt;
    return static_cast<Number>(number);
}

/// Host names, versions and browsers are shown to the user or logged, so they are nothing but that.
bool isPlainWord(const QString &text)
{
    static const QRegularExpression plainWord(QStringLiteral("\\A[A-Za-z0-9._:\\[\\]-]{1,253}\\z"));
    return plainWord.match(text).hasMatch();
}

std::optional<BrowserMessage> parseHello(const QJsonValue &value)
{
    const auto protocol = wholeNumber<int>(value[QLatin1String("protocol")]);
    const QString version = value[QLatin1String("version")].toString();
    const QString browser = value[QLatin1String("browser")].toString();
    if (!protocol || !isPlainWord(version) || !isPlainWord(browser))
        return std::nullopt;
    return BrowserHello{.protocol = *protocol, .version = version, .browser = browser};
}

std::optional<BrowserMessage> parseCurrent(const QJsonValue &value)
{
    if (value.isNull())
        return BrowserCurrent{};
    const auto id = wholeNumber<std::uint32_t>(value[QLatin1String("page")]);
    const QString host = value[QLatin1String("host")].toString();
    if (!id || !isPlainWord(host))
        return std::nullopt;
    return BrowserCurrent{BrowserPage{.id = *id, .host = host}};
}

std::optional<BrowserMessage> parseFocused(const QJsonValue &value)
{
    const auto time = wholeNumber<std::int64_t>(value);
    if (!time)
        return std::nullopt;
    return BrowserFocus{*time};
}

std::optional<BrowserMessage> parseRan(const QJsonValue &value)
{
    const auto id = wholeNumber<std::uint32_t>(value[QLatin1String("id")]);
    if (!id)
        return std::nullopt;
    const QJsonValue results = value[QLatin1String("results")];
    if (results.isNull())
        return BrowserRan{.id = *id, .results = std::nullopt};
    if (!results.isArray())
        return std::nullopt;
    QList<BrowserResult> texts;
    for (const QJsonValue result : results.toArray()) {
        if (result.isString())
            texts.append(result.toString());
        else if (result.isNull())
            texts.append(std::nullopt);
        else
            return std::nullopt;
    }
    return BrowserRan{.id = *id, .results = texts};
}

QByteArray message(QLatin1String key, const QJsonObject &value)
{
    return QJsonDocument(QJsonObject{{key, value}}).toJson(QJsonDocument::Compact);
}

} // namespace

std::optional<BrowserMessage> parseBrowserMessage(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    if (object.size() != 1)
        return std::nullopt;
    const QJsonValue value = object.begin().value();
    if (object.contains(helloKey))
        return parseHello(value);
    if (object.contains(currentKey))
        return parseCurrent(value);
    if (object.contains(focusedKey))
        return parseFocused(value);
    if (object.contains(ranKey))
        return parseRan(value);
    return std::nullopt;
}

QByteArray browserHelloMessage(const QString &version)
{
    return message(helloKey, {{QStringLiteral("protocol"), browserProtocol},
                              {QStringLiteral("version"), version}});
}

QByteArray browserRunMessage(std::uint32_t id, std::uint32_t page, const QStringList &texts)
{
    return message(runKey, {{QStringLiteral("id"), static_cast<qint64>(id)},
                            {QStringLiteral("page"), static_cast<qint64>(page)},
                            {QStringLiteral("texts"), QJsonArray::fromStringList(texts)}});
}
