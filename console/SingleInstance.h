// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "console/InstanceLock.h"
#include "sockets/LocalServer.h"

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

class PeerLimits;

/// Sees to it that one process of a user has the scale: two that poll it get each other's answers.
/// A later one has the first do what it was started for, over a socket that only the user can open.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /// @param folder the user's own, and gone with the session; empty if there is none, and then
    /// every process is the first
    explicit SingleInstance(const QString &folder, QObject *parent = nullptr);

    /// Empty where there is none that is safe.
    static QString defaultFolder();

    struct Claim
    {
        enum class Outcome {
            Ours,       ///< this process is the first, until it ends
            Answered,   ///< the first one did what was asked
            Unanswered, ///< there is a first one, but it is busy or hangs
        };
        Outcome outcome = Outcome::Ours;
        QJsonObject answer; ///< of the first
    };
    /// Waits for an answer, and for a first one that has no window to end; seconds at worst.
    Claim claim(const QJsonObject &request);
    /// As claim, but never becomes the first: Ours says that there is none.
    Claim askFirst(const QJsonObject &request) const;
    /// Why later starts do not find this one; empty where they do. Known once it serves.
    const QString &trouble() const { return m_trouble; }
    /// Of it, in one sentence or two.
    const QString &cure() const { return m_cure; }
    /// Of the first; 0 if there is none.
    qint64 ownerProcess() const;

    using Handler = std::function<QJsonObject(const QJsonObject &request)>;
    /// Keeps the connection of one that wants more than an answer; false if it does not.
    using Adopter = std::function<bool(const QJsonObject &request, LocalSocket &peer)>;
    /// Answers later ones from now on. To be called by the first.
    void serve(Handler handler, Adopter adopter = {});

    /// For what is said on the connection itself; empty if there is none.
    const QString &socketPath() const { return m_socketPath; }

private:
    std::optional<Claim> ask(const QJsonObject &request) const;
    void greet(LocalSocket *peer);
    /// Peers that have not been adopted.
    qsizetype strangers() const;
    void hear(LocalSocket &peer, PeerLimits &limits);
    /// @param trouble something that lies where its files belong
    void beHidden(const QString &trouble);

    QString m_socketPath;
    InstanceLock m_lock;
    QString m_trouble;
    QString m_cure;
    LocalServer m_server;
    Handler m_handler;
    Adopter m_adopter;
};
