// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// A connected local socket, served by the event loop. It never waits.
class LocalSocket : public QObject
{
    Q_OBJECT

public:
    /// Bytes that are taken in before some are read; the peer's further ones stay with the system,
    /// which makes it wait.
    static constexpr qsizetype mostReceived = 64 * 1024;

    /// Takes over @p descriptor, which is connected.
    explicit LocalSocket(int descriptor, QObject *parent = nullptr);
    ~LocalSocket() override;
    LocalSocket(const LocalSocket &) = delete;
    LocalSocket &operator=(const LocalSocket &) = delete;

    /// -1 once it is closed.
    int descriptor() const { return m_descriptor; }
    /// Neither closed, nor about to be.
    bool isConnected() const { return m_descriptor >= 0 && !m_isClosing; }

    qsizetype bytesToRead() const { return m_received.size(); }
    bool canReadLine() const { return m_received.contains('\n'); }
    QByteArray readAll();
    /// With its end; without one, what there is.
    QByteArray readLine();

    /// Sends what the system takes at once, and the rest when it takes more. A peer that has gone
    /// is noticed here: closed() may be emitted before this returns.
    void write(const QByteArray &bytes);
    /// That the system has not taken. Whoever writes sees to it that they do not become many.
    qsizetype bytesToWrite() const { return m_unsent.size(); }

    /// What the peer says from now on is not heard.
    void closeWhenSent();
    /// At once; what was received may still be read.
    void abort();

signals:
    void received();
    /// The rest of what was written has gone.
    void sent();
    void closed();

private:
    void receive();
    void send();
    void goOn();
    QByteArray take(qsizetype size);
    void listenForMore();

    int m_descriptor;
    bool m_isClosing = false;
    QByteArray m_received;
    QByteArray m_unsent;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
};
