// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserClient.h"

#include "base/Log.h"
#include "sockets/LocalSocket.h"

#include <QCoreApplication>
#include <algorithm>
#include <iterator>
#include <utility>

namespace {

/// A browser answers, or says that the page is gone. One that does neither, page after page, would
/// only make the program grow.
constexpr qsizetype mostUnanswered = 64;

} // namespace

BrowserClient::BrowserClient(LocalSocket *socket, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_limits(new PeerLimits(socket))
{
    m_socket->setParent(this);
    connect(m_socket, &LocalSocket::received, this, &BrowserClient::receive);
    connect(m_socket, &LocalSocket::closed, this, &BrowserClient::closed);
    write(browserHelloMessage(QCoreApplication::applicationVersion()));
}

bool BrowserClient::isLinked() const
{
    return m_hello && m_hello->protocol == browserProtocol && m_socket->isConnected();
}

bool BrowserClient::isSilent(std::uint32_t page) const
{
    return std::any_of(m_unanswered.begin(), m_unanswered.end(), [page](const Run &run) {
        return run.page == page && run.answerDue.hasExpired();
    });
}

bool BrowserClient::isAwaited(std::uint32_t page) const
{
    return isUnanswered(page) && !isSilent(page);
}

void BrowserClient::post(std::uint32_t page, const FillPlan &plan)
{
    m_posted[page].append(plan);
}

void BrowserClient::flush()
{
    const Waiting posted = std::exchange(m_posted, {});
    for (auto each = posted.begin(); each != posted.end(); ++each) {
        if (isUnanswered(each.key()))
            m_next[each.key()] = each.value();
        else
            send(each.key(), each.value());
    }
}

void BrowserClient::forgetWaiting()
{
    m_posted.clear();
    m_next.clear();
}

void BrowserClient::forgetWaiting(const QString &carrier)
{
    forget(m_posted, carrier);
    forget(m_next, carrier);
}

void BrowserClient::forget(Waiting &waiting, const QString &carrier)
{
    for (auto page = waiting.begin(); page != waiting.end();) {
        page->removeIf([&](const FillPlan &plan) { return plan.carrier == carrier; });
        page = page->isEmpty() ? waiting.erase(page) : std::next(page);
    }
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
    m_focus = std::chrono::steady_clock::now() - message.ago;
    emit changed();
    return true;
}

bool BrowserClient::handle(const BrowserRan &message)
{
    const auto found = std::find_if(m_unanswered.begin(), m_unanswered.end(),
                                    [&](const Run &each) { return each.id == message.id; });
    if (found == m_unanswered.end())
        return false;
    const FillPlan plan = joined(found->plans);
    const QList<const char *> notes = plan.notes();
    if (message.fields && message.fields->written > plan.steps.size())
        return false;
    if (!message.notes.isEmpty() && message.notes.last() >= notes.size())
        return false;
    for (const int note : message.notes)
        logLine(QString::fromLatin1(notes.at(note)));
    const Run run = std::move(*found);
    m_unanswered.erase(found);
    const QList<FillPlan> next = m_next.take(run.page);
    emit ran(run.page, run.plans, message.fields);
    // A page that is gone, or not in front any more, is not to be written into later.
    if (message.fields && !next.isEmpty())
        send(run.page, next);
    emit changed();
    return true;
}

bool BrowserClient::handle(WeightWish message)
{
    if (!isLinked())
        return false;
    if (message == WeightWish::Once)
        emit weightAsked();
    else
        m_followsWeight = message == WeightWish::Follow;
    return true;
}

void BrowserClient::tell(const BrowserWeight &weight)
{
    if (!isLinked())
        return;
    write(browserWeightMessage(weight));
    if (m_limits->isOverdue())
        disconnectPeer();
}

void BrowserClient::disconnectPeer()
{
    m_unanswered.clear();
    m_next.clear();
    m_socket->abort();
}

void BrowserClient::write(const QByteArray &message)
{
    m_socket->write(browserFrame(message));
}

void BrowserClient::send(std::uint32_t page, const QList<FillPlan> &plans)
{
    if (!m_socket->isConnected())
        return;
    ++m_lastRun;
    m_unanswered.append(
        {.id = m_lastRun, .page = page, .plans = plans, .answerDue = QDeadlineTimer(answerTime)});
    write(browserPlanMessage(m_lastRun, page, joined(plans)));
    emit sent();
    if (m_unanswered.size() > mostUnanswered || m_limits->isOverdue())
        disconnectPeer();
}

bool BrowserClient::isUnanswered(std::uint32_t page) const
{
    return std::any_of(m_unanswered.begin(), m_unanswered.end(),
                       [page](const Run &each) { return each.page == page; });
}
