// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/SingleInstance.h"

#include "base/Log.h"
#include "base/UserFolder.h"
#include "browser/link/PeerLimits.h"
#include "console/SingleInstanceRequest.h"
#include "sockets/LocalCall.h"
#include "sockets/LocalSocket.h"
#include "sockets/SameUser.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// The first may just be reading without a window, which takes eight seconds at worst.
constexpr auto claimPatience = 10000ms;
constexpr auto claimInterval = 50ms;

QByteArray line(const QJsonObject &message)
{
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject message(const QByteArray &line)
{
    return QJsonDocument::fromJson(line).object();
}

/// Why there is none. The toolkit takes none but that with the very permissions of a session's.
UserFolder unsafeFolder()
{
    const UserFolder folder = UserFolder::ofSession();
    if (!folder.trouble.isEmpty())
        return folder;
    return UserFolder::openToOthers(
        folder.path,
        QStringLiteral("the runtime folder %1 is not the user's alone").arg(folder.path));
}

} // namespace

SingleInstance::SingleInstance(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_socketPath(folder.isEmpty() ? folder : folder + QStringLiteral("/postal-scale.socket"))
    , m_lock(folder + QStringLiteral("/postal-scale.lock"))
    , m_server([this](LocalSocket *peer) { greet(peer); })
{
}

QString SingleInstance::defaultFolder()
{
    // Empty where the session's is not the user's alone, and no other can be made.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return folder.isEmpty() ? folder : UserFolder::at(folder).path;
}

SingleInstance::Claim SingleInstance::claim(const QJsonObject &request)
{
    if (m_socketPath.isEmpty()) {
        const UserFolder folder = unsafeFolder();
        m_trouble = folder.trouble;
        m_cure = folder.cure;
        return {};
    }
    const QDeadlineTimer deadline(claimPatience);
    for (;;) {
        switch (m_lock.tryTake()) {
        case InstanceLock::Outcome::Taken: return {};
        case InstanceLock::Outcome::Impossible:
            beHidden(m_lock.trouble());
            logLine(QStringLiteral("Other running instances cannot be looked for: %1 is not usable")
                        .arg(m_socketPath));
            return {};
        case InstanceLock::Outcome::HeldByAnother: break;
        }
        const auto answered = ask(request);
        if (answered && !isYield(answered->answer))
            return *answered;
        if (deadline.hasExpired())
            return {.outcome = Claim::Outcome::Unanswered, .answer = {}};
        QThread::msleep(claimInterval.count());
    }
}

SingleInstance::Claim SingleInstance::askFirst(const QJsonObject &request) const
{
    return m_socketPath.isEmpty() ? Claim{} : ask(request).value_or(Claim{});
}

qint64 SingleInstance::ownerProcess() const
{
    return m_lock.owner();
}

/// Nothing where nobody listens yet, or no longer.
std::optional<SingleInstance::Claim> SingleInstance::ask(const QJsonObject &request) const
{
    LocalCall first(m_socketPath, claimPatience);
    if (first.isBusy())
        return Claim{.outcome = Claim::Outcome::Unanswered, .answer = {}};
    if (!first.isConnected())
        return std::nullopt;
    first.send(line(request), claimPatience);
    if (const auto answer = first.line(claimPatience))
        return Claim{.outcome = Claim::Outcome::Answered, .answer = message(*answer)};
    if (first.isConnected())
        return Claim{.outcome = Claim::Outcome::Unanswered, .answer = {}};
    return std::nullopt;
}

void SingleInstance::serve(Handler handler, Adopter adopter)
{
    m_handler = std::move(handler);
    m_adopter = std::move(adopter);
    if (!m_trouble.isEmpty())
        return;
    if (m_server.listenAt(m_socketPath))
        return;
    beHidden(QStringLiteral("%1: %2").arg(m_socketPath, m_server.trouble()));
    logLine(QStringLiteral("Later starts cannot reach this one: %1").arg(m_server.trouble()));
}

void SingleInstance::beHidden(const QString &trouble)
{
    m_trouble = trouble;
    m_cure = QStringLiteral("Close Postal Scale, and move away what is named here.");
}

void SingleInstance::greet(LocalSocket *peer)
{
    connect(peer, &LocalSocket::closed, peer, &QObject::deleteLater);
    // Few are ever admitted: all that a later start has to say is one line, and it waits for
    // another.
    auto *limits = new PeerLimits(peer);
    if (!isOfSameUser(peer->descriptor()) || strangers() > PeerLimits::mostPeers) {
        peer->abort();
        return;
    }
    connect(peer, &LocalSocket::received, limits, [this, peer, limits] {
        if (peer->canReadLine())
            hear(*peer, *limits);
        else if (limits->isFull())
            peer->abort();
    });
}

qsizetype SingleInstance::strangers() const
{
    const auto peers = m_server.findChildren<const PeerLimits *>();
    return std::count_if(peers.begin(), peers.end(),
                         [](const PeerLimits *peer) { return !peer->isAdmitted(); });
}

void SingleInstance::hear(LocalSocket &peer, PeerLimits &limits)
{
    const QJsonObject request = message(peer.readLine());
    if (m_adopter && m_adopter(request, peer)) {
        // It has nothing more to say; how much may lie unread is limited all the same.
        limits.admit();
        peer.disconnect(&limits);
        return;
    }
    peer.write(line(m_handler(request)));
    peer.closeWhenSent();
}
