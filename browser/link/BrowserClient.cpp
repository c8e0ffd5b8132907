// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserClient.h"

#include "base/Log.h"

#include <QCoreApplication>
#include <QLocalSocket>
#include <algorithm>

namespace {

/// A browser answers, or says that the page is gone. One that does neither, page after page, would
/// only make the program grow.
constexpr qsizetype mostUnanswered = 64;

} // namespace

BrowserClient::BrowserClient(QLocalSocket *socket, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_limits(new PeerLimits(socket))
{
    m_socket->setParent(this);
    connect(m_socket, &QLocalSocket::readyRead, this, &BrowserClient::receive);
    connect(m_socket, &QLocalSocket::disconnected, this, &BrowserClient::closed);
    write(browserHelloMessage(QCoreApplication::applicationVersion()));
}

bool BrowserClient::isLinked() const
{
    return m_hello && m_hello->protocol == browserProtocol &&
           m_socket->state() == QLocalSocket::ConnectedState;
}

bool BrowserClient::isSilent(std::uint32_t page) const
{
    return std::any_of(m_waiting.begin(), m_waiting.end(), [page](const Run &run) {
        return run.page == page && run.answerDue.hasExpired();
    });
}

bool BrowserClient::isAwaited(std::uint32_t page) const
{
    return !isSilent(page) && std::any_of(m_waiting.begin(), m_waiting.end(),
                                          [page](const Run &run) { return run.page == page; });
}

void BrowserClient::post(std::uint32_t page, const QString &text)
{
    if (page != m_postedPage)
        flush();
    m_postedPage = page;
    m_posted.append(text);
}

QList<BrowserResult> BrowserClient::ask(std::uint32_t page, const QStringList &questions,
                                        QDeadlineTimer deadline)
{
    // What cannot be waited for is not asked: the answers would only keep the page busy.
    if (deadline.hasExpired())
        return {};
    if (page != m_postedPage)
        flush();
    m_askedResults.clear();
    m_askedRun = send(page, m_posted + questions);
    m_posted.clear();
    while (isWaitingFor(m_askedRun)) {
        const int left = static_cast<int>(deadline.remainingTime());
        if (left <= 0 || !m_socket->waitForReadyRead(left)) // receives, on its way
            break;
    }
    m_askedRun = 0;
    return m_askedResults.last(std::min(m_askedResults.size(), questions.size()));
}

void BrowserClient::flush()
{
    if (!m_posted.isEmpty() && !isSilent(m_postedPage))
        send(m_postedPage, m_posted);
    m_posted.clear();
}

void BrowserClient::receive()
{
    for (;;) {
        m_reader.append(m_socket->readAll());
        const std::optional<QByteArray> json = m_reader.next();
        if (!json)
            break;
        const std::optional<BrowserMessage> message = parseBrowserMessage(*json);
        if (!message || !handle(*message)) {
            disconnectPeer();
            return;
        }
    }
    if (m_reader.isBroken())
        disconnectPeer();
}

bool BrowserClient::handle(const BrowserMessage &message)
{
    if (!m_hello && !std::holds_alternative<BrowserHello>(message))
        return false;
    return std::visit([this](const auto &kind) { return handle(kind); }, message);
}

bool BrowserClient::handle(const BrowserHello &message)
{
    if (m_hello)
        return false;
    m_hello = message;
    m_limits->admit();
    // The status area has room for one browser, and another may well be linked.
    if (m_hello->protocol != browserProtocol)
        logLine(QStringLiteral("Browser link: the extension %1 in %2 does not fit this program")
                    .arg(m_hello->version, m_hello->browser));
    emit changed();
    return true;
}

bool BrowserClient::handle(const BrowserCurrent &message)
{
    m_current = message.page;
    emit changed();
    return true;
}

bool BrowserClient::handle(const BrowserFocus &message)
{
    m_focus = message.milliseconds;
    emit changed();
    return true;
}

bool BrowserClient::handle(const BrowserRan &message)
{
    const auto found = std::find_if(m_waiting.begin(), m_waiting.end(),
                                    [&](const Run &each) { return each.id == message.id; });
    if (found == m_waiting.end())
        return false;
    const Run run = *found;
    const QList<BrowserResult> results = message.results.value_or(QList<BrowserResult>());
    if (message.results && results.size() != run.texts.size())
        return false;
    m_waiting.erase(found);
    if (run.id == m_askedRun)
        m_askedResults = results;
    emit ran(run.page, run.texts, results);
    emit changed();
    return true;
}

void BrowserClient::disconnectPeer()
{
    m_waiting.clear();
    m_socket->abort();
}

void BrowserClient::write(const QByteArray &message)
{
    m_socket->write(browserFrame(message));
    m_socket->flush();
}

std::uint32_t BrowserClient::send(std::uint32_t page, const QStringList &texts)
{
    ++m_lastRun;
    m_waiting.append(
        {.id = m_lastRun, .page = page, .texts = texts, .answerDue = QDeadlineTimer(answerTime)});
    write(browserRunMessage(m_lastRun, page, texts));
    emit sent();
    if (m_waiting.size() > mostUnanswered || m_limits->isOverdue())
        disconnectPeer();
    return m_lastRun;
}

bool BrowserClient::isWaitingFor(std::uint32_t run) const
{
    return std::any_of(m_waiting.begin(), m_waiting.end(),
                       [run](const Run &each) { return each.id == run; });
}
