// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserServer.h"

#include "base/Log.h"
#include "base/UserFolder.h"
#include "browser/link/BrowserSocketName.h"
#include "sockets/LocalSocket.h"
#include "sockets/SameUser.h"

#include <QFileInfo>
#include <utility>

namespace {

/// Empty if nothing keeps the socket from being made.
QString troubleWith(const QString &path)
{
    const UserFolder folder = UserFolder::at(QFileInfo(path).path());
    if (!folder.trouble.isEmpty())
        return folder.trouble;
    return LocalServer::isServedAt(path)
               ? QStringLiteral("%1 is in use by another program").arg(path)
               : QString();
}

} // namespace

BrowserServer::BrowserServer(LocalServer::PeerHandler handler)
    : m_server([this](LocalSocket *peer) { greet(peer); })
    , m_handler(std::move(handler))
{
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
    if (!m_server.listenAt(path)) {
        m_trouble = QStringLiteral("%1: %2").arg(path, m_server.trouble());
        logLine(QStringLiteral("Browser link: ") + m_trouble);
        return false;
    }
    return true;
}

void BrowserServer::greet(LocalSocket *peer)
{
    if (isOfSameUser(peer->descriptor())) {
        m_handler(peer);
        return;
    }
    logLine(QStringLiteral("Browser link: another user was turned away"));
    delete peer;
}
