// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Any bytes from a browser: cut into messages, however they arrive, and understood or refused. And
// a plan of any texts to a browser, which is what it gets.

#include "browser/link/BrowserFrame.h"
#include "browser/link/BrowserMessage.h"
#include "tests/fuzz/Fuzz.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <functional>

namespace {

struct Received
{
    QList<QByteArray> messages;
    bool broken = false;

    bool operator==(const Received &) const = default;
};

Received receive(const QByteArray &bytes, qsizetype chunk)
{
    BrowserFrameReader reader;
    Received received;
    for (qsizetype start = 0; start < bytes.size(); start += chunk) {
        reader.append(bytes.mid(start, chunk));
        while (const auto message = reader.next())
            received.messages.append(*message);
    }
    received.broken = reader.isBroken();
    return received;
}

void understand(const BrowserRan &ran)
{
    require(!ran.fields || (ran.fields->changed >= 0 && ran.fields->changed <= ran.fields->written),
            "only what was written can be changed");
    require(ran.notes.isEmpty() || (ran.fields && ran.notes.first() >= 0),
            "no note has a number below 0, nor a page that is gone notes");
    require(std::adjacent_find(ran.notes.begin(), ran.notes.end(), std::greater_equal()) ==
                ran.notes.end(),
            "each note is there once, in order");
}

void understand(const QByteArray &json)
{
    const auto message = parseBrowserMessage(json);
    if (!message)
        return;
    if (const auto *hello = std::get_if<BrowserHello>(&*message))
        require(hello->protocol >= 0, "a protocol is no negative number");
    if (const auto *current = std::get_if<BrowserCurrent>(&*message))
        require(!current->page || current->page->host.size() < 254, "a host can be shown");
    if (const auto *focus = std::get_if<BrowserFocus>(&*message))
        require(focus->ago.count() >= 0, "no focus lies in the future");
    if (const auto *ran = std::get_if<BrowserRan>(&*message))
        understand(*ran);
    if (std::holds_alternative<WeightWish>(*message))
        require(json.contains("once") || json.contains("follow") || json.contains("stop"),
                "a wish is one of three words");
}

QString textOf(const QJsonValue &step)
{
    return step.isString() ? step.toString() : step[QLatin1String("text")].toString();
}

/// Each line is a step; one that starts with a digit depends on that question, one that ends with a
/// question mark is one.
FillPlan planOf(const QByteArray &bytes)
{
    FillPlan plan;
    for (const QByteArray &line : bytes.split('\n')) {
        FillStep step{QString::fromUtf8(line)};
        if (!line.isEmpty() && line.front() >= '0' && line.front() <= '9')
            step.ifAnswers.append(line.front() - '0');
        step.isQuestion = line.endsWith('?');
        plan.steps.append(step);
    }
    return plan;
}

void tell(const FillPlan &plan)
{
    FillPlan twice = plan;
    twice.append(plan);
    require(twice.questions() == 2 * plan.questions(), "two plans ask what both ask");
    const QByteArray message = browserPlanMessage(7, 3, twice);
    require(!parseBrowserMessage(message), "no browser sends plans");
    const QJsonArray steps = QJsonDocument::fromJson(message)
                                 .object()[QLatin1String("plan")][QLatin1String("steps")]
                                 .toArray();
    require(steps.size() == 2 * plan.steps.size(), "a plan arrives whole");
    const qsizetype half = plan.steps.size();
    for (qsizetype place = 0; place < half; ++place) {
        require(textOf(steps.at(place)) == plan.steps.at(place).text, "each text as it is");
        require(textOf(steps.at(half + place)) == plan.steps.at(place).text, "and in order");
        const int first = steps.at(place)[QLatin1String("if")][0].toInt();
        const int second = steps.at(half + place)[QLatin1String("if")][0].toInt();
        require(plan.steps.at(place).ifAnswers.isEmpty() || second - first == plan.questions(),
                "each depends on its own answers");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray stream(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    const Received whole = receive(stream, std::max(stream.size(), qsizetype{1}));
    require(receive(stream, 3) == whole, "it does not matter how a stream is cut");
    for (const QByteArray &message : whole.messages) {
        understand(message);
        require(receive(browserFrame(message), 4).messages == QList<QByteArray>{message},
                "a frame holds its message");
    }
    understand(stream);
    tell(planOf(stream.left(4096)));
    return 0;
}
