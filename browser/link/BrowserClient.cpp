// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserClient.h"

#include "base/Log.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <QTimer>
#include <algorithm>

namespace {

/// A peer that does not introduce itself is no browser.
constexpr std::chrono::seconds introductionTime{5};

/// A browser answers, or says that the page is gone. One that does neither, page after page, or
/// that no longer takes in what it is sent, would only make the program grow.
constexpr qsizetype mostUnanswered = 64;
constexpr qint64 mostUnread = longestBrowserMessage;

} // namespace

BrowserClient::BrowserClient(QLocalSocket *connectedSocket, QObject *parent)
    : QObject(parent)
    , socket(connectedSocket)
{
    socket->setParent(this);
    socket->setReadBufferSize(longestBrowserMessage);
    connect(socket, &QLocalSocket::readyRead, this, &BrowserClient::receive);
    connect(socket, &QLocalSocket::disconnected, this, &BrowserClient::closed);
    QTimer::singleShot(introductionTime, this, [this] {
        if (!hello)
            disconnectPeer();
    });
    write(browserHelloMessage(QCoreApplication::applicationVersion()));
}

bool BrowserClient::isLinked() const
{
    return hello && hello->protocol == browserProtocol &&
           socket->state() == QLocalSocket::ConnectedState;
}

bool BrowserClient::isSilent(std::uint32_t page) const
{
    return std::any_of(waiting.begin(), waiting.end(), [page](const Run &run) {
        return run.page == page && run.answerDue.hasExpired();
    });
}

bool BrowserClient::isAwaited(std::uint32_t page) const
{
    return !isSilent(page) && std::any_of(waiting.begin(), waiting.end(),
                                          [page](const Run &run) { return run.page == page; });
}

void BrowserClient::post(std::uint32_t page, const QString &text)
{
    if (page != postedPage)
        flush();
    postedPage = page;
    posted.append(text);
}

QList<BrowserResult> BrowserClient::ask(std::uint32_t page, const QStringList &questions,
                                        QDeadlineTimer deadline)
{
    // What cannot be waited for is not asked: the answers would only keep the page busy.
    if (deadline.hasExpired())
        return {};
    if (page != postedPage)
        flush();
    askedResults.clear();
    askedRun = send(page, posted + questions);
    posted.clear();
    while (isWaitingFor(askedRun)) {
        const int left = static_cast<int>(deadline.remainingTime());
        if (left <= 0 || !socket->waitForReadyRead(left)) // receives, on its way
            break;
    }
    askedRun = 0;
    return askedResults.last(std::min(askedResults.size(), questions.size()));
}

void BrowserClient::flush()
{
    if (!posted.isEmpty() && !isSilent(postedPage))
        send(postedPage, posted);
    posted.clear();
}

void BrowserClient::receive()
{
    for (;;) {
        reader.append(socket->readAll());
        const std::optional<QByteArray> json = reader.next();
        if (!json)
            break;
        const std::optional<BrowserMessage> message = parseBrowserMessage(*json);
        if (!message || !handle(*message)) {
            disconnectPeer();
            return;
        }
    }
    if (reader.isBroken())
        disconnectPeer();
}

bool BrowserClient::handle(const BrowserMessage &message)
{
    if (!hello && !std::holds_alternative<BrowserHello>(message))
        return false;
    return std::visit([this](const auto &kind) { return handle(kind); }, message);
}

bool BrowserClient::handle(const BrowserHello &message)
{
    if (hello)
        return false;
    hello = message;
    // The status area has room for one browser, and another may well be linked.
    if (hello->protocol != browserProtocol)
        logLine(QStringLiteral("Browser link: the extension %1 in %2 does not fit this program")
                    .arg(hello->version, hello->browser));
    emit changed();
    return true;
}

bool BrowserClient::handle(const BrowserCurrent &message)
{
    current = message.page;
    emit changed();
    return true;
}

bool BrowserClient::handle(const BrowserFocus &message)
{
    focus = message.milliseconds;
    emit changed();
    return true;
}

bool BrowserClient::handle(const BrowserRan &message)
{
    const auto found = std::find_if(waiting.begin(), waiting.end(),
                                    [&](const Run &each) { return each.id == message.id; });
    if (found == waiting.end())
        return false;
    const Run run = *found;
    const QList<BrowserResult> results = message.results.value_or(QList<BrowserResult>());
    if (message.results && results.size() != run.texts.size())
        return false;
    waiting.erase(found);
    if (run.id == askedRun)
        askedResults = results;
    emit ran(run.page, run.texts, results);
    emit changed();
    return true;
}

void BrowserClient::disconnectPeer()
{
    waiting.clear();
    socket->abort();
}

void BrowserClient::write(const QByteArray &message)
{
    socket->write(browserFrame(message));
    socket->flush();
}

std::uint32_t BrowserClient::send(std::uint32_t page, const QStringList &texts)
{
    ++lastRun;
    waiting.append(
        {.id = lastRun, .page = page, .texts = texts, .answerDue = QDeadlineTimer(answerTime)});
    write(browserRunMessage(lastRun, page, texts));
    emit sent();
    if (waiting.size() > mostUnanswered || socket->bytesToWrite() > mostUnread)
        disconnectPeer();
    return lastRun;
}

bool BrowserClient::isWaitingFor(std::uint32_t run) const
{
    return std::any_of(waiting.begin(), waiting.end(),
                       [run](const Run &each) { return each.id == run; });
}
