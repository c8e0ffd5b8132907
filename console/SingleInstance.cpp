// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/SingleInstance.h"

#include "base/Log.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// The first may just be reading without a window, which takes eight seconds at worst.
constexpr auto claimPatience = 10000ms;
constexpr auto connectTime = 200ms;
constexpr auto claimInterval = 50ms;

QByteArray line(const QJsonObject &message)
{
    return QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject message(const QByteArray &line)
{
    return QJsonDocument::fromJson(line).object();
}

bool waitForLine(QLocalSocket &socket)
{
    const QDeadlineTimer deadline(claimPatience);
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return socket.canReadLine();
    }
    return true;
}

} // namespace

SingleInstance::SingleInstance(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_socketPath(folder + QStringLiteral("/postal-scale.socket"))
    , m_lock(folder + QStringLiteral("/postal-scale.lock"))
{
    // However long it is held: it is stale only when its process is gone.
    m_lock.setStaleLockTime(0);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::greet);
}

QString SingleInstance::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
}

SingleInstance::Claim SingleInstance::claim(const QJsonObject &request)
{
    const QDeadlineTimer deadline(claimPatience);
    while (!m_lock.tryLock()) {
        if (m_lock.error() != QLockFile::LockFailedError) {
            logLine(QStringLiteral("Other running instances cannot be looked for: %1 is not usable")
                        .arg(m_socketPath));
            return {};
        }
        if (const auto answered = ask(request))
            return *answered;
        if (deadline.hasExpired())
            return {.outcome = Claim::Outcome::Unanswered, .answer = {}};
        QThread::msleep(claimInterval.count());
    }
    return {};
}

qint64 SingleInstance::ownerProcess() const
{
    qint64 process = 0;
    QString host;
    QString program;
    return m_lock.getLockInfo(&process, &host, &program) ? process : 0;
}

/// Nothing where nobody listens yet, or no longer.
std::optional<SingleInstance::Claim> SingleInstance::ask(const QJsonObject &request) const
{
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    if (!socket.waitForConnected(connectTime.count()))
        return std::nullopt;
    socket.write(line(request));
    socket.flush();
    if (waitForLine(socket))
        return Claim{.outcome = Claim::Outcome::Answered, .answer = message(socket.readLine())};
    if (socket.state() == QLocalSocket::ConnectedState)
        return Claim{.outcome = Claim::Outcome::Unanswered, .answer = {}};
    return std::nullopt;
}

void SingleInstance::serve(Handler handler)
{
    m_handler = std::move(handler);
    QLocalServer::removeServer(m_socketPath);
    if (!m_server.listen(m_socketPath))
        logLine(
            QStringLiteral("Later starts cannot reach this one: %1").arg(m_server.errorString()));
}

void SingleInstance::greet()
{
    QLocalSocket *peer = m_server.nextPendingConnection();
    connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
    connect(peer, &QLocalSocket::readyRead, peer, [this, peer] {
        if (!peer->canReadLine())
            return;
        peer->write(line(m_handler(message(peer->readLine()))));
        peer->disconnectFromServer();
    });
}
