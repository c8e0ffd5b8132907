// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace {

const QLatin1String helloKey("hello");
const QLatin1String currentKey("current");
const QLatin1String focusedKey("focused");
const QLatin1String ranKey("ran");
const QLatin1String weightKey("weight");

template <typename Number> std::optional<Number> wholeNumber(const QJsonValue &value)
{
    const double number = value.toDouble(-1);
    constexpr double greatest = 9007199254740991; // what JSON numbers hold exactly
    if (!(number >= 0 && number <= greatest) || number != std::trunc(number) ||
        number > static_cast<double>(std::numeric_limits<Number>::max()))
        return std::nullopt;
    return static_cast<Number>(number);
}

/// Each once at most.
std::optional<QList<int>> ascendingNumbers(const QJsonValue &value)
{
    if (!value.isArray())
        return std::nullopt;
    QList<int> numbers;
    const QJsonArray elements = value.toArray();
    for (const QJsonValue element : elements) {
        const auto number = wholeNumber<int>(element);
        if (!number || (!numbers.isEmpty() && *number <= numbers.last()))
            return std::nullopt;
        numbers.append(*number);
    }
    return numbers;
}

/// A focus that long ago is as good as none.
constexpr std::int64_t longestAgo = std::int64_t{10} * 365 * 24 * 3600 * 1000; // ms

constexpr std::size_t usualStep = 150; // bytes

/// Host names, versions and browsers are shown to the user or logged, so they are nothing but that.
bool isPlainWord(const QString &text)
{
    static const QRegularExpression plainWord(QStringLiteral("\\A[A-Za-z0-9._:\\[\\]-]{1,253}\\z"));
    return plainWord.match(text).hasMatch();
}

/// What an address can have in the place of its host.
bool isHost(const QString &text)
{
    static const QRegularExpression host(
        QStringLiteral(R"(\A[A-Za-z0-9._:\[\]!$&'()*+,;="`{}~-]+\z)"));
    return host.match(text).hasMatch();
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
    if (!id || !isHost(host))
        return std::nullopt;
    return BrowserCurrent{BrowserPage{.id = *id, .host = isPlainWord(host) ? host : QString()}};
}

std::optional<BrowserMessage> parseFocused(const QJsonValue &value)
{
    const auto time = wholeNumber<std::int64_t>(value);
    if (!time)
        return std::nullopt;
    return BrowserFocus{std::chrono::milliseconds(std::min(*time, longestAgo))};
}

std::optional<BrowserMessage> parseRan(const QJsonValue &value)
{
    const auto id = wholeNumber<std::uint32_t>(value[QLatin1String("id")]);
    if (!id)
        return std::nullopt;
    const QJsonValue fields = value[QLatin1String("fields")];
    if (fields.isNull())
        return BrowserRan{.id = *id, .fields = std::nullopt, .notes = {}};
    const auto written = wholeNumber<int>(fields[QLatin1String("written")]);
    const auto changed = wholeNumber<int>(fields[QLatin1String("changed")]);
    const auto notes = ascendingNumbers(value[QLatin1String("notes")]);
    if (!written || !changed || *changed > *written || !notes)
        return std::nullopt;
    return BrowserRan{.id = *id,
                      .fields = FilledFields{.written = *written, .changed = *changed},
                      .notes = *notes};
}

std::optional<BrowserMessage> parseWish(const QJsonValue &value)
{
    const QString wish = value.toString();
    if (wish == QLatin1String("once"))
        return WeightWish::Once;
    if (wish == QLatin1String("follow"))
        return WeightWish::Follow;
    if (wish == QLatin1String("stop"))
        return WeightWish::Stop;
    return std::nullopt;
}

// Plans are written as they go: made of JSON objects first, they would take the better part of the
// time that a reading holds the thread.

void appendEscaped(std::string &json, const QByteArray &bytes)
{
    static const char digits[] = "0123456789abcdef";
    for (const char byte : bytes) {
        // Whether a char has a sign is the processor's choice.
        if (static_cast<unsigned char>(byte) < ' ') {
            json += "\\u00";
            json += digits[byte / 16];
            json += digits[byte % 16];
            continue;
        }
        if (byte == '"' || byte == '\\')
            json += '\\';
        json += byte;
    }
}

bool isTakenAsItIs(QChar character)
{
    return character >= u' ' && character <= u'~' && character != u'"' && character != u'\\';
}

void appendText(std::string &json, const FillStep &step)
{
    json += '"';
    json += step.start;
    if (std::all_of(step.text.begin(), step.text.end(), isTakenAsItIs)) {
        for (const QChar character : step.text)
            json += character.toLatin1();
    } else {
        appendEscaped(json, step.text.toUtf8());
    }
    json += '"';
}

void appendNumbers(std::string &json, const QList<int> &numbers)
{
    json += '[';
    for (const int number : numbers) {
        std::array<char, std::numeric_limits<int>::digits10 + 2> digits{}; // with its sign
        const char *end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        json.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
        json += ',';
    }
    if (!numbers.isEmpty())
        json.pop_back();
    json += ']';
}

void appendStep(std::string &json, const FillStep &step)
{
    if (step.ifAnswers.isEmpty() && step.unlessAnswers.isEmpty() && step.note == nullptr) {
        appendText(json, step);
        return;
    }
    json += R"({"if":)";
    appendNumbers(json, step.ifAnswers);
    if (step.note != nullptr)
        json += R"(,"note":true)";
    json += R"(,"text":)";
    appendText(json, step);
    json += R"(,"unless":)";
    appendNumbers(json, step.unlessAnswers);
    json += '}';
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
    if (object.contains(weightKey))
        return parseWish(value);
    return std::nullopt;
}

QByteArray browserHelloMessage(const QString &version)
{
    return message(helloKey, {{QStringLiteral("protocol"), browserProtocol},
                              {QStringLiteral("version"), version}});
}

QByteArray browserPlanMessage(std::uint32_t id, std::uint32_t page, const FillPlan &plan)
{
    std::string json;
    json.reserve(static_cast<std::size_t>(plan.steps.size()) * usualStep);
    json += R"({"plan":{"id":)" + std::to_string(id) + R"(,"page":)" + std::to_string(page) +
            R"(,"steps":[)";
    for (const FillStep &step : plan.steps) {
        appendStep(json, step);
        json += ',';
    }
    if (!plan.steps.isEmpty())
        json.pop_back();
    json += "]}}";
    return QByteArray::fromStdString(json);
}
