// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserServer.h"

#include "base/Log.h"
#include "base/UserFolder.h"
#include "browser/link/BrowserSocketName.h"
#include "browser/link/SameUser.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <unistd.h>
#include <utility>

namespace {

constexpr int connectTime = 100; // ms

bool isInUse(const QString &path)
{
    QLocalSocket probe;
    probe.connectToServer(path);
    return probe.waitForConnected(connectTime);
}

/// Empty if nothing keeps the socket from being made.
QString troubleWith(const QString &path)
{
    const UserFolder folder = UserFolder::at(QFileInfo(path).path());
    if (!folder.trouble.isEmpty())
        return folder.trouble;
    return isInUse(path) ? QStringLiteral("%1 is in use by another program").arg(path) : QString();
}

} // namespace

BrowserServer::BrowserServer(PeerHandler handler, QObject *parent)
    : QLocalServer(parent)
    , m_handler(std::move(handler))
{
    setSocketOptions(UserAccessOption);
}

QString BrowserServer::defaultPath()
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (folder.isEmpty())
        return {};
    return folder + QLatin1Char('/') + QLatin1String(browserSocketName);
}

bool BrowserServer::listenAt(const QString &path)
{
    if (path.isEmpty()) {
        m_trouble = UserFolder::ofSession().trouble;
        logLine(QStringLiteral("Browser link: XDG_RUNTIME_DIR is not set"));
        return false;
    }
    m_trouble = troubleWith(path);
    if (!m_trouble.isEmpty()) {
        logLine(QStringLiteral("Browser link: ") + m_trouble);
        return false;
    }
    removeServer(path);
    if (!listen(path)) {
        m_trouble = QStringLiteral("%1: %2").arg(path, errorString());
        logLine(QStringLiteral("Browser link: ") + m_trouble);
        return false;
    }
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    return true;
}

void BrowserServer::incomingConnection(quintptr descriptor)
{
    const auto peer = static_cast<int>(descriptor);
    if (!isOfSameUser(peer)) {
        logLine(QStringLiteral("Browser link: another user was turned away"));
        ::close(peer);
        return;
    }
    auto *socket = new QLocalSocket(this);
    socket->setSocketDescriptor(peer);
    m_handler(socket);
}
