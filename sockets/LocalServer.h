// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <functional>
#include <memory>

class LocalSocket;

/// A socket's file that others connect to. Nobody but the user can open it.
class LocalServer : public QObject
{
    Q_OBJECT

public:
    using PeerHandler = std::function<void(LocalSocket *peer)>;

    /// @param handler sees to each peer, which is the server's child
    explicit LocalServer(PeerHandler handler, QObject *parent = nullptr);
    /// Removes the file.
    ~LocalServer() override;
    LocalServer(const LocalServer &) = delete;
    LocalServer &operator=(const LocalServer &) = delete;

    /// Whether somebody listens there.
    static bool isServedAt(const QString &path);

    /// To be called once. What lies there is replaced, unless it is a folder. False, and the reason
    /// in trouble(), where that is not possible.
    bool listenAt(const QString &path);
    /// The system's words, without a full stop.
    const QString &trouble() const { return m_trouble; }

private:
    void accept();
    /// @param error the system's number
    bool giveUp(int error);

    PeerHandler m_handler;
    QString m_path; ///< empty unless it listens
    QString m_trouble;
    int m_descriptor = -1;
    std::unique_ptr<QSocketNotifier> m_arrivals;
};
